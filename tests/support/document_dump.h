#pragma once

#include "platform/composer/document.h"

#include <QtCore/QStringList>

namespace corvane::test {

/// One line per block: "1 y1440 Row [1500 1700:abc][...]": page from 1, top, kind, and per run its left
/// edge, baseline and letters. A continued block has a "+" behind its kind.
QStringList dump(const Document &document);

/// The texts of one page's blocks, cells joined by "|".
QStringList blockTexts(const Document &document, int page);

/// Every letter of the document in reading order, blanks and line ends left out.
QString letters(const Document &document);

} // namespace corvane::test
