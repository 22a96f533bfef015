#pragma once

#include "platform/composer/document.h"
#include "platform/engine/report_layout.h"

#include <variant>

namespace corvane {

/// A barcode's dark modules, quiet zone left out; rows from the top. Code 128 has one row.
struct BarcodeModules
{
    int width = 0;
    int rows = 0;
    std::vector<bool> dark;

    bool isDark(int row, int column) const
    {
        return dark[size_t(row) * size_t(width) + size_t(column)];
    }
};

/// The modules (ISO/IEC 15417, ISO/IEC 18004), or words that say why the text has none.
std::variant<BarcodeModules, QString> encodeBarcode(BarcodeKind kind, const QString &text);

/// The bars within a frame, each module a whole number of twips, quiet zone kept; or words that say
/// which frame it would need to be read by a scanner.
std::variant<std::vector<FilledRect>, QString> placeBarcode(
    BarcodeKind kind, const BarcodeModules &modules, Twips width, Twips height, QRgb colour);

} // namespace corvane
