#include "support/window_tour.h"

#include "platform/controls/date_field.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/record_list.h"
#include "platform/controls/spacing.h"
#include "support/typing.h"

#include <QtCore/QTimer>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace corvane::test {

namespace {

const QByteArray kQuestions
    = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports><Report name=\"Main\"><RecordSource>"
      "PARAMETERS [First day] DateTime #11/01/2026#, Payer Text 'ANC', Least Number 10, [With "
      "closed accounts] Bit yes; "
      "SELECT name FROM CorvaneDB.dbo.payers WHERE payer_id = Payer</RecordSource>"
      "<Section kind=\"detail\" height=\"0.2in\"><Data column=\"name\" width=\"3in\" "
      "height=\"0.2in\"/></Section>"
      "</Report></Reports>";

QWidget *child(QWidget &window, const char *name)
{
    return window.findChild<QWidget *>(QString::fromLatin1(name));
}

void press(QWidget &window, const char *name)
{
    QTest::mouseClick(child(window, name), Qt::LeftButton);
}

void setDates(QWidget &window, std::initializer_list<const char *> fields)
{
    QDate date(2026, 11, 2);
    for (const char *field : fields) {
        static_cast<DateField *>(child(window, field))->setDate(date);
        date = date.addDays(26);
    }
}

/// What a user does in a form before the button that accepts it.
void fillIn(QDialog &dialog)
{
    const QString form = dialog.objectName();
    if (form == u"frmReportrLogon") {
        typeInto(child(dialog, "txtuid"), QStringLiteral("nora"));
        typeInto(child(dialog, "txtpw"), QStringLiteral("clinic"));
    } else if (form == u"frmDefDates") {
        setDates(dialog, {"DateFrom", "DateTo"});
    } else if (form == u"frmRptrDates") {
        setDates(dialog, {"DateCntl0", "DateCntl1"});
    } else if (form == u"frmspatnt") {
        typeInto(child(dialog, "txtsearch"), QStringLiteral("B"));
        press(dialog, "cmdsearch");
        dialog.findChild<RecordList *>()->selectRow(1);
    } else if (form == u"frmRptrSelect") {
        RecordModel &list = dialog.findChild<RecordList *>()->model();
        for (int row = 0; row < list.rowCount(); row += 2)
            list.setMarked(row, true);
    } else if (form == u"frmCVRProps") {
        child(dialog, "ctList1")->setFocus();
        QTest::keyClick(child(dialog, "ctList1"), Qt::Key_Down);
    }
}

/// The button that goes on with the report, or leaves things as they are.
const char *acceptingButton(const QString &form)
{
    constexpr std::pair<const char *, const char *> kButtons[]{{"frmReportrLogon", "cmdok"},
        {"frmDefDates", "Command1"}, {"frmRptrDates", "Command1"}, {"frmspatnt", "cmdselect"},
        {"frmRptrSelect", "cmdselect"}, {"frmRptrParams", "cmdcancel"}, {"frmCVRProps", "Command6"},
        {"frmAbout", "cmdOK"}};
    for (const auto &[name, button] : kButtons) {
        if (form == QLatin1String(name))
            return button;
    }
    return nullptr;
}

QString signOf(const QMessageBox &box)
{
    switch (box.icon()) {
    case QMessageBox::Critical:
        return QStringLiteral("message-critical");
    case QMessageBox::Warning:
        return QStringLiteral("message-warning");
    case QMessageBox::Information:
        return QStringLiteral("message-information");
    default:
        return QStringLiteral("message-question");
    }
}

} // namespace

WindowTour::WindowTour(Visitor visitor)
    : m_visitor(std::move(visitor))
    , m_window(std::make_unique<frmCVRMain>(
          m_state, m_desktop, [] { return QDateTime(QDate(2026, 11, 2), QTime(8, 5)); },
          QLocale::c()))
    , m_instance(std::make_unique<SingleInstance>(m_demo.path()))
{
    m_state.programFolder = m_demo.path();
    m_state.commandLine = QStringLiteral("RecSrcTrue"); // has the clause of parameters asked for
    m_desktop.setParentWindow(m_window.get());
    // As large as on a usual screen; the offscreen one is small.
    m_window->resize(lettersWide(m_window.get(), 177), linesHigh(m_window.get(), 48));
    qApp->installEventFilter(this);
}

WindowTour::~WindowTour() = default;

void WindowTour::run()
{
    if (!m_window->Form_Load(*m_instance))
        return;
    visit(QStringLiteral("main-empty"), *m_window);
    runReports();
    openForms();
    showMessages();
}

/// The list learns the kinds of its reports one by one, when nothing else is to do.
void WindowTour::waitForKinds()
{
    const auto *list = m_window->findChild<QListWidget *>(QStringLiteral("File1"));
    const bool isSettled = QTest::qWaitFor([list] {
        for (int row = 0; row < list->count(); ++row) {
            if (!list->item(row)->data(Qt::AccessibleDescriptionRole).isValid())
                return false;
        }
        return true;
    });
    QVERIFY2(isSettled, "a report's kind is still missing");
}

void WindowTour::runReports()
{
    waitForKinds();
    open(QStringLiteral("Provider productivity.rpt"));
    visit(QStringLiteral("main-designed"), *m_window);
    open(QStringLiteral("Balance letter.rpt"));
    open(QStringLiteral("Patient visits.rpt"));
    open(QStringLiteral("Appointments by provider.rpt"));
    visit(QStringLiteral("main-tabular"), *m_window);
    auto *progress = m_window->findChild<FloodPanel *>(QStringLiteral("pnlprogress"));
    progress->setFloodPercent(62);
    progress->show();
    visit(QStringLiteral("main-running"), *m_window);
    progress->hide();
    // What the demo clinic lacks; it appears in the list, which follows its folder.
    m_demo.write(QStringLiteral("Reports/Payer questions.rpt"), kQuestions);
    m_demo.write(QStringLiteral("Reports/Provider list.rpt"),
        providerList("Orientatoin=L\n").replace("last_name", "last_nmae"));
    open(QStringLiteral("Payer questions.rpt"));
    open(QStringLiteral("Provider list.rpt"));
    visit(QStringLiteral("main-findings"), *m_window);
}

void WindowTour::openForms()
{
    trigger("mnuFProps");
    trigger("mnuHAbout");
    trigger("mnuHContents");
    if (QWidget *help = m_window->findChild<QWidget *>(QStringLiteral("frmHelp"))) {
        visit(QStringLiteral("frmHelp"), *help);
        help->close();
    }
    for (QAction *menu : m_window->menuBar()->actions()) {
        menu->menu()->popup(m_window->mapToGlobal(QPoint(0, 30)));
        visit(QStringLiteral("menu-") + menu->text().remove(u'&'), *menu->menu());
        menu->menu()->close();
    }
    QPrinter printer;
    m_desktop.printDialog(printer, 12);
}

void WindowTour::showMessages()
{
    m_desktop.message(QStringLiteral("File is either not a valid report file or is corrupted"),
        MessageFlags::Critical, QStringLiteral("Invalid Report File"));
    m_desktop.message(QStringLiteral("Start Date must be earlier than End Date."),
        MessageFlags::Exclamation, QStringLiteral("Corvane"));
    m_desktop.message(QStringLiteral("Report has been canceled."), MessageFlags::Information,
        QStringLiteral("Report Canceled"));
    m_desktop.message(
        QStringLiteral("File has been saved. Do you want to open it in Acrobat Reader?"),
        MessageFlags::YesNo, QStringLiteral("Corvane"));
}

void WindowTour::open(const QString &report)
{
    auto *list = m_window->findChild<QListWidget *>(QStringLiteral("File1"));
    const auto items = [&] { return list->findItems(report, Qt::MatchExactly); };
    if (!QTest::qWaitFor([&] { return !items().isEmpty(); }))
        qFatal("no report %s", qPrintable(report));
    list->setCurrentItem(items().front());
    QTest::keyClick(list, Qt::Key_Return);
}

void WindowTour::trigger(const char *action)
{
    m_window->findChild<QAction *>(QString::fromLatin1(action))->trigger();
}

bool WindowTour::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog && dialog->isModal())
            QTimer::singleShot(0, dialog, [this, dialog] { answer(*dialog); });
    }
    return false;
}

void WindowTour::answer(QDialog &dialog)
{
    if (const auto *box = qobject_cast<QMessageBox *>(&dialog)) {
        visit(signOf(*box), dialog);
        return dialog.done(box->standardButton(box->defaultButton()));
    }
    if (qobject_cast<QPrintDialog *>(&dialog)) {
        visit(QStringLiteral("print-dialog"), dialog);
        return dialog.reject();
    }
    fillIn(dialog);
    visit(dialog.objectName(), dialog);
    if (const char *button = acceptingButton(dialog.objectName()))
        press(dialog, button);
    if (dialog.isVisible())
        dialog.reject();
}

void WindowTour::visit(const QString &name, QWidget &window)
{
    if (m_visited.contains(name))
        return;
    m_visited += name;
    QCoreApplication::processEvents();
    m_visitor(name, window);
}

} // namespace corvane::test
