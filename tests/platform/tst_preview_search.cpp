#include "platform/preview/document_search.h"
#include "platform/preview/preview_bar.h"
#include "platform/preview/preview_finder.h"
#include "support/preview_fixture.h"
#include "support/report_fixture.h"
#include "support/suite.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

using namespace corvane;

class tst_preview_search : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreFound_data();
    void textsAreFound();
    void hitsAgreeWithAPlainSearch();
    void everyPathFindsTheSame();
    void headersAndFootersAreNotSearched();
    void theNextHitGoesRoundTheEnd();
    void aLongSearchStartsWhereTheReaderIs();
    void typingFindsAndKeysStep();
    void theCaseMattersWhenAsked();
    void hitsAreMarkedOnVisiblePages();
    void aHitOutOfSightComesIntoView();
    void aNewReportIsSearchedAgain();
    void nothingToFindIsSaid();
};

namespace {

/// All hits, each as the letters that it marks.
QStringList hitsIn(
    const DocumentPtr &document, const QString &text, CaseRule rule = CaseRule::Ignore)
{
    DocumentSearch search;
    search.setDocument(document);
    search.start(text, rule, 0);
    search.finish();
    QStringList hits;
    for (int page = 0; page < document->pageCount(); ++page) {
        for (const TextStretch &hit : search.hitsOn(page))
            hits += document->pages[size_t(page)].text.mid(hit.begin, hit.end - hit.begin);
    }
    return hits;
}

struct Window
{
    QWidget widget;
    Preview *preview = new Preview;
    PreviewBar *bar = new PreviewBar(preview);

    explicit Window(const DocumentPtr &document)
    {
        auto *layout = new QVBoxLayout(&widget);
        layout->addWidget(bar);
        layout->addWidget(preview);
        widget.resize(1000, 700);
        widget.show();
        widget.activateWindow();
        preview->setFocus();
        preview->setDocument(document);
        QCoreApplication::processEvents();
    }

    QLineEdit *box() const { return bar->findChild<QLineEdit *>(QStringLiteral("findBox")); }
    QString state() const { return bar->findChild<QLabel *>(QStringLiteral("findState"))->text(); }
    QToolButton *button(const char *name) const
    {
        return bar->findChild<QToolButton *>(QLatin1StringView(name));
    }

    void type(const QString &text) const
    {
        QTest::keyClick(preview, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(box()->hasFocus());
        QTest::keyClicks(box(), text);
        QTRY_VERIFY(preview->finder().isFinished());
    }
};

} // namespace

void tst_preview_search::textsAreFound_data()
{
    QTest::addColumn<QString>("paragraph");
    QTest::addColumn<QString>("needle");
    QTest::addColumn<QStringList>("hits");

    const auto row
        = [](const char *name, const QString &paragraph, const QString &needle,
              const QStringList &hits) { QTest::newRow(name) << paragraph << needle << hits; };
    const QString wrapped = QStringLiteral("word ").repeated(40) + u"last of all "
        + QStringLiteral("word ").repeated(5);
    row("the case does not matter", u"Ann ANN annual"_qs, u"aNN"_qs,
        {u"Ann"_qs, u"ANN"_qs, u"ann"_qs});
    row("a plain letter finds accents", u"D\u00edaz, Nov\u00e1k"_qs, u"diaz"_qs, {u"D\u00edaz"_qs});
    row("an accent finds plain letters", u"Diaz"_qs, u"d\u00edaz"_qs, {u"Diaz"_qs});
    row("an accent of its own belongs to its letter", u"Rene\u0301 x"_qs, u"rene"_qs,
        {u"Rene\u0301"_qs});
    row("a ligature is its letters", u"o\ufb03ce"_qs, u"office"_qs, {u"o\ufb03ce"_qs});
    row("part of a ligature marks it whole", u"o\ufb03ce"_qs, u"of"_qs, {u"o\ufb03"_qs});
    row("a ligature is one hit, however often it matches", u"o\ufb03ce f"_qs, u"f"_qs,
        {u"\ufb03"_qs, u"f"_qs});
    row("sharp s is two", u"Stra\u00dfe"_qs, u"STRASSE"_qs, {u"Stra\u00dfe"_qs});
    row("typed quotes find printed ones", u"O\u2019Neill"_qs, u"o'neill"_qs, {u"O\u2019Neill"_qs});
    row("dashes are one sign", u"9\u201311"_qs, u"9-11"_qs, {u"9\u201311"_qs});
    row("a soft hyphen is nothing", u"appoint\u00adment"_qs, u"appointment"_qs,
        {u"appoint\u00adment"_qs});
    row("a fixed blank is a blank", u"Dr.\u00a0Brook"_qs, u"dr. brook"_qs, {u"Dr.\u00a0Brook"_qs});
    row("blanks in a row are one", u"North   Clinic"_qs, u"north clinic"_qs,
        {u"North   Clinic"_qs});
    row("blanks around count", u"North Clinic, Northern"_qs, u" clinic"_qs, {u" Clinic"_qs});
    row("a forced line break is a blank", u"North\nClinic"_qs, u"north clinic"_qs,
        {u"North\nClinic"_qs});
    row("a broken line goes on", wrapped, u"word last of all word"_qs,
        {u"word last of all word"_qs});
    row("hits do not overlap", u"aaaaa"_qs, u"aa"_qs, {u"aa"_qs, u"aa"_qs});
    row("other scripts", u"\u041f\u0430\u0432\u0435\u043b"_qs, u"\u043f\u0430\u0432"_qs,
        {u"\u041f\u0430\u0432"_qs});
    row("letters beyond the first plane", u"x\U0001F600y"_qs, u"\U0001F600Y"_qs,
        {u"\U0001F600y"_qs});
    row("nothing", u"Ann"_qs, u"Bo"_qs, {});
    row("longer than the page", u"Ann"_qs, u"Anna-Maria"_qs, {});
}

void tst_preview_search::textsAreFound()
{
    QFETCH(QString, paragraph);
    QFETCH(QString, needle);
    QFETCH(QStringList, hits);
    QCOMPARE(hitsIn(test::ReportFixture().paragraph(paragraph).finish(), needle), hits);
}

/// Cells stand side by side in a page's text: what only their neighbourhood spells is no hit, and
/// must not swallow the hit behind it.
void tst_preview_search::hitsAgreeWithAPlainSearch()
{
    const QStringList cells{u"xa"_qs, u"aay"_qs, u"Anna"_qs, u"Nan"_qs, u""_qs, u"na na"_qs,
        u"aaaa"_qs, u"n\u00e4"_qs, u"b"_qs};
    test::ReportFixture report;
    for (int i = 0; i < 300; ++i)
        report.row(cells[i % 9] + u'|' + cells[(i * 5 + 2) % 9] + u'|' + cells[(i * 7 + 1) % 9]);
    const DocumentPtr document = report.finish();
    const QString plain = documentText(*document).replace(u'\u00e4', u'a');
    for (const QString &needle : {u"aa"_qs, u"a"_qs, u"na"_qs, u"nn"_qs, u"an"_qs, u"a n"_qs}) {
        int expected = 0;
        for (qsizetype at = plain.indexOf(needle, 0, Qt::CaseInsensitive); at >= 0;
             at = plain.indexOf(needle, at + needle.size(), Qt::CaseInsensitive))
            ++expected;
        QCOMPARE(hitsIn(document, needle).size(), expected);
    }
}

/// Text of letters that search folds in every way, most of it plain; a long plain stretch is looked
/// at many letters at a time.
static QString someText(QRandomGenerator &random, bool keepsLength)
{
    const QStringList pieces{u"an"_qs, u"A"_qs, u"n"_qs, u" "_qs, u"na "_qs, u"\u00e4"_qs,
        u"\u0410n"_qs, u"\u00a0b"_qs, u"Nan, a bandana and an anorak."_qs, u"xyz"_qs, u"\ufb01"_qs,
        u"\u00df"_qs, u"a\u0308"_qs, u"\u00ad"_qs, u"  "_qs, u"\U0001F600"_qs};
    QString text;
    for (int i = random.bounded(60); i >= 0; --i)
        text += pieces[random.bounded(keepsLength ? 10 : int(pieces.size()))];
    return keepsLength ? text.replace(QRegularExpression(u"[ \u00a0]+"_qs), u" "_qs) : text;
}

/// What folding a whole page letter by letter finds.
static std::vector<TextStretch> hitsInFolded(
    const Page &page, const QString &needle, CaseRule rule, const SearchFolding &folding)
{
    const SearchFolding::Folded folded = folding.fold(page.text, rule);
    const std::u16string pattern = folding.fold(needle, rule).text;
    std::vector<TextStretch> hits;
    const auto origin = [&](size_t at) { return originOf(folded.steps, quint32(at)); };
    for (size_t at = folded.text.find(pattern); at != std::u16string::npos;
         at = folded.text.find(pattern, at)) {
        const size_t last = at + pattern.size() - 1;
        const TextStretch hit{origin(at), std::max(origin(last + 1), origin(last) + 1)};
        ++at;
        if (!isWithinOneCell(page, hit))
            continue;
        hits.push_back(hit);
        while (origin(at) < hit.end)
            ++at;
    }
    return hits;
}

void tst_preview_search::everyPathFindsTheSame()
{
    QRandomGenerator random(20'000);
    const SearchFolding folding;
    qsizetype found = 0;
    for (int round = 0; round < 18; ++round) {
        test::ReportFixture report;
        for (int i = 0; i < 20; ++i) {
            const bool keeps = round % 3 > 0;
            report.paragraph(someText(random, keeps))
                .row(someText(random, keeps) + u'|' + someText(random, keeps) + u"|an"_qs);
        }
        const DocumentPtr document = report.finish();
        DocumentSearch search;
        search.setDocument(document);
        for (const QString &needle : {u"an"_qs, u"n"_qs, u"AN"_qs, u"na n"_qs, u"\u00e4n"_qs,
                 u"n "_qs, u"bandana and an"_qs, u"\u0430"_qs, u"fi"_qs, u"ss"_qs}) {
            for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match}) {
                search.start(needle, rule, 0);
                search.finish();
                for (int page = 0; page < document->pageCount(); ++page) {
                    const std::vector<TextStretch> expected
                        = hitsInFolded(document->pages[size_t(page)], needle, rule, folding);
                    found += qsizetype(expected.size());
                    QCOMPARE(search.hitsOn(page), expected);
                }
            }
        }
    }
    QVERIFY(found > 30'000);
}

/// What stands on every page would drown what is looked for.
void tst_preview_search::headersAndFootersAreNotSearched()
{
    const std::shared_ptr<Document> document = test::ReportFixture()
                                                   .paragraph(u"North Clinic"_qs)
                                                   .paragraph(u"Balances of the clinic"_qs)
                                                   .paragraph(u"Clinic, page 1"_qs)
                                                   .finish();
    document->pages[0].blocks[0].kind = BlockKind::Furniture;
    document->pages[0].blocks[2].kind = BlockKind::Furniture;
    QCOMPARE(hitsIn(document, u"clinic"_qs), QStringList{u"clinic"_qs});
}

void tst_preview_search::theNextHitGoesRoundTheEnd()
{
    DocumentSearch search;
    search.setDocument(test::pagesOfText(3));
    search.start(QStringLiteral("line 46"), CaseRule::Ignore, 1);
    search.finish();
    QCOMPARE(search.hitCount(), 3);
    std::optional<SearchHit> hit = search.first();
    for (const qint64 number : {2, 3, 1, 2}) {
        QCOMPARE(hit->number, number);
        QCOMPARE(hit->page, int(number - 1));
        hit = search.after(*hit);
    }
    for (const qint64 number : {3, 2, 1, 3, 2}) {
        QCOMPARE(hit->number, number);
        hit = search.before(*hit);
    }
}

void tst_preview_search::aLongSearchStartsWhereTheReaderIs()
{
    DocumentSearch search;
    search.setDocument(test::pagesOfText(5'000));
    search.start(QStringLiteral("line 7"), CaseRule::Ignore, 4'000);
    search.work(1);
    QVERIFY(!search.isFinished());
    QCOMPARE(search.first()->page, 4'000);
    QCOMPARE(search.hitCount(), 1);
    // Asking for the next one does not wait for the end to be counted in passing.
    QCOMPARE(search.after(*search.first())->number, 4'002);
    QVERIFY(search.isFinished());
    QCOMPARE(search.hitCount(), 5'000);
}

void tst_preview_search::typingFindsAndKeysStep()
{
    Window window(test::pagesOfText(41));
    window.preview->goToPage(10);
    window.type(QStringLiteral("line 12"));
    QCOMPARE(window.state(), QStringLiteral("11 of 41"));
    QCOMPARE(window.preview->currentPage(), 10);
    QTest::keyClick(window.box(), Qt::Key_Return);
    QCOMPARE(window.state(), QStringLiteral("12 of 41"));
    QCOMPARE(window.preview->currentPage(), 11);
    QTest::keyClick(window.box(), Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(window.box(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(window.state(), QStringLiteral("10 of 41"));
    QTest::mouseClick(window.button("findNext"), Qt::LeftButton);
    QCOMPARE(window.state(), QStringLiteral("11 of 41"));
    window.preview->viewport()->grab();
    QCOMPARE(window.preview->lastPaint().marks, 1);
    QTest::keyClick(window.box(), Qt::Key_Escape);
    QCOMPARE(window.state(), QString());
    window.preview->viewport()->grab();
    QCOMPARE(window.preview->lastPaint().marks, 0);
    QVERIFY(window.preview->hasFocus());
    QVERIFY(!window.button("findNext")->isEnabled());
}

void tst_preview_search::theCaseMattersWhenAsked()
{
    Window window(test::ReportFixture().paragraph(QStringLiteral("Ann ann ANN \u00c1nn")).finish());
    window.type(QStringLiteral("Ann"));
    QCOMPARE(window.state(), QStringLiteral("1 of 4"));
    QTest::mouseClick(window.button("matchCase"), Qt::LeftButton);
    QCOMPARE(window.state(), QStringLiteral("1 of 2"));
}

void tst_preview_search::hitsAreMarkedOnVisiblePages()
{
    Window window(test::pagesOfText(2'000));
    window.preview->setZoomMode(ZoomMode::WholePage);
    window.type(QStringLiteral("line"));
    QCoreApplication::processEvents();
    window.preview->viewport()->grab();
    QCOMPARE(window.preview->lastPaint().pages, 1);
    QCOMPARE(window.preview->lastPaint().marks, 46);

    // A mark tints the paper around the letters and leaves them black.
    const QImage image = window.preview->viewport()->grab().toImage();
    int tinted = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            tinted += image.pixelColor(x, y).hsvSaturation() > 90 ? 1 : 0;
    }
    QVERIFY2(tinted > 46 * 40, qPrintable(QString::number(tinted)));
}

void tst_preview_search::aHitOutOfSightComesIntoView()
{
    Window window(test::pagesOfText(3));
    window.preview->setZoomPercent(400);
    window.preview->verticalScrollBar()->setValue(0);
    window.type(QStringLiteral("page 2, line 44"));
    QCOMPARE(window.preview->currentPage(), 1);
    window.preview->viewport()->grab();
    QCOMPARE(window.preview->lastPaint().marks, 1);
    window.preview->setViewMode(ViewMode::SinglePage);
    window.box()->clear();
    window.type(QStringLiteral("page 3, line 2"));
    QCOMPARE(window.preview->currentPage(), 2);
}

void tst_preview_search::aNewReportIsSearchedAgain()
{
    Window window(test::pagesOfText(4));
    window.type(QStringLiteral("line 3"));
    window.preview->goToPage(2);
    window.preview->setDocument(test::pagesOfText(9));
    QTRY_COMPARE(window.state(), QStringLiteral("1 of 99")); // lines 3 and 30 to 39
    QCOMPARE(window.preview->currentPage(), 0);
    QCOMPARE(window.preview->verticalScrollBar()->value(), 0);
    window.preview->setDocument({});
    QVERIFY(!window.box()->isEnabled());
    QCOMPARE(window.state(), QString());
}

void tst_preview_search::nothingToFindIsSaid()
{
    Window window(test::pagesOfText(2));
    window.type(QStringLiteral("zebra"));
    QCOMPARE(window.state(), QStringLiteral("Not found"));
    QTest::keyClick(window.box(), Qt::Key_Return);
    QCOMPARE(window.state(), QStringLiteral("Not found"));
}

QTEST_MAIN(tst_preview_search)
#include "tst_preview_search.moc"
