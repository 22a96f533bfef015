// take-pictures FOLDER [light|dark|contrast] [POINTS]: a picture of every window of the program,
// and of its drawings, in one palette. The scale is QT_SCALE_FACTOR's; it is part of the file
// names.

#include "platform/controls/clear_outlines.h"
#include "platform/controls/colours.h"
#include "platform/controls/icons.h"
#include "support/window_tour.h"

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QToolTip>

using namespace corvane;

namespace {

QPalette paletteOf(const QColor &window, const QColor &base, const QColor &button,
    const QColor &text, const QColor &accent, const QColor &onAccent)
{
    QPalette palette(button, window);
    for (const auto role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, onAccent);
    palette.setColor(QPalette::Link, accent.lighter(window.lightness() < 128 ? 130 : 100));
    QColor faint = text;
    faint.setAlpha(128);
    palette.setColor(QPalette::PlaceholderText, faint);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

QPalette namedPalette(const QString &name)
{
    if (name == u"dark")
        return paletteOf(QColor(0x2a, 0x2d, 0x31), QColor(0x1f, 0x22, 0x26),
            QColor(0x3a, 0x3e, 0x44), QColor(0xe6, 0xe8, 0xea), QColor(0x2f, 0x6f, 0xd0),
            Qt::white);
    if (name == u"contrast")
        return paletteOf(
            Qt::black, Qt::black, Qt::black, Qt::white, QColor(0x1a, 0xeb, 0xff), Qt::black);
    return withReadableSelection(QApplication::palette());
}

/// Every drawing at 16, 24 and 48 pixels, normal, disabled and selected.
QPixmap drawingsSheet()
{
    const QStringList files = QDir(QStringLiteral(CORVANE_SOURCE_DIR "/resources/icons"))
                                  .entryList({QStringLiteral("*.svg")});
    const QPalette palette = QApplication::palette();
    constexpr int kCell = 56;
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap sheet(QSize(kCell * 9, int(files.size()) * kCell) * ratio);
    sheet.setDevicePixelRatio(ratio);
    sheet.fill(palette.color(QPalette::Window));
    QPainter painter(&sheet);
    painter.fillRect(
        QRect(kCell * 6, 0, kCell * 3, int(files.size()) * kCell), palette.highlight());
    for (int row = 0; row < files.size(); ++row) {
        const QIcon drawing = icon(files[row].chopped(4), palette);
        int x = 0;
        for (const auto mode : {QIcon::Normal, QIcon::Disabled, QIcon::Selected}) {
            for (const int size : {16, 24, 48}) {
                drawing.paint(&painter,
                    QRect(x + (kCell - size) / 2, row * kCell + (kCell - size) / 2, size, size),
                    Qt::AlignCenter, mode);
                x += kCell;
            }
        }
    }
    return sheet;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane Reporter"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    QApplication::setWindowIcon(icon(QStringLiteral("app")));
    showOutlinesOnDark();
    const QStringList arguments = QApplication::arguments();
    const QString palette = arguments.value(2, QStringLiteral("light"));
    QApplication::setPalette(namedPalette(palette));
    if (const int points = arguments.value(3).toInt(); points > 0) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    const QDir folder(arguments.value(1, QStringLiteral(".")));
    folder.mkpath(QStringLiteral("."));
    const QString tail = QStringLiteral("-%1-%2.png")
                             .arg(palette)
                             .arg(qRound(100 * application.devicePixelRatio()));
    drawingsSheet().save(folder.filePath(QStringLiteral("drawings") + tail));
    test::WindowTour tour([&](const QString &name, QWidget &window) {
        window.grab().save(folder.filePath(name + tail));
    });
    tour.run();
    return tour.visited().contains(QStringLiteral("main-tabular")) ? 0 : 1;
}
