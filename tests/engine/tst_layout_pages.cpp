#include "engine/layout_fixture.h"
#include "platform/engine/sql_literal.h"
#include "support/document_dump.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;
using test::LayoutFixture;
using test::numberedRows;

namespace {

/// A section with one field that shows an expression. `height` in inches.
QString section(const char *attributes, double height, const char *value)
{
    return QStringLiteral("<Section %1 height=\"%2in\"><Expression value=\"%3\" width=\"3in\" "
                          "height=\"0.2in\"/></Section>")
        .arg(QLatin1StringView(attributes))
        .arg(height)
        .arg(QString::fromUtf8(value));
}

QString groups(const char *attributes)
{
    return QStringLiteral("<Groups><Group name=\"g\" on=\"[g]\" %1/></Groups>")
        .arg(QLatin1StringView(attributes));
}

/// The texts of each page, joined by blanks; page headers and footers too.
QStringList pages(const Document &document)
{
    QStringList texts;
    for (const Page &page : document.pages) {
        QStringList words;
        for (const TextRun &run : page.runs)
            words += page.runText(run).toString();
        texts += words.join(u' ');
    }
    return texts;
}

// The body of a page is 9 inches high.
const QString kDetail = section("kind=\"detail\"", 1, "[n]");
const QString kHeader = section("kind=\"group-header\" group=\"g\"", 1, "'H' &amp; [g]");
const QString kFooter = section("kind=\"group-footer\" group=\"g\"", 1, "'F' &amp; [g]");
const QString kNumber = section("kind=\"page-footer\"", 1, "PageNumber &amp; '/' &amp; PageCount");

} // namespace

class tst_layout_pages : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void breaksPages_data();
    void breaksPages();
    void splitsBetweenLines();
    void splitsWhatNoPageHolds();
    void pagesHaveTotalsOfTheirOwn();
    void pagesCountRowsWithoutDetails();
    void broughtForwardAndCarriedOver();
    void conditionsSeeThePage();
    void columnsAreFilledInOrder();
    void reportsWithoutRowsHaveTheirHeaders();
    void refusesPagesWithoutRoom();
    void stopsWhenAskedTo_data();
    void stopsWhenAskedTo();
    void nestsDeeply();
    void subreportsBelongToTheirRow();
    void subreportsRunOverPages();
    void aSubreportsTallRowRunsOverPages();
    void literalsHaveTheirKindsForm();
    void circlesAreRefused();
    void linkValuesAreLiterals();
};

void tst_layout_pages::breaksPages_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("groupSize");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, const QString &report, int rows, int groupSize,
                         const QStringList &expected) {
        QTest::newRow(name) << report << rows << groupSize << expected;
    };
    const auto text = [](const char *page) { return QString::fromLatin1(page); };
    row("nine inches hold nine rows of an inch", kDetail, 10, 99,
        {text("1 2 3 4 5 6 7 8 9"), text("10")});
    row("a header is not left alone", QString(groups("") + kHeader + kDetail), 9, 7,
        {text("H1 1 2 3 4 5 6 7"), text("H2 8 9")});
    row("a header with one row may stay", QString(groups("") + kHeader + kDetail), 9, 6,
        {text("H1 1 2 3 4 5 6 H2 7"), text("8 9")});
    row("a whole group moves where it fits a page",
        QString(groups("keepTogether=\"whole\"") + kHeader + kDetail + kFooter), 8, 5,
        {text("H1 1 2 3 4 5 F1"), text("H2 6 7 8 F2")});
    row("a whole group longer than a page starts where it stands",
        QString(groups("keepTogether=\"whole\"") + kHeader + kDetail), 12, 10,
        {text("H1 1 2 3 4 5 6 7 8"), text("9 10 H2 11 12")});
    row("a header is repeated while its group goes on",
        QString(groups("repeatHeader=\"true\"") + kHeader + kDetail), 12, 10,
        {text("H1 1 2 3 4 5 6 7 8"), text("H1 9 10 H2 11 12")});
    row("a page before each group but the first",
        QString(groups("newPage=\"before\"") + kHeader + kDetail), 3, 2,
        {text("H1 1 2"), text("H2 3")});
    row("a page after each group but the last",
        QString(groups("newPage=\"both\"") + kDetail + kFooter), 3, 2,
        {text("1 2 F1"), text("3 F2")});
    row("numbers start again with a group",
        QString(groups("resetPageNumber=\"true\"") + kDetail + kNumber), 12, 9,
        {text("1 2 3 4 5 6 7 8 1/2"), text("9 2/2"), text("10 11 12 1/1")});
    row("a section can ask for pages itself",
        QString(section("kind=\"detail\" newPage=\"before\"", 1, "[n]")), 2, 9,
        {text("1"), text("2")});
    row("a title page has no page header",
        QString(section("kind=\"report-header\" newPage=\"after\"", 1, "'Title'")
            + section("kind=\"page-header\"", 1, "'Top'") + kDetail + kNumber),
        2, 9, {text("Title 1/2"), text("Top 1 2 2/2")});
    row("hidden sections take no room",
        QString(section("kind=\"page-header\" visibleWhen=\"PageNumber > 1\"", 1, "'Top'")
            + section("kind=\"detail\" visibleWhen=\"[n] &lt;> 3\"", 1, "[n]")),
        11, 99, {text("1 2 4 5 6 7 8 9 10"), text("Top 11")});
}

void tst_layout_pages::breaksPages()
{
    QFETCH(QString, report);
    QFETCH(int, rows);
    QFETCH(int, groupSize);
    LayoutFixture fixture;
    const RenderResult result = fixture.render(report, numberedRows(rows, groupSize));
    QTEST(pages(*result.document), "expected");
}

void tst_layout_pages::splitsBetweenLines()
{
    LayoutFixture fixture;
    // 100 lines of 223 twips: 58 on the first page; what stands below comes behind the last line.
    const QString report = QStringLiteral(
        R"xml(<Section kind="detail" keepTogether="false" height="0.5in" background="#eeeeee">
        <Expression value="Repeat('line ', 2500)" width="1in" height="0.2in"/><Rectangle width="6.5in" height="0.5in" border="1pt"/>
        <Label text="end" y="0.3in" width="1in" height="0.2in"/></Section>)xml");
    const RenderResult result = fixture.render(report, numberedRows(1));
    const Document &document = *result.document;
    QCOMPARE(test::letters(document).count(u"line"), 2500);
    QVERIFY(documentText(document).endsWith(u"end\n"));
    QVERIFY(document.pageCount() > 3);
    for (const Page &page : document.pages) {
        for (const TextRun &run : page.runs)
            QVERIFY(run.y > 1440 && run.y <= 15840 - 1440);
        for (const FilledRect &rect : page.rects)
            QVERIFY(rect.y >= 1440 && rect.y + rect.height <= 15840 - 1440);
    }
    QVERIFY(!document.pages[0].blocks[0].continuesPreviousPage);
    QVERIFY(document.pages[1].blocks[0].continuesPreviousPage);
    QCOMPARE(document.notes, QStringList());
}

void tst_layout_pages::splitsWhatNoPageHolds()
{
    LayoutFixture fixture;
    const RenderResult high = fixture.render(
        QStringLiteral(
            R"xml(<Section kind="detail" height="30in"><Label text="top" width="1in" height="0.2in"/>
        <Label text="deep" y="29in" width="1in" height="0.2in"/></Section><Section kind="report-footer" height="0in"/>)xml"),
        numberedRows(2));
    QCOMPARE(pages(*high.document),
        QStringList({QStringLiteral("top"), QString(), QString(), QStringLiteral("deep top"),
            QString(), QString(), QStringLiteral("deep")}));
    const RenderResult huge = fixture.render(
        QStringLiteral(
            R"xml(<Page width="3in" height="2in" left="0in" right="0in" top="0.5in" bottom="0.5in"/>
        <Section kind="detail" height="2in"><Label text="tall" size="144" width="3in" height="2in"/></Section>)xml"),
        numberedRows(1));
    QCOMPARE(test::letters(*huge.document), QStringLiteral("tall"));
}

void tst_layout_pages::pagesHaveTotalsOfTheirOwn()
{
    LayoutFixture fixture;
    const RenderResult result
        = fixture.render(QString(section("kind=\"page-header\"", 1, "'s' &amp; Sum([n])") + kDetail
                             + section("kind=\"page-footer\"", 1,
                                 "'a' &amp; Avg([n], Page) &amp; ' of ' &amp; Count([n], Report)")),
            numberedRows(9));
    QCOMPARE(pages(*result.document),
        QStringList(
            {QStringLiteral("s28 1 2 3 4 5 6 7 a4 of 9"), QStringLiteral("s17 8 9 a8.5 of 9")}));
}

void tst_layout_pages::pagesCountRowsWithoutDetails()
{
    LayoutFixture fixture;
    const RenderResult result = fixture.render(
        QString(groups("") + section("kind=\"group-footer\" group=\"g\"", 2, "'F' &amp; Sum([n])")
            + section("kind=\"page-footer\"", 1, "Sum([n])")),
        numberedRows(10, 2));
    QCOMPARE(pages(*result.document),
        QStringList({QStringLiteral("F3 F7 F11 F15 36"), QStringLiteral("F19 19")}));
}

void tst_layout_pages::broughtForwardAndCarriedOver()
{
    LayoutFixture fixture;
    // A group that is held back until it is known to fit must not run ahead of the page's totals.
    const RenderResult result = fixture.render(
        QString(groups("keepTogether=\"whole\"")
            + section("kind=\"page-header\"", 1, "'b' &amp; Coalesce(RunningSum([n], Report), 0)")
            + kDetail + section("kind=\"page-footer\"", 1, "'c' &amp; RunningSum([n], Report)")),
        numberedRows(9, 5));
    QCOMPARE(pages(*result.document),
        QStringList({QStringLiteral("b0 1 2 3 4 5 c15"), QStringLiteral("b15 6 7 8 9 c45")}));
}

void tst_layout_pages::conditionsSeeThePage()
{
    LayoutFixture fixture;
    const RenderResult result = fixture.render(
        QString(section("kind=\"detail\" visibleWhen=\"1 / ([n] - 2) &lt; 9\"", 1, "[n]")
            + QStringLiteral(
                R"xml(<Section kind="page-footer" height="1in"><Label text="more" visibleWhen="PageNumber &lt; PageCount" width="1in" height="0.2in"/>
            <Line y="0.5in" width="6.5in" visibleWhen="PageNumber = PageCount"/></Section>)xml")),
        numberedRows(9));
    QCOMPARE(pages(*result.document),
        QStringList({QStringLiteral("1 2 3 4 5 6 7 8 more"), QStringLiteral("9")}));
    QCOMPARE(result.document->pages[0].rects.size(), 0u);
    QCOMPARE(result.document->pages[1].rects.size(), 1u);
    QCOMPARE(result.document->notes.size(), 1); // a section whose condition fails is shown
    QVERIFY2(result.document->notes[0].startsWith(u"A condition could not be evaluated (1 times)"),
        qPrintable(result.document->notes[0]));
}

void tst_layout_pages::columnsAreFilledInOrder()
{
    LayoutFixture fixture;
    const QString report = QStringLiteral(R"xml(<Page columns="2" columnGap="0.5in"/>)xml")
        + groups("repeatHeader=\"true\"") + section("kind=\"page-header\"", 1, "'Top'")
        + QStringLiteral(
            R"xml(<Section kind="group-header" group="g" height="1in"><Data column="g" width="2in" height="0.2in"/></Section>
        <Section kind="detail" height="2in"><Data column="n" width="2in" height="0.2in"/></Section>)xml")
        + section("kind=\"report-footer\"", 1, "'End'");
    const RenderResult result = fixture.render(report, numberedRows(4));
    QStringList found;
    for (const TextRun &run : result.document->pages.front().runs)
        found += QStringLiteral("%1 %2,%3")
                     .arg(result.document->pages.front().runText(run))
                     .arg((run.x - 1440) / 720.0)
                     .arg((run.y - 181) / 1440.0);
    // Each column is 3 inches wide and starts below the page header; the footer is below both.
    QCOMPARE(found,
        QStringList({QStringLiteral("Top 0,1"), QStringLiteral("1 0,2"), QStringLiteral("1 0,3"),
            QStringLiteral("2 0,5"), QStringLiteral("3 0,7"), QStringLiteral("1 7,2"),
            QStringLiteral("4 7,3"), QStringLiteral("End 0,9")}));
}

void tst_layout_pages::reportsWithoutRowsHaveTheirHeaders()
{
    LayoutFixture fixture;
    const RenderResult result = fixture.render(
        QString(groups("") + section("kind=\"report-header\"", 1, "'R' &amp; [n]") + kHeader
            + kDetail + kFooter
            + section("kind=\"report-footer\"", 1, "Count() &amp; '|' &amp; Sum([n])") + kNumber),
        numberedRows(0));
    QCOMPARE(pages(*result.document), QStringList(QStringLiteral("R 0| 1/1")));
}

void tst_layout_pages::refusesPagesWithoutRoom()
{
    LayoutFixture fixture;
    // The reader looks at the heights as written; this one grows.
    const QString words = fixture.refusal(
        QString(kDetail + section("kind=\"page-footer\"", 1, "Repeat('line ', 3000)")),
        numberedRows(1));
    QVERIFY2(words.startsWith(u"The layout \"Main\" leaves no room for its rows on page 1: headers "
                              u"take 0.00 inches and the page footer "),
        qPrintable(words));
    QVERIFY2(words.endsWith(u" of 9.00 inches between the margins. Make these sections lower."),
        qPrintable(words));
    QVERIFY(!fixture
                 .refusal(
                     QString(kDetail + section("kind=\"page-header\"", 1, "Repeat('line ', 3000)")),
                     numberedRows(1))
                 .isEmpty());
}

void tst_layout_pages::stopsWhenAskedTo_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("rows");
    QTest::newRow("rows") << kDetail << 3000;
    QTest::newRow("rows whose totals come first") << QString(section("kind=\"report-header\"", 1, "Sum([n])") + kDetail) << 3000;
    QTest::newRow("rows of one sub-report")
        << QStringLiteral(R"xml(<Section kind="detail" height="0.2in"><Subreport report="Many" width="3in" height="0.2in"/></Section>)xml") << 1;
}

/// Asked at every row, because nothing but the time that passed tells whether a row was a long one.
void tst_layout_pages::stopsWhenAskedTo()
{
    QFETCH(QString, report);
    QFETCH(int, rows);
    constexpr int kStopAt = 2000;
    LayoutFixture fixture;
    fixture.answer(QStringLiteral("many"), numberedRows(3000));
    int calls = 0;
    fixture.settings.progress = [&](int percent) {
        return percent < 100 && ++calls < kStopAt;
    };
    const RenderResult result = fixture.render(report, numberedRows(rows),
        QString(u"<Report name=\"Many\"><RecordSource>many</RecordSource>" + kDetail + u"</Report>"));
    QVERIFY(result.isStopped);
    QVERIFY(!result.document->isWhole);
    QVERIFY(result.document->pageCount() < 250); // of 334
    QCOMPARE(calls, kStopAt);
}

void tst_layout_pages::nestsDeeply()
{
    QString report = QStringLiteral("<Groups>");
    for (int i = 0; i < 40; ++i)
        report += QStringLiteral("<Group name=\"g%1\" on=\"[n]\" keepTogether=\"%2\"/>")
                      .arg(i)
                      .arg(i % 2 ? QStringLiteral("whole") : QStringLiteral("no"));
    report += QStringLiteral("</Groups>");
    for (int i = 0; i < 40; ++i)
        report += section(
            qPrintable(QStringLiteral("kind=\"group-header\" group=\"g%1\"").arg(i)), 0.2, "'h'");
    LayoutFixture fixture;
    const RenderResult result = fixture.render(QString(report + kDetail), numberedRows(3));
    // 40 headers and a row are 9 inches: a page for each.
    QCOMPARE(result.document->pageCount(), 3);
    QCOMPARE(test::letters(*result.document).count(u'h'), 120);
    QCOMPARE(result.document->outline.size(), 120u);
}

void tst_layout_pages::subreportsBelongToTheirRow()
{
    LayoutFixture fixture;
    fixture.answer(QStringLiteral("visits 1"), QStringLiteral("v\n10\n20"));
    fixture.answer(QStringLiteral("visits 2"), QStringLiteral("v"));
    const QString others
        = QStringLiteral(R"xml(<Report name="Visits"><RecordSource>visits {LINK*g}</RecordSource>
        <Section kind="detail" height="0.2in"><Expression value="[v] &amp; ' on ' &amp; PageNumber &amp; '/' &amp; PageCount" width="2in" height="0.2in"/></Section>
        <Section kind="report-footer" height="0.2in"><Expression value="'Sum ' &amp; Sum([v])" width="2in" height="0.2in"/></Section></Report>)xml");
    const QString report = QStringLiteral(
        R"xml(<Section kind="detail" height="0.5in"><Data column="n" width="1in" height="0.2in"/>
        <Subreport report="Visits" x="1in" y="0.2in" width="3in" height="0.2in"><Link name="g" value="[g]"/></Subreport>
        <Label text="below" y="0.4in" width="1in" height="0.1in"/></Section>)xml");
    const RenderResult result = fixture.render(report, numberedRows(3, 2), others);
    QCOMPARE(documentText(*result.document),
        QStringLiteral("1\n10 on 1/1\n20 on 1/1\nSum 30\nbelow\n2\n10 on 1/1\n20 on 1/1\nSum "
                       "30\nbelow\n3\nSum \nbelow\n"));
    QCOMPARE(fixture.queries,
        QStringList(
            {QStringLiteral("rows"), QStringLiteral("visits 1"), QStringLiteral("visits 2")}));
    const TextRun &sub = result.document->pages.front().runs[1];
    QCOMPARE(sub.x, 1440 + 1440);
    QCOMPARE(sub.y, 1440 + 288 + 181);
}

void tst_layout_pages::subreportsRunOverPages()
{
    LayoutFixture fixture;
    QString table = QStringLiteral("v");
    for (int i = 1; i <= 60; ++i)
        table += QStringLiteral("\n%1").arg(i);
    fixture.answer(QStringLiteral("visits"), table);
    const QString others = QStringLiteral(
        R"xml(<Report name="Visits"><RecordSource>visits</RecordSource><Groups><Group name="all" on="1" repeatHeader="true"/></Groups>
        <Section kind="group-header" group="all" height="0.2in"><Label text="Visit" width="2in" height="0.2in"/></Section>
        <Section kind="detail" height="0.3in"><Expression value="[v] &amp; '@' &amp; PageNumber" width="2in" height="0.2in"/></Section></Report>)xml");
    const QString report = QStringLiteral(
        R"xml(<Section kind="detail" height="0.2in"><Subreport report="Visits" width="3in" height="0.2in"/></Section>)xml");
    const RenderResult result = fixture.render(report, numberedRows(1), others);
    const QStringList found = pages(*result.document);
    QCOMPARE(found.size(), 3); // 29 visits to a page below the heading
    QVERIFY2(found[0].startsWith(u"Visit 1@1") && found[0].endsWith(u"29@1"), qPrintable(found[0]));
    QVERIFY2(
        found[1].startsWith(u"Visit 30@2") && found[1].endsWith(u"58@2"), qPrintable(found[1]));
    QCOMPARE(found[2], QStringLiteral("Visit 59@3 60@3"));
}

/// A row of a sub-report that no page holds goes on over as many pages as it takes, whole lines each.
void tst_layout_pages::aSubreportsTallRowRunsOverPages()
{
    LayoutFixture fixture;
    QStringList lines;
    for (int i = 1; i <= 120; ++i)
        lines += QStringLiteral("line%1").arg(i);
    fixture.answer(QStringLiteral("notes"), QStringLiteral("v\nshort\nlong"));
    const QString others = QStringLiteral(
        R"xml(<Report name="Notes"><RecordSource>notes</RecordSource>
        <Section kind="detail" height="0.2in"><Expression value="If([v] = 'long', '%1', [v])" canGrow="true" width="0.6in" height="0.2in"/></Section></Report>)xml")
                               .arg(lines.join(u' '));
    const QString report = QStringLiteral(
        R"xml(<Section kind="detail" height="0.4in"><Label text="Row" width="1in" height="0.2in"/><Subreport report="Notes" y="0.2in" width="3in" height="0.2in"/></Section>)xml");
    const RenderResult result = fixture.render(report, numberedRows(1), others);
    const QStringList found = pages(*result.document);
    QVERIFY2(found.size() > 1, qPrintable(found.join(u'\n')));
    QStringList words = found.join(u' ').split(u' ', Qt::SkipEmptyParts);
    QCOMPARE(words.mid(0, 2), QStringList({QStringLiteral("Row"), QStringLiteral("short")}));
    QCOMPARE(words.mid(2), lines);
}

void tst_layout_pages::literalsHaveTheirKindsForm()
{
    QCOMPARE(sqlLiteral(Datum()), QStringLiteral("NULL"));
    QCOMPARE(sqlLiteral(Datum::boolean(true)), QStringLiteral("1"));
    QCOMPARE(sqlLiteral(Datum::boolean(false)), QStringLiteral("0"));
    QCOMPARE(sqlLiteral(Datum::real(-0.5)), QStringLiteral("-0.5"));
    QCOMPARE(sqlLiteral(Datum::bytes(QByteArray("\0'\xff", 3))), QStringLiteral("0x0027ff"));
    QCOMPARE(sqlLiteral(Datum::time(QTime(8, 5, 9))), QStringLiteral("'08:05:09'"));
    QCOMPARE(sqlLiteral(Datum::dateTime(QDateTime(QDate(2026, 1, 31), QTime(8, 5), Qt::UTC))),
        QStringLiteral("'2026-01-31T08:05:00'"));
}

void tst_layout_pages::circlesAreRefused()
{
    LayoutFixture fixture;
    const QString report = QStringLiteral(
        R"xml(<Section kind="detail" height="0.5in"><Subreport name="SubreportOne" width="3in" height="0.2in"/></Section>)xml");
    QCOMPARE(fixture.render(report, numberedRows(1)).document->pageCount(),
        1); // nothing bound: nothing shown
    fixture.bindToItself = true;
    QCOMPARE(fixture.refusal(report, numberedRows(1)),
        QStringLiteral("A report cannot hold itself as a sub-report: Main → Main."));
}

void tst_layout_pages::linkValuesAreLiterals()
{
    LayoutFixture fixture;
    fixture.answer(QStringLiteral("v 'O''Neill' NULL 2.5 '20260131'"), QStringLiteral("v\n1"));
    const QString others = QStringLiteral(
        R"xml(<Report name="V"><RecordSource>v {LINK*a} {link*B} {LINK*c} {LINK*d}</RecordSource><Section kind="detail" height="0.2in"/></Report>)xml");
    const QString field
        = QStringLiteral("<Section kind=\"detail\" height=\"0.5in\"><Subreport report=\"V\" "
                         "width=\"3in\" height=\"0.2in\">%1</Subreport></Section>");
    const QString links = QStringLiteral(
        R"xml(<Link name="a" value="[a]"/><Link name="b" value="[b]"/><Link name="c" value="[c]"/><Link name="d" value="[d]"/>)xml");
    const QString table = QStringLiteral("a|b|c|d\nO'Neill|~|2.50|2026-01-31");
    fixture.render(field.arg(links), table, others);
    QCOMPARE(fixture.queries.size(), 2);
    // A value that looks like a token stays a text: nothing of it leaves its quotes.
    fixture.answer(QStringLiteral("v '{LINK*b}' '; DROP TABLE t --' 1 2"), QStringLiteral("v\n1"));
    QCOMPARE(fixture.refusal(field.arg(links), QStringLiteral("a|b|c|d\n{LINK*b}|; DROP TABLE t --|1|2"), others), QString());
    QCOMPARE(fixture.refusal(field.arg(links), QStringLiteral("a|b|c|d\n1|2|3|4"), others),
        QStringLiteral("The query of the sub-report \"V\" failed: no such query: v 1 2 3 4"));
}

QTEST_MAIN(tst_layout_pages)
#include "tst_layout_pages.moc"
