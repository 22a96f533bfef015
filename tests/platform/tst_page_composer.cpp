#include "platform/composer/page_composer.h"
#include "support/document_dump.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;
using test::blockTexts;

namespace {

constexpr auto kFormat = u"2000|>1500|3000;";
constexpr auto kHeading = u"Name|Amount|Note;";

/// A composer in the state in which a report's body starts.
class Started : public PageComposer
{
public:
    explicit Started(Twips widthNeeded = {}, Orientation orientation = Orientation::Portrait)
    {
        setOrientation(orientation);
        setWidthNeeded(widthNeeded);
        startDocument({});
    }

    void heading(QStringView format = kFormat, QStringView texts = kHeading)
    {
        setTableBorder(TableBorder::AboveAndBelow);
        setBold(true);
        addTable(format, texts, {}, kNoShade, kNoShade, TableFlow::Starts);
        setBold(false);
        setTableBorder(TableBorder::None);
    }
    void row(QStringView body, QStringView format = kFormat)
    {
        addTable(format, kHeading, body, kNoShade, kNoShade, TableFlow::Continues);
    }
    void caption(QStringView text) { addTable(u"4000;", {}, text, kNoShade, kCaptionShade, TableFlow::Continues); }

    /// Rows until the next one would start a page or column.
    void fillToBottom(Twips limit)
    {
        while (currentY() < limit)
            row(u"a|1|b;");
    }
};

constexpr Twips kBottom {15840 - 1440};

double rightEdge(const Document &document, const Page &page, const TextRun &run)
{
    const TextStyle &style = document.styles[run.style];
    const FontFace &face = *document.faces[style.face];
    return run.x + double(*face.plainWidth(page.runText(run))) * style.size.count() / face.unitsPerEm();
}

} // namespace

class tst_page_composer : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void charactersWithoutGlyphAreCounted();
    void readsFormats_data();
    void readsFormats();
    void splitsRows_data();
    void splitsRows();
    void alignsCellsInTheirColumns();
    void wrapsAndGrowsWithoutLosingText_data();
    void wrapsAndGrowsWithoutLosingText();
    void repeatsTheHeadingWhereItBreaksThePageItself();
    void headingComesBackAfterCaptionAndNote_data();
    void headingComesBackAfterCaptionAndNote();
    void aForcedPageHasNoHeadingOfItsOwn();
    void keepsRowsWhole();
    void splitsARowTallerThanThePage();
    void fillsNewspaperColumnsInOrder();
    void theEmptyTextTakesALine();
    void marginsGiveWayToWideTables_data();
    void marginsGiveWayToWideTables();
    void narrowsWhatDoesNotFitAndSaysSo();
    void resetForgetsEverything();
    void refusesImpossibleFontSizes();
    void headersTakeEveryScript();
    void anAbandonedDocumentIsNotWhole();
    void noColumnIsTooNarrowToEnd();
};

void tst_page_composer::readsFormats_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("columns"); // width and mark per column, or the fault's place after "!"

    const auto row = [](const char *text, const char *columns) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(columns);
    };
    row("2500|1800;", "2500< 1800<");
    row("2500|1800", "2500< 1800<");
    row(">8500|1000;", "8500> 1000<");
    row("^700|<800;", "700^ 800<");
    row(" > 1200 | 900 ;", "1200> 900<");
    row("", "");
    row("2500|;", "2500<");
    row("abc|;", "!0");
    row("2500|x|3;", "!5");
    row("2500||3;", "!5");
    row("-5;", "!0");
    row("0;", "!0");
    row("32760;", "32760<");
    row("32761;", "!0");
    row("1e999;", "!0");
}

void tst_page_composer::readsFormats()
{
    QFETCH(QString, text);
    const auto parsed = parseColumnFormat(text);
    QStringList found;
    if (const auto *columns = std::get_if<std::vector<ColumnFormat>>(&parsed)) {
        for (const ColumnFormat &column : *columns)
            found += QString::number(column.width.count()) + u"<^>"[int(column.alignment)];
    } else {
        found += u'!' + QString::number(std::get<FormatFault>(parsed).offset);
    }
    QTEST(found.join(u' '), "columns");
}

void tst_page_composer::splitsRows_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("cells"); // joined by "/"

    QTest::newRow("as many as columns") << QStringLiteral("a|b|c;") << QStringLiteral("a/b/c");
    QTest::newRow("fewer leave the rest empty") << QStringLiteral("a;") << QStringLiteral("a");
    QTest::newRow("empty cells") << QStringLiteral("||;") << QStringLiteral("//");
    QTest::newRow("what is left stays in the last") << QStringLiteral("a|b|c|d;") << QStringLiteral("a/b/c|d");
    QTest::newRow("semicolons inside stay") << QStringLiteral("a;b") << QStringLiteral("a;b");
}

void tst_page_composer::splitsRows()
{
    QFETCH(QString, row);
    std::vector<QStringView> cells;
    splitCells(row, 3, cells);
    QStringList found;
    for (const QStringView cell : cells)
        found += cell.toString();
    QTEST(found.join(u'/'), "cells");
}

void tst_page_composer::alignsCellsInTheirColumns()
{
    Started composer;
    composer.row(u"left|12.50|note;");
    composer.row(u"x|7|note;");
    const DocumentPtr document = composer.endDocument();
    const Page &page = document->pages.front();
    QCOMPARE(page.runs.size(), 6u);
    for (const size_t row : {0u, 3u}) {
        QCOMPARE(page.runs[row].x, 1440 + 80);
        QVERIFY(std::abs(rightEdge(*document, page, page.runs[row + 1]) - (1440 + 3500 - 80)) <= 1);
        QCOMPARE(page.runs[row + 2].x, 1440 + 3500 + 80);
        QCOMPARE(page.runs[row].y, page.runs[row + 1].y);
    }
    QCOMPARE(page.blocks[0].bottom, page.blocks[1].top);
}

void tst_page_composer::wrapsAndGrowsWithoutLosingText_data()
{
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const QString &text) { QTest::newRow(name) << text; };
    row("words", QStringLiteral("several words that cannot stand on one line of so narrow a column"));
    row("one word longer than the column", QString(300, u'W'));
    row("line ends", QStringLiteral("one\ntwo\r\nthree\rfour"));
    row("many blanks", QStringLiteral("a") + QString(200, u' ') + u'b');
    row("a tab", QStringLiteral("a\tb"));
    row("Central European", QString::fromUtf8("Dvo\u0159\u00e1k \u0141ukasz O\u2019Neill \u20ac5"));
    row("Chinese", QString::fromUtf8("\u75c5\u4eba\u4f60\u597d\u4f60\u597d\u4f60\u597d\u4f60\u597d\u4f60\u597d\u4f60\u597d\u4f60\u597d"));
    row("Arabic among Latin", QString::fromUtf8("name \u0645\u0631\u062d\u0628\u0627 and more words to wrap the line"));
    row("combining accents", QString::fromUtf8("Zoe\u0308 e\u0301 Dvor\u030ca\u0301k"));
    row("beyond the basic plane", QString::fromUtf8("smile \U0001F600 end"));
    row("a letter no font has", QString::fromUtf8("private \ue123 use"));
}

void tst_page_composer::wrapsAndGrowsWithoutLosingText()
{
    QFETCH(QString, text);
    Started composer;
    composer.row(QString(u"A|" + text + u"|B;"));
    const Twips below = composer.currentY();
    composer.row(u"next|row|here;");
    const DocumentPtr document = composer.endDocument();
    QString expected = u'A' + text + u"BnextrowhereX";
    expected.removeIf([](QChar c) { return c.isSpace(); });
    QCOMPARE(test::letters(*document) + u'X', expected);
    QCOMPARE(blockTexts(*document, 0).size(), 2);
    const Page &page = document->pages.front();
    for (const TextRun &run : page.blockRuns(0)) {
        QVERIFY(run.y < below.count());
        if (run.column == 1)
            QVERIFY(run.x >= 1440 + 2000);
    }
    QCOMPARE(page.blocks[1].top, below.count());
}

void tst_page_composer::repeatsTheHeadingWhereItBreaksThePageItself()
{
    Started composer;
    composer.writeParagraph(u"Dates");
    composer.heading();
    for (int i = 0; i < 120; ++i)
        composer.row(QString(QString::number(i) + u"|1|x;"));
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(document->pageCount(), 3);
    int next = 0;
    for (int page = 0; page < document->pageCount(); ++page) {
        QStringList texts = blockTexts(*document, page);
        if (page == 0)
            QCOMPARE(texts.takeFirst(), QStringLiteral("Dates"));
        QCOMPARE(texts.takeFirst(), QStringLiteral("Name|Amount|Note"));
        QCOMPARE(document->pages[size_t(page)].rects.size(), 2u); // a rule above and one below it
        for (const QString &text : texts)
            QCOMPARE(text, QStringLiteral("%1|1|x").arg(next++));
        for (const Block &block : document->pages[size_t(page)].blocks)
            QVERIFY(block.bottom <= kBottom.count());
    }
    QCOMPARE(next, 120);
    const auto styleOf = [&](int page) { return document->styles[document->pages[size_t(page)].runs[page == 0 ? 1 : 0].style]; };
    QCOMPARE(styleOf(1), styleOf(0)); // repeated as it was drawn first
}

void tst_page_composer::headingComesBackAfterCaptionAndNote_data()
{
    QTest::addColumn<bool>("caption");
    QTest::newRow("a caption started the page") << true;
    QTest::newRow("a note started the page") << false;
}

void tst_page_composer::headingComesBackAfterCaptionAndNote()
{
    QFETCH(bool, caption);
    Started composer;
    composer.heading();
    composer.fillToBottom(kBottom - Twips(270));
    const int pages = composer.pageCount();
    while (composer.pageCount() == pages) {
        if (caption)
            composer.caption(u"Group");
        else
            composer.writeParagraph(u"Group");
    }
    composer.row(u"a|1|b;");
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(blockTexts(*document, 1), QStringList({QStringLiteral("Name|Amount|Note"), QStringLiteral("Group"), QStringLiteral("a|1|b")}));
}

void tst_page_composer::aForcedPageHasNoHeadingOfItsOwn()
{
    Started composer;
    composer.heading();
    composer.row(u"a|1|b;");
    composer.newPage();
    composer.row(u"c|2|d;");
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(blockTexts(*document, 1), QStringList(QStringLiteral("c|2|d")));
}

void tst_page_composer::keepsRowsWhole()
{
    Started composer;
    composer.heading();
    composer.fillToBottom(kBottom - Twips(1200));
    composer.row(u"tall|1|one\ntwo\nthree\nfour\nfive\nsix;");
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(document->pageCount(), 2);
    QCOMPARE(blockTexts(*document, 1).last(), QStringLiteral("tall|1|one two three four five six"));
}

void tst_page_composer::splitsARowTallerThanThePage()
{
    QString tall;
    for (int i = 0; i < 200; ++i)
        tall += QStringLiteral("line%1\n").arg(i);
    Started composer;
    composer.heading();
    composer.row(QString(u"a|1|" + tall + u"end;"));
    composer.row(u"z|2|y;");
    const DocumentPtr document = composer.endDocument();
    QVERIFY(document->pageCount() >= 4);
    QVERIFY(document->pageCount() <= 6);
    QString third;
    for (const Page &page : document->pages) {
        for (size_t i = 0; i < page.blocks.size(); ++i) {
            QVERIFY(page.blocks[i].bottom <= kBottom.count());
            for (const TextRun &run : page.blockRuns(i)) {
                if (run.column == 2 && page.blocks[i].kind == BlockKind::Row)
                    third += page.runText(run);
            }
        }
    }
    QCOMPARE(third, QString(tall.remove(u'\n') + u"endy"));
    QVERIFY(document->pages[1].blocks[1].continuesPreviousPage);
}

void tst_page_composer::fillsNewspaperColumnsInOrder()
{
    Started composer;
    composer.writeParagraph(u"Title");
    composer.setPageColumns(3);
    const Twips top = composer.currentY();
    composer.heading(u"2500;", u"Name;");
    for (int i = 0; i < 160; ++i)
        composer.addTable(u"2500;", u"Name;", QString(QString::number(i) + u';'), 0, 0, TableFlow::Continues);
    composer.newPage();
    composer.writeParagraph(u"new");
    const DocumentPtr document = composer.endDocument();
    int next = 0;
    int headings = 0;
    qint32 lastX = 0;
    const Page &first = document->pages.front();
    for (size_t i = 1; i < first.blocks.size(); ++i) {
        const TextRun &run = first.blockRuns(i)[0];
        QVERIFY(run.x >= lastX);
        if (run.x > lastX)
            QCOMPARE(first.runText(run).toString(), QStringLiteral("Name")); // each column starts with the heading
        if (first.blocks[i].kind == BlockKind::HeadingRow) {
            ++headings;
            QVERIFY(first.blocks[i].top >= top.count() && first.blocks[i].top < top.count() + 200);
        } else {
            QCOMPARE(first.runText(run).toString(), QString::number(next++));
        }
        lastX = run.x;
    }
    QCOMPARE(headings, 3);
    QCOMPARE(document->pages.back().text, QStringLiteral("new"));
    QCOMPARE(test::dump(*document).last().section(u' ', 1, 1), QStringLiteral("y1440"));
}

void tst_page_composer::theEmptyTextTakesALine()
{
    Started composer;
    const Twips start = composer.currentY();
    composer.writeParagraph({});
    const Twips small = composer.currentY() - start;
    QVERIFY(small > Twips(200));
    composer.setFontSize(20);
    composer.writeParagraph({});
    QVERIFY(std::abs((composer.currentY() - start - small - small * 2).count()) <= 2);
    QCOMPARE(blockTexts(*composer.endDocument(), 0), QStringList({QString(), QString()}));
}

void tst_page_composer::marginsGiveWayToWideTables_data()
{
    QTest::addColumn<int>("needed");
    QTest::addColumn<bool>("landscape");
    QTest::addColumn<int>("margin");

    QTest::newRow("narrow keeps an inch") << 5000 << false << 1440;
    QTest::newRow("a total row needs a little") << 9500 << false << 1370;
    QTest::newRow("half an inch is the least") << 20000 << false << 720;
    QTest::newRow("landscape") << 13000 << true << 1420;
}

void tst_page_composer::marginsGiveWayToWideTables()
{
    QFETCH(int, needed);
    QFETCH(bool, landscape);
    Started composer {Twips(needed), landscape ? Orientation::Landscape : Orientation::Portrait};
    composer.writeParagraph(u"x");
    const DocumentPtr document = composer.endDocument();
    QTEST(document->leftMargin.count(), "margin");
    QCOMPARE(document->leftMargin, document->rightMargin);
    QCOMPARE(document->pages[0].runs[0].x, document->leftMargin.count());
}

void tst_page_composer::narrowsWhatDoesNotFitAndSaysSo()
{
    Started composer(Twips(14000));
    composer.row(u"a|b;", u"10000|4000;");
    composer.row(u"c|d;", u"10000|4000;");
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(document->notes.size(), 1);
    QVERIFY2(document->notes[0].contains(QStringLiteral("9.72 inches")), qPrintable(document->notes[0]));
    const TextRun &second = document->pages[0].runs[1];
    QVERIFY(std::abs(second.x - (720 + 10000 * 10800 / 14000 + 80)) <= 1);
}

void tst_page_composer::resetForgetsEverything()
{
    const auto compose = [](PageComposer &composer) {
        composer.reset();
        composer.startDocument({});
        composer.setFontSize(0);
        composer.writeParagraph(u"plain");
        composer.addTable(u"3000;", {}, u"cell;", 0, 0, TableFlow::Starts);
        return test::dump(*composer.endDocument());
    };
    PageComposer fresh;
    const QStringList expected = compose(fresh);
    Started used(Twips(12000), Orientation::Landscape);
    used.setFontName(QStringLiteral("Times New Roman"));
    used.setFontSize(17);
    used.setBold(true);
    used.setLeftIndent(700);
    used.setPageColumns(2);
    used.heading();
    used.row(u"a|b|c;");
    QCOMPARE(compose(used), expected);
    QCOMPARE(used.fontName(), QStringLiteral("Arial"));
    QCOMPARE(used.fontSize(), 10.0);
}

void tst_page_composer::refusesImpossibleFontSizes()
{
    PageComposer composer;
    for (const double size : {-1.0, 0.5, 145.0, 1e9})
        QVERIFY_EXCEPTION_THROWN(composer.setFontSize(size), ComposeError);
    composer.startDocument({});
    QVERIFY_EXCEPTION_THROWN(composer.addTable(u"abc|;", {}, u"x;", 0, 0, TableFlow::Starts), ComposeError);
}

void tst_page_composer::headersTakeEveryScript()
{
    const QString centre = QString::fromUtf8("\u75c5\u4eba \u0645\u0631\u062d\u0628\u0627");
    Started composer;
    composer.setHeader(QString(u"left|" + centre + u"|Page %d"));
    composer.writeParagraph(u"x");
    const DocumentPtr document = composer.endDocument();
    const Page furniture = pageFurniture(*document, 0);
    QCOMPARE(furniture.text, QString(u"left" + centre + u"Page 1"));
    QVERIFY(!furniture.shaped.empty());
    for (const ShapedGlyphs &shaped : furniture.shaped) {
        QVERIFY(shaped.face < document->faces.size());
        QVERIFY(std::ranges::none_of(shaped.glyphs, [](quint32 glyph) { return glyph == 0; }));
    }
}

void tst_page_composer::anAbandonedDocumentIsNotWhole()
{
    Started composer;
    composer.writeParagraph(u"half");
    const DocumentPtr half = composer.abandonDocument();
    QVERIFY(!half->isWhole);
    QVERIFY(!composer.endDocument());
    composer.reset();
    composer.startDocument({});
    QVERIFY(composer.endDocument()->isWhole);
}

void tst_page_composer::noColumnIsTooNarrowToEnd()
{
    QString format;
    QString body;
    for (int i = 0; i < 200; ++i) {
        format += (i ? u"|100" : u"100");
        body += QStringLiteral("%1cell%2").arg(i ? QStringLiteral("|") : QString()).arg(i);
    }
    Started composer(Twips(20000));
    composer.setPageColumns(32767);
    composer.setPageColumns(1);
    composer.addTable(format, {}, body, 0, 0, TableFlow::Starts);
    const QString big(1 << 20, u'x');
    composer.addTable(u"2000;", {}, big, 0, 0, TableFlow::Starts);
    const DocumentPtr document = composer.endDocument();
    QVERIFY(document->pageCount() < 2000);
    QCOMPARE(test::letters(*document).count(u'x'), qsizetype(1 << 20));
    QVERIFY(test::letters(*document).contains(QStringLiteral("cell199")));
}

void tst_page_composer::charactersWithoutGlyphAreCounted()
{
    const QString nowhere = QString::fromUcs4(U"\U0010f0f0");
    PageComposer composer;
    composer.startDocument({});
    composer.writeParagraph(u"Every font has these.");
    composer.newPage();
    composer.writeParagraph(QString(u"a" + nowhere + u"b" + nowhere));
    composer.newPage();
    composer.addTable(u"2000|2000;", {}, QString(u"x|" + nowhere), kNoShade, kNoShade, TableFlow::Starts);
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(document->notes.join(u'\n'), QStringLiteral("3 characters have no glyph in any font and show as boxes, pages 2 and 3."));
    QVERIFY(documentText(*document).contains(nowhere));
}

QTEST_MAIN(tst_page_composer)
#include "tst_page_composer.moc"
