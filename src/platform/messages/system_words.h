#pragma once

#include <QtCore/QString>

namespace corvane {

/// What the system says about a failure, to stand within a sentence of the program's own: without the full stop that
/// Windows puts behind it.
inline QString systemWords(const QString &words)
{
    return words.endsWith(u'.') ? words.chopped(1) : words;
}

} // namespace corvane
