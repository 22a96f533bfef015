#include "platform/controls/colours.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr double kExtremeContrast = 20; ///< ordinary palettes stay below, black on white is 21
constexpr double kReadableContrast = 4.5; ///< WCAG 2.1, success criterion 1.4.3
constexpr double kQuietShare = 0.7; ///< of the text colour
constexpr double kVisibleContrast = 3; ///< WCAG 2.1, success criterion 1.4.11
constexpr double kOutlineShare = 0.45; ///< of the text colour
constexpr QRgb kAccent = 0xff2065c8; ///< as the drawings have it

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
/// in palettes of extreme contrast.
QColor textMixed(const QPalette &palette, double share, double least)
{
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    const QColor mix = blended(text, window, share);
    return contrast(mix, window) >= least && !isExtreme(palette) ? mix : text;
}

} // namespace

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
}

bool isExtreme(const QPalette &palette)
{
    return contrast(palette.color(QPalette::WindowText), palette.color(QPalette::Window))
        > kExtremeContrast;
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor blended(const QColor &a, const QColor &b, double share)
{
    const auto mixed = [share](float x, float y) { return float(share * x + (1 - share) * y); };
    return QColor::fromRgbF(
        mixed(a.redF(), b.redF()), mixed(a.greenF(), b.greenF()), mixed(a.blueF(), b.blueF()));
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
