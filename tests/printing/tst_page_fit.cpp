#include "platform/printing/page_fit.h"
#include "platform/printing/page_selection.h"
#include "support/document_builder.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QSizeF kLetter(12240, 15840);
const QSizeF kA4(11906, 16838);
const QSizeF kA5(8391, 11906);
/// Everything within one inch.
const QRectF kUsualInk(1440, 720, 9360, 14400);

QRectF within(QSizeF paper, double margin)
{
    return QRectF({}, paper).marginsRemoved({margin, margin, margin, margin});
}

} // namespace

class tst_page_fit : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void pagesFitTheirPaper_data();
    void pagesFitTheirPaper();
    void inkIsFound();
    void pagesComeInOrder_data();
    void pagesComeInOrder();
};

void tst_page_fit::pagesFitTheirPaper_data()
{
    QTest::addColumn<QRectF>("ink");
    QTest::addColumn<QSizeF>("paper");
    QTest::addColumn<QRectF>("printable");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QPointF>("origin");

    QTest::newRow("margins of the printer that no ink reaches change nothing")
        << kUsualInk << kLetter << within(kLetter, 360) << 1.0 << QPointF(0, 0);
    QTest::newRow("other paper that all ink fits on: own size, centred")
        << kUsualInk << kA4 << within(kA4, 360) << 1.0 << QPointF(-167, 499);
    QTest::newRow("larger paper") << kUsualInk << kLetter * 2 << within(kLetter * 2, 360) << 1.0
                                  << QPointF(6120, 7920);
    QTest::newRow("smaller paper: the page shrinks into the printable area")
        << kUsualInk << kLetter / 2 << within(kLetter / 2, 0) << 0.5 << QPointF(0, 0);
    QTest::newRow("ink in the printer's margin")
        << QRectF({}, kLetter) << kLetter << within(kLetter, 612) << 0.9 << QPointF(612, 792);
    QTest::newRow("a wide page on upright paper: even in both directions, centred")
        << QRectF({}, kLetter.transposed()) << kLetter << within(kLetter, 0) << 12240.0 / 15840
        << QPointF(0, (15840 - 12240.0 * 12240 / 15840) / 2);
    QTest::newRow("uneven margins of the printer")
        << QRectF({}, kLetter) << kLetter << QRectF(0, 0, 12240, 7920) << 0.5 << QPointF(3060, 0);
    QTest::newRow("nothing on the page") << QRectF() << kA5 << within(kA5, 360) << 1.0
                                         << QPointF((8391 - 12240) / 2.0, (11906 - 15840) / 2.0);
}

void tst_page_fit::pagesFitTheirPaper()
{
    QFETCH(QRectF, ink);
    QFETCH(QSizeF, paper);
    QFETCH(QRectF, printable);
    QFETCH(double, scale);
    QFETCH(QPointF, origin);
    const QSizeF page = ink.width() > ink.height() ? kLetter.transposed() : kLetter;

    const PageFit fit = fitPage(page, ink, paper, printable);
    QCOMPARE(fit.scale, scale);
    QCOMPARE(fit.origin, origin);
    QCOMPARE(fit.isScaled(), scale < 1);
}

void tst_page_fit::inkIsFound()
{
    test::DocumentBuilder builder;
    builder.newPage();
    builder.paragraph(QStringLiteral("Wide"));
    builder.newPage();
    builder.rect(100, 200, 300, 400, 0xff000000);
    builder.newPage();
    builder.shapedParagraph(QStringLiteral("مرحبا"));
    builder.document().footer.right = QStringLiteral("Page %d");
    const Document document = builder.finish();

    const auto inkOf = [&document](int page) { return inkedArea(document, std::vector{page}); };
    QVERIFY(inkOf(0).contains(QPointF(1450, 1640)));
    QVERIFY(inkOf(0).right() > 9000); // the footer at the right margin
    QVERIFY(inkOf(0).bottom() > 14400);
    QCOMPARE(inkOf(1).topLeft(), QPointF(100, 200));
    QVERIFY(inkOf(2).contains(QPointF(1600, 1640)));
    QCOMPARE(inkedArea(document, std::vector{0, 1, 2}), inkOf(0) | inkOf(1) | inkOf(2));
}

void tst_page_fit::pagesComeInOrder_data()
{
    using Ranges = QList<std::pair<int, int>>;
    QTest::addColumn<Ranges>("ranges");
    QTest::addColumn<PageOrder>("order");
    QTest::addColumn<int>("copies");
    QTest::addColumn<CopyOrder>("copyOrder");
    QTest::addColumn<std::vector<int>>("pages");

    const auto row = [](const char *name, const Ranges &ranges, PageOrder order, int copies,
                         CopyOrder copyOrder, const std::vector<int> &pages) {
        QTest::newRow(name) << ranges << order << copies << copyOrder << pages;
    };
    using enum PageOrder;
    using enum CopyOrder;
    row("ranges may overlap and come in any order", {{4, 5}, {1, 2}, {2, 4}}, FirstPageFirst, 1,
        Collated, {0, 1, 2, 3, 4});
    row("what lies beyond the document is passed over", {{0, 1}, {4, 99}}, FirstPageFirst, 1,
        Collated, {0, 3, 4});
    row("nothing of the document", {{6, 9}}, FirstPageFirst, 2, PageByPage, {});
    row("collated, last page first", {{1, 3}}, LastPageFirst, 2, Collated, {2, 1, 0, 2, 1, 0});
    row("page by page", {{1, 2}}, FirstPageFirst, 3, PageByPage, {0, 0, 0, 1, 1, 1});
}

void tst_page_fit::pagesComeInOrder()
{
    using Ranges = QList<std::pair<int, int>>;
    QFETCH(Ranges, ranges);
    QFETCH(PageOrder, order);
    QFETCH(int, copies);
    QFETCH(CopyOrder, copyOrder);
    QFETCH(std::vector<int>, pages);
    QCOMPARE(printingOrder(pagesInRanges(ranges, 5), order, copies, copyOrder), pages);
}

QTEST_MAIN(tst_page_fit)
#include "tst_page_fit.moc"
