#pragma once

#include "platform/pdf/font_program.h"

namespace corvane {

/// Glyphs [glyphBegin, glyphEnd) of a shaped run that together stand for letters [textBegin, textEnd).
struct GlyphCluster {
    size_t glyphBegin = 0;
    size_t glyphEnd = 0;
    qsizetype textBegin = 0;
    qsizetype textEnd = 0;

    bool operator==(const GlyphCluster &) const = default;
};

/// Finds out which letters each glyph of a run stands for. The shaper does not tell, so glyphs and
/// letters, both in reading order, are aligned at the least cost by what the font says of single
/// characters. The clusters cover all glyphs; when there are any, they cover all letters too.
std::vector<GlyphCluster> glyphClusters(FontProgram &font, std::span<const quint32> glyphs, QStringView text);

} // namespace corvane
