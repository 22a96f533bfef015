#include "platform/preview/document_search.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_finder.h"
#include "platform/preview/preview_pane.h"
#include "platform/preview/thumbnail_list.h"
#include "support/allocations.h"
#include "support/preview_fixture.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

/// What a long report costs, counted instead of timed.
class tst_preview_scale : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void openingDoesNotLookAtPages();
    void everyPageCostsTheSame();
    void marksCostTheirPageOnly();
    void searchingAllocatesNothingPerPage_data();
    void searchingAllocatesNothingPerPage();
    void aCopyTakesTheMemoryOfItsText();
    void fewThumbnailsAreKept();
};

namespace {

constexpr int kMany = 20'000;

DocumentPtr longReport()
{
    static const DocumentPtr document = test::pagesOfText(kMany);
    return document;
}

void show(QWidget &widget)
{
    widget.resize(1000, 900);
    widget.show();
    QCoreApplication::processEvents();
}

struct Cost
{
    Preview::PaintCount painted;
    qint64 allocations = 0;
};

/// Of a jump with its repaint, when fonts and glyphs are known.
Cost costOf(Preview &preview, int page)
{
    Cost cost;
    for (int round = 0; round < 2; ++round) {
        preview.goToPage(page == 0 ? 1 : page - 1);
        QCoreApplication::processEvents();
        preview.goToPage(page);
        const test::Allocations allocations;
        preview.viewport()->repaint();
        cost = {preview.lastPaint(), allocations.count()};
    }
    return cost;
}

} // namespace

void tst_preview_scale::openingDoesNotLookAtPages()
{
    const DocumentPtr shortReport = test::pagesOfText(200);
    PreviewPane pane;
    show(pane);
    const auto open = [&](const DocumentPtr &document) {
        pane.preview()->setDocument(nullptr);
        QCoreApplication::processEvents();
        const test::Allocations allocations;
        pane.preview()->setDocument(document);
        QCoreApplication::processEvents();
        return std::pair(allocations.count(), allocations.peak());
    };
    open(shortReport); // fonts and icons are made once
    const auto [few, fewBytes] = open(shortReport);
    const auto [many, manyBytes] = open(longReport());
    // Lists of numbers that grow, the thumbnails' places among them: some more allocations for a
    // hundred times the pages.
    QVERIFY2(many < few + 1'000, qPrintable(u"%1, %2"_qs.arg(few).arg(many)));
    const qint64 perPage = (manyBytes - fewBytes) / kMany;
    QVERIFY2(perPage < 400, qPrintable(QString::number(perPage)));
}

void tst_preview_scale::everyPageCostsTheSame()
{
    Preview preview;
    show(preview);
    preview.setDocument(longReport());
    for (const ZoomMode mode : {ZoomMode::WholePage, ZoomMode::PageWidth}) {
        preview.setZoomMode(mode);
        QCoreApplication::processEvents();
        const Cost first = costOf(preview, 1);
        const Cost last = costOf(preview, kMany - 2);
        QVERIFY(first.painted.operations > 0 && first.painted.operations <= 2 * 47);
        QCOMPARE(last.painted.pages, first.painted.pages);
        QCOMPARE(last.painted.operations, first.painted.operations);
        QVERIFY(last.allocations <= first.allocations + first.allocations / 10);
    }
}

void tst_preview_scale::marksCostTheirPageOnly()
{
    Preview preview;
    show(preview);
    preview.setZoomMode(ZoomMode::WholePage);
    const auto cost = [&](const DocumentPtr &document) {
        preview.setDocument(document);
        TextSelection all;
        all.selectAll(*document);
        preview.setSelection(all);
        preview.finder().find(u"line"_qs, CaseRule::Ignore, 0);
        while (!preview.finder().isFinished())
            QCoreApplication::processEvents();
        return costOf(preview, document->pageCount() / 2);
    };
    const Cost small = cost(test::pagesOfText(40));
    const Cost large = cost(longReport());
    QCOMPARE(small.painted.marks, 2 * 46);
    QCOMPARE(large.painted.marks, small.painted.marks);
    QVERIFY(large.allocations <= small.allocations + small.allocations / 10);
}

void tst_preview_scale::searchingAllocatesNothingPerPage_data()
{
    QTest::addColumn<QString>("needle");
    QTest::addColumn<qint64>("hits");
    QTest::newRow("nowhere") << u"zebra"_qs << qint64(0);
    QTest::newRow("on every line") << u"line"_qs << qint64(46 * kMany);
}

void tst_preview_scale::searchingAllocatesNothingPerPage()
{
    QFETCH(QString, needle);
    QFETCH(qint64, hits);
    DocumentSearch search;
    search.setDocument(longReport());
    qint64 letters = 0;
    for (const Page &page : longReport()->pages)
        letters += page.text.size();
    // The folded text is kept: a byte a letter, and some numbers a page.
    {
        const test::Allocations allocations;
        int slices = 1;
        while (!search.prepare(CaseRule::Match, 2'000'000))
            ++slices;
        QVERIFY2(qAbs(slices - letters / 2'000'000) < 4, qPrintable(QString::number(slices)));
        QVERIFY2(
            allocations.count() < kMany / 20, qPrintable(QString::number(allocations.count())));
        QVERIFY2(allocations.peak() < letters + qint64(30) * kMany,
            qPrintable(QString::number(allocations.peak())));
    }
    const test::Allocations allocations;
    search.start(needle, CaseRule::Match, kMany / 2);
    search.finish();
    QCOMPARE(search.hitCount(), hits);
    QVERIFY2(allocations.count() < 100, qPrintable(QString::number(allocations.count())));
    QVERIFY2(allocations.peak() < qint64(8) * kMany, qPrintable(QString::number(allocations.peak())));
}

void tst_preview_scale::aCopyTakesTheMemoryOfItsText()
{
    const DocumentPtr document = longReport();
    const LetterPlace end{kMany - 1, quint32(document->pages.back().text.size())};
    const test::Allocations allocations;
    const QString copy = textForCopying(*document, {0, 0}, end);
    QCOMPARE(copy.count(u'\n'), 46 * kMany - 1);
    const qint64 size = copy.size() * qsizetype(sizeof(QChar));
    QVERIFY2(allocations.peak() < size + size / 4, qPrintable(QString::number(allocations.peak())));
    QVERIFY2(allocations.count() < kMany, qPrintable(QString::number(allocations.count())));
}

void tst_preview_scale::fewThumbnailsAreKept()
{
    ThumbnailList list;
    list.resize(200, 900);
    list.show();
    list.setDocument(longReport());
    for (int page = 0; page < 1'000; page += 4) {
        list.scrollTo(list.model()->index(page * 20, 0), QAbstractItemView::PositionAtTop);
        list.viewport()->grab();
    }
    QVERIFY2(list.drawnPages() > 20 && list.drawnPages() <= 200,
        qPrintable(QString::number(list.drawnPages())));
}

QTEST_MAIN(tst_preview_scale)
#include "tst_preview_scale.moc"
