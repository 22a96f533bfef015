#pragma once

#include "platform/composer/document.h"

#include <QtCore/QStringList>

namespace corvane::test {

/// One line per block: "1 y1440 Row [1500 1700:abc][...]": page from 1, top, kind, and per run its left
/// edge, baseline and letters. A continued block has a "+" behind its kind.
QStringList dump(const Document &document);

/// What one page (index from 0) draws, header and footer included: one line per rectangle, picture and text run, with
/// their places in twips; a run with its font, colour and letters, and the glyphs that a shaper placed.
QStringList operations(const Document &document, int page);

/// The texts of one page's blocks, cells joined by "|".
QStringList blockTexts(const Document &document, int page);

/// Every letter of the document in reading order, blanks and line ends left out.
QString letters(const Document &document);

} // namespace corvane::test
