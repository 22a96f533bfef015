#pragma once

#include "platform/composer/twips.h"

#include <QtCore/QString>

#include <optional>
#include <variant>
#include <vector>

namespace corvane {

enum class Alignment : quint8 { Left, Centre, Right };

struct ColumnFormat {
    Twips width;
    Alignment alignment = Alignment::Left;

    bool operator==(const ColumnFormat &) const = default;
};

/// Why a format text is none: the item's place in the text (from 0) and a sentence.
struct FormatFault {
    qsizetype offset = 0;
    QString words;
};

/// The widest column that can be asked for: 22.75 inches.
inline constexpr Twips kWidestColumn {32760};

/// Reads "2500|>1200;": one column per item, width in twips; ">" before it right-aligns, "^" centres,
/// "<" left-aligns. An empty text has no columns, an empty last item is passed over.
/// @return the columns, or the first fault.
std::variant<std::vector<ColumnFormat>, FormatFault> parseColumnFormat(QStringView text);

/// The sum of the widths; empty for a text that is no format.
std::optional<Twips> formatWidth(QStringView text);

/// Splits a table row "a|b;" into cells; the end mark is dropped. Beyond `columns` cells the rest stays
/// in the last one, bars included, so that nothing is lost.
void splitCells(QStringView row, qsizetype columns, std::vector<QStringView> &cells);

} // namespace corvane
