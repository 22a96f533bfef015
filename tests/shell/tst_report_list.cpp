#include "shell/report_list_pane.h"
#include "shell/report_list_view.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QTextDocument>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolTip>

using namespace corvane;

namespace {

const QByteArray kTabular = "[Columns]\nPageColumns=1\n";
const QByteArray kDesigned
    = "<?xml version=\"1.0\"?>\n<Reports><Report name=\"Main\" title=\"Statement\">"
      "<Section kind=\"detail\" height=\"0.2in\"/></Report></Reports>";

/// The pane on a folder of definitions, shown.
struct Opened
{
    explicit Opened(const QStringList &names
        = {QStringLiteral("Daily schedule.rpt"), QStringLiteral("Patient ledger.rpt"),
            QStringLiteral("Kärnten – Übersicht.rpt"), QStringLiteral("daily notes.RPT")})
    {
        for (const QString &name : names)
            write(name, kTabular);
        QObject::connect(
            list(), &ReportListView::chosen, [this](const QString &name) { chosen += name; });
        list()->setFolder(folder.path());
        pane.resize(220, 300);
        pane.show();
        pane.activateWindow();
        list()->setFocus();
    }
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write a definition");
    }
    ReportListView *list() { return pane.list(); }
    QLineEdit *box() { return pane.findChild<QLineEdit *>(QStringLiteral("txtfilter")); }
    void type(const QString &text)
    {
        box()->setFocus();
        QInputMethodEvent typed; // keys of the test library know no accents
        typed.setCommitString(text);
        QCoreApplication::sendEvent(box(), &typed);
    }
    QString current() { return list()->currentItem() ? list()->currentItem()->text() : QString(); }
    QString shown()
    {
        QStringList names;
        for (int row = 0; row < list()->count(); ++row) {
            if (!list()->item(row)->isHidden())
                names += QFileInfo(list()->item(row)->text()).completeBaseName();
        }
        return names.join(u'|');
    }
    QString kindOf(int row)
    {
        return list()->item(row)->data(Qt::AccessibleDescriptionRole).toString();
    }
    /// What the mouse resting on a row shows, as a reader of it sees it.
    QString toolTip(int row)
    {
        const QPoint at = list()->visualItemRect(list()->item(row)).center();
        QHelpEvent event(QEvent::ToolTip, at, list()->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(list()->viewport(), &event);
        QTextDocument text;
        text.setHtml(QToolTip::text());
        return text.toPlainText();
    }

    QTemporaryDir folder;
    ReportListPane pane;
    QStringList chosen;
};

} // namespace

class tst_report_list : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void typingFilters_data();
    void typingFilters();
    void theBoxLeadsToTheList();
    void aChangedFolderRefillsUnderTheFilter();
    void kindsAreReadForWhatIsOnScreen();
    void toolTipsTellTheHeader_data();
    void toolTipsTellTheHeader();
};

void tst_report_list::typingFilters_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("any part of a name, in any case")
        << QStringLiteral("SCHED") << QStringLiteral("Daily schedule");
    QTest::newRow("several words in any order")
        << QStringLiteral("s daily") << QStringLiteral("daily notes|Daily schedule");
    QTest::newRow("without accents")
        << QStringLiteral("ubers karn") << QStringLiteral("Kärnten – Übersicht");
    QTest::newRow("with accents that a name lacks")
        << QStringLiteral("lédger") << QStringLiteral("Patient ledger");
    QTest::newRow("a pattern's letters are letters") << QStringLiteral("*") << QString();
    QTest::newRow("blanks alone") << QStringLiteral(
        "  ") << QStringLiteral("daily notes|Daily schedule|Kärnten – Übersicht|Patient ledger");
}

void tst_report_list::typingFilters()
{
    QFETCH(QString, typed);
    Opened opened;
    const QString all = opened.shown();
    opened.type(typed);
    QTEST(opened.shown(), "shown");
    QCOMPARE(opened.list()->accessibleDescription().isEmpty(), !opened.shown().isEmpty());
    QTest::keyClick(opened.box(), Qt::Key_Escape);
    QCOMPARE(opened.shown(), all);
    QCOMPARE(opened.chosen, QStringList());
}

void tst_report_list::theBoxLeadsToTheList()
{
    Opened opened;
    opened.list()->setCurrentRow(3);
    opened.type(QStringLiteral("daily"));
    QTest::keyClick(opened.box(), Qt::Key_Return); // two match, and neither is the current one
    QCOMPARE(opened.chosen, QStringList());
    QCOMPARE(opened.current(), QStringLiteral("daily notes.RPT"));
    QTest::keyClick(opened.box(), Qt::Key_Return); // now one of them is
    QCOMPARE(opened.chosen, QStringList(QStringLiteral("daily notes.RPT")));

    QTest::keyClick(opened.list(), Qt::Key_Down);
    QTest::keyClick(opened.list(), Qt::Key_Down); // there is no third
    QTest::keyClick(opened.list(), Qt::Key_K); // nor one with this letter
    QTest::keyClick(opened.list(), Qt::Key_Enter);
    QCOMPARE(opened.chosen.last(), QStringLiteral("Daily schedule.rpt"));

    opened.type(QStringLiteral(" n"));
    QTest::keyClick(opened.box(), Qt::Key_Return); // the only one
    QCOMPARE(opened.chosen.last(), QStringLiteral("daily notes.RPT"));
    opened.type(QStringLiteral("x"));
    for (QWidget *widget :
        {static_cast<QWidget *>(opened.box()), static_cast<QWidget *>(opened.list())})
        QTest::keyClick(widget, Qt::Key_Return); // none
    QCOMPARE(opened.chosen.size(), 3);
    QTest::keyClick(opened.box(), Qt::Key_Escape);
    QCOMPARE(opened.current(), QStringLiteral("daily notes.RPT"));
}

void tst_report_list::aChangedFolderRefillsUnderTheFilter()
{
    Opened opened;
    opened.type(QStringLiteral("daily"));
    opened.list()->setCurrentRow(1);
    opened.write(QStringLiteral("Daily closing.rpt"), kTabular);
    opened.write(QStringLiteral("Another.rpt"), kTabular);
    QTRY_COMPARE(opened.shown(), QStringLiteral("Daily closing|daily notes|Daily schedule"));
    QCOMPARE(opened.current(), QStringLiteral("Daily schedule.rpt"));
    QVERIFY(QFile::remove(opened.folder.filePath(QStringLiteral("daily notes.RPT"))));
    QTRY_COMPARE(opened.shown(), QStringLiteral("Daily closing|Daily schedule"));
    for (const char *name : {"Daily closing.rpt", "Daily schedule.rpt"})
        QVERIFY(QFile::remove(opened.folder.filePath(QString::fromLatin1(name))));
    QTRY_COMPARE(opened.shown(), QString());
    opened.box()->clear();
    QCOMPARE(opened.shown(), QStringLiteral("Another|Kärnten – Übersicht|Patient ledger"));
}

void tst_report_list::kindsAreReadForWhatIsOnScreen()
{
    QStringList names;
    for (int i = 0; i < 300; ++i)
        names += QStringLiteral("report %1.rpt").arg(i, 3, 10, QLatin1Char('0'));
    Opened opened(names);
    opened.write(names[1], kDesigned);
    opened.write(names[299], kDesigned);
    QTRY_COMPARE(opened.kindOf(1), QStringLiteral("Designed report"));
    QTRY_COMPARE(opened.kindOf(0), QStringLiteral("Tabular report"));
    QVERIFY(opened.list()->item(0)->icon().cacheKey() != opened.list()->item(1)->icon().cacheKey());
    for (int row = 100; row < 300; ++row)
        QCOMPARE(opened.kindOf(row), QString());
    opened.list()->scrollToBottom();
    QTRY_COMPARE(opened.kindOf(299), QStringLiteral("Designed report"));
    QCOMPARE(opened.kindOf(150), QString());
    opened.type(QStringLiteral("150"));
    QTRY_COMPARE(opened.kindOf(150), QStringLiteral("Tabular report"));
}

void tst_report_list::toolTipsTellTheHeader_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QString>("words");
    QTest::newRow("the header's texts, without the date of the run")
        << QByteArray(kTabular + "[Header]\nLText={Date}\nCText=Phone List\nRText=North & South\n")
        << QStringLiteral("Phone List\nNorth & South");
    QTest::newRow("no markup") << QByteArray(
        kTabular + "[Header]\nCText=<b>bold</b><img src='x'>\n")
                               << QStringLiteral("<b>bold</b><img src='x'>");
    QTest::newRow("without a header the name") << kTabular << QStringLiteral("one.rpt");
    QTest::newRow("a designed report's title") << kDesigned << QStringLiteral("Statement");
    QTest::newRow("a long text, which wraps")
        << QByteArray(kTabular + "[Header]\nCText=" + QByteArray("long ").repeated(30) + "\n")
        << QStringLiteral("long ").repeated(30).trimmed();
    QTest::newRow("a broken definition")
        << QByteArray("<?xml version=\"1.0\"?>\n<Reports><Report name=\"Main\">")
        << QStringLiteral("\"one.rpt\", line 2, column 30: This is not well-formed XML: Premature end of document. "
                          "It stands in <Report>, which starts in line 2.");
}

void tst_report_list::toolTipsTellTheHeader()
{
    QFETCH(QByteArray, definition);
    QFETCH(QString, words);
    Opened opened({QStringLiteral("one.rpt")});
    opened.write(QStringLiteral("one.rpt"), definition);
    QTEST(opened.toolTip(0), "words");
}

QTEST_MAIN(tst_report_list)
#include "tst_report_list.moc"
