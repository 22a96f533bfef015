#pragma once

#include <QtCore/QByteArray>

namespace corvane {

/// Gives the glyphs of a CID-keyed CFF table their own numbers as CIDs, in place (charsets: Adobe
/// Technical Note 5176, 13). A table keyed by name is left alone: there CIDs are glyph numbers anyway
/// (ISO 32000-1, 9.7.4.2). False when the table is damaged.
bool numberCidsByGlyph(QByteArray &cff);

} // namespace corvane
