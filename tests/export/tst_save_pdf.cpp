#include "export/save_pdf.h"
#include "platform/composer/page_composer.h"
#include "support/scripted_desktop.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

DocumentPtr document(bool whole = true)
{
    PageComposer composer;
    composer.startDocument({});
    composer.writeParagraph(u"text");
    return whole ? composer.endDocument() : composer.abandonDocument();
}

const QString kQuestion = QStringLiteral("File has been saved. Do you want to open it in Acrobat Reader?");

} // namespace

class tst_save_pdf : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void writesAndOpensOnYes();
    void writesNothingOnNo();
    void aCancelledDialogEndsInTheFailureMessage();
    void saysWhenTheFileCannotBeWritten();
    void refusesWhatIsNoWholeDocument();

private:
    QTemporaryDir m_folder;
};

void tst_save_pdf::writesAndOpensOnYes()
{
    test::ScriptedDesktop desktop;
    const QString file = m_folder.filePath(QStringLiteral("yes.pdf"));
    desktop.files = {file};
    desktop.answers = {MessageAnswer::Yes};
    savepdf(desktop, document(), m_folder.path());
    QCOMPARE(desktop.saveRequests.size(), 1);
    const SaveFileRequest &request = desktop.saveRequests[0];
    QCOMPARE(request.title, QStringLiteral("Save as..."));
    QCOMPARE(request.initialFolder, m_folder.filePath(QStringLiteral("Documents")));
    QVERIFY(QDir(request.initialFolder).exists());
    QCOMPARE(request.filter, QStringLiteral("PDF Files (*.pdf)|*.pdf"));
    QCOMPARE(request.defaultExtension, QStringLiteral("*.pdf"));
    QCOMPARE(desktop.messages, QList<test::ScriptedDesktop::Message>({{kQuestion, 4, QStringLiteral("Corvane")}}));
    QVERIFY(QFile::exists(file));
    QCOMPARE(desktop.openedDocuments, QStringList(file));
}

void tst_save_pdf::writesNothingOnNo()
{
    test::ScriptedDesktop desktop;
    const QString file = m_folder.filePath(QStringLiteral("no.pdf"));
    desktop.files = {file};
    desktop.answers = {MessageAnswer::No};
    savepdf(desktop, document(), m_folder.path());
    QVERIFY(!QFile::exists(file));
    QCOMPARE(desktop.openedDocuments, QStringList());
}

void tst_save_pdf::aCancelledDialogEndsInTheFailureMessage()
{
    test::ScriptedDesktop desktop;
    desktop.files = {QString()};
    desktop.answers = {MessageAnswer::Yes};
    savepdf(desktop, document(), m_folder.path());
    QCOMPARE(desktop.messages.last().text,
        QStringLiteral("Failed to convert '\r\nIf the pdf file is open, please close it and try again."));
    QCOMPARE(desktop.messages.last().flags, 0);
    QCOMPARE(desktop.messages.last().title, QStringLiteral("Corvane"));
    QCOMPARE(desktop.openedDocuments, QStringList());
}

void tst_save_pdf::saysWhenTheFileCannotBeWritten()
{
    test::ScriptedDesktop desktop;
    const QString file = m_folder.filePath(QStringLiteral("none/a.pdf"));
    desktop.files = {file};
    desktop.answers = {MessageAnswer::Yes};
    const QString cause = savepdf(desktop, document(), m_folder.path());
    QVERIFY2(cause.contains(QStringLiteral("The folder \"%1\" does not exist.").arg(QDir::toNativeSeparators(m_folder.filePath(QStringLiteral("none"))))), qPrintable(cause));
    QCOMPARE(desktop.messages.last().text,
        QString(u"Failed to convert '" + file + u"\r\nIf the pdf file is open, please close it and try again."));
    QVERIFY(!QFile::exists(file));
}

void tst_save_pdf::refusesWhatIsNoWholeDocument()
{
    test::ScriptedDesktop desktop;
    savepdf(desktop, nullptr, m_folder.path());
    savepdf(desktop, document(false), m_folder.path());
    QCOMPARE(desktop.messages.size(), 2);
    QVERIFY(desktop.messages[1].text.contains(QStringLiteral("incomplete")));
    QVERIFY(desktop.saveRequests.isEmpty());
}

QTEST_MAIN(tst_save_pdf)
#include "tst_save_pdf.moc"
