// The help's pages against each other and against the program's forms, and the window that shows
// them.

#include "help/frm_help.h"
#include "help/help_browser.h"
#include "help/help_desk.h"
#include "help/help_topics.h"
#include "support/scripted_desktop.h"
#include "support/source_files.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtCore/QDirIterator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QTextBlock>
#include <QtTest/QtTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QScrollBar>

using namespace corvane;
using test::kSource;
using test::textOf;

namespace {

/// Matches of an expression's first group, anywhere in a text.
QStringList matches(const QString &pattern, const QString &text)
{
    QStringList found;
    for (const auto &match : QRegularExpression(pattern).globalMatch(text))
        found += match.captured(1);
    return found;
}

QStringList anchorsOf(const HelpTopic &topic)
{
    QStringList anchors;
    HelpBrowser browser;
    browser.setSource(topicUrl(topic));
    for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0)
            anchors += block.begin().fragment().charFormat().anchorNames();
    }
    return anchors;
}

/// A desktop whose system has a help engine.
class DesktopWithEngine : public test::ScriptedDesktop
{
public:
    bool showHelpFile(const QString &file, int context) override
    {
        shown += QStringLiteral("%1 %2").arg(QFileInfo(file).fileName()).arg(context);
        return true;
    }
    QStringList shown;
};

frmHelp *openHelp()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *help = qobject_cast<frmHelp *>(window); help && help->isVisible())
            return help;
    }
    return nullptr;
}

} // namespace

class tst_help : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyPageIsInTheContents();
    void everyLinkLeadsSomewhere();
    void everyFormHasATopic();
    void numbersFindTheirTopic();
    void searchFindsEveryWord_data();
    void searchFindsEveryWord();
    void theWindowFollowsContentsLinksAndSearch();
    void f1ShowsTheTopicOfTheFormInFront();
    void theSystemsEngineIsUsedWhereTheFileStands();
};

void tst_help::everyPageIsInTheContents()
{
    QStringList pages{QStringLiteral("definition-files.md"), QStringLiteral("designed-reports.md"), QStringLiteral("expressions.md")};
    for (const QString &name :
        QDir(kSource.filePath(QStringLiteral("docs/help"))).entryList({QStringLiteral("*.md")}))
        pages += QString(u"help/" + name);
    QStringList listed;
    QSet<int> contexts;
    for (const HelpTopic &topic : helpTopics()) {
        listed += topic.path.toString();
        contexts += topic.context;
        QVERIFY2(!topicTitle(topic).isEmpty(), qPrintable(listed.back()));
        QCOMPARE(topicMarkdown(topic), textOf(kSource.filePath(QString(u"docs/" + topic.path))));
    }
    pages.sort();
    listed.sort();
    QCOMPARE(listed, pages);
    QCOMPARE(contexts.size(), listed.size());
}

void tst_help::everyLinkLeadsSomewhere()
{
    int links = 0;
    for (const HelpTopic &topic : helpTopics()) {
        for (const QString &link :
            matches(QStringLiteral("\\]\\(([^)\\s]+)\\)"), topicMarkdown(topic))) {
            const QUrl url = topicUrl(topic).resolved(QUrl(link));
            const HelpTopic *target = topicOfUrl(url);
            QVERIFY2(target, qPrintable(QString(topic.path + u": " + link)));
            QVERIFY2(!url.hasFragment() || anchorsOf(*target).contains(url.fragment()),
                qPrintable(QString(topic.path + u": " + link)));
            ++links;
        }
    }
    QVERIFY(links > 40);
}

void tst_help::everyFormHasATopic()
{
    QStringList forms;
    QDirIterator sources(kSource.filePath(QStringLiteral("src")), {QStringLiteral("frm*.cpp")},
        QDir::Files, QDirIterator::Subdirectories);
    while (sources.hasNext())
        forms += matches(QStringLiteral("setObjectName\\(QStringLiteral\\(\"(frm\\w+)\"\\)\\)"),
            textOf(sources.next()));
    QVERIFY(forms.size() >= 9);
    for (const QString &form : forms)
        QVERIFY2(topicOfForm(form), qPrintable(form));
}

void tst_help::numbersFindTheirTopic()
{
    QCOMPARE(topicTitle(topicOfContext(229)), QStringLiteral("Overview"));
    QCOMPARE(topicTitle(topicOfContext(238)), QStringLiteral("Report properties"));
    QCOMPARE(topicOfContext(1).context, 229);
}

void tst_help::searchFindsEveryWord_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("first"); // page; empty: no hits
    QTest::newRow("a title comes first")
        << QStringLiteral("patient selecting") << QStringLiteral("help/patient.md");
    QTest::newRow("in any case, anywhere")
        << QStringLiteral("CAPS lock") << QStringLiteral("help/logon.md");
    QTest::newRow("in the reference too")
        << QStringLiteral("mintotime") << QStringLiteral("definition-files.md");
    QTest::newRow("all words must be there") << QStringLiteral("caps zebra") << QString();
    QTest::newRow("no words") << QStringLiteral("  ") << QString();
}

void tst_help::searchFindsEveryWord()
{
    QFETCH(QString, query);
    QFETCH(QString, first);
    const auto hits = searchHelp(query);
    QCOMPARE(hits.empty(), first.isEmpty());
    if (hits.empty())
        return;
    QCOMPARE(hits.front().topic->path.toString(), first);
    QVERIFY(hits.front().excerpt.contains(query.section(u' ', 0, 0), Qt::CaseInsensitive));
}

void tst_help::theWindowFollowsContentsLinksAndSearch()
{
    frmHelp help;
    help.show();
    auto *list = help.findChild<QListWidget *>(QStringLiteral("lstTopics"));
    auto *page = help.findChild<HelpBrowser *>(QStringLiteral("page"));
    QCOMPARE(list->count(), int(helpTopics().size()));
    QCOMPARE(list->currentRow(), 0);
    QTest::keyClick(list, Qt::Key_Down);
    QCOMPARE(help.windowTitle(), QStringLiteral("First steps - Corvane Reporter Help"));
    QVERIFY(page->toPlainText().startsWith(u"First steps"));
    const QTextCursor link = page->document()->find(QStringLiteral("Log on"));
    QTest::mouseClick(
        page->viewport(), Qt::LeftButton, {}, page->cursorRect(link).center() - QPoint(12, 0));
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Logging on"));
    page->setSource(topicUrl(topicOfContext(238)).resolved(QUrl(QStringLiteral("#columns"))));
    QCOMPARE(list->currentItem()->text(), QStringLiteral("Report properties"));
    QVERIFY(page->verticalScrollBar()->value() > 0);
    page->backward();
    page->backward();
    QCOMPARE(help.windowTitle(), QStringLiteral("First steps - Corvane Reporter Help"));
    QVERIFY(!page->document()
                 ->begin()
                 .begin()
                 .fragment()
                 .charFormat()
                 .anchorNames()
                 .isEmpty()); // links work on the way back

    QTest::keyClick(page, Qt::Key_F, Qt::ControlModifier);
    auto *search = help.findChild<QLineEdit *>(QStringLiteral("txtsearch"));
    test::typeInto(search, QStringLiteral("inverse"));
    QCOMPARE(list->count(), 1);
    QTest::mouseClick(
        list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
    QVERIFY(page->toPlainText().startsWith(u"Selections"));
    QCOMPARE(page->extraSelections().size(), 1);
    test::typeInto(search, QStringLiteral("zebra crossing"));
    QCOMPARE(list->item(0)->text(), QStringLiteral("No topic has all of these words."));
    QTest::keyClick(search, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(search, Qt::Key_Delete);
    QCOMPARE(list->count(), int(helpTopics().size()));
    QTest::keyClick(&help, Qt::Key_Escape);
    QVERIFY(!help.isVisible());
}

void tst_help::f1ShowsTheTopicOfTheFormInFront()
{
    test::ScriptedDesktop desktop;
    QWidget window;
    window.setObjectName(QStringLiteral("frmCVRMain"));
    window.show();
    HelpDesk desk(desktop, {}, &window);
    QTest::keyClick(&window, Qt::Key_F1);
    QVERIFY(openHelp());
    QCOMPARE(openHelp()->windowTitle(), QStringLiteral("The main window - Corvane Reporter Help"));
    QTest::keyClick(openHelp(), Qt::Key_F1, Qt::ShiftModifier);
    QCOMPARE(openHelp()->windowTitle(), QStringLiteral("The main window - Corvane Reporter Help"));

    QDialog form(&window);
    form.setObjectName(QStringLiteral("frmCVRProps"));
    auto *box = new QLineEdit(&form);
    form.setModal(true);
    form.show();
    QTest::keyClick(box, Qt::Key_F1);
    QCOMPARE(
        openHelp()->windowTitle(), QStringLiteral("Report properties - Corvane Reporter Help"));
    QCOMPARE(openHelp()->parentWidget(), &form); // else the dialog would keep it from being used
    QMessageBox message(&form);
    message.setModal(true);
    message.show();
    QTest::keyClick(&message, Qt::Key_F1);
    QCOMPARE(openHelp()->windowTitle(), QStringLiteral("Messages - Corvane Reporter Help"));
    message.accept();
    QCOMPARE(openHelp()->parentWidget(), &form);
    form.accept();
    QVERIFY(openHelp()); // it outlives the dialog that it was called from
    QCOMPARE(openHelp()->parentWidget(), &window);
    QTest::keyClick(openHelp(), Qt::Key_Escape);
    QVERIFY(!openHelp());
}

void tst_help::theSystemsEngineIsUsedWhereTheFileStands()
{
    const QTemporaryDir folder;
    DesktopWithEngine desktop;
    QWidget window;
    HelpDesk desk(desktop, folder.path(), &window);
    desk.showContext(kMainHelpContext);
    QVERIFY(openHelp() && desktop.shown.isEmpty());
    openHelp()->close();
    QFile file(folder.filePath(QStringLiteral("Corvaneee.CHM")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    desk.showContext(kMainHelpContext);
    QCOMPARE(desktop.shown, QStringList(QStringLiteral("Corvaneee.CHM 229")));
    QVERIFY(!openHelp());
    test::ScriptedDesktop without;
    HelpDesk other(without, folder.path(), &window);
    other.showContext(kMainHelpContext);
    QVERIFY(openHelp()); // no engine: the program's own window
    openHelp()->close();
}

QTEST_MAIN(tst_help)
#include "tst_help.moc"
