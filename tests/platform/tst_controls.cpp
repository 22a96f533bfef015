#include "platform/controls/clear_outlines.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/colours.h"
#include "platform/controls/icons.h"
#include "platform/controls/ribbon_button.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>

using namespace corvane;

class tst_controls : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyDrawingIsCompiledInAtEverySize();
    void theInkFollowsThePalette();
    void coloursStandOut_data();
    void coloursStandOut();
    void emptyBoxesShowOnDark();
    void floodFillsItsShare_data();
    void floodFillsItsShare();
    void ribbonButtonsShareTheirWidth();
};

namespace {

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::WindowText, Qt::white);
    return palette;
}

/// Mean lightness of what is drawn, 0 to 255; -1 when nothing is.
int inkLightness(const QImage &image)
{
    qint64 sum = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.alpha() < 64)
                continue;
            sum += colour.lightness();
            ++count;
        }
    }
    return count == 0 ? -1 : int(sum / count);
}

} // namespace

void tst_controls::everyDrawingIsCompiledInAtEverySize()
{
    const QDir drawings(QStringLiteral(CORVANE_SOURCE_DIR "/resources/icons"));
    const QStringList files = drawings.entryList({QStringLiteral("*.svg")});
    QVERIFY(files.size() >= 16);
    for (const QString &file : files) {
        const QString name = file.chopped(4);
        if (name == u"app-small") // the 16 and 24 pixels of "app"
            continue;
        const QIcon drawn = icon(name);
        for (const int size : {16, 24, 32, 36, 48, 72}) {
            const QImage image = drawn.pixmap(size, size).toImage();
            QVERIFY2(
                image.width() == size && inkLightness(image) >= 0, qPrintable(name + u' ' + QString::number(size)));
        }
    }
    QCOMPARE(icon(QStringLiteral("app")).actualSize(QSize(256, 256)), QSize(256, 256));
}

void tst_controls::theInkFollowsThePalette()
{
    const QString name = QStringLiteral("exit");
    QVERIFY(inkLightness(icon(name).pixmap(48, 48).toImage()) < 128);
    QVERIFY(inkLightness(icon(name, darkPalette()).pixmap(48, 48).toImage()) > 160);

    RibbonButton button(QStringLiteral("Exit"), name);
    button.setPalette(darkPalette());
    QVERIFY(inkLightness(button.icon().pixmap(48, 48).toImage()) > 160);
}

void tst_controls::coloursStandOut_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("selection");
    QTest::addColumn<bool>("keepsSelection");

    QTest::newRow("the toolkit's own") << QColor(0xef, 0xef, 0xef) << QColor(Qt::black) << QColor(0x30, 0x8c, 0xc6) << false;
    QTest::newRow("dark") << QColor(0x2a, 0x2d, 0x31) << QColor(0xe6, 0xe8, 0xea) << QColor(0x2f, 0x6f, 0xd0) << true;
    QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white) << QColor(0x00, 0x33, 0x99) << true;
    QTest::newRow("hardly any contrast") << QColor(0x40, 0x40, 0x40) << QColor(0xb4, 0xb4, 0xb4) << QColor(Qt::yellow) << false;
}

void tst_controls::coloursStandOut()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    QFETCH(QColor, selection);
    QFETCH(bool, keepsSelection);

    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    QVERIFY(contrast(quietText(palette), window) >= 4.5);
    QVERIFY(contrast(outlineOnDark(palette), window) >= 3);
    const QPalette readable = withReadableSelection(palette);
    QVERIFY(contrast(readable.color(QPalette::Highlight), readable.color(QPalette::HighlightedText)) >= 4.5);
    QCOMPARE(readable.color(QPalette::Highlight) == selection, keepsSelection);
    // At least one pixel of a drawing has its full ink.
    const QImage drawn = icon(QStringLiteral("excel"), palette).pixmap(48, 48).toImage();
    QVERIFY(contrast(drawn.pixelColor(24, 8), window) >= 3);
}

void tst_controls::emptyBoxesShowOnDark()
{
    ClearOutlines style(QStringLiteral("fusion"));
    QCheckBox box;
    QPalette palette = darkPalette();
    palette.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x26));
    box.setPalette(palette);
    box.setStyle(&style);
    box.resize(box.sizeHint());
    const QImage image = box.grab().toImage();
    double strongest = 1;
    for (int x = 0; x < image.width(); ++x)
        strongest = std::max(strongest, contrast(image.pixelColor(x, image.height() / 2), palette.color(QPalette::Window)));
    QVERIFY2(strongest >= 3, qPrintable(QString::number(strongest)));
}

void tst_controls::floodFillsItsShare_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("held");

    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("a quarter") << 25 << 25;
    QTest::newRow("all") << 100 << 100;
    QTest::newRow("below nothing") << -3 << 0;
    QTest::newRow("beyond all") << 32'000 << 100;
}

void tst_controls::floodFillsItsShare()
{
    QFETCH(int, percent);
    QFETCH(int, held);

    FloodPanel panel;
    QPalette palette;
    palette.setColor(QPalette::Highlight, Qt::red);
    panel.setPalette(palette);
    panel.resize(400, 20);
    panel.setFloodPercent(percent);
    QCOMPARE(panel.floodPercent(), held);
    const QImage image = panel.grab().toImage();
    int filled = 0;
    for (int x = 0; x < image.width(); ++x)
        filled += image.pixelColor(x, image.height() / 2) == QColor(Qt::red) ? 1 : 0;
    QVERIFY2(qAbs(filled - 4 * held) <= 4, qPrintable(QString::number(filled)));
}

void tst_controls::ribbonButtonsShareTheirWidth()
{
    RibbonButton exit(QStringLiteral("Exit"), QStringLiteral("exit"));
    RibbonButton refresh(QStringLiteral("Refresh"), QStringLiteral("refresh"));
    RibbonButton dates(QStringLiteral("Change Report Dates"), QStringLiteral("dates"));
    QCOMPARE(exit.sizeHint(), refresh.sizeHint());
    QVERIFY(dates.sizeHint().width() > dates.fontMetrics().horizontalAdvance(dates.text()));
    QCOMPARE(dates.sizeHint().height(), exit.sizeHint().height());
    QCOMPARE(dates.accessibleName(), QStringLiteral("Change Report Dates"));
    QVERIFY(exit.focusPolicy() & Qt::TabFocus);
}

QTEST_MAIN(tst_controls)
#include "tst_controls.moc"
