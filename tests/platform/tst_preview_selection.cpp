#include "platform/preview/preview.h"
#include "support/preview_fixture.h"
#include "support/report_fixture.h"
#include "support/suite.h"

#include <QtGui/QClipboard>
#include <QtGui/QNativeGestureEvent>
#include <QtGui/QPointingDevice>
#include <QtTest/QtTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

using namespace corvane;

class tst_preview_selection : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void copiesPasteIntoSheets_data();
    void copiesPasteIntoSheets();
    void shapedLettersHavePlaces();
    void draggingSelects();
    void draggingBeyondTheEdgeScrolls();
    void clicksSelectWordsAndLines();
    void keysSelectAndCopy();
    void headersAndFootersStayBehind();
    void handsMoveThePaper_data();
    void handsMoveThePaper();
    void pinchingZooms();
    void linksLeadOn();
    void linksToProgramsAreRefused();
    void theMenuOffersWhatIsPossible();
    void onePageAtATimeTurnsAtItsEnds();
};

namespace {

DocumentPtr table()
{
    return test::ReportFixture()
        .paragraph(u"Balances"_qs)
        .heading(u"Name|City|Amount"_qs)
        .row(u"Abbott, Ann|North|12.50"_qs)
        .row(u"Berg, Bo||7.00"_qs)
        .row(u"Carver|South|1.25"_qs)
        .finish();
}

/// A preview at 100 %, its first page in view.
struct View
{
    Preview preview;

    explicit View(const DocumentPtr &document)
    {
        preview.resize(900, 700);
        preview.show();
        preview.activateWindow();
        preview.setFocus();
        preview.setZoomPercent(100);
        preview.setDocument(document);
        QCoreApplication::processEvents();
    }

    QWidget *paper() const { return preview.viewport(); }

    /// Where letters of the first page stand in the viewport: `across` from 0, their left, to 1,
    /// their right edge.
    QPoint at(const QString &letters, double across = 0.5) const
    {
        const Page &page = preview.document()->pages[0];
        const auto begin = quint32(page.text.indexOf(letters));
        const QRectF area = PageText(*preview.document(), 0)
                                .areasOf({begin, begin + quint32(letters.size())})
                                .front();
        const double scale = preview.zoomPercent() / 100 * preview.logicalDpiY() / 1440;
        const QPointF twips(area.left() + across * area.width(), area.center().y());
        const QPointF origin = paper()->rect().topLeft() - preview.paperPointAt({0, 0}).at * scale;
        return (origin + twips * scale).toPoint();
    }

    void drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mousePress(paper(), button, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, paper()->mapToGlobal(to), Qt::NoButton, button, {});
        QApplication::sendEvent(paper(), &move);
        QTest::mouseRelease(paper(), button, {}, to);
    }

    QString copied()
    {
        QTest::keyClick(&preview, Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    }
};

} // namespace

void tst_preview_selection::copiesPasteIntoSheets_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("copy");

    const auto row = [](const char *name, const QString &from, const QString &to,
                         const QString &copy) { QTest::newRow(name) << from << to << copy; };
    row("part of a cell", u"bott"_qs, u"Ann"_qs, u"bott, Ann"_qs);
    row("part of a row has no empty cells", u"North"_qs, u"12.50"_qs, u"North\t12.50"_qs);
    row("an empty cell keeps its column", u"Berg"_qs, u"7.00"_qs, u"Berg, Bo\t\t7.00"_qs);
    row("of several rows each keeps its columns", u"North"_qs, u"South"_qs,
        u"\tNorth\t12.50\nBerg, Bo\t\t7.00\nCarver\tSouth"_qs);
    row("paragraphs are lines", u"Balances"_qs, u"City"_qs, u"Balances\nName\tCity"_qs);
}

void tst_preview_selection::copiesPasteIntoSheets()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, copy);
    const DocumentPtr document = table();
    const QString &text = document->pages[0].text;
    const LetterPlace begin{0, quint32(text.indexOf(from))};
    const LetterPlace end{0, quint32(text.indexOf(to) + to.size())};
    QCOMPARE(textForCopying(*document, begin, end), copy);
}

void tst_preview_selection::shapedLettersHavePlaces()
{
    // Hebrew runs from right to left: its first letter stands at the right.
    const DocumentPtr document
        = test::ReportFixture().paragraph(u"\u05d0\u05d1\u05d2\u05d3"_qs).finish();
    const PageText text(*document, 0);
    const QRectF all = text.areasOf({0, 4}).front();
    const QRectF first = text.areasOf({0, 1}).front();
    QVERIFY(all.width() > 300 && first.width() > 50 && first.width() < all.width() / 2);
    QVERIFY(qAbs(first.right() - all.right()) < 1);
    QCOMPARE(text.offsetAt({all.left() - 10, all.center().y()}), 4U);
    QCOMPARE(text.offsetAt({all.right() + 10, all.center().y()}), 0U);
}

void tst_preview_selection::draggingSelects()
{
    View view(table());
    view.drag(view.at(u"North"_qs, 0.05), view.at(u"7.00"_qs, 0.95));
    QCOMPARE(view.copied(), u"\tNorth\t12.50\nBerg, Bo\t\t7.00"_qs);
    // The other way round, and beside the letters, it is the same.
    view.drag(view.at(u"7.00"_qs, 0.95) + QPoint(60, 0), view.at(u"North"_qs, 0.05));
    QCOMPARE(view.copied(), u"\tNorth\t12.50\nBerg, Bo\t\t7.00"_qs);
    view.paper()->grab();
    QCOMPARE(view.preview.lastPaint().marks, 4);

    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"Carver"_qs));
    QVERIFY(view.preview.selection().isEmpty());
    QTest::mouseClick(view.paper(), Qt::LeftButton, Qt::ShiftModifier, view.at(u"1.25"_qs, 0.95));
    QCOMPARE(view.copied(), u"ver\tSouth\t1.25"_qs);
    QTest::keyClick(&view.preview, Qt::Key_Escape);
    QVERIFY(view.preview.selection().isEmpty());
    QVERIFY(!view.preview.action(PreviewCommand::Copy)->isEnabled());
}

void tst_preview_selection::draggingBeyondTheEdgeScrolls()
{
    View view(test::pagesOfText(5));
    QTest::mousePress(view.paper(), Qt::LeftButton, {}, view.at(u"line 1"_qs));
    const QPoint below(300, view.paper()->height() + 80);
    QMouseEvent move(QEvent::MouseMove, below, view.paper()->mapToGlobal(below), Qt::NoButton,
        Qt::LeftButton, {});
    QApplication::sendEvent(view.paper(), &move);
    QTRY_VERIFY(view.preview.selection().end().page > 0);
    QTest::mouseRelease(view.paper(), Qt::LeftButton, {}, below);
    const int stopped = view.preview.verticalScrollBar()->value();
    QVERIFY(stopped > 0);
    const QString copy = view.copied();
    QVERIFY2(copy.contains(u"Page 1, line 46\nPage 2, line 1"_qs), qPrintable(copy));
}

void tst_preview_selection::clicksSelectWordsAndLines()
{
    View view(test::ReportFixture()
                  .paragraph(u"The first line of a long paragraph "_qs
                      + u"that goes on and on "_qs.repeated(8) + u"to its end."_qs)
                  .row(u"Abbott, Ann|North|12.50"_qs)
                  .finish());
    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"first"_qs));
    QCOMPARE(view.copied(), u"first"_qs);
    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"Ann"_qs, 0.99));
    QCOMPARE(view.copied(), u"Ann"_qs);
    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"Ann"_qs, 0.99));
    QCOMPARE(view.copied(), u"Abbott, Ann\tNorth\t12.50"_qs);

    // A click elsewhere soon after is a click, not the third of three.
    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"first"_qs));
    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"Ann"_qs));
    QVERIFY(view.preview.selection().isEmpty());

    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"first"_qs));
    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"first"_qs));
    const QString line = view.copied();
    QVERIFY2(line.startsWith(u"The first line"_qs) && line.size() < 140, qPrintable(line));

    // Dragged on after a double click the selection grows by words, and keeps the first one.
    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"line"_qs));
    QTest::mouseClick(view.paper(), Qt::LeftButton, Qt::ShiftModifier, view.at(u"The"_qs));
    QCOMPARE(view.copied(), u"The first line"_qs);
}

void tst_preview_selection::keysSelectAndCopy()
{
    test::ReportFixture report;
    report.paragraph(u"Balances"_qs).heading(u"Name|City|Amount"_qs);
    for (int i = 0; i < 120; ++i)
        report.row(u"Abbott %1|North|12.50"_qs.arg(i), u"Name|City|Amount"_qs);
    View view(report.finish());
    QCOMPARE(view.preview.pageCount(), 3);
    QTest::keyClick(&view.preview, Qt::Key_A, Qt::ControlModifier);
    const QStringList lines = view.copied().split(u'\n');
    // The heading that page breaks repeat comes once: the rows go into one sheet.
    QCOMPARE(lines.size(), 122);
    QCOMPARE(lines.filter(u"Amount"_qs).size(), 1);
    QCOMPARE(lines.last(), u"Abbott 119\tNorth\t12.50"_qs);
}

void tst_preview_selection::headersAndFootersStayBehind()
{
    test::ReportFixture report;
    for (const QString &page : {u"1"_qs, u"2"_qs}) {
        report.paragraph(u"North Clinic"_qs)
            .heading(u"Name|City|Amount"_qs)
            .row(u"Abbott "_qs + page + u"|North|12.50"_qs)
            .paragraph(u"Leaf "_qs + page);
        if (page == u"1"_qs)
            report.newPage();
    }
    const std::shared_ptr<Document> document = report.finish();
    for (Page &page : document->pages)
        page.blocks.front().kind = page.blocks.back().kind = BlockKind::Furniture;
    View view(document);
    QTest::keyClick(&view.preview, Qt::Key_A, Qt::ControlModifier);
    // The heading behind a page's header only repeats the one before.
    QCOMPARE(
        view.copied(), u"Name\tCity\tAmount\nAbbott 1\tNorth\t12.50\nAbbott 2\tNorth\t12.50"_qs);
    // What is not copied is not marked.
    view.preview.setZoomMode(ZoomMode::WholePage);
    view.paper()->grab();
    QCOMPARE(view.preview.lastPaint().pages, 1);
    QCOMPARE(view.preview.lastPaint().marks, 6);

    // Marked alone it is what the user wants.
    view.preview.setZoomPercent(100);
    view.drag(view.at(u"North Clinic"_qs, 0.01), view.at(u"North Clinic"_qs, 0.99));
    QCOMPARE(view.copied(), u"North Clinic"_qs);
    QTest::mouseDClick(view.paper(), Qt::LeftButton, {}, view.at(u"Leaf"_qs));
    QCOMPARE(view.copied(), u"Leaf"_qs);
    view.paper()->grab();
    QCOMPARE(view.preview.lastPaint().marks, 1);
}

void tst_preview_selection::handsMoveThePaper_data()
{
    QTest::addColumn<bool>("space");
    QTest::newRow("with the middle button") << false;
    QTest::newRow("with the space bar") << true;
}

void tst_preview_selection::handsMoveThePaper()
{
    QFETCH(bool, space);
    View view(test::pagesOfText(5));
    if (space)
        QTest::keyPress(&view.preview, Qt::Key_Space);
    view.drag({300, 500}, {310, 200}, space ? Qt::LeftButton : Qt::MiddleButton);
    QCOMPARE(view.preview.verticalScrollBar()->value(), 300);
    QVERIFY(view.preview.selection().isEmpty());
    if (space)
        QTest::keyRelease(&view.preview, Qt::Key_Space);
    QCOMPARE(view.preview.verticalScrollBar()->value(), 300); // no screen further
}

void tst_preview_selection::pinchingZooms()
{
    View view(test::pagesOfText(5));
    const QPointF at(400, 300);
    const Preview::PaperPoint before = view.preview.paperPointAt(at);
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2,
        at, at, view.paper()->mapToGlobal(at), 0.5, {});
    QApplication::sendEvent(view.paper(), &pinch);
    QCOMPARE(view.preview.zoomPercent(), 150.0);
    const Preview::PaperPoint after = view.preview.paperPointAt(at);
    QVERIFY(qAbs(after.at.x() - before.at.x()) < 30 && qAbs(after.at.y() - before.at.y()) < 30);
}

void tst_preview_selection::linksLeadOn()
{
    const std::shared_ptr<Document> document = test::ReportFixture()
                                                   .paragraph(u"clinic details nowhere"_qs)
                                                   .newPage()
                                                   .paragraph(u"x"_qs)
                                                   .newPage()
                                                   .paragraph(u"Details"_qs)
                                                   .finish();
    const auto addLink = [&](const QString &letters, const QString &target) {
        const auto begin = quint32(document->pages[0].text.indexOf(letters));
        const QRect area = PageText(*document, 0)
                               .areasOf({begin, begin + quint32(letters.size())})
                               .front()
                               .toRect();
        document->pages[0].links.push_back(
            {area.x(), area.y(), area.width(), area.height(), target});
    };
    addLink(u"clinic"_qs, u"https://clinic.example/a?b=1"_qs);
    addLink(u"details"_qs, u"#details"_qs);
    addLink(u"nowhere"_qs, u"#gone"_qs);
    document->bookmarks.push_back({u"details"_qs, 2, Twips(1440)});
    View view(document);
    QSignalSpy opened(&view.preview, &Preview::webLinkActivated);

    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"clinic"_qs));
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened[0][0].toUrl(), QUrl(u"https://clinic.example/a?b=1"_qs));
    QTest::mouseMove(view.paper(), view.at(u"clinic"_qs));
    QTRY_COMPARE(view.paper()->cursor().shape(), Qt::PointingHandCursor);
    // Dragged over, a link is text.
    view.drag(view.at(u"clinic"_qs, 0.02), view.at(u"clinic"_qs, 0.98));
    QCOMPARE(view.copied(), u"clinic"_qs);
    QCOMPARE(opened.size(), 1);

    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"nowhere"_qs));
    QVERIFY2(QToolTip::text().contains(u"gone"_qs), qPrintable(QToolTip::text()));
    QCOMPARE(view.preview.currentPage(), 0);
    QTest::mouseClick(view.paper(), Qt::LeftButton, {}, view.at(u"details"_qs));
    QCOMPARE(view.preview.currentPage(), 2);
    QCOMPARE(opened.size(), 1);
}

void tst_preview_selection::linksToProgramsAreRefused()
{
    Preview preview;
    preview.setDocument(table());
    QSignalSpy opened(&preview, &Preview::webLinkActivated);
    for (const QString &target : {u"file:///etc/passwd"_qs, u"javascript:alert(1)"_qs,
             u"clinic.example"_qs, u"https:///x"_qs, u""_qs}) {
        preview.followLink(target);
        QVERIFY2(opened.isEmpty(), qPrintable(target));
    }
    preview.followLink(u"MAILTO:desk@clinic.example"_qs);
    QCOMPARE(opened.size(), 1);
}

void tst_preview_selection::theMenuOffersWhatIsPossible()
{
    View view(table());
    bool wasShown = false;
    QTimer::singleShot(0, &view.preview, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        wasShown = true;
        QVERIFY(menu->actions().contains(view.preview.action(PreviewCommand::Copy)));
        menu->setActiveAction(view.preview.action(PreviewCommand::SelectAll));
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QContextMenuEvent event(
        QContextMenuEvent::Keyboard, QPoint(50, 50), view.paper()->mapToGlobal(QPoint(50, 50)));
    QApplication::sendEvent(view.paper(), &event);
    QVERIFY(wasShown);
    QVERIFY(!view.preview.selection().isEmpty());
}

void tst_preview_selection::onePageAtATimeTurnsAtItsEnds()
{
    View view(test::pagesOfText(5));
    QTest::keyClick(&view.preview, Qt::Key_3, Qt::ControlModifier);
    QCOMPARE(view.preview.viewMode(), ViewMode::SinglePage);
    QScrollBar *bar = view.preview.verticalScrollBar();
    QTest::keyClick(&view.preview, Qt::Key_End);
    QCOMPARE(bar->value(), bar->maximum());
    QCOMPARE(view.preview.currentPage(), 0);
    QTest::keyClick(&view.preview, Qt::Key_PageDown);
    QCOMPARE(view.preview.currentPage(), 1);
    QCOMPARE(bar->value(), 0);
    view.paper()->grab();
    QCOMPARE(view.preview.lastPaint().pages, 1);

    const auto turn = [&](int delta) {
        const QPointF at(400, 300);
        QWheelEvent event(at, view.paper()->mapToGlobal(at), {}, {0, delta}, Qt::NoButton, {},
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.paper(), &event);
    };
    turn(60); // half a notch beyond the top is not yet the page before
    QCOMPARE(view.preview.currentPage(), 1);
    turn(60);
    QCOMPARE(view.preview.currentPage(), 0);
    QCOMPARE(bar->value(), bar->maximum());
    QTest::keyClick(&view.preview, Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(view.preview.currentPage(), 4);
    QTest::keyClick(&view.preview, Qt::Key_3, Qt::ControlModifier);
    QCOMPARE(view.preview.viewMode(), ViewMode::Continuous);
    QCOMPARE(view.preview.currentPage(), 4);
}

QTEST_MAIN(tst_preview_selection)
#include "tst_preview_selection.moc"
