#include "platform/desktop/system_desktop.h"
#include "support/modal_answers.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

using namespace corvane;

class tst_desktop : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void messagesFollowTheirFlags_data();
    void messagesFollowTheirFlags();
    void questionsAreAnswered_data();
    void questionsAreAnswered();
    void anUnannouncedDialogIsAFault();
    void filtersAreRead_data();
    void filtersAreRead();
    void openingAFile();
    void savingUnderANewName_data();
    void savingUnderANewName();
    void savingOverAFileAsksFirst();
    void savingIntoAMissingFolderAsksAgain();
    void documentsOpenInTheirProgram_data();
    void documentsOpenInTheirProgram();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString shown(const QString &name) const { return QDir::toNativeSeparators(path(name)); }
    void write(const QString &name, const QByteArray &bytes, QFile::Permissions more = {});

    QTemporaryDir m_folder;
    SystemDesktop m_desktop;
};

namespace {

void typeName(QDialog &dialog, const QString &name)
{
    auto *box = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QVERIFY(box);
    // With the focus, as when typed: only then does the list give up the file that was marked before.
    dialog.activateWindow();
    box->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    box->setText(name);
    auto *buttons = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QTest::mouseClick(
        buttons->button(buttons->button(QDialogButtonBox::Save) ? QDialogButtonBox::Save : QDialogButtonBox::Open),
        Qt::LeftButton);
}

} // namespace

void tst_desktop::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void tst_desktop::write(const QString &name, const QByteArray &bytes, QFile::Permissions more)
{
    QFile file(path(name));
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.setPermissions(file.permissions() | more);
}

void tst_desktop::messagesFollowTheirFlags_data()
{
    using namespace MessageFlags;
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QMessageBox::Icon>("icon");
    QTest::addColumn<QString>("shownText");
    QTest::addColumn<QString>("shownTitle");

    const QString text = QStringLiteral("Try again.");
    const QString title = QStringLiteral("Corvane");
    const QString own = QStringLiteral("Corvane Reporter");
    QTest::newRow("nothing asked for") << text << OkOnly << QString() << QMessageBox::NoIcon << text << own;
    QTest::newRow("critical") << text << Critical << title << QMessageBox::Critical << text << title;
    QTest::newRow("exclamation") << text << Exclamation << title << QMessageBox::Warning << text << title;
    QTest::newRow("information, system modal")
        << text << (Information | SystemModal) << QStringLiteral(" Unsupported") << QMessageBox::Information << text
        << QStringLiteral(" Unsupported");
    QTest::newRow("markup stays text") << QStringLiteral("<b>Bo</b> & <img src=x>") << Exclamation << title
                                       << QMessageBox::Warning << QStringLiteral("<b>Bo</b> & <img src=x>") << title;
    QTest::newRow("classic line ends") << QStringLiteral("a\r\nb\rc") << OkOnly << title << QMessageBox::NoIcon
                                       << QStringLiteral("a\nb\nc") << title;
}

void tst_desktop::messagesFollowTheirFlags()
{
    QFETCH(QString, text);
    QFETCH(int, flags);
    QFETCH(QString, title);
    QFETCH(QMessageBox::Icon, icon);
    QFETCH(QString, shownText);
    QFETCH(QString, shownTitle);

    test::ModalAnswers answers;
    answers.press(QMessageBox::Ok);
    QCOMPARE(m_desktop.message(text, flags, title), MessageAnswer::Ok);
    answers.verify();
    const test::SeenMessage seen = answers.messages().value(0);
    QCOMPARE(seen.text, shownText);
    QCOMPARE(seen.title, shownTitle);
    QCOMPARE(seen.icon, icon);
    QCOMPARE(seen.buttons, QMessageBox::Ok);
    QCOMPARE(seen.format, Qt::PlainText);
}

void tst_desktop::questionsAreAnswered_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("key");
    QTest::addColumn<MessageAnswer>("answer");

    using namespace MessageFlags;
    QTest::newRow("enter is Yes") << YesNo << int(Qt::Key_Return) << MessageAnswer::Yes;
    QTest::newRow("escape is No") << YesNo << int(Qt::Key_Escape) << MessageAnswer::No;
    QTest::newRow("enter is the way back") << YesNoCancel << int(Qt::Key_Return) << MessageAnswer::Cancel;
    QTest::newRow("escape too") << YesNoCancel << int(Qt::Key_Escape) << MessageAnswer::Cancel;
    QTest::newRow("Tab and Space go round to Yes") << YesNoCancel << int(Qt::Key_Tab) << MessageAnswer::Yes;
}

void tst_desktop::questionsAreAnswered()
{
    QFETCH(int, flags);
    QFETCH(int, key);
    QFETCH(MessageAnswer, answer);
    const QString question = QStringLiteral("Do you want to open the file in Excel?");

    test::ModalAnswers answers;
    answers.drive([key](QDialog &dialog) {
        QTest::keyClick(&dialog, Qt::Key(key));
        if (key == Qt::Key_Tab)
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    });
    QCOMPARE(m_desktop.message(question, flags, QStringLiteral("Open Excel")), answer);
    const QMap<MessageAnswer, QMessageBox::StandardButton> buttons {{MessageAnswer::Yes, QMessageBox::Yes},
        {MessageAnswer::No, QMessageBox::No}, {MessageAnswer::Cancel, QMessageBox::Cancel}};
    answers.press(buttons[answer]);
    QCOMPARE(m_desktop.message(question, flags, {}), answer);
    answers.verify();
    const auto yesNo = QMessageBox::Yes | QMessageBox::No;
    QCOMPARE(answers.messages().value(0).buttons, flags == MessageFlags::YesNo ? yesNo : yesNo | QMessageBox::Cancel);
}

void tst_desktop::anUnannouncedDialogIsAFault()
{
    test::ModalAnswers answers;
    m_desktop.message(QStringLiteral("Nobody waits for this"), MessageFlags::OkOnly, {});
    QEXPECT_FAIL("", "a dialog that was not announced must fail the test", Continue);
    answers.verify();
    answers.press(QMessageBox::Ok);
    QEXPECT_FAIL("", "a dialog that never comes must fail the test", Continue);
    answers.verify();
}

void tst_desktop::filtersAreRead_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("filters");

    QTest::newRow("none") << QString() << QStringList();
    QTest::newRow("one") << QStringLiteral("PDF Files (*.pdf)|*.pdf")
                         << QStringList{QStringLiteral("PDF Files (*.pdf)")};
    QTest::newRow("two, several patterns")
        << QStringLiteral("Pictures|*.png;*.jpg|All files|*")
        << QStringList{QStringLiteral("Pictures (*.png *.jpg)"), QStringLiteral("All files (*)")};
    QTest::newRow("a text without a pattern") << QStringLiteral("Excel File (*.xls)|*.xls|More")
                                              << QStringList {QStringLiteral("Excel File (*.xls)")};
}

void tst_desktop::filtersAreRead()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, filters);
    QCOMPARE(nameFilters(filter), filters);
}

void tst_desktop::openingAFile()
{
    write(QStringLiteral("Labels.rpt"), "[Columns]");
    test::ModalAnswers answers;
    answers.drive([this](QDialog &dialog) {
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Open"));
        QCOMPARE(qobject_cast<QFileDialog *>(&dialog)->directory(), QDir(m_folder.path()));
        typeName(dialog, QStringLiteral("Labels.rpt"));
    });
    QCOMPARE(m_desktop.openFile(QStringLiteral("Open"), m_folder.path(), {}), shown(QStringLiteral("Labels.rpt")));
    answers.drive([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QCOMPARE(m_desktop.openFile(QStringLiteral("Open"), m_folder.path(), {}), QString());
}

void tst_desktop::savingUnderANewName_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("saved");

    QTest::newRow("an extension is added")
        << QStringLiteral("*.pdf") << QStringLiteral("march") << QStringLiteral("march.pdf");
    QTest::newRow("with a point") << QStringLiteral(".xls") << QStringLiteral("march") << QStringLiteral("march.xls");
    QTest::newRow("one is kept") << QStringLiteral("pdf") << QStringLiteral("march.PDF") << QStringLiteral("march.PDF");
    QTest::newRow("none wanted") << QString() << QStringLiteral("march") << QStringLiteral("march");
}

void tst_desktop::savingUnderANewName()
{
    QFETCH(QString, extension);
    QFETCH(QString, typed);
    QFETCH(QString, saved);

    test::ModalAnswers answers;
    answers.drive([typed](QDialog &dialog) { typeName(dialog, typed); });
    QCOMPARE(m_desktop.saveFile({QStringLiteral("Save as..."), m_folder.path(), {}, extension}), shown(saved));
}

void tst_desktop::savingOverAFileAsksFirst()
{
    write(QStringLiteral("old.pdf"), "old");
    const SaveFileRequest request{QStringLiteral("Save as..."), m_folder.path(),
        QStringLiteral("PDF Files (*.pdf)|*.pdf"), QStringLiteral("*.pdf")};

    test::ModalAnswers answers;
    answers.drive([](QDialog &dialog) {
        typeName(dialog, QStringLiteral("old"));
        // The answer was No, so the dialog is still open.
        QVERIFY(dialog.isVisible());
        typeName(dialog, QStringLiteral("new"));
    });
    answers.press(QMessageBox::No);
    QCOMPARE(m_desktop.saveFile(request), shown(QStringLiteral("new.pdf")));

    answers.drive([](QDialog &dialog) { typeName(dialog, QStringLiteral("old")); });
    answers.press(QMessageBox::Yes);
    QCOMPARE(m_desktop.saveFile(request), shown(QStringLiteral("old.pdf")));
    answers.verify();
    QCOMPARE(answers.messages().size(), 2);
}

void tst_desktop::savingIntoAMissingFolderAsksAgain()
{
    test::ModalAnswers answers;
    answers.drive([this](QDialog &dialog) { typeName(dialog, path(QStringLiteral("absent/march.pdf"))); });
    answers.press(QMessageBox::Ok);
    answers.drive([](QDialog &dialog) { dialog.reject(); });
    QCOMPARE(m_desktop.saveFile({QStringLiteral("Save as..."), m_folder.path(), {}, {}}), QString());
    answers.verify();
    QVERIFY(answers.messages().value(0).text.contains(shown(QStringLiteral("absent"))));
}

void tst_desktop::documentsOpenInTheirProgram_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("opener");
    QTest::addColumn<QByteArray>("handler");
    QTest::addColumn<int>("code");

    const QString odd = QStringLiteral("a b;$(touch gone)'\".pdf");
    const QByteArray viewer = "viewer.desktop";
    QTest::newRow("started") << QStringLiteral("march.pdf") << true << viewer << 42;
    QTest::newRow("a name is never a command") << odd << true << viewer << 42;
    QTest::newRow("a name is never an option") << QStringLiteral("--help") << true << viewer << 42;
    QTest::newRow("no such file") << QString() << true << viewer << 2;
    QTest::newRow("no program for the kind") << QStringLiteral("march.pdf") << true << QByteArray() << 31;
    QTest::newRow("nothing that opens") << QStringLiteral("march.pdf") << false << viewer << 31;
}

void tst_desktop::documentsOpenInTheirProgram()
{
    QFETCH(QString, file);
    QFETCH(bool, opener);
    QFETCH(QByteArray, handler);
    QFETCH(int, code);

    const QTemporaryDir tools;
    const QString log = tools.filePath(QStringLiteral("log"));
    const auto tool = [&](const char *name, const QByteArray &script) {
        QFile made(tools.filePath(QString::fromLatin1(name)));
        QVERIFY(made.open(QIODevice::WriteOnly));
        made.write("#!/bin/sh\n" + script);
        made.setPermissions(made.permissions() | QFile::ExeOwner);
    };
    tool("xdg-mime", "echo '" + handler + "'\n");
    if (opener)
        tool("xdg-open",
            "printf '%s' \"$#:$1\" > '" + log.toUtf8() + ".new'; /bin/mv '" + log.toUtf8() + ".new' '" + log.toUtf8()
                + "'\n");
    const QByteArray oldPath = qgetenv("PATH");
    const auto restore = qScopeGuard([&] { qputenv("PATH", oldPath); });
    qputenv("PATH", QFile::encodeName(tools.path()));

    if (!file.isEmpty())
        write(file, "%PDF");
    QCOMPARE(m_desktop.openDocument(file.isEmpty() ? path(QStringLiteral("absent.pdf")) : path(file)), code);
    if (code == OpenCodes::Started) {
        QTRY_VERIFY(QFile::exists(log));
        QFile opened(log);
        QVERIFY(opened.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(opened.readAll()), QStringLiteral("1:") + path(file));
    }
}

QTEST_MAIN(tst_desktop)
#include "tst_desktop.moc"
