#include "platform/controls/icons.h"

#include "platform/controls/colours.h"
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

QPixmap inked(QPixmap drawing, const QColor &ink)
{
    QPainter painter(&drawing);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(drawing.rect(), ink);
    return drawing;
}

} // namespace

QIcon icon(const QString &name, const QPalette &palette)
{
    constexpr std::array kSizes {16, 24, 32, 36, 48, 64, 72, 96, 128, 144, 256};
    const QString light = QStringLiteral(":/icons/light/%1/%2.png");
    const QString own = QStringLiteral(":/icons/%1/%2.png");
    QList<int> sizes;
    std::ranges::copy_if(kSizes, std::back_inserter(sizes), [&](int size) { return QFile::exists(own.arg(size).arg(name)); });
    return lazyIcon(sizes, [=](int size, QIcon::Mode mode) {
        const QPixmap coloured(own.arg(size).arg(name));
        const QString lightFile = light.arg(size).arg(name);
        const bool hasOneInk = QFile::exists(lightFile);
        if (mode == QIcon::Selected && hasOneInk)
            return inked(coloured, palette.color(QPalette::HighlightedText));
        QPixmap drawing = coloured;
        if (hasOneInk && isExtreme(palette))
            drawing = inked(coloured, palette.color(QPalette::WindowText));
        else if (hasOneInk && isDark(palette))
            drawing = QPixmap(lightFile);
        return mode == QIcon::Disabled ? faded(drawing) : drawing;
    });
}

} // namespace corvane
