// The real window driven by real events, from start to a saved PDF.

#include "platform/controls/date_field.h"
#include "platform/desktop/system_desktop.h"
#include "platform/preview/preview.h"
#include "shell/frm_cvr_main.h"
#include "shell/frm_reportr_logon.h"
#include "shell/report_list_view.h"
#include "platform/process/single_instance.h"
#include "printing/print_server.h"
#include "support/demo_folder.h"
#include "support/hindrances.h"
#include "support/modal_answers.h"
#include "support/scripted_desktop.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtCore/QDir>
#include <QtCore/QMimeData>
#include <QtCore/QScopeGuard>
#include <QtGui/QDropEvent>
#include <QtGui/QTextDocumentFragment>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolTip>

using namespace corvane;

namespace {

const QDateTime kNow(QDate(2026, 11, 2), QTime(8, 5));

QWidget *child(QWidget &parent, const char *name)
{
    auto *found = parent.findChild<QWidget *>(QString::fromLatin1(name));
    if (!found)
        qFatal("no control %s", name);
    return found;
}

void click(QWidget *control)
{
    QTest::mouseClick(control, Qt::LeftButton);
}

void type(QWidget *field, const char *text)
{
    test::typeInto(field, QString::fromLatin1(text));
}

void logOnAs(QDialog &dialog, const char *user, const char *password)
{
    type(child(dialog, "txtuid"), user);
    type(child(dialog, "txtpw"), password);
    click(child(dialog, "cmdok"));
}

void answerRange(QDialog &dialog, const char *from, const char *to)
{
    type(child(dialog, "DateFrom"), from);
    type(child(dialog, "DateTo"), to);
    click(child(dialog, "Command1"));
}

/// What a file manager does with files that are dragged onto a control; whether they were taken.
bool dropOn(QWidget *target, const QList<QUrl> &files, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
{
    QMimeData dragged;
    dragged.setUrls(files);
    const QPoint at(5, 5);
    QDragEnterEvent enter(at, actions, &dragged, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(at, actions, &dragged, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &drop);
    return drop.isAccepted() && drop.dropAction() == Qt::CopyAction;
}

/// A program on a folder, with its modal dialogs answered in order.
struct Program {
    explicit Program(const QString &folder)
    {
        state.programFolder = folder;
        window = std::make_unique<frmCVRMain>(state, desktop, [] { return kNow; }, QLocale::c());
        desktop.setParentWindow(window.get());
        instance = std::make_unique<SingleInstance>(folder);
    }

    bool start() { return window->Form_Load(*instance); }
    bool startLoggedOn()
    {
        modal.drive([](QDialog &dialog) { logOnAs(dialog, "nora", "clinic"); });
        return start();
    }

    QAbstractButton *button(int index)
    {
        return qobject_cast<QAbstractButton *>(child(*window, qPrintable(QStringLiteral("btnvp%1").arg(index))));
    }
    QAction *menu(const char *name) { return window->findChild<QAction *>(QString::fromLatin1(name)); }
    ReportListView *list() { return window->findChild<ReportListView *>(); }
    Preview *preview() { return window->findChild<Preview *>(); }
    DateField *date(const char *name) { return window->findChild<DateField *>(QString::fromLatin1(name)); }

    /// Buttons that are on, as in "0 2 5".
    QString buttonsOn()
    {
        QStringList on;
        for (int index = 0; index < kToolButtonCount; ++index) {
            if (button(index)->isEnabled())
                on += QString::number(index);
        }
        return on.join(u' ');
    }

    void clickReport(const QString &name)
    {
        const auto items = list()->findItems(name, Qt::MatchExactly);
        QCOMPARE(items.size(), 1);
        list()->scrollToItem(items[0]);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualItemRect(items[0]).center());
    }
    QString firstLine() { return preview()->document() ? documentText(*preview()->document()).section(u'\n', 0, 0) : QString(); }

    test::ModalAnswers modal;
    Reportr state;
    SystemDesktop desktop;
    std::unique_ptr<frmCVRMain> window;
    std::unique_ptr<SingleInstance> instance;
};

} // namespace

class tst_main_window : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void startsOnlyOnce();
    void endsWithoutConfiguration();
    void withoutConnectionOnlyExitIsLeft();
    void endsWhenNobodyLogsOn();
    void startsAfterALogon();
    void wrongLogonsCanBeTriedAgain();
    void runsAReportByClickAndByEnter();
    void asksForDatesAndChecksTheirOrder();
    void runsAgainWithOtherDates();
    void asksForAPatient();
    void aVanishedProgramFolderCostsNothing();
    void typedDatesMustBeWhole();
    void opensByPath();
    void savesAsPdf();
    void asksADesignedReportsQuestions();
    void savesAsExcel_data();
    void savesAsExcel();
    void aWorkbookThatCannotBeWrittenIsTold();
    void aPdfThatCannotBeWrittenIsTold();
    void printsOnTheChosenPrinter();
    void refusesToSaveWhatIsIncomplete();
    void servesOnlyEscapeWhileRunning_data();
    void servesOnlyEscapeWhileRunning();
    void closingWhileRunningHappensAfterwards();
    void dropsOpenLikeTheMenu();
    void theListKeepsItselfCurrent();
    void propertiesChangeTheDefinitionOnly();
    void onlyTabularReportsHaveProperties();
    void helpAndAboutAreShown();
    void buttonsBearTheirCaptions();
    void linksOpenInTheUsersPrograms();

private:
    test::DemoFolder m_demo {60};
};

void tst_main_window::startsOnlyOnce()
{
    const SingleInstance first(m_demo.path());
    Program second(m_demo.path());
    QVERIFY(first.isFirst());
    second.modal.press(QMessageBox::Ok);
    QVERIFY(!second.start());
    QCOMPARE(second.modal.messages()[0].text, QStringLiteral("This program is already running. You can only have one instance open."));
    QCOMPARE(second.modal.messages()[0].title, QStringLiteral("Corvane"));
    QVERIFY(!second.window->isVisible());
    const test::DemoFolder other(20);
    QVERIFY(SingleInstance(other.path()).isFirst());
}

void tst_main_window::endsWithoutConfiguration()
{
    const QTemporaryDir empty;
    Program program(empty.path());
    program.modal.press(QMessageBox::Ok);
    QVERIFY(!program.start());
    QCOMPARE(program.modal.messages()[0].title, QStringLiteral("Critical Error"));
    QCOMPARE(program.modal.messages()[0].icon, QMessageBox::Critical);
}

void tst_main_window::withoutConnectionOnlyExitIsLeft()
{
    const QTemporaryDir folder;
    QFile settings(folder.filePath(QStringLiteral("corvane.ini")));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[SQLServer]\n");
    settings.close();
    Program program(folder.path());
    program.modal.press(QMessageBox::Ok);
    QVERIFY(program.start());
    QVERIFY(program.window->isVisible());
    QVERIFY(!program.list()->isEnabled());
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 4 5 6"));
    QVERIFY(!program.menu("mnuFSendTo")->isEnabled());
    program.modal.press(QMessageBox::Ok); // nobody is logged on
    click(program.button(RefreshButton));
    click(program.button(ExitButton));
    QVERIFY(!program.window->isVisible());
}

void tst_main_window::endsWhenNobodyLogsOn()
{
    Program program(m_demo.path());
    program.modal.drive([](QDialog &dialog) { click(child(dialog, "cmdcancel")); });
    QVERIFY(!program.start());
    QVERIFY(!program.state.gConn);
}

void tst_main_window::startsAfterALogon()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    QCOMPARE(program.window->windowTitle(), QStringLiteral("Corvane Reporter"));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0"));
    QVERIFY(program.menu("mnuFSendTo")->isEnabled());
    QVERIFY(!program.menu("mnuFProps")->isEnabled());
    QStringList shown;
    for (int row = 0; row < program.list()->count(); ++row)
        shown += program.list()->item(row)->text();
    QCOMPARE(shown.size(), QDir(m_demo.report({})).entryList({QStringLiteral("*.rpt")}).size());
    QCOMPARE(program.date("DateFrom")->text(), QStringLiteral("11/02/2026"));
    QCOMPARE(program.firstLine(), QString());
}

void tst_main_window::wrongLogonsCanBeTriedAgain()
{
    Program program(m_demo.path());
    program.modal.drive([](QDialog &dialog) {
        logOnAs(dialog, "nora", "wrong");
        logOnAs(dialog, "frontdesk", "welcome");
        logOnAs(dialog, "nora", "clinic");
    });
    program.modal.press(QMessageBox::Ok);
    program.modal.press(QMessageBox::Ok);
    QVERIFY(program.start());
    QCOMPARE(program.modal.messages()[0].text, QStringLiteral("Invalid UID or Password. Try again."));
    QCOMPARE(program.modal.messages()[1].text, QStringLiteral("You do not have access rights to the Reporter. Try another logon or Exit."));
    QCOMPARE(program.modal.messages()[1].icon, QMessageBox::Warning);
}

void tst_main_window::runsAReportByClickAndByEnter()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    QCOMPARE(program.firstLine(), QStringLiteral("Date of Report: 11/02/2026"));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 2 4 5 6"));
    const DocumentPtr first = program.preview()->document();
    program.clickReport(QStringLiteral("Phone list.rpt"));
    QVERIFY(program.preview()->document() != first); // a second click runs it again
    const DocumentPtr second = program.preview()->document();
    QTest::keyClick(program.list(), Qt::Key_Up);
    QCOMPARE(program.preview()->document(), second); // arrow keys only move
    program.clickReport(QStringLiteral("Account balances.rpt"));
    QTest::keyClick(program.list(), Qt::Key_Return);
    QVERIFY(program.preview()->document() != second);
    QVERIFY(child(*program.window, "lblSummary")->property("text").toString().contains(QStringLiteral(" rows")));
}

void tst_main_window::asksForDatesAndChecksTheirOrder()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.drive([](QDialog &dialog) {
        answerRange(dialog, "11302026", "11012026");
        QVERIFY(dialog.isVisible());
        answerRange(dialog, "11012026", "11302026");
    });
    program.modal.press(QMessageBox::Ok);
    program.clickReport(QStringLiteral("Daily schedule.rpt"));
    QCOMPARE(program.modal.messages()[0].text, QStringLiteral("Start Date must be earlier than End Date."));
    QCOMPARE(program.firstLine(), QStringLiteral("Dates of Report: 11/01/2026 to 11/30/2026"));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 1 2 4 5 6"));
    QVERIFY(!program.window->bDatesChanged);
    program.modal.drive([](QDialog &dialog) { click(child(dialog, "cmdcancel")); });
    program.clickReport(QStringLiteral("Daily schedule.rpt"));
    QCOMPARE(program.firstLine(), QStringLiteral("Dates of Report: 11/02/2026 to 11/02/2026")); // cancelled: unchanged range
}

void tst_main_window::runsAgainWithOtherDates()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.drive([](QDialog &dialog) { answerRange(dialog, "11022026", "11032026"); });
    program.clickReport(QStringLiteral("Daily schedule.rpt"));
    const DocumentPtr first = program.preview()->document();

    program.modal.drive([](QDialog &dialog) { click(child(dialog, "Command1")); });
    click(program.button(DatesButton)); // nothing changed: not run again, but the parameters count as given
    QCOMPARE(program.preview()->document(), first);
    QVERIFY(program.window->reRun);

    program.modal.drive([](QDialog &dialog) { answerRange(dialog, "11042026", "11052026"); });
    click(program.button(DatesButton));
    QCOMPARE(program.firstLine(), QStringLiteral("Dates of Report: 11/04/2026 to 11/05/2026"));

    type(program.date("DateTo"), "11062026");
    click(program.button(RefreshButton));
    QCOMPARE(program.firstLine(), QStringLiteral("Dates of Report: 11/04/2026 to 11/06/2026"));
    QVERIFY(!program.button(RefreshButton)->isChecked());
}

void tst_main_window::asksForAPatient()
{
    const auto choose = [](const char *start) {
        return [start](QDialog &dialog) {
            type(child(dialog, "txtsearch"), start);
            QTest::keyClick(child(dialog, "txtsearch"), Qt::Key_Return);
            QTest::keyClick(child(dialog, "ctList1"), Qt::Key_Home);
            click(child(dialog, "cmdselect"));
        };
    };
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.drive(choose("Abb"));
    program.clickReport(QStringLiteral("Patient ledger.rpt"));
    const QString first = program.state.gPatientText;
    QVERIFY(first.startsWith(QStringLiteral("Abbott, ")));
    const auto text = [&] { return documentText(*program.preview()->document()); };
    QVERIFY(text().contains(QString(u"Patient: " + first + u'\n')));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 2 3 4 5 6"));

    program.modal.drive(choose("O'N"));
    click(program.button(PatientButton));
    QVERIFY(program.state.gPatientText.startsWith(QStringLiteral("O'Neill, ")));
    QVERIFY(text().contains(QString(u"Patient: " + program.state.gPatientText + u'\n')));
    QVERIFY(!text().contains(first));
    QVERIFY(program.window->reRun);

    program.modal.drive([](QDialog &dialog) { dialog.reject(); });
    click(program.button(PatientButton));
    QVERIFY(text().contains(QStringLiteral("Patient: \n"))); // nobody chosen: a report without rows
}

/// As when the network is gone, and comes back.
void tst_main_window::aVanishedProgramFolderCostsNothing()
{
    const QTemporaryDir elsewhere;
    const QString away = m_demo.path() + u".away";
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    const DocumentPtr shown = program.preview()->document();
    QVERIFY(QDir().rename(m_demo.path(), away));
    auto back = qScopeGuard([&] { QDir().rename(away, m_demo.path()); });

    program.modal.press(QMessageBox::Ok);
    click(program.button(PropertiesButton));
    QVERIFY(program.modal.messages()[0].text.contains(QStringLiteral("Phone list.rpt\" cannot be read: there is no such file.")));
    program.modal.drive([&](QDialog &dialog) {
        auto *files = qobject_cast<QFileDialog *>(&dialog);
        files->setDirectory(elsewhere.path());
        files->findChild<QLineEdit *>()->setText(QStringLiteral("phones"));
        QMetaObject::invokeMethod(files, "accept");
    });
    program.modal.press(QMessageBox::Ok);
    program.modal.press(QMessageBox::No);
    click(program.button(ExcelButton)); // what is shown can still be kept somewhere else
    QVERIFY(QFileInfo(elsewhere.filePath(QStringLiteral("phones.xls"))).size() > 0);
    QCOMPARE(program.preview()->document(), shown);
    program.modal.press(QMessageBox::Ok);
    click(program.button(RefreshButton));
    QVERIFY(program.modal.messages().last().text.contains(QStringLiteral("cannot be read: there is no such file.")));
    QVERIFY(!QFile::exists(m_demo.path())); // and nothing is made in its place

    back.dismiss();
    QVERIFY(QDir().rename(away, m_demo.path()));
    click(program.button(RefreshButton));
    QCOMPARE(program.preview()->document()->pageCount(), shown->pageCount());
}

void tst_main_window::typedDatesMustBeWhole()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    type(program.date("DateFrom"), "1102");
    bool stillShown = false;
    program.modal.drive([&](QDialog &dialog) {
        stillShown = program.preview()->document() != nullptr;
        dialog.accept();
    });
    click(program.button(RefreshButton));
    QVERIFY(stillShown);
    QCOMPARE(program.modal.messages()[0].text, QStringLiteral("Start Date must be earlier than End Date."));
    QVERIFY(program.preview()->document()); // nothing ran, nothing is lost
}

void tst_main_window::opensByPath()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    const auto choose = [](const QString &file) {
        return [file](QDialog &dialog) {
            auto *files = qobject_cast<QFileDialog *>(&dialog);
            files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(file);
            files->setFocus();
            QTest::keyClick(files, Qt::Key_Return);
            if (files->isVisible())
                QMetaObject::invokeMethod(files, "accept");
        };
    };
    m_demo.write(QStringLiteral("other/own.rpt"), test::providerList());
    m_demo.write(QStringLiteral("other/none.rpt"), "hello");
    program.modal.drive(choose(m_demo.file(QStringLiteral("other/own.rpt"))));
    program.menu("mnuOpen")->trigger();
    QCOMPARE(program.firstLine(), QStringLiteral("Date of Report: 11/02/2026"));

    program.modal.drive(choose(m_demo.file(QStringLiteral("other/none.rpt"))));
    program.modal.press(QMessageBox::Ok);
    program.menu("mnuOpen")->trigger();
    QCOMPARE(program.modal.messages().last().text, QStringLiteral("File is either not a valid report file or is corrupted"));
    QCOMPARE(program.modal.messages().last().title, QStringLiteral("Invalid Report File"));
    QVERIFY(!program.preview()->document());

    program.modal.drive([](QDialog &dialog) { dialog.reject(); });
    program.menu("mnuOpen")->trigger();
}

void tst_main_window::savesAsPdf()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    const QString file = m_demo.file(QStringLiteral("phones.pdf"));
    program.modal.drive([&](QDialog &dialog) {
        auto *files = qobject_cast<QFileDialog *>(&dialog);
        QVERIFY(files->directory().path().endsWith(QStringLiteral("Documents")));
        files->selectFile(file);
        QMetaObject::invokeMethod(files, "accept");
    });
    program.modal.press(QMessageBox::No);
    click(program.button(PdfButton));
    QCOMPARE(program.modal.messages()[0].text, QStringLiteral("File has been saved. Do you want to open it in Acrobat Reader?"));
    QVERIFY(!QFile::exists(file)); // "No" writes nothing
}

void tst_main_window::asksADesignedReportsQuestions()
{
    m_demo.write(QStringLiteral("Reports/questions.rpt"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports><Report name=\"Main\"><RecordSource>"
        "SELECT name, {DATE*1|1|0|Which day?|On||11/01/2026||} AS d FROM CorvaneDB.dbo.payers "
        "WHERE payer_id IN {*SQL01*}name|payer_id|CorvaneDB.dbo.payers||Whom?|1|1|{*/SQL*} ORDER BY name"
        "</RecordSource><Section kind=\"detail\" height=\"0.2in\"><Data column=\"name\" width=\"3in\" height=\"0.2in\"/>"
        "<Data column=\"d\" x=\"3in\" width=\"2in\" height=\"0.2in\"/></Section></Report></Reports>");
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.drive([](QDialog &dialog) {
        type(child(dialog, "DateCntl0"), "11052026");
        click(child(dialog, "Command1"));
    });
    program.modal.drive([](QDialog &dialog) {
        click(child(dialog, "Command1_0"));
        click(child(dialog, "cmdselect"));
    });
    program.clickReport(QStringLiteral("questions.rpt"));
    QCOMPARE(program.firstLine(), QStringLiteral("Anchor Mutual\t11/05/2026"));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 2 4 5 6"));
    program.modal.press(QMessageBox::Ok);
    click(program.button(PropertiesButton));
    QVERIFY(program.modal.messages()[0].text.contains(QStringLiteral("Only tabular reports have properties")));
    // "Refresh" asks again; a cancelled question leaves nothing to print or save.
    program.modal.drive([](QDialog &dialog) { dialog.reject(); });
    program.modal.press(QMessageBox::Ok);
    click(program.button(RefreshButton));
    QCOMPARE(program.modal.messages()[1].text, QStringLiteral("Report has been canceled."));
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 5"));
    QVERIFY(!program.preview()->document());
    QFile::remove(m_demo.report(QStringLiteral("questions.rpt")));
}

void tst_main_window::savesAsExcel_data()
{
    QTest::addColumn<bool>("menu");
    QTest::newRow("by the button") << false;
    QTest::newRow("by the menu") << true;
}

void tst_main_window::savesAsExcel()
{
    QFETCH(bool, menu);
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    const auto save = [&](const QString &name) {
        program.modal.drive([&, name](QDialog &dialog) {
            auto *files = qobject_cast<QFileDialog *>(&dialog);
            files->setDirectory(m_demo.path());
            files->findChild<QLineEdit *>()->setText(name);
            QMetaObject::invokeMethod(files, "accept");
        });
        program.modal.press(QMessageBox::Ok);
        program.modal.press(QMessageBox::No);
        if (menu)
            program.menu("mnuExcel")->trigger();
        else
            click(program.button(ExcelButton));
    };
    save(QStringLiteral("phones"));
    QVERIFY(QFileInfo(m_demo.file(QStringLiteral("phones.xls"))).size() > 0);
    QFile::remove(m_demo.file(QStringLiteral("phones.xls")));
    QCOMPARE(program.modal.messages()[0].text, QStringLiteral("Save to excel file, successful."));
    QCOMPARE(program.modal.messages()[1].title, QStringLiteral("Open Excel"));
}

void tst_main_window::aWorkbookThatCannotBeWrittenIsTold()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    m_demo.write(QStringLiteral("rows.xls"), "older");
    program.modal.drive([&](QDialog &dialog) {
        auto *files = qobject_cast<QFileDialog *>(&dialog);
        files->setOption(QFileDialog::DontConfirmOverwrite);
        files->selectFile(m_demo.file(QStringLiteral("rows.xls")));
        QMetaObject::invokeMethod(files, "accept");
    });
    program.modal.press(QMessageBox::Ok);
    {
        const test::FullDisk full(512);
        click(program.button(ExcelButton));
    }
    QVERIFY2(program.modal.messages()[0].text.contains(QStringLiteral("rows.xls")), qPrintable(program.modal.messages()[0].text));
    QCOMPARE(m_demo.read(QStringLiteral("rows.xls")), QByteArray("older"));
    QVERIFY(program.button(ExcelButton)->isEnabled());
}

/// The message box keeps to its words; the cause stands in the status bar.
void tst_main_window::aPdfThatCannotBeWrittenIsTold()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    const QString name = QStringLiteral("<b>Phones & faxes.pdf");
    m_demo.write(name, "older");
    program.modal.drive([&](QDialog &dialog) {
        auto *files = qobject_cast<QFileDialog *>(&dialog);
        files->setOption(QFileDialog::DontConfirmOverwrite);
        files->selectFile(m_demo.file(name));
        QMetaObject::invokeMethod(files, "accept");
    });
    program.modal.press(QMessageBox::Yes);
    program.modal.press(QMessageBox::Ok);
    {
        const test::FullDisk full(512);
        click(program.button(PdfButton));
    }
    QVERIFY(program.modal.messages()[1].text.startsWith(u"Failed to convert '"));
    const auto *notes = qobject_cast<QLabel *>(child(*program.window, "lblNotes"));
    QVERIFY2(notes->text().contains(QString(name + u"\" was not saved. File too large.")), qPrintable(notes->text()));
    QCOMPARE(QTextDocumentFragment::fromHtml(notes->toolTip()).toPlainText(), notes->text());
    QCOMPARE(m_demo.read(name), QByteArray("older"));
    QVERIFY(program.button(PdfButton)->isEnabled());
}

void tst_main_window::printsOnTheChosenPrinter()
{
    test::PrintServer server;
    server.addQueue(QStringLiteral("Morning"), true, test::letterPrinter());
    QCOMPARE(server.start(), QString());
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    program.modal.drive([](QDialog &dialog) { dialog.accept(); });
    QVERIFY(program.menu("mnuFPrint")->isEnabled());
    program.menu("mnuFPrint")->trigger();
    std::optional<test::PrintedJob> job;
    QVERIFY(QTest::qWaitFor([&] { return (job = server.takeJob()).has_value(); }, 20'000));
    QVERIFY2(job->title.contains(QStringLiteral("Phone")), qPrintable(job->title));
    server.stop();
}

void tst_main_window::refusesToSaveWhatIsIncomplete()
{
    m_demo.write(QStringLiteral("Reports/broken.rpt"), test::providerList().replace("last_name", "nothing"));
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.press(QMessageBox::Ok);
    program.menu("mnuAdobe")->trigger();
    QVERIFY(program.modal.messages()[0].text.contains(QStringLiteral("no report")));
    program.modal.press(QMessageBox::Ok);
    program.clickReport(QStringLiteral("broken.rpt"));
    QCOMPARE(program.modal.messages()[1].title, QStringLiteral("SQL Error"));
    program.modal.press(QMessageBox::Ok);
    click(program.button(PdfButton));
    QVERIFY(program.modal.messages()[2].text.contains(QStringLiteral("incomplete")));
    QFile::remove(m_demo.report(QStringLiteral("broken.rpt")));
}

void tst_main_window::servesOnlyEscapeWhileRunning_data()
{
    QTest::addColumn<QByteArray>("definition");
    // Long enough for the window to be served: every patient with every other one.
    const QByteArray many = "SELECT a.id, b.last_name FROM CorvaneDB.dbo.appointments a JOIN CorvaneDB.dbo.appointments c ON c.id <= 400 "
                            "JOIN CorvaneDB.dbo.patient_info b ON b.id = a.patient_id";
    const QByteArray name = "<Data column=\"last_name\" width=\"3in\" height=\"0.2in\"/>";
    const auto layout = [](const QByteArray &title, const QByteArray &sql, const QByteArray &field) {
        return QByteArray("<Report name=\"" + title + "\"><RecordSource><![CDATA[" + sql
            + "]]></RecordSource><Section kind=\"detail\" height=\"0.2in\">" + field + "</Section></Report>");
    };
    const auto file = [](const QByteArray &reports) { return QByteArray("<?xml version=\"1.0\"?>\n<Reports>" + reports + "</Reports>"); };
    QTest::newRow("designed") << file(layout("Main", many, name));
    QTest::newRow("designed, all in one sub-report") << file(layout("Main", "SELECT 1 AS n", "<Subreport name=\"SubreportOne\" width=\"3in\" height=\"0.2in\"/>")
        + layout("SubreportOne", many, name));
    QTest::newRow("tabular") << test::providerList().replace("SELECT provider_id, last_name FROM CorvaneDB.dbo.providers ORDER BY provider_id", many);
}

void tst_main_window::servesOnlyEscapeWhileRunning()
{
    QFETCH(QByteArray, definition);
    m_demo.write(QStringLiteral("Reports/long.rpt"), definition);
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    bool tookADrop = true;
    QTimer::singleShot(0, program.window.get(), [&] {
        QTest::mouseClick(program.list()->viewport(), Qt::LeftButton, {}, QPoint(10, 10));
        tookADrop = dropOn(program.list()->viewport(), {QUrl::fromLocalFile(m_demo.report(QStringLiteral("Phone list.rpt")))});
        QTest::keyClick(program.window.get(), Qt::Key_Escape);
    });
    bool tookADropAsked = true;
    program.modal.drive([&](QDialog &dialog) { // stop?
        tookADropAsked = dropOn(program.preview(), {QUrl::fromLocalFile(m_demo.report(QStringLiteral("Phone list.rpt")))});
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        QCOMPARE(box->text(), QStringLiteral("Do you want to stop this report?"));
        click(box->button(QMessageBox::Yes));
    });
    program.modal.press(QMessageBox::Ok); // canceled
    program.clickReport(QStringLiteral("long.rpt"));
    QVERIFY(!tookADrop);
    QVERIFY(!tookADropAsked);
    QCOMPARE(program.modal.messages().last().text, QStringLiteral("Report has been canceled."));
    QCOMPARE(program.modal.messages().last().title, QStringLiteral("Report Canceled"));
    QVERIFY(!program.preview()->document());
    QCOMPARE(program.buttonsOn(), QStringLiteral("0 5"));
    for (const char *name : {"mnuFPrint", "mnuFSendTo"})
        QVERIFY(!program.menu(name)->isEnabled());
    QTest::keyClick(program.window.get(), Qt::Key_P, Qt::ControlModifier); // no print dialog
    for (const int index : {PdfButton, ExcelButton})
        click(program.button(index)); // nor one for a file
    program.clickReport(QStringLiteral("Phone list.rpt"));
    QVERIFY(program.preview()->document());
    QVERIFY(program.menu("mnuFPrint")->isEnabled());
}

void tst_main_window::dropsOpenLikeTheMenu()
{
    m_demo.write(QStringLiteral("other/own.rpt"), test::providerList());
    m_demo.write(QStringLiteral("other/none.rpt"), "hello");
    const QUrl own = QUrl::fromLocalFile(m_demo.file(QStringLiteral("other/own.rpt")));
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    for (QWidget *target : {static_cast<QWidget *>(program.list()->viewport()), program.preview()->viewport(), child(*program.window, "txtfilter")}) {
        const DocumentPtr before = program.preview()->document();
        QVERIFY(dropOn(target, {own}));
        QTRY_VERIFY(program.preview()->document() != before);
        QCOMPARE(program.firstLine(), QStringLiteral("Date of Report: 11/02/2026"));
    }
    program.modal.press(QMessageBox::Ok);
    QVERIFY(dropOn(program.list()->viewport(), {QUrl::fromLocalFile(m_demo.file(QStringLiteral("other/none.rpt")))}));
    QTRY_COMPARE(program.modal.messages().size(), 1);
    QCOMPARE(program.modal.messages()[0].title, QStringLiteral("Invalid Report File"));

    const DocumentPtr before = program.preview()->document();
    const auto isRefused = [&](const QList<QUrl> &urls, Qt::DropActions actions = Qt::CopyAction) {
        return !dropOn(program.list()->viewport(), urls, actions);
    };
    QVERIFY(isRefused({}));
    QVERIFY(isRefused({own, own}));
    QVERIFY(isRefused({QUrl::fromLocalFile(m_demo.file(QStringLiteral("other")))}));
    QVERIFY(isRefused({QUrl::fromLocalFile(m_demo.file(QStringLiteral("other/missing.rpt")))}));
    QVERIFY(isRefused({QUrl(QStringLiteral("https://example.org/own.rpt"))}));
    QVERIFY(isRefused({own}, Qt::MoveAction)); // the file would be deleted where it was
    program.modal.drive([&](QDialog &dialog) {
        QCOMPARE(qobject_cast<QFileDialog *>(&dialog)->directory().dirName(), QStringLiteral("other")); // the folder used last
        QVERIFY(isRefused({own}));
        dialog.reject();
    });
    program.menu("mnuOpen")->trigger();
    program.modal.drive([&](QDialog &dialog) {
        QVERIFY(isRefused({own}));
        click(child(dialog, "cmdOK"));
    });
    program.menu("mnuHAbout")->trigger();
    QCOMPARE(program.preview()->document(), before);
}

void tst_main_window::closingWhileRunningHappensAfterwards()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    bool stillOpen = false;
    QTimer::singleShot(0, program.window.get(), [&] {
        program.window->close();
        stillOpen = program.window->isVisible();
        QTest::keyClick(program.window.get(), Qt::Key_Escape);
    });
    program.modal.press(QMessageBox::No); // do not stop
    program.clickReport(QStringLiteral("long.rpt"));
    QVERIFY(stillOpen);
    QVERIFY(!program.window->isVisible());
    QVERIFY(!program.state.gConn);
    QFile::remove(m_demo.report(QStringLiteral("long.rpt")));
}

void tst_main_window::theListKeepsItselfCurrent()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    const int before = program.list()->count();
    m_demo.write(QStringLiteral("Reports/new one.RPT"), test::providerList());
    QTRY_COMPARE(program.list()->count(), before + 1);
    QVERIFY(QFile::remove(m_demo.report(QStringLiteral("new one.RPT"))));
    QTRY_COMPARE(program.list()->count(), before);
    QVERIFY(QDir().rename(m_demo.file(QStringLiteral("Reports")), m_demo.file(QStringLiteral("Away"))));
    QTRY_COMPARE(program.list()->count(), 0);
    QVERIFY(QDir().rename(m_demo.file(QStringLiteral("Away")), m_demo.file(QStringLiteral("Reports"))));
    QTRY_COMPARE(program.list()->count(), before);
}

void tst_main_window::propertiesChangeTheDefinitionOnly()
{
    const QByteArray before = m_demo.read(QStringLiteral("Reports/Phone list.rpt"));
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.clickReport(QStringLiteral("Phone list.rpt"));
    QVERIFY(program.menu("mnuFProps")->isEnabled());
    const DocumentPtr shown = program.preview()->document();
    program.modal.drive([](QDialog &dialog) {
        type(child(dialog, "cboHeader1"), "Everybody's number");
        click(child(dialog, "Command5"));
    });
    click(program.button(PropertiesButton));
    QCOMPARE(program.preview()->document(), shown); // not run again by itself
    QVERIFY(m_demo.read(QStringLiteral("Reports/Phone list.rpt")).contains("CText=Everybody's number"));
    program.modal.drive([](QDialog &dialog) { click(child(dialog, "Command6")); });
    program.menu("mnuFProps")->trigger();
    click(program.button(RefreshButton));
    QVERIFY(program.preview()->document()->header.centre == u"Everybody's number");
    m_demo.write(QStringLiteral("Reports/Phone list.rpt"), before);
}

void tst_main_window::onlyTabularReportsHaveProperties()
{
    const QByteArray designed = "<?xml version=\"1.0\"?>\n<Reports></Reports>\n";
    m_demo.write(QStringLiteral("Reports/designed.rpt"), designed);
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    program.modal.press(QMessageBox::Ok);
    program.clickReport(QStringLiteral("designed.rpt"));
    QVERIFY(!program.menu("mnuFProps")->isEnabled());
    program.modal.press(QMessageBox::Ok);
    program.window->enableButton(PropertiesButton, true); // as after a designed report that ran
    click(program.button(PropertiesButton));
    QVERIFY(program.modal.messages().last().text.startsWith(u"Only tabular reports have properties."));
    QCOMPARE(program.modal.messages().last().icon, QMessageBox::Information);
    QCOMPARE(m_demo.read(QStringLiteral("Reports/designed.rpt")), designed);
    QFile::remove(m_demo.report(QStringLiteral("designed.rpt")));
}

void tst_main_window::helpAndAboutAreShown()
{
    Program program(m_demo.path());
    bool helpInLogon = false;
    program.modal.drive([&](QDialog &dialog) {
        QTest::keyClick(child(dialog, "txtuid"), Qt::Key_F1);
        auto *help = dialog.findChild<QWidget *>(QStringLiteral("frmHelp"));
        helpInLogon = help && help->windowTitle().startsWith(u"Logging on");
        logOnAs(dialog, "nora", "clinic");
    });
    QVERIFY(program.start());
    QVERIFY(helpInLogon);
    program.menu("mnuHContents")->trigger();
    QVERIFY(child(*program.window, "frmHelp")->windowTitle().startsWith(u"Overview"));
    program.modal.drive([](QDialog &dialog) { click(child(dialog, "cmdOK")); });
    program.menu("mnuHAbout")->trigger();
}

void tst_main_window::buttonsBearTheirCaptions()
{
    Program program(m_demo.path());
    QVERIFY(program.startLoggedOn());
    const QStringList captions {QStringLiteral("Exit"), QStringLiteral("Change Report Dates"), QStringLiteral("Save to PDF"),
        QStringLiteral("Select Patient"), QStringLiteral("Properties"), QStringLiteral("Refresh"), QStringLiteral("Save to Excel")};
    for (int index = 0; index < captions.size(); ++index)
        QCOMPARE(program.button(index)->text(), captions[index]);
}

void tst_main_window::linksOpenInTheUsersPrograms()
{
    Reportr state;
    test::ScriptedDesktop desktop;
    frmCVRMain window(state, desktop, [] { return kNow; }, QLocale::c());
    auto *preview = window.findChild<Preview *>();
    preview->setDocument(std::make_shared<const Document>());
    const QList<QUrl> addresses {QUrl(QStringLiteral("https://clinic.example/a?b=1")),
        QUrl(QStringLiteral("http://clinic.example")), QUrl(QStringLiteral("mailto:desk@clinic.example"))};
    for (const QUrl &address : addresses)
        preview->followLink(address.toString());
    QCOMPARE(desktop.openedAddresses, addresses);
    QVERIFY(desktop.messages.isEmpty());

    for (const char *refused : {"file:///etc/passwd", "javascript:alert(1)", "clinic.example", "ssh://clinic.example"}) {
        preview->followLink(QString::fromLatin1(refused));
        QVERIFY2(QToolTip::text().contains(QLatin1StringView(refused)), qPrintable(QToolTip::text()));
    }
    QCOMPARE(desktop.openedAddresses, addresses);

    desktop.hasBrowser = false;
    preview->followLink(addresses[0].toString());
    QCOMPARE(desktop.messages.size(), 1);
    QVERIFY(desktop.messages[0].text.startsWith(addresses[0].toString()));
}

QTEST_MAIN(tst_main_window)
#include "tst_main_window.moc"
