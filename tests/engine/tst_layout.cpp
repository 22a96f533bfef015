#include "engine/layout_fixture.h"
#include "platform/engine/picture_store.h"
#include "support/document_dump.h"
#include "support/suite.h"

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace corvane;
using test::dump;
using test::LayoutFixture;
using test::numberedRows;

namespace {

// Of Arial at 10 points, twips: ascent and height of a line.
constexpr int kAscent = 181;
constexpr int kLine = 223;

QString detail(const char *fields, const char *height = "0.2in")
{
    return QStringLiteral("<Section kind=\"detail\" height=\"%1\">%2</Section>")
        .arg(QLatin1StringView(height), QLatin1StringView(fields));
}

/// "x y width height" of each filled rectangle of a page, without those that are all margin.
QStringList rects(const Page &page)
{
    QStringList texts;
    for (const FilledRect &rect : page.rects)
        texts += QStringLiteral("%1 %2 %3 %4")
                     .arg(rect.x - 1440)
                     .arg(rect.y - 1440)
                     .arg(rect.width)
                     .arg(rect.height);
    return texts;
}

/// "letters@x,top" of each run, from the upper left corner of the first band.
QString places(const Document &document)
{
    QStringList texts;
    const Page &page = document.pages.front();
    for (const TextRun &run : page.runs)
        texts += QStringLiteral("%1@%2,%3")
                     .arg(page.runText(run))
                     .arg(run.x - 1440)
                     .arg(run.y - 1440 - kAscent);
    return texts.join(u' ');
}

} // namespace

class tst_layout : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showsSectionsInTheirOrder();
    void placesFields_data();
    void placesFields();
    void framesFollowWhatGrows();
    void cutsAreCountedAndMarked();
    void duplicatesShowAgainOnANewPage();
    void looksFollowConditions();
    void faultsMarkTheirCells();
    void faultsOfEveryKindAreMarked();
    void linksBookmarksAndOutline();
    void barcodesStandOnWholeTwips();
    void picturesAreKeptOnce();
    void picturesComeFromColumns();
    void aColumnsPicturesHaveTheLimitsOfFiles();
    void photographsStayAsTheyCame();
    void everyLookIsDrawn();
    void aggregates_data();
    void aggregates();
    void missingColumnsAreNamed();
};

void tst_layout::showsSectionsInTheirOrder()
{
    LayoutFixture fixture;
    const RenderResult result = fixture.render(QStringLiteral(R"xml(
        <Groups><Group name="g" on="[g]" sort="descending"/></Groups>
        <Section kind="report-header" height="0.2in"><Label text="Report" width="1in" height="0.2in"/></Section>
        <Section kind="page-header" height="0.2in"><Label text="Top" width="1in" height="0.2in"/></Section>
        <Section kind="group-header" group="g" height="0.2in"><Expression value="'Group ' &amp; [g] &amp; ' of ' &amp; Sum([n])" width="2in" height="0.2in"/></Section>
        <Section kind="detail" height="0.2in"><Data column="g" x="1in" width="1in" height="0.2in" align="right"/><Data column="n" width="1in" height="0.2in"/></Section>
        <Section kind="group-footer" group="g" height="0.2in"><Expression value="Sum([n])" width="2in" height="0.2in"/></Section>
        <Section kind="page-footer" height="0.2in"><Expression value="PageNumber &amp; '/' &amp; PageCount" width="1in" height="0.2in"/></Section>
        <Section kind="report-footer" height="0.2in"><Expression value="Avg([n])" width="1in" height="0.2in"/></Section>)xml"),
        numberedRows(4, 2));
    QCOMPARE(dump(*result.document),
        QStringList({QStringLiteral("1 y1440 Paragraph [1440 1621:Report]"),
            QStringLiteral("1 y1728 Furniture [1440 1909:Top]"),
            QStringLiteral("1 y2016 Caption [1440 2197:Group 2 of 7]"),
            QStringLiteral("1 y2304 Row [1440 2485:3][4209 2485:2]"),
            QStringLiteral("1 y2592 Row [1440 2773:4][4209 2773:2]"),
            QStringLiteral("1 y2880 Paragraph [1440 3061:7]"),
            QStringLiteral("1 y3168 Caption [1440 3349:Group 1 of 3]"),
            QStringLiteral("1 y3456 Row [1440 3637:1][4209 3637:1]"),
            QStringLiteral("1 y3744 Row [1440 3925:2][4209 3925:1]"),
            QStringLiteral("1 y4032 Paragraph [1440 4213:3]"),
            QStringLiteral("1 y4320 Paragraph [1440 4501:2.5]"),
            QStringLiteral("1 y14112 Furniture [1440 14293:1/1]")}));
    QCOMPARE(documentText(*result.document),
        QStringLiteral("Report\nGroup 2 of 7\n3\t2\n4\t2\n7\nGroup 1 of 3\n1\t1\n2\t1\n3\n2.5\n"));
    QVERIFY(result.document->isWhole);
    QCOMPARE(result.rows->rowCount(), 4);
}

void tst_layout::placesFields_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *fields, const QString &expected) {
        QTest::newRow(name) << QString::fromUtf8(fields) << expected;
    };
    row("what stands below is pushed down, beside stays",
        R"xml(<Label text="a&#10;b&#10;c" width="1in" height="0.2in"/><Label text="d" x="1in" width="1in" height="0.2in"/>
           <Label text="e" y="0.3in" width="1in" height="0.2in"/>)xml",
        QStringLiteral("a@0,0 b@0,%1 c@0,%2 d@1440,0 e@0,%3")
            .arg(kLine)
            .arg(2 * kLine)
            .arg(432 + 3 * kLine - 288));
    row("an empty field that can shrink lets the others up",
        R"xml(<Expression value="Null" canShrink="true" width="1in" height="0.2in"/><Label text="e" y="0.2in" width="1in" height="0.2in"/>)xml",
        QStringLiteral("e@0,0"));
    row("it does not where another field stands beside it",
        R"xml(<Expression value="''" canShrink="true" width="1in" height="0.2in"/><Label text="d" x="1in" width="1in" height="0.2in"/>
           <Label text="e" y="0.2in" width="1in" height="0.2in"/>)xml",
        QStringLiteral("d@1440,0 e@0,288"));
    row("a hidden field keeps its place unless it can shrink",
        R"xml(<Label text="x" visibleWhen="[n] > 1" width="1in" height="0.2in"/><Label text="e" y="0.2in" width="1in" height="0.2in"/>)xml",
        QStringLiteral("e@0,288"));
    row("padding, centre and bottom",
        R"xml(<Label text="." padding="100tw" verticalAlign="bottom" width="1in" height="0.5in"/>
           <Label text="i" align="center" verticalAlign="middle" x="1in" width="1in" height="0.5in"/>)xml",
        QStringLiteral(".@100,%1 i@%2,%3")
            .arg(720 - 100 - kLine)
            .arg(1440 + (1440 - 44) / 2)
            .arg((720 - kLine) / 2));
    row("fields read by lines, whatever their order in the file",
        R"xml(<Label text="c" y="0.3in" width="1in" height="0.2in"/><Label text="b" x="1in" y="0.02in" width="1in" height="0.2in"/>
           <Label text="a" width="1in" height="0.2in"/>)xml",
        QStringLiteral("a@0,0 b@1440,29 c@0,432"));
    row("formats and plain values",
        R"xml(<Expression value="1234.5" format="#,##0.00" width="1in" height="0.2in"/><Expression value="1234.50" x="1in" width="1in" height="0.2in"/>
           <Expression value="Date(2026,2,3)" format="MMM d" x="2in" width="1in" height="0.2in"/>)xml",
        QStringLiteral("1,234.50@0,0 1234.5@1440,0 Feb 3@2880,0"));
}

void tst_layout::placesFields()
{
    QFETCH(QString, fields);
    LayoutFixture fixture;
    const auto result = fixture.render(detail(fields.toUtf8().constData(), "1in"), numberedRows(1));
    QTEST(places(*result.document), "expected");
}

void tst_layout::framesFollowWhatGrows()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        QStringLiteral("<Section kind=\"detail\" height=\"0.5in\" background=\"#eeeeee\">")
            + QStringLiteral(R"xml(
        <Rectangle width="3in" height="0.5in" border="10tw"/><Line x="3in" height="0.5in" thickness="10tw"/>
        <Label text="a&#10;b&#10;c" y="0.1in" width="1in" height="0.2in"/><Label text="d" x="1in" y="0.1in" width="1in" height="0.2in" background="#ff0000"/>
        <Line y="0.4in" width="3in" thickness="20tw"/></Section>)xml"),
        numberedRows(2));
    const int grown = 3 * kLine - 288;
    const Page &page = result.document->pages.front();
    const QStringList found = rects(page);
    const QString height = QString::number(720 + grown);
    QCOMPARE(found.mid(0, 8),
        QStringList({QStringLiteral("0 0 9360 %1").arg(height), QStringLiteral("0 0 4320 10"),
            QStringLiteral("0 %1 4320 10").arg(710 + grown),
            QStringLiteral("0 0 10 %1").arg(height), QStringLiteral("4310 0 10 %1").arg(height),
            QStringLiteral("4320 0 10 %1").arg(height),
            QStringLiteral("1440 144 1440 %1").arg(288 + grown),
            QStringLiteral("0 %1 4320 20").arg(576 + grown)}));
    QCOMPARE(found[8], QStringLiteral("0 %1 9360 %1").arg(height));
}

void tst_layout::cutsAreCountedAndMarked()
{
    LayoutFixture fixture;
    const QString text = detail(
        R"xml(<Expression value="If([n] in (1, 3, 12), 'one two three four five six seven', 'short')" canGrow="false" width="1in" height="0.2in"/>)xml",
        "1in");
    const auto result = fixture.render(text, numberedRows(12));
    QCOMPARE(
        result.document->notes, QStringList(QStringLiteral("3 values were cut, pages 1 and 2.")));
    QCOMPARE(test::blockTexts(*result.document, 0).front(), QStringLiteral("one two three…"));
    const auto whole = fixture.render(text, numberedRows(2).replace(u'1', u'2'));
    QCOMPARE(whole.document->notes, QStringList());
}

void tst_layout::duplicatesShowAgainOnANewPage()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(
            R"xml(<Data column="g" hideDuplicates="true" width="1in" height="0.2in"/><Data column="n" x="1in" width="1in" height="0.2in"/>)xml",
            "3in"),
        numberedRows(5, 2));
    QCOMPARE(test::blockTexts(*result.document, 0),
        QStringList({QStringLiteral("1|1"), QStringLiteral("|2"), QStringLiteral("2|3")}));
    QCOMPARE(test::blockTexts(*result.document, 1),
        QStringList({QStringLiteral("2|4"), QStringLiteral("3|5")}));
}

void tst_layout::looksFollowConditions()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        QStringLiteral(
            R"xml(<Styles><Style name="Red" color="#ff0000" bold="true"/><Style name="Big" size="20"/></Styles>)xml")
            + detail(
                R"xml(<Data column="n" width="1in" height="0.2in"><When condition="[n] = 2" style="Red"/><When condition="[n] &gt; 1" style="Big"/></Data>)xml"),
        numberedRows(3));
    const Document &document = *result.document;
    QStringList styles;
    for (const TextRun &run : document.pages.front().runs) {
        const TextStyle &style = document.styles[run.style];
        styles += QStringLiteral("%1 %2 %3")
                      .arg(style.size.count())
                      .arg(style.colour, 0, 16)
                      .arg(document.faces[style.face]->styleName());
    }
    QCOMPARE(styles,
        QStringList({QStringLiteral("200 ff000000 Regular"), QStringLiteral("200 ffff0000 Bold"),
            QStringLiteral("400 ff000000 Regular")}));
}

void tst_layout::faultsMarkTheirCells()
{
    const QString report
        = QStringLiteral(R"xml(<Groups><Group name="g" on="1 / ([n] - 2)"/></Groups>
        <Section kind="detail" height="0.2in"><Expression value="12 / ([n] - 3)" width="1in" height="0.2in"/></Section>
        <Section kind="report-footer" height="0.2in"><Expression value="Sum(1 / ([n] - 3))" width="1in" height="0.2in"/></Section>)xml");
    LayoutFixture fixture;
    const RenderResult result = fixture.render(report, numberedRows(4));
    QCOMPARE(test::blockTexts(*result.document, 0),
        QStringList({QStringLiteral("-6"), QStringLiteral("-12"), QStringLiteral("#"),
            QStringLiteral("12"), QStringLiteral("#")}));
    QCOMPARE(result.document->notes.size(), 2);
    QVERIFY2(result.document->notes[0].startsWith(u"The group of 1 row could not be computed"),
        qPrintable(result.document->notes[0]));
    QVERIFY2(result.document->notes[1].startsWith(
                 u"2 values could not be computed and show as #, page 1: "),
        qPrintable(result.document->notes[1]));
}

/// Each kind of field, and the addresses that fields bear.
void tst_layout::faultsOfEveryKindAreMarked()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(
            R"xml(<CheckMark value="1 / [n] = 1" width="0.2in" height="0.2in"/><Expression value="'a'" link="1 / [n]" x="1in" width="1in" height="0.2in"/>
        <Expression value="'b'" bookmark="1 / [n]" x="2in" width="1in" height="0.2in"/><Barcode type="code128" value="1 / [n]" x="3in" width="2in" height="0.2in"/>)xml"),
        QStringLiteral("n\n0"));
    QCOMPARE(test::blockTexts(*result.document, 0), QStringList(QStringLiteral("#|a|b|#")));
    QCOMPARE(result.document->notes.size(), 2);
    QVERIFY2(result.document->notes[0].startsWith(
                 u"2 values could not be computed and show as #, page 1: "),
        qPrintable(result.document->notes[0]));
    QVERIFY2(result.document->notes[1].startsWith(
                 u"2 links or bookmarks could not be computed and are missing, page 1: "),
        qPrintable(result.document->notes[1]));
}

void tst_layout::linksBookmarksAndOutline()
{
    LayoutFixture fixture;
    const auto result = fixture.render(QStringLiteral(R"xml(
        <Groups><Group name="a" on="[g]" outline="'G' &amp; [g]"/><Group name="b" on="[n]"/></Groups>
        <Section kind="group-header" group="a" height="0.2in"/>)xml")
            + detail(
                R"xml(<Data column="n" link="'#p' &amp; [n]" bookmark="'p' &amp; [n]" width="1in" height="0.2in"/>)xml",
                "0.5in"),
        numberedRows(3, 2));
    const Document &document = *result.document;
    QStringList outline;
    for (const OutlineEntry &entry : document.outline)
        outline += QStringLiteral("%1%2 %3")
                       .arg(QString(entry.depth, u'>'), entry.title)
                       .arg(entry.top.count() - 1440);
    QCOMPARE(outline,
        QStringList({QStringLiteral("G1 0"), QStringLiteral(">1 288"), QStringLiteral(">2 1008"),
            QStringLiteral("G2 1728"), QStringLiteral(">3 2016")}));
    const Page &page = document.pages.front();
    QCOMPARE(page.links.size(), 3u);
    QCOMPARE(page.links[1].target, QStringLiteral("#p2"));
    QCOMPARE(page.links[1].y, 1440 + 1008);
    QCOMPARE(document.bookmarks.size(), 3u);
    QCOMPARE(document.bookmarks[2].name, QStringLiteral("p3"));
    QCOMPARE(document.bookmarks[2].top.count(), 1440 + 2016);
}

void tst_layout::barcodesStandOnWholeTwips()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(
            R"xml(<Barcode type="code128" value="'AB12'" showText="true" width="2in" height="0.5in"/>
        <Barcode type="qr" value="'https://clinic.example'" x="3in" width="1in" height="0.9in"/>
        <Barcode type="code128" value="'much too long for so little room'" x="5in" width="0.3in" height="0.5in"/>)xml",
            "1in"),
        numberedRows(1));
    const Document &document = *result.document;
    // Code 128: start, four characters, check and stop are 6 × 11 + 13 modules; with the quiet zone
    // 99 in 2880 twips.
    const int module = 2880 / 99;
    int right = 0;
    int left = 1 << 30;
    for (const FilledRect &rect : document.pages.front().rects) {
        if (rect.x >= 1440 + 2880)
            continue;
        QCOMPARE(rect.width % module, 0);
        QCOMPARE(rect.height, 720 - kLine);
        left = std::min(left, rect.x);
        right = std::max(right, rect.x + rect.width);
    }
    QCOMPARE(right - left, module * 79);
    QCOMPARE(test::blockTexts(document, 0), QStringList(QStringLiteral("AB12||#")));
    QVERIFY2(document.notes.join(u' ').contains(u"needs a frame"),
        qPrintable(document.notes.join(u' ')));
}

void tst_layout::picturesAreKeptOnce()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(
            R"xml(<Picture description="dot" width="1in" height="0.5in">iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGOQ96sEAAF2AOe2j1NWAAAAAElFTkSuQmCC</Picture>
        <Picture x="1in" fit="stretch" width="1in" height="0.5in">iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGOQ96sEAAF2AOe2j1NWAAAAAElFTkSuQmCC</Picture>
        <Picture column="n" x="3in" width="1in" height="0.5in"/>)xml",
            "1in"),
        numberedRows(2));
    const Document &document = *result.document;
    QCOMPARE(document.pictures.size(), 1u);
    const Page &page = document.pages.front();
    QCOMPARE(page.pictures.size(), 4u);
    QCOMPARE(page.pictures[0].width, 720);
    QCOMPARE(page.pictures[0].description, QStringLiteral("dot"));
    QCOMPARE(page.pictures[1].width, 1440);
    QCOMPARE(page.pictures[2].y, 1440 + 1440);
    QCOMPARE(document.notes.size(), 1); // a number is no picture
}

/// A picture, a null and no bytes at all, each of which leaves or shows what it is; and what is no
/// picture.
void tst_layout::picturesComeFromColumns()
{
    QBuffer file;
    QImage(3, 2, QImage::Format_RGB32).save(&file, "png");
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(R"xml(<Picture column="face" width="1in" height="0.5in"/>)xml", "0.5in"),
        u"face\n0x" + QString::fromLatin1(file.data().toHex()) + u"\n~\n0x\n0x00ff");
    const Document &document = *result.document;
    QCOMPARE(document.pictures.size(), 1u);
    QCOMPARE(document.pictures[0].image.size(), QSize(3, 2));
    QCOMPARE(document.pages.front().pictures.size(), 1u);
    QCOMPARE(test::blockTexts(document, 0), QStringList(QStringLiteral("#")));
    QCOMPARE(document.notes.size(), 1);
    QVERIFY2(document.notes[0].contains(u"is no picture; PNG, JPEG, GIF and BMP can be shown"),
        qPrintable(document.notes[0]));
}

void tst_layout::aColumnsPicturesHaveTheLimitsOfFiles()
{
    Document document;
    PictureStore store(document);
    const auto refusal = [&store](const QByteArray &file) {
        const auto added = store.add(file);
        const auto *words = std::get_if<QString>(&added);
        return words ? *words : QString();
    };
    QImage large(7'200, 7'200, QImage::Format_Mono);
    large.fill(0);
    QBuffer file;
    large.save(&file, "png");
    QVERIFY(refusal(file.data()).endsWith(u"has 7200 × 7200 pixels; at most 50 million can be shown"));
    QVERIFY(refusal("P1\n1 1\n0\n").contains(u"is no picture; PNG, JPEG, GIF and BMP can be shown"));
    QVERIFY(document.pictures.empty());
}

/// A grey or RGB JPEG is handed on as its file; one that says it lies on its side is turned, and so
/// cannot be.
void tst_layout::photographsStayAsTheyCame()
{
    const auto photograph = [](QImage::Format format) {
        QImage image(20, 10, format);
        image.fill(Qt::gray);
        QBuffer file;
        image.save(&file, "jpeg");
        return file.data();
    };
    const QByteArray colours = photograph(QImage::Format_RGB32);
    const QByteArray grey = photograph(QImage::Format_Grayscale8);
    QByteArray turned = colours; // Exif 2.3, 4.6.4: Orientation (0x0112) 6 behind the start marker
    turned.insert(2,
        QByteArray::fromHex("ffe1002245786966000049492a00080000000100120103000100000006000000"
                            "00000000"));
    Document document;
    PictureStore store(document);
    for (const QByteArray &file : {colours, grey, turned, colours})
        QVERIFY(std::holds_alternative<quint32>(store.add(file)));
    QCOMPARE(document.pictures.size(), 3); // the same file is kept once
    QCOMPARE(document.pictures[0].jpeg, colours);
    QCOMPARE(document.pictures[1].jpeg, grey);
    QCOMPARE(document.pictures[2].jpeg, QByteArray());
    QCOMPARE(document.pictures[1].image.size(), QSize(20, 10));
    QCOMPARE(document.pictures[2].image.size(), QSize(10, 20));
}

void tst_layout::everyLookIsDrawn()
{
    LayoutFixture fixture;
    const auto result = fixture.render(
        detail(
            R"xml(<Label text="u" underline="true" italic="true" font="No Such Font" width="1in" height="0.2in"/>
        <CheckMark value="[n] = 1" x="1in" width="0.2in" height="0.2in"/><CheckMark value="Null" x="2in" width="0.2in" height="0.2in"/>
        <Label text="b" x="3in" width="1in" height="0.2in" borderLeft="10tw" borderTop="20tw" borderRight="30tw" borderBottom="40tw"/>)xml"),
        numberedRows(1));
    const Document &document = *result.document;
    QCOMPARE(test::blockTexts(document, 0), QStringList(QStringLiteral("u|☑|☐|b")));
    const QStringList found = rects(document.pages.front());
    QCOMPARE(found.mid(0, 4),
        QStringList({QStringLiteral("4320 0 1440 20"), QStringLiteral("4320 248 1440 40"),
            QStringLiteral("4320 0 10 288"), QStringLiteral("5730 0 30 288")}));
    QCOMPARE(found.size(), 5); // the last one is the underline
    QVERIFY2(document.notes.value(0).startsWith(u"The font \"No Such Font\" is not installed"),
        qPrintable(document.notes.join(u' ')));
}

void tst_layout::aggregates_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("inHeader"); // of the two groups, joined by a blank
    QTest::addColumn<QString>("inDetail"); // of the five rows
    QTest::addColumn<QString>("inFooter");

    const auto row = [](const char *expression, const char *header, const char *detailTexts,
                         const char *footer) {
        QTest::newRow(expression) << QString::fromLatin1(expression) << QString::fromLatin1(header)
                                  << QString::fromLatin1(detailTexts)
                                  << QString::fromLatin1(footer);
    };
    // Amounts: 1.10, 2.20, null in group 1; 4, 4 in group 2.
    row("Sum([a])", "3.3 8", "11.3 11.3 11.3 11.3 11.3", "3.3 8");
    row("Sum([a], 'g')", "3.3 8", "3.3 3.3 3.3 8 8", "3.3 8");
    row("Count()", "3 2", "5 5 5 5 5", "3 2");
    row("Count([a], Report)", "4 4", "4 4 4 4 4", "4 4");
    row("DistinctCount([a])", "2 1", "3 3 3 3 3", "2 1");
    row("Min([a])", "1.1 4", "1.1 1.1 1.1 1.1 1.1", "1.1 4");
    row("Avg([a])", "1.65 4", "2.825 2.825 2.825 2.825 2.825", "1.65 4");
    row("RunningSum([a])", "1.1 4", "1.1 3.3 3.3 7.3 11.3", "3.3 8");
    row("RunningCount('g')", "1 1", "1 2 3 1 2", "3 2");
    row("RowNumber", "1 4", "1 2 3 4 5", "3 5");
    row("Round(PercentOf([a], Report), 3)", "0.292 0.708", "1 1 1 1 1", "0.292 0.708");
}

void tst_layout::aggregates()
{
    QFETCH(QString, expression);
    LayoutFixture fixture;
    const auto field = QStringLiteral("<Expression value=\"%1\" width=\"2in\" height=\"0.2in\"/>")
                           .arg(expression);
    const auto result
        = fixture.render(QStringLiteral(R"xml(<Groups><Group name="g" on="[g]"/></Groups>
        <Section kind="group-header" group="g" height="0.2in">%1</Section><Section kind="detail" height="0.2in">%1</Section>
        <Section kind="group-footer" group="g" height="0.2in">%1</Section>)xml")
                             .arg(field),
            QStringLiteral("g|a\n1|1.10\n1|2.20\n1|~\n2|4\n2|4"));
    const QStringList texts = test::blockTexts(*result.document, 0);
    QCOMPARE(texts.size(), 9);
    QTEST(QString(texts[0] + u' ' + texts[5]), "inHeader");
    QTEST((texts.mid(1, 3) + texts.mid(6, 2)).join(u' '), "inDetail");
    QTEST(QString(texts[4] + u' ' + texts[8]), "inFooter");
}

void tst_layout::missingColumnsAreNamed()
{
    LayoutFixture fixture;
    QCOMPARE(fixture.refusal(
                 detail(R"xml(<Data column="m" width="1in" height="0.2in"/>)xml"), numberedRows(1)),
        QStringLiteral("Main, line 2: the record source gives no column [m]. It gives n, g."));
}

QTEST_MAIN(tst_layout)
#include "tst_layout.moc"
