#pragma once

#include <QtCore/QString>

namespace corvane {

/// The password as `corvane.ini` and the passwords table store it: character by character, position i
/// from 1, k added when i is odd and subtracted when even, then XOR with B - k. Characters are codes of
/// the single-byte code page (Windows-1252).
/// @throws RunTimeFault InvalidArgument when a code falls outside 0..255.
QString scramblePW(QStringView clear);

/// The way back: XOR first, then k subtracted (odd) or added (even).
/// @throws RunTimeFault InvalidArgument when the text cannot have been scrambled.
QString unscramblePW(QStringView stored);

} // namespace corvane
