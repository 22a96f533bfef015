#include "platform/controls/icons.h"

#include "platform/controls/lazy_icon.h"

#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr double kDisabledOpacity = 0.4;

/// What styles derive for a disabled drawing hardly differs from the light ink.
QPixmap faded(const QPixmap &drawing)
{
    QPixmap pixmap(drawing.size());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(kDisabledOpacity);
    painter.drawPixmap(0, 0, drawing);
    return pixmap;
}

} // namespace

QIcon icon(const QString &name, const QPalette &palette)
{
    constexpr std::array kSizes {16, 24, 32, 48, 64, 128, 256};
    const QString light = QStringLiteral(":/icons/light/%1/%2.png");
    const QString own = QStringLiteral(":/icons/%1/%2.png");
    QList<int> sizes;
    std::ranges::copy_if(kSizes, std::back_inserter(sizes), [&](int size) { return QFile::exists(own.arg(size).arg(name)); });
    const bool lightOnHighlight = palette.color(QPalette::HighlightedText).lightness() > 127;
    return lazyIcon(sizes, [=, isOnDark = isDark(palette)](int size, QIcon::Mode mode) {
        const bool isLight = mode == QIcon::Selected ? lightOnHighlight : isOnDark;
        const QString lightFile = light.arg(size).arg(name);
        const QPixmap drawing(isLight && QFile::exists(lightFile) ? lightFile : own.arg(size).arg(name));
        return mode == QIcon::Disabled ? faded(drawing) : drawing;
    });
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace corvane
