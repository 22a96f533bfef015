#include "platform/controls/flood_panel.h"
#include "platform/controls/icons.h"
#include "platform/controls/ribbon_button.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace corvane;

class tst_controls : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyDrawingIsCompiledInAtEverySize();
    void theInkFollowsThePalette();
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
