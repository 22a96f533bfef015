#include "platform/preview/preview_bar.h"
#include "support/preview_fixture.h"
#include "support/suite.h"

#include <QtGui/QAction>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

using namespace corvane;

class tst_preview : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void keysMove_data();
    void keysMove();
    void everyPageCanBeReachedAtAnyZoom_data();
    void everyPageCanBeReachedAtAnyZoom();
    void scrollingTellsTheCurrentPage();
    void pagesFitTheirView_data();
    void pagesFitTheirView();
    void resizingKeepsThePlace();
    void theWheelZoomsAroundThePointer();
    void zoomKeysStepAndStop();
    void aJumpCanBeTakenBack();
    void theBoxesGiveTheKeysBack();
    void theWheelDoesNotZoomInPassing();
    void zoomTextsAreRead_data();
    void zoomTextsAreRead();
    void thePageBoxGoesToPages_data();
    void thePageBoxGoesToPages();
    void theZoomBoxFollowsAndLeads();
    void theBarKnowsWhatIsPossible();
    void anotherDocumentStartsAtItsTop();
    void onlyVisiblePagesArePainted();
    void aJumpCostsTheSameInAnyDocument();
    void inkStandsWhereTheDocumentSays_data();
    void inkStandsWhereTheDocumentSays();
    void rulesStayVisibleAndEven();
    void shapedTextIsDrawn();
    void paperStaysWhiteInDarkPalettes();
};

namespace {

/// A preview with its bar in a window of its own.
struct Window {
    QWidget widget;
    Preview *preview = new Preview;
    PreviewBar *bar = new PreviewBar(preview);

    explicit Window(const DocumentPtr &document = test::pagesOfText(41), QSize size = {900, 700})
    {
        auto *layout = new QVBoxLayout(&widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(bar);
        layout->addWidget(preview);
        widget.resize(size);
        widget.show();
        widget.activateWindow();
        preview->setFocus();
        preview->setDocument(document);
        settle();
    }

    /// Scroll bars appear and labels grow by posted events.
    static void settle() { QCoreApplication::processEvents(); }

    int top() const { return preview->verticalScrollBar()->value(); }
    int pagePitch() const { return qRound(preview->document()->paperHeight.count() * scale()) + PreviewLayout::kGap; }
    double scale() const { return preview->zoomPercent() / 100 * preview->logicalDpiY() / 1440; }

    template<typename T>
    T *find(const char *name) const
    {
        return bar->findChild<T *>(QLatin1StringView(name));
    }
};

QColor pixel(const QImage &image, double x, double y)
{
    return image.pixelColor(int(x), int(y));
}

/// The smallest rectangle around everything darker than half.
QRect inkBox(const QImage &image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).lightness() < 128)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

QImage paintedPage(const Document &document, double scale)
{
    QImage image(qRound(document.paperWidth.count() * scale), qRound(document.paperHeight.count() * scale),
        QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PagePainter().paint(painter, document, 0, scale, image.rect());
    return image;
}

} // namespace

void tst_preview::keysMove_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("page");

    const auto row = [](const char *name, int start, Qt::Key key, Qt::KeyboardModifier modifier, int page) {
        QTest::newRow(name) << start << int(key) << int(modifier) << page;
    };
    row("first", 20, Qt::Key_Home, Qt::ControlModifier, 0);
    row("last", 20, Qt::Key_End, Qt::ControlModifier, 40);
    row("next", 20, Qt::Key_PageDown, Qt::ControlModifier, 21);
    row("previous", 20, Qt::Key_PageUp, Qt::ControlModifier, 19);
    row("nothing before the first", 0, Qt::Key_PageUp, Qt::ControlModifier, 0);
    row("nothing after the last", 40, Qt::Key_PageDown, Qt::ControlModifier, 40);
    row("top of the page", 20, Qt::Key_Home, Qt::NoModifier, 20);
    row("foot of the page", 20, Qt::Key_End, Qt::NoModifier, 20);
    row("a screen down", 20, Qt::Key_PageDown, Qt::NoModifier, 20);
    row("a screen up", 20, Qt::Key_PageUp, Qt::NoModifier, 19);
    row("space is a screen down", 20, Qt::Key_Space, Qt::NoModifier, 20);
    row("shift and space a screen up", 20, Qt::Key_Space, Qt::ShiftModifier, 19);
    row("a little down", 20, Qt::Key_Down, Qt::NoModifier, 20);
    row("a little up", 20, Qt::Key_Up, Qt::NoModifier, 20);
}

void tst_preview::keysMove()
{
    QFETCH(int, start);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, page);

    Window window;
    window.preview->setZoomPercent(100);
    window.preview->goToPage(start);
    const int before = window.top();
    QTest::keyClick(window.preview, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(window.preview->currentPage(), page);

    const int height = window.preview->viewport()->height();
    const int moved = window.top() - before;
    if (modifiers == int(Qt::ControlModifier))
        QCOMPARE(moved,
            start == 40
                ? 0
                : qMin((page - start) * window.pagePitch(), window.preview->verticalScrollBar()->maximum() - before));
    else if (key == Qt::Key_Home)
        QCOMPARE(moved, 0);
    else if (key == Qt::Key_End) // the sheet's lower edge and its margin stand at the view's lower edge
        QVERIFY(qAbs(moved + height - (window.pagePitch() - PreviewLayout::kGap + 2 * PreviewLayout::kMargin)) <= 1);
    else if (key == Qt::Key_Down || key == Qt::Key_Up)
        QVERIFY(moved * (key == Qt::Key_Down ? 1 : -1) > 0 && qAbs(moved) < height / 4);
    else
        QVERIFY(qAbs(moved) > height / 2 && qAbs(moved) < height);
}

void tst_preview::everyPageCanBeReachedAtAnyZoom_data()
{
    QTest::addColumn<double>("zoom");
    for (const double zoom : {10.0, 50.0, 100.0, 500.0})
        QTest::addRow("%g %%", zoom) << zoom;
}

void tst_preview::everyPageCanBeReachedAtAnyZoom()
{
    QFETCH(double, zoom);
    Window window(test::pagesOfText(12));
    window.preview->setZoomPercent(zoom);
    Window::settle();
    window.preview->goToPage(0);
    for (int page = 1; page < 12; ++page) {
        QTest::mouseClick(window.find<QToolButton>("nextPage"), Qt::LeftButton);
        QCOMPARE(window.preview->currentPage(), page);
        QCOMPARE(window.find<QLineEdit>("pageBox")->text(), QString::number(page + 1));
    }
    window.preview->goToPage(12);
    window.preview->goToPage(-1);
    QCOMPARE(window.preview->currentPage(), 11);
}

void tst_preview::scrollingTellsTheCurrentPage()
{
    Window window;
    window.preview->setZoomPercent(50);
    QSignalSpy changed(window.preview, &Preview::currentPageChanged);
    QScrollBar *bar = window.preview->verticalScrollBar();
    // Most of the view shows page 7, whose upper part has left it.
    bar->setValue(7 * window.pagePitch() + window.pagePitch() / 5);
    QCOMPARE(window.preview->currentPage(), 7);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(window.preview->accessibleDescription(), QStringLiteral("Page 8 of 41"));
    bar->setValue(bar->maximum());
    QCOMPARE(window.preview->currentPage(), 40);
}

void tst_preview::pagesFitTheirView_data()
{
    QTest::addColumn<int>("pages");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("landscape");

    QTest::newRow("one page, wide window") << 1 << QSize(1400, 700) << false;
    QTest::newRow("one page, tall window") << 1 << QSize(500, 1300) << false;
    QTest::newRow("many pages") << 41 << QSize(900, 700) << false;
    QTest::newRow("landscape") << 3 << QSize(900, 700) << true;
}

void tst_preview::pagesFitTheirView()
{
    QFETCH(int, pages);
    QFETCH(QSize, size);
    QFETCH(bool, landscape);

    Document document = *test::pagesOfText(pages);
    if (landscape)
        std::swap(document.paperWidth, document.paperHeight);
    Window window(std::make_shared<const Document>(document), size);
    const int margins = 2 * PreviewLayout::kMargin;
    for (const int narrower : {0, 120, 240}) {
        window.widget.resize(size - QSize(narrower, 0));
        window.preview->setZoomMode(ZoomMode::PageWidth);
        Window::settle();
        QVERIFY(
            qAbs(document.paperWidth.count() * window.scale() + margins - window.preview->viewport()->width()) <= 1);
        QCOMPARE(window.preview->horizontalScrollBar()->maximum(), 0);

        window.preview->setZoomMode(ZoomMode::WholePage);
        Window::settle();
        const QSizeF page(document.paperWidth.count() * window.scale(), document.paperHeight.count() * window.scale());
        const QSize view = window.preview->viewport()->size();
        QVERIFY(page.width() + margins <= view.width() + 1 && page.height() + margins <= view.height() + 1);
        QVERIFY(view.width() - page.width() - margins <= 1 || view.height() - page.height() - margins <= 1);
    }
}

void tst_preview::resizingKeepsThePlace()
{
    Window window;
    window.preview->goToPage(17);
    for (const QSize size : {QSize(500, 700), QSize(1200, 500), QSize(901, 701), QSize(333, 200)}) {
        window.widget.resize(size);
        Window::settle();
        QCOMPARE(window.preview->currentPage(), 17);
        QCOMPARE(window.top(), 17 * window.pagePitch());
    }
}

void tst_preview::theWheelZoomsAroundThePointer()
{
    Window window;
    window.preview->setZoomPercent(100);
    window.preview->goToPage(5);
    Window::settle();
    QSignalSpy changed(window.preview, &Preview::zoomChanged);
    const QPointF at(430, 300);
    const auto underPointer = [&] {
        const QRect view = window.preview->viewport()->rect();
        const PreviewLayout layout({41, Twips(12240), Twips(15840)}, window.scale());
        const int left = std::max(0, view.width() - layout.contentSize().width()) / 2;
        return layout.spotAt(at + QPointF(window.preview->horizontalScrollBar()->value() - left, window.top()));
    };
    const PageSpot before = underPointer();
    const auto turn = [&](int notches, Qt::KeyboardModifier modifier) {
        QWidget *viewport = window.preview->viewport();
        QWheelEvent event(
            at, viewport->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, modifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport, &event);
        Window::settle();
    };
    turn(8, Qt::ControlModifier);
    QVERIFY(window.preview->zoomPercent() > 200);
    const PageSpot after = underPointer();
    QCOMPARE(after.page, before.page);
    QVERIFY(qAbs(after.across - before.across) < 0.002 && qAbs(after.down - before.down) < 0.002);
    QCOMPARE(changed.size(), 1);
    turn(-8, Qt::ControlModifier);
    QVERIFY(qAbs(window.preview->zoomPercent() - 100) < 0.01);

    turn(100, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 500.0);
    turn(-100, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 10.0);

    window.preview->setZoomPercent(100);
    window.preview->goToPage(5);
    const int top = window.top();
    turn(-1, Qt::NoModifier);
    QVERIFY(window.top() > top);
    QCOMPARE(window.preview->zoomPercent(), 100.0);

    window.preview->setZoomPercent(300);
    Window::settle();
    const int left = window.preview->horizontalScrollBar()->value();
    const int height = window.top();
    turn(-1, Qt::ShiftModifier);
    QVERIFY(window.preview->horizontalScrollBar()->value() > left);
    QCOMPARE(window.top(), height);
}

void tst_preview::aJumpCanBeTakenBack()
{
    Window window;
    window.preview->setZoomPercent(100);
    const auto press = [&](Qt::Key key) { QTest::keyClick(window.preview, key, Qt::AltModifier); };
    press(Qt::Key_Left);
    QCOMPARE(window.top(), 0);
    window.preview->goToPage(1); // leafing is no jump
    window.preview->verticalScrollBar()->setValue(window.top() + 333);
    const int start = window.top();
    QVERIFY(!window.preview->action(PreviewCommand::Back)->isEnabled());
    window.preview->goToPage(30);
    QTest::keyClick(window.preview, Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Left);
    QCOMPARE(window.preview->currentPage(), 30);
    press(Qt::Key_Left);
    QCOMPARE(window.top(), start);
    press(Qt::Key_Right);
    QCOMPARE(window.preview->currentPage(), 30);
    // The spot is the same at another scale, and pages alone are found again too.
    window.preview->setViewMode(ViewMode::SinglePage);
    window.preview->setZoomPercent(200);
    press(Qt::Key_Left);
    QCOMPARE(window.preview->currentPage(), 1);
    QVERIFY(qAbs(window.top() - 2 * (start - window.pagePitch() / 2)) < window.preview->viewport()->height());
    window.preview->goToPage(20); // another way on forgets what was ahead
    QVERIFY(!window.preview->action(PreviewCommand::Forward)->isEnabled());
    window.preview->setDocument(test::pagesOfText(5));
    QVERIFY(!window.preview->action(PreviewCommand::Back)->isEnabled());
}

/// After a page or a size is entered, or given up with Escape, the keys scroll again.
void tst_preview::theBoxesGiveTheKeysBack()
{
    Window window;
    auto *page = window.find<QLineEdit>("pageBox");
    QLineEdit *zoom = window.find<QComboBox>("zoomBox")->lineEdit();
    for (QLineEdit *box : {page, zoom}) {
        const QString before = box->text();
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QStringLiteral("33"));
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(box->text(), before);
        QVERIFY(window.preview->hasFocus());
    }
    QCOMPARE(window.preview->currentPage(), 0);
    zoom->setFocus();
    zoom->selectAll();
    QTest::keyClicks(zoom, QStringLiteral("66"));
    QTest::keyClick(zoom, Qt::Key_Return);
    QCOMPARE(window.preview->zoomPercent(), 66.0);
    QVERIFY(window.preview->hasFocus());
    auto *box = window.find<QComboBox>("zoomBox");
    box->setFocus();
    box->showPopup();
    QTest::keyClick(box->view(), Qt::Key_Home);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QCOMPARE(window.preview->zoomMode(), ZoomMode::PageWidth);
    QTRY_COMPARE(window.widget.focusWidget(), window.preview); // the window itself may not be active again yet
}

void tst_preview::theWheelDoesNotZoomInPassing()
{
    Window window;
    auto *box = window.find<QComboBox>("zoomBox");
    const QPointF at = QRectF(box->rect()).center();
    QWheelEvent turn(at, box->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(box, &turn);
    QCOMPARE(window.preview->zoomMode(), ZoomMode::PageWidth);
    box->setFocus();
    QApplication::sendEvent(box, &turn);
    QVERIFY(window.preview->zoomMode() != ZoomMode::PageWidth);
}

void tst_preview::zoomKeysStepAndStop()
{
    Window window;
    window.preview->setZoomPercent(110);
    QTest::keyClick(window.preview, Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 125.0);
    QTest::keyClick(window.preview, Qt::Key_Minus, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 100.0);
    // From the page box too: the keys belong to the window.
    window.find<QLineEdit>("pageBox")->setFocus();
    QTest::keyClick(window.find<QLineEdit>("pageBox"), Qt::Key_Equal, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 125.0);
    QTest::keyClick(window.preview, Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(window.preview->zoomPercent(), 100.0);
    // On the paper no Ctrl is needed; in a box the same keys are letters.
    QTest::keyClick(window.preview, Qt::Key_Plus);
    QCOMPARE(window.preview->zoomPercent(), 125.0);
    QTest::keyClick(window.preview, Qt::Key_Minus);
    QCOMPARE(window.preview->zoomPercent(), 100.0);
    QTest::keyClick(window.find<QLineEdit>("pageBox"), Qt::Key_Minus);
    QCOMPARE(window.preview->zoomPercent(), 100.0);
    for (int i = 0; i < 20; ++i)
        window.preview->zoomIn();
    QCOMPARE(window.preview->zoomPercent(), 500.0);
    QVERIFY(!window.find<QToolButton>("zoomIn")->isEnabled());
    for (int i = 0; i < 20; ++i)
        window.preview->zoomOut();
    QCOMPARE(window.preview->zoomPercent(), 10.0);
    QVERIFY(!window.find<QToolButton>("zoomOut")->isEnabled());
}

void tst_preview::zoomTextsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("percent");

    const auto row = [](const char *text, int mode, double percent) {
        QTest::newRow(text) << QString::fromLatin1(text) << mode << percent;
    };
    constexpr int kNone = -1;
    row("Page width", int(ZoomMode::PageWidth), 100);
    row(" whole PAGE ", int(ZoomMode::WholePage), 100);
    row("125 %", int(ZoomMode::Fixed), 125);
    row("66.5%", int(ZoomMode::Fixed), 66.5);
    row("80", int(ZoomMode::Fixed), 80);
    row("", kNone, 0);
    row("%", kNone, 0);
    row("0 %", kNone, 0);
    row("-20", kNone, 0);
    row("nan", kNone, 0);
    row("inf", kNone, 0);
    row("80 % wide", kNone, 0);
}

void tst_preview::zoomTextsAreRead()
{
    QFETCH(QString, text);
    QFETCH(int, mode);
    QFETCH(double, percent);

    const std::optional<ZoomChoice> choice = readZoom(text);
    QCOMPARE(choice ? int(choice->mode) : -1, mode);
    if (choice)
        QCOMPARE(choice->percent, percent);
}

void tst_preview::thePageBoxGoesToPages_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");

    QTest::newRow("a page") << QStringLiteral("30") << QStringLiteral("30");
    QTest::newRow("blanks around") << QStringLiteral(" 41 ") << QStringLiteral("41");
    QTest::newRow("beyond the end") << QStringLiteral("42") << QStringLiteral("3");
    QTest::newRow("zero") << QStringLiteral("0") << QStringLiteral("3");
    QTest::newRow("below zero") << QStringLiteral("-1") << QStringLiteral("3");
    QTest::newRow("no number") << QStringLiteral("x2") << QStringLiteral("3");
    QTest::newRow("too great a number") << QStringLiteral("99999999999") << QStringLiteral("3");
    QTest::newRow("nothing") << QString() << QStringLiteral("3");
}

void tst_preview::thePageBoxGoesToPages()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);

    Window window;
    window.preview->goToPage(2);
    auto *box = window.find<QLineEdit>("pageBox");
    box->setFocus();
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Delete);
    QTest::keyClicks(box, typed);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->text(), shown);
    QCOMPARE(window.preview->currentPage(), shown.toInt() - 1);

    // Left without Enter the box goes back to the truth.
    box->setFocus();
    QTest::keyClicks(box, QStringLiteral("7"));
    window.preview->setFocus();
    QCOMPARE(box->text(), shown);
}

void tst_preview::theZoomBoxFollowsAndLeads()
{
    Window window;
    auto *box = window.find<QComboBox>("zoomBox");
    QCOMPARE(box->currentText(), QStringLiteral("Page width"));
    const auto enter = [box](const QString &text) {
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), text);
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    };
    enter(QStringLiteral("130"));
    QCOMPARE(window.preview->zoomPercent(), 130.0);
    QCOMPARE(box->currentText(), QStringLiteral("130 %"));
    enter(QStringLiteral("9000 %"));
    QCOMPARE(box->currentText(), QStringLiteral("500 %"));
    enter(QStringLiteral("huge"));
    QCOMPARE(box->currentText(), QStringLiteral("500 %"));

    box->showPopup();
    QTest::keyClick(box->view(), Qt::Key_Home);
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QCOMPARE(window.preview->zoomMode(), ZoomMode::WholePage);
    QCOMPARE(box->currentText(), QStringLiteral("Whole page"));
    window.preview->zoomIn();
    QCOMPARE(window.preview->zoomMode(), ZoomMode::Fixed);
    QVERIFY(box->currentText().endsWith(u'%'));
}

void tst_preview::theBarKnowsWhatIsPossible()
{
    Window window(test::pagesOfText(3));
    const auto enabled = [&] {
        QString names;
        for (const char *name : {"firstPage", "previousPage", "pageBox", "nextPage", "lastPage", "zoomOut", "zoomIn"}) {
            const auto *control = window.find<QWidget>(name);
            names += control->isEnabled() ? QLatin1StringView(name) + u' ' : QString();
        }
        return names;
    };
    QCOMPARE(enabled(), QStringLiteral("pageBox nextPage lastPage zoomOut zoomIn "));
    QTest::mouseClick(window.find<QToolButton>("nextPage"), Qt::LeftButton);
    QCOMPARE(enabled(), QStringLiteral("firstPage previousPage pageBox nextPage lastPage zoomOut zoomIn "));
    QTest::mouseClick(window.find<QToolButton>("lastPage"), Qt::LeftButton);
    QCOMPARE(enabled(), QStringLiteral("firstPage previousPage pageBox zoomOut zoomIn "));
    QCOMPARE(window.find<QLabel>("pageCount")->text(), QStringLiteral("of 3"));
    window.preview->setDocument(test::pagesOfText(1));
    QCOMPARE(enabled(), QStringLiteral("pageBox zoomOut zoomIn "));
    window.preview->setDocument({});
    QCOMPARE(enabled(), QString());
    QCOMPARE(window.preview->currentPage(), -1);
    QCOMPARE(window.find<QLineEdit>("pageBox")->text(), QString());

    // Keys and wheel find nothing to do without a document.
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End, Qt::Key_Space, Qt::Key_Down})
        QTest::keyClick(window.preview, key);
    for (const auto *button : window.bar->findChildren<QToolButton *>()) {
        QVERIFY(!button->accessibleName().isEmpty());
        QVERIFY2(button->toolTip().contains(u'('), qPrintable(button->toolTip())); // its keys
    }
}

void tst_preview::anotherDocumentStartsAtItsTop()
{
    Window window;
    window.preview->setZoomPercent(150);
    window.preview->goToPage(30);
    QSignalSpy changed(window.preview, &Preview::documentChanged);
    window.preview->setDocument(test::pagesOfText(5));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(window.preview->currentPage(), 0);
    QCOMPARE(window.top(), 0);
    QCOMPARE(window.preview->zoomPercent(), 150.0);
    QCOMPARE(window.find<QLineEdit>("pageBox")->text(), QStringLiteral("1"));
    QCOMPARE(window.find<QLabel>("pageCount")->text(), QStringLiteral("of 5"));
}

void tst_preview::onlyVisiblePagesArePainted()
{
    Window window;
    window.preview->setZoomMode(ZoomMode::WholePage);
    window.preview->goToPage(20);
    Window::settle();
    window.preview->viewport()->grab();
    QCOMPARE(window.preview->lastPaint().pages, 1);
    QCOMPARE(window.preview->lastPaint().operations, 47);

    // A wheel's worth of scrolling repaints the strip that came into view, not the screen.
    window.preview->setZoomPercent(100);
    window.preview->goToPage(20);
    Window::settle();
    window.preview->viewport()->repaint();
    const int screen = window.preview->lastPaint().operations;
    window.preview->verticalScrollBar()->setValue(window.top() + 40);
    Window::settle();
    QVERIFY2(window.preview->lastPaint().operations < screen / 4,
        qPrintable(QString::number(window.preview->lastPaint().operations)));
}

void tst_preview::aJumpCostsTheSameInAnyDocument()
{
    const auto paintAt = [](Preview &preview, int page) {
        preview.goToPage(page);
        preview.viewport()->grab();
        return preview.lastPaint();
    };
    Window small(test::pagesOfText(1));
    small.preview->setZoomMode(ZoomMode::WholePage);
    const Preview::PaintCount expected = paintAt(*small.preview, 0);

    Window large(test::pagesOfText(20'000));
    large.preview->setZoomMode(ZoomMode::WholePage);
    Window::settle();
    for (const int page : {19'999, 0, 12'345, 1}) {
        const Preview::PaintCount count = paintAt(*large.preview, page);
        QCOMPARE(count.pages, expected.pages);
        QCOMPARE(count.operations, expected.operations);
        QCOMPARE(large.preview->currentPage(), page);
    }
    large.preview->setZoomPercent(500); // more than a hundred million pixels high
    large.preview->goToPage(19'999);
    QCOMPARE(large.top(), 19'999 * large.pagePitch());
}

void tst_preview::inkStandsWhereTheDocumentSays_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("100 %") << 96.0 / 1440;
    QTest::newRow("a fraction") << 71.3 / 1440;
    QTest::newRow("paper") << 600.0 / 1440;
}

void tst_preview::inkStandsWhereTheDocumentSays()
{
    QFETCH(double, scale);
    test::DocumentBuilder builder;
    // "HHHH" has no ink below the baseline and, but for its side bearings, fills its advance.
    const QString text = QStringLiteral("HHHHHHHHHHHHHHHHHHHHHHHH");
    builder.addPage().addText(1440, 2880, text);
    const DocumentPtr document = builder.finish();
    const FontFace &face = *document->faces[0];
    const double em = 200 * scale;
    const double width = double(*face.plainWidth(text)) * em / face.unitsPerEm();

    const QRect box = inkBox(paintedPage(*document, scale));
    const double tolerance = 1.5 + em * 0.1;
    QVERIFY2(qAbs(box.left() - 1440 * scale) <= tolerance, qPrintable(QString::number(box.left())));
    QVERIFY2(qAbs(box.right() + 1 - (1440 * scale + width)) <= tolerance, qPrintable(QString::number(box.right())));
    QVERIFY2(qAbs(box.bottom() + 1 - 2880 * scale) <= 1.5, qPrintable(QString::number(box.bottom())));
    QVERIFY(box.height() > em * 0.6 && box.height() < em * 0.85);
}

void tst_preview::rulesStayVisibleAndEven()
{
    test::DocumentBuilder builder;
    builder.addPage();
    for (int i = 0; i < 20; ++i)
        builder.addRect(1440, 1440 + i * 333, 7200, 15, 0xff000000);
    builder.addRect(1440, 9000, 7200, 1440, 0xfffff8dc);
    const DocumentPtr document = builder.finish();
    for (const double scale : {10.0 / 1440, 96.0 / 1440, 131.7 / 1440}) {
        const QImage image = paintedPage(*document, scale);
        for (int i = 0; i < 20; ++i) {
            const int y = qRound((1440 + i * 333) * scale);
            QCOMPARE(pixel(image, 4000 * scale, y), QColor(Qt::black));
            if (scale > 0.03)
                QVERIFY(pixel(image, 4000 * scale, y + 2) == QColor(Qt::white)
                    && pixel(image, 4000 * scale, y - 2) == QColor(Qt::white));
        }
        QCOMPARE(pixel(image, 4000 * scale, 9700 * scale), QColor(0xff, 0xf8, 0xdc));
    }
}

void tst_preview::shapedTextIsDrawn()
{
    test::DocumentBuilder builder;
    builder.addPage().addText(1440, 2880, QStringLiteral("HH"));
    Document &document = builder.document();
    const quint32 glyph = document.faces[0]->plainGlyph(u'H').index;
    document.pages[0].shaped.push_back(
        {.face = 1, .glyphs = {glyph, glyph}, .xOffsets = {0, 1440}, .yOffsets = {0, 720}});
    document.pages[0].runs[0].shaped = 1;
    const double scale = 96.0 / 1440;
    const QRect box = inkBox(paintedPage(document, scale));
    QVERIFY(qAbs(box.left() - 96) <= 2 && box.right() > 192 && box.right() < 210);
    QVERIFY(qAbs(box.bottom() + 1 - 240) <= 1 && qAbs(box.top() - 182) <= 3);
}

void tst_preview::paperStaysWhiteInDarkPalettes()
{
    Window window(test::pagesOfText(2));
    const auto corner = [&] { return pixel(window.preview->viewport()->grab().toImage(), 2, 2); };
    const auto paper = [&] { return pixel(window.preview->viewport()->grab().toImage(), 40, 40); };
    const QColor lightGround = corner();
    QCOMPARE(paper(), QColor(Qt::white));
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x2b, 0x2d, 0x30));
    dark.setColor(QPalette::WindowText, Qt::white);
    window.widget.setPalette(dark);
    QCOMPARE(paper(), QColor(Qt::white));
    QVERIFY(corner().lightness() < lightGround.lightness() / 2);

    window.preview->setEmptyText(QStringLiteral("Choose a report from the list."));
    window.preview->setDocument({});
    const QImage empty = window.preview->viewport()->grab().toImage();
    QCOMPARE(pixel(empty, 40, 40), corner());
    QRect words;
    for (int y = 0; y < empty.height(); ++y) {
        for (int x = 0; x < empty.width(); ++x) {
            if (empty.pixelColor(x, y).lightness() > 128)
                words |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(words.width() > 100 && qAbs(words.center().x() - empty.width() / 2) < 10);
}

QTEST_MAIN(tst_preview)
#include "tst_preview.moc"
