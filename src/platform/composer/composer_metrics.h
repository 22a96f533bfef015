#pragma once

#include "platform/composer/twips.h"

#include <QtGui/QRgb>

namespace corvane {

// Measures that paragraphs and tables of a composed page share.
inline constexpr Twips kMargin {1440};
inline constexpr Twips kRowPadding {22};
inline constexpr Twips kRuleThickness {10};
inline constexpr QRgb kInk = 0xff1c2530;

} // namespace corvane
