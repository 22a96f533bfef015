#pragma once

#include <QtCore/QString>

#include <string>

namespace corvane {

/// A file's name as Windows takes one of any length: absolute, with the prefix that lifts the limit
/// of 260 characters. A device ("con") stays one.
std::wstring nativePath(const QString &name);

} // namespace corvane
