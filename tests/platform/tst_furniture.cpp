#include "support/document_builder.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr qint32 kLeft = 1440;
constexpr qint32 kRight = 12240 - 1440;
constexpr qint32 kBand = 1440;

/// Where a run's letters stand, twips.
QRectF boxOf(const Document &document, const Page &page, const TextRun &run)
{
    const TextStyle &style = document.styleOf(page, run);
    const FontFace &face = *document.faces[style.face];
    const double scale = double(style.size.count()) / face.unitsPerEm();
    return {double(run.x), run.y - face.ascent() * scale, double(*face.plainWidth(page.runText(run))) * scale,
        (face.ascent() + face.descent()) * scale};
}

Document documentWith(const Furniture &header, const Furniture &footer, double points = 10)
{
    test::DocumentBuilder builder;
    builder.setStyle(QStringLiteral("Liberation Sans"), points);
    builder.newPage();
    Document document = builder.finish();
    document.header = header;
    document.footer = footer;
    document.header.style = document.footer.style = 1;
    document.header.quietStyle = document.footer.quietStyle = 1;
    return document;
}

QString words(int count)
{
    return QStringList(count, QStringLiteral("word")).join(u' ');
}

} // namespace

class tst_furniture : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void emptyFurnitureDrawsNothing();
    void partsStandAtTheirPlaces();
    void everyLetterStandsFreeWithinTheBand_data();
    void everyLetterStandsFreeWithinTheBand();
};

void tst_furniture::emptyFurnitureDrawsNothing()
{
    const Page page = pageFurniture(documentWith({}, {}), 0);
    QVERIFY(page.runs.empty());
    QVERIFY(page.rects.empty());
    QCOMPARE(page.blocks.size(), size_t(2));
}

void tst_furniture::partsStandAtTheirPlaces()
{
    const Furniture all {QStringLiteral("Left"), QStringLiteral("Centre"), QStringLiteral("Page %d")};
    const Document document = documentWith(all, {QStringLiteral("%d of the foot"), {}, {}});
    const Page page = pageFurniture(document, 41);
    QCOMPARE(page.runs.size(), size_t(4));
    QCOMPARE(page.runText(page.runs[2]), QStringLiteral("Page 42"));
    QCOMPARE(page.runText(page.runs[3]), QStringLiteral("42 of the foot"));
    QCOMPARE(page.blockRuns(1).size(), size_t(1));
    const QRectF left = boxOf(document, page, page.runs[0]);
    const QRectF centre = boxOf(document, page, page.runs[1]);
    const QRectF right = boxOf(document, page, page.runs[2]);
    const QRectF foot = boxOf(document, page, page.runs[3]);
    QCOMPARE(left.left(), double(kLeft));
    QVERIFY(std::abs(centre.center().x() - 6120) <= 1);
    QVERIFY(std::abs(right.right() - kRight) <= 1);
    QCOMPARE(page.runs[0].y, 720);
    QVERIFY2(std::abs((15840 - foot.bottom()) - left.top()) <= 1, "the footer mirrors the header");

    QCOMPARE(page.rects.size(), size_t(2));
    QCOMPARE(page.rects[0].y, 1080);
    QCOMPARE(page.rects[1].y + page.rects[1].height, 15840 - 1080);
    QCOMPARE(page.rects[0].x, kLeft);
    QCOMPARE(page.rects[0].width, kRight - kLeft);
}

void tst_furniture::everyLetterStandsFreeWithinTheBand_data()
{
    QTest::addColumn<Furniture>("furniture");
    QTest::addColumn<double>("points");
    QTest::addColumn<bool>("shrinks");

    QTest::newRow("one long part has the line") << Furniture {words(18), {}, {}} << 10.0 << false;
    QTest::newRow("left and right share") << Furniture {words(14), {}, words(14)} << 10.0 << false;
    QTest::newRow("all wrap in thirds") << Furniture {words(12), words(15), words(12)} << 10.0 << false;
    QTest::newRow("a centre wide enough to reach the left") << Furniture {words(3), words(17), {}} << 10.0 << false;
    QTest::newRow("a word without a blank") << Furniture {{}, QString(150, u'w'), QStringLiteral("x")} << 10.0 << true;
    QTest::newRow("lines of its own") << Furniture {QStringLiteral("a\nb"), QStringLiteral("c\n\nd"), {}} << 10.0 << false;
    QTest::newRow("too much for the band") << Furniture {words(300), words(300), words(300)} << 10.0 << true;
    QTest::newRow("the longest text a definition can hold") << Furniture {words(1600), {}, words(2)} << 12.0 << true;
    QTest::newRow("large letters") << Furniture {QStringLiteral("Head"), {}, QStringLiteral("Line")} << 40.0 << false;
    QTest::newRow("huge letters") << Furniture {QStringLiteral("Head"), {}, QStringLiteral("Line")} << 200.0 << true;
}

void tst_furniture::everyLetterStandsFreeWithinTheBand()
{
    QFETCH(Furniture, furniture);
    QFETCH(double, points);
    QFETCH(bool, shrinks);
    const Document document = documentWith(furniture, furniture, points);
    const Page page = pageFurniture(document, 0);
    QString shown;
    std::vector<QRectF> boxes;
    for (const TextRun &run : page.runs) {
        const QRectF box = boxOf(document, page, run);
        const QRectF rule = QRectF(kLeft, page.rects[boxes.size() < page.blockRuns(0).size() ? 0 : 1].y, kRight - kLeft, 10);
        QVERIFY(box.left() >= kLeft - 1 && box.right() <= kRight + 1);
        QVERIFY((box.top() >= 0 && box.bottom() <= kBand) || (box.top() >= 15840 - kBand && box.bottom() <= 15840));
        QVERIFY(!box.intersects(rule));
        for (const QRectF &other : boxes)
            QVERIFY(!box.adjusted(2, 2, -2, -2).intersects(other));
        boxes.push_back(box);
        shown += page.runText(run) + u' ';
    }
    const QString part = QString(furniture.left + u' ' + furniture.centre + u' ' + furniture.right);
    QCOMPARE(QString(shown).remove(u' '), QString(part + part).remove(u' ').remove(u'\n'));
    QCOMPARE(!page.ownStyles.empty(), shrinks);
}

QTEST_MAIN(tst_furniture)
#include "tst_furniture.moc"
