#pragma once

#include <QtCore/QString>

#include <optional>

namespace corvane {

/// Windows-1252 both ways. Its five unassigned bytes stand for the control characters of the same code.
QString fromWindows1252(QByteArrayView bytes);
/// The byte of one character; empty when the code page lacks it.
std::optional<uchar> toWindows1252(QChar c);

} // namespace corvane
