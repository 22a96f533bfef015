#include "platform/preview/outline_model.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_pane.h"
#include "platform/preview/thumbnail_list.h"
#include "support/preview_fixture.h"
#include "support/report_fixture.h"
#include "support/suite.h"

#include <QtCore/QSettings>
#include <QtGui/QAccessible>
#include <QtGui/QAction>
#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>
#include <QtCore/QFile>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>

using namespace corvane;

class tst_preview_pane : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void groupsAreATreeOfDepths();
    void thePanelShowsWhatThereIs();
    void groupsJumpAndFollow();
    void thumbnailsJumpAndFollow();
    void onlyVisibleThumbnailsAreDrawn();
    void settingsAreKept();
    void unusableSettingsAreAsAtFirst_data();
    void unusableSettingsAreAsAtFirst();
    void everyKeyOfTheTableWorks();
    void everyControlSaysWhatItIs();
    void theTabKeyReachesEveryControl();
    void theFocusOnThePaperShows();
    void searchingOnBeyondAnEndIsTold();
    void lettersStaySharpOnFineScreens_data();
    void lettersStaySharpOnFineScreens();
};

namespace {

std::shared_ptr<Document> groupedReport()
{
    test::ReportFixture report;
    for (const QString &group :
        {u"North"_qs, u"Dr. Brook"_qs, u"Dr. Marsh"_qs, u"South"_qs, u"Dr. Okoye"_qs}) {
        report.group(group).paragraph(group);
        for (int i = 0; i < 40; ++i)
            report.row(u"Abbott|12|3"_qs);
    }
    std::shared_ptr<Document> document = report.finish();
    for (const size_t doctor : {1, 2, 4})
        document->outline[doctor].depth = 1;
    return document;
}

struct Pane
{
    PreviewPane pane;

    explicit Pane(const DocumentPtr &document = groupedReport())
    {
        pane.resize(1100, 800);
        pane.show();
        pane.activateWindow();
        preview().setFocus();
        preview().setDocument(document);
        QCoreApplication::processEvents();
    }

    Preview &preview() const { return *pane.preview(); }
    QTabWidget &panel() const
    {
        return *pane.findChild<QTabWidget *>(QStringLiteral("sidePanelTabs"));
    }
    QTreeView &outline() const { return *pane.findChild<QTreeView *>(QStringLiteral("outline")); }
    ThumbnailList &thumbnails() const { return *pane.findChild<ThumbnailList *>(); }

    static void click(const QAbstractItemView &view, const QModelIndex &index)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
    }
};

QString treeText(const OutlineModel &model, const QModelIndex &parent = {}, int depth = 0)
{
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        text += QString(depth, u'-') + index.data().toString() + u' ';
        if (model.parent(index) != parent)
            text += u"(astray) "_qs;
        text += treeText(model, index, depth + 1);
    }
    return text;
}

} // namespace

void tst_preview_pane::groupsAreATreeOfDepths()
{
    OutlineModel model;
    model.setDocument(groupedReport());
    QCOMPARE(treeText(model), u"North -Dr. Brook -Dr. Marsh South -Dr. Okoye "_qs);

    const auto odd = std::make_shared<Document>();
    odd->pages.resize(1);
    for (const int depth : {2, 1, 3, 3, 0, 5})
        odd->outline.push_back({QString::number(depth), 0, {}, depth});
    model.setDocument(odd);
    QCOMPARE(treeText(model), u"2 1 -3 -3 0 -5 "_qs);
}

void tst_preview_pane::thePanelShowsWhatThereIs()
{
    Pane window(groupedReport());
    const QAction &toggle = *window.preview().action(PreviewCommand::SidePanel);
    QVERIFY(window.panel().isVisible() && window.panel().isTabVisible(0));
    QVERIFY(window.outline().isVisible());
    window.preview().setDocument(test::pagesOfText(3));
    QVERIFY(window.thumbnails().isVisible() && !window.panel().isTabVisible(0));
    window.preview().setDocument(test::pagesOfText(1));
    QVERIFY(window.panel().isHidden() && !toggle.isEnabled());
    window.preview().setDocument(groupedReport());
    QVERIFY(window.outline().isVisible());

    QTest::keyClick(&window.preview(), Qt::Key_F9);
    QVERIFY(window.panel().isHidden());
    window.preview().setDocument(test::pagesOfText(3));
    QVERIFY(window.panel().isHidden());
    QTest::mouseClick(
        window.pane.findChild<QToolButton *>(QStringLiteral("sidePanel")), Qt::LeftButton);
    QVERIFY(window.panel().isVisible());
}

void tst_preview_pane::groupsJumpAndFollow()
{
    Pane window;
    const auto current = [&] { return window.outline().currentIndex().data().toString(); };
    QCOMPARE(current(), u"North"_qs);
    const QModelIndex south = window.outline().model()->index(1, 0);
    Pane::click(window.outline(), south);
    const int page = south.siblingAtColumn(1).data().toInt() - 1;
    QVERIFY(page > 0);
    QCOMPARE(window.preview().currentPage(), page);
    QCOMPARE(current(), u"South"_qs);
    // The group's first line stands at the view's upper edge.
    const auto top = window.preview().document()->outline[3].top;
    const Preview::PaperPoint edge = window.preview().paperPointAt({0, 0});
    QCOMPARE(edge.page, page);
    QVERIFY(qAbs(edge.at.y() - top.count()) < 500);

    QTest::keyClick(&window.outline(), Qt::Key_Right);
    QTest::keyClick(&window.outline(), Qt::Key_Down);
    QCOMPARE(current(), u"Dr. Okoye"_qs);
    QCOMPARE(window.preview().currentPage(), window.preview().document()->outline[4].page);
    window.preview().goToPage(0);
    QCOMPARE(current(), u"North"_qs);
}

void tst_preview_pane::thumbnailsJumpAndFollow()
{
    Pane window(test::pagesOfText(20'000));
    QCOMPARE(window.thumbnails().model()->rowCount(), 20'000);
    Pane::click(window.thumbnails(), window.thumbnails().model()->index(2, 0));
    QCOMPARE(window.preview().currentPage(), 2);
    QTest::keyClick(&window.thumbnails(), Qt::Key_End);
    QCOMPARE(window.preview().currentPage(), 19'999);
    window.preview().goToPage(12'345);
    QCOMPARE(window.thumbnails().currentIndex().row(), 12'345);
    QVERIFY(window.thumbnails().viewport()->rect().intersects(
        window.thumbnails().visualRect(window.thumbnails().currentIndex())));
    QCOMPARE(window.preview().currentPage(), 12'345);
}

void tst_preview_pane::onlyVisibleThumbnailsAreDrawn()
{
    Pane window(test::pagesOfText(20'000));
    window.thumbnails().viewport()->grab();
    const int drawn = window.thumbnails().drawnPages();
    QVERIFY2(drawn > 2 && drawn < 12, qPrintable(QString::number(drawn)));
    window.thumbnails().viewport()->grab();
    QCOMPARE(window.thumbnails().drawnPages(), drawn);
}

void tst_preview_pane::settingsAreKept()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("view.ini"));
    ViewSettings chosen;
    {
        QSettings store(file, QSettings::IniFormat);
        Pane window;
        window.pane.keepViewSettings(store);
        QCOMPARE(window.pane.viewSettings(), ViewSettings());
        QTest::keyClick(&window.preview(), Qt::Key_3, Qt::ControlModifier);
        window.preview().setZoomPercent(130);
        QTest::mouseClick(window.panel().tabBar(), Qt::LeftButton, {},
            window.panel().tabBar()->tabRect(1).center());
        QTest::keyClick(&window.preview(), Qt::Key_F9);
        chosen = window.pane.viewSettings();
        QCOMPARE(chosen,
            (ViewSettings{ZoomMode::Fixed, 130, ViewMode::SinglePage, false, SideTab::Pages,
                ViewSettings().sideWidth}));
    }
    QSettings store(file, QSettings::IniFormat);
    QStringList keys = store.allKeys(); // nothing of any report among them
    keys.sort();
    QCOMPARE(keys.join(u' '),
        u"Preview/sidePanel Preview/sideTab Preview/sideWidth Preview/viewMode Preview/zoomMode "
        "Preview/zoomPercent"_qs);
    Pane window(DocumentPtr{});
    window.pane.keepViewSettings(store);
    QCOMPARE(window.pane.viewSettings(), chosen);
    // A report without groups does not change what the user likes.
    QTest::keyClick(&window.preview(), Qt::Key_F9);
    window.preview().setDocument(test::pagesOfText(3));
    QCOMPARE(window.pane.viewSettings(), chosen);
    QCOMPARE(readViewSettings(store), chosen);
}

void tst_preview_pane::unusableSettingsAreAsAtFirst_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("an unknown word") << u"zoomMode"_qs << QVariant(u"huge"_qs);
    QTest::newRow("a zoom beyond the most") << u"zoomPercent"_qs << QVariant(100'000);
    QTest::newRow("no number") << u"zoomPercent"_qs << QVariant(u"nan"_qs);
    QTest::newRow("a panel wider than a screen") << u"sideWidth"_qs << QVariant(1e9);
    QTest::newRow("a panel of no width") << u"sideWidth"_qs << QVariant(-5);
}

void tst_preview_pane::unusableSettingsAreAsAtFirst()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    const QTemporaryDir folder;
    QSettings store(folder.filePath(QStringLiteral("view.ini")), QSettings::IniFormat);
    store.setValue(QString(u"Preview/" + key), value);
    QCOMPARE(readViewSettings(store), ViewSettings());
}

void tst_preview_pane::everyKeyOfTheTableWorks()
{
    Pane window;
    window.preview().setSelection([&] {
        TextSelection all;
        all.selectAll(*window.preview().document());
        return all;
    }());
    window.preview().goToPage(2);
    window.pane.findChild<QLineEdit *>(QStringLiteral("findBox"))
        ->setText(QStringLiteral("Abbott"));
    const QList<KeyHelp> table = previewKeys();
    for (size_t i = 0; i < kPreviewCommandCount; ++i) {
        QAction *action = window.preview().action(PreviewCommand(i));
        QSignalSpy triggered(action, &QAction::triggered);
        window.preview().setFocus();
        window.preview().goToPage(2);
        window.preview().goToPage(0);
        window.preview().action(PreviewCommand::Back)->trigger(); // so both ways are open
        triggered.clear();
        const QKeyCombination key
            = QKeySequence(table[qsizetype(i)].keys, QKeySequence::NativeText)[0];
        QTest::keyClick(&window.preview(), key.key(), key.keyboardModifiers());
        QVERIFY2(triggered.size() == 1, qPrintable(table[qsizetype(i)].keys));
    }
    QFile help(QStringLiteral(CORVANE_SOURCE_DIR "/docs/help/main-window.md"));
    QVERIFY(help.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(help.readAll());
    for (const KeyHelp &line : table) {
        const QString row = u"| " + line.keys + u" | " + line.action + u" |";
        QVERIFY2(page.contains(row), qPrintable(row));
    }
}

void tst_preview_pane::everyControlSaysWhatItIs()
{
    Pane window;
    for (QWidget *control : window.pane.findChildren<QWidget *>()) {
        if (control->focusPolicy() == Qt::NoFocus && !qobject_cast<QToolButton *>(control))
            continue;
        if (control->objectName().startsWith(u"qt_") || !control->isVisible())
            continue;
        const QAccessibleInterface *said = QAccessible::queryAccessibleInterface(control);
        const QString what = QString::fromLatin1(control->metaObject()->className()) + u' '
            + control->objectName();
        QVERIFY2(said && said->role() != QAccessible::NoRole, qPrintable(what));
        QVERIFY2(!said->text(QAccessible::Name).isEmpty(), qPrintable(what));
    }
    const std::pair<const char *, QAccessible::Role> roles[]{{"pageBox", QAccessible::EditableText},
        {"zoomBox", QAccessible::ComboBox}, {"findBox", QAccessible::EditableText},
        {"matchCase", QAccessible::CheckBox}, {"findNext", QAccessible::Button},
        {"findState", QAccessible::StaticText}, {"outline", QAccessible::Tree},
        {"thumbnails", QAccessible::List}};
    for (const auto &[name, role] : roles) {
        auto *control = window.pane.findChild<QWidget *>(QLatin1StringView(name));
        QVERIFY2(QAccessible::queryAccessibleInterface(control)->role() == role, name);
    }
    QAccessibleInterface *page = QAccessible::queryAccessibleInterface(&window.preview());
    QCOMPARE(page->role(), QAccessible::Document);
    QVERIFY(page->text(QAccessible::Value).startsWith(u"North\n"_qs));
    QCOMPARE(page->text(QAccessible::Description),
        QStringLiteral("Page 1 of %1").arg(window.preview().pageCount()));
}

void tst_preview_pane::theTabKeyReachesEveryControl()
{
    Pane window;
    QStringList order;
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(window.pane.focusWidget(), Qt::Key_Tab);
        const QString name = window.pane.focusWidget()->objectName();
        if (order.contains(name))
            break;
        order += name;
    }
    for (const char *name : {"pageBox", "zoomBox", "findBox", "outline"})
        QVERIFY2(order.contains(QLatin1StringView(name)), qPrintable(order.join(u' ')));
    QVERIFY2(order.indexOf(u"pageBox"_qs) < order.indexOf(u"zoomBox"_qs)
            && order.indexOf(u"zoomBox"_qs) < order.indexOf(u"findBox"_qs),
        qPrintable(order.join(u' ')));
}

void tst_preview_pane::theFocusOnThePaperShows()
{
    Pane window;
    const auto line = [&] {
        return window.pane.findChild<QWidget *>(QStringLiteral("focusLine"))->backgroundRole();
    };
    window.outline().setFocus();
    QCOMPARE(line(), QPalette::Window);
    window.preview().setFocus(Qt::TabFocusReason);
    QCOMPARE(line(), QPalette::Highlight);
    window.outline().setFocus();
    QFocusEvent activated(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(&window.preview(), &activated); // it got the focus behind a dialog
    QCOMPARE(line(), QPalette::Highlight);
    window.outline().setFocus();
    window.preview().setFocus(Qt::MouseFocusReason);
    QCOMPARE(line(), QPalette::Window);
    QCoreApplication::sendEvent(&window.preview(), &activated);
    QCOMPARE(line(), QPalette::Window);
}

void tst_preview_pane::searchingOnBeyondAnEndIsTold()
{
    Pane window;
    const auto *state = window.pane.findChild<QLabel *>(QStringLiteral("findState"));
    window.pane.findChild<QLineEdit *>(QStringLiteral("findBox"))->setText(u"Dr."_qs);
    const auto after = [&](PreviewCommand command) {
        window.preview().action(command)->trigger();
        return state->text();
    };
    QTRY_COMPARE(state->text(), u"1 of 3"_qs);
    const int width = window.pane.minimumSizeHint().width();
    QCOMPARE(after(PreviewCommand::FindPrevious), u"3 of 3, from the end"_qs);
    QCoreApplication::processEvents();
    QCOMPARE(window.pane.minimumSizeHint().width(), width); // the window's other parts stay
    QCOMPARE(after(PreviewCommand::FindNext), u"1 of 3, from the top"_qs);
    QCOMPARE(after(PreviewCommand::FindNext), u"2 of 3"_qs);
}

void tst_preview_pane::lettersStaySharpOnFineScreens_data()
{
    QTest::addColumn<double>("ratio");
    for (const double ratio : {1.25, 2.0, 3.0})
        QTest::addRow("%g", ratio) << ratio;
}

/// A page on a fine screen is the page at that many times the size, not a magnified one.
void tst_preview_pane::lettersStaySharpOnFineScreens()
{
    QFETCH(double, ratio);
    const DocumentPtr document = test::pagesOfText(1);
    const auto painted = [&](double scale, double devicePixelRatio) {
        QImage image(QSize(400, 300) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(devicePixelRatio);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.translate(-80 * ratio / devicePixelRatio, -100 * ratio / devicePixelRatio);
        PagePainter().paint(painter, *document, 0, scale, QRectF(0, 0, 4000, 4000));
        painter.end();
        image.setDevicePixelRatio(1);
        return image;
    };
    const QImage fine = painted(96.0 / 1440, ratio);
    const QImage large = painted(96.0 / 1440 * ratio, 1);
    int different = 0;
    int ink = 0;
    for (int y = 0; y < fine.height(); ++y) {
        for (int x = 0; x < fine.width(); ++x) {
            different += qAbs(qGray(fine.pixel(x, y)) - qGray(large.pixel(x, y))) > 100 ? 1 : 0;
            ink += qGray(large.pixel(x, y)) < 128 ? 1 : 0;
        }
    }
    QVERIFY2(ink > 1000 && different < ink / 20,
        qPrintable(QStringLiteral("%1 of %2").arg(different).arg(ink)));
}

QTEST_MAIN(tst_preview_pane)
#include "tst_preview_pane.moc"
