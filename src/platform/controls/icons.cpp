#include "platform/controls/icons.h"

#include "platform/controls/lazy_icon.h"

#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

constexpr double kDisabledOpacity = 0.4;
constexpr double kExtremeContrast
    = 20; ///< of text and window; ordinary palettes stay below, black on white is 21
constexpr double kReadableContrast = 4.5; ///< WCAG 2.1, success criterion 1.4.3
constexpr double kQuietShare = 0.7; ///< of the text colour
constexpr double kVisibleContrast = 3; ///< WCAG 2.1, success criterion 1.4.11
constexpr double kOutlineShare = 0.45; ///< of the text colour
constexpr QRgb kAccent = 0xff2065c8; ///< as the drawings have it

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

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

/// The text colour mixed with the window's; alone where the mix would fall below the contrast, and
/// in palettes of extreme contrast, whose users need all of it.
QColor textMixed(const QPalette &palette, double share, double least)
{
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    const auto mixed = [share](float a, float b) { return float(share * a + (1 - share) * b); };
    const QColor mix = QColor::fromRgbF(mixed(text.redF(), window.redF()),
        mixed(text.greenF(), window.greenF()), mixed(text.blueF(), window.blueF()));
    return contrast(mix, window) >= least && contrast(text, window) <= kExtremeContrast ? mix
                                                                                        : text;
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
        const QColor text = palette.color(QPalette::WindowText);
        const bool isExtreme = contrast(text, palette.color(QPalette::Window)) > kExtremeContrast;
        QPixmap drawing = coloured;
        if (hasOneInk && isExtreme)
            drawing = inked(coloured, text);
        else if (hasOneInk && isDark(palette))
            drawing = QPixmap(lightFile);
        return mode == QIcon::Disabled ? faded(drawing) : drawing;
    });
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor quietText(const QPalette &palette)
{
    return textMixed(palette, kQuietShare, kReadableContrast);
}

QColor outlineOnDark(const QPalette &palette)
{
    return textMixed(palette, kOutlineShare, kVisibleContrast);
}

QPalette withReadableSelection(QPalette palette)
{
    palette.setResolveMask(0); // what is not set here goes on following the system
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        if (contrast(palette.color(group, QPalette::Highlight),
                palette.color(group, QPalette::HighlightedText))
            >= kReadableContrast)
            continue;
        palette.setColor(group, QPalette::Highlight, QColor(kAccent));
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    return palette;
}

} // namespace corvane
