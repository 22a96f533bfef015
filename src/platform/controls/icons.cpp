#include "platform/controls/icons.h"

#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

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
    constexpr int kSizes[] {16, 24, 32, 48, 64, 128, 256};
    const QString light = QStringLiteral(":/icons/light/%1/%2.png");
    const QString own = QStringLiteral(":/icons/%1/%2.png");
    QIcon icon;
    for (const int size : kSizes) {
        QString file = (isDark(palette) ? light : own).arg(size).arg(name);
        if (!QFile::exists(file))
            file = own.arg(size).arg(name);
        const QPixmap drawing(file);
        if (drawing.isNull())
            continue;
        icon.addPixmap(drawing);
        icon.addPixmap(faded(drawing), QIcon::Disabled);
        const bool lightOnHighlight = palette.color(QPalette::HighlightedText).lightness() > 127;
        const QPixmap selected((lightOnHighlight ? light : own).arg(size).arg(name));
        if (!selected.isNull())
            icon.addPixmap(selected, QIcon::Selected);
    }
    return icon;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace corvane
