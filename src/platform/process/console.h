#pragma once

#include <QtCore/QString>

#include <cstdio>

namespace corvane {

/// Writes text to standard output or standard error so that it can be read there: as the console shows it, or in the
/// user's encoding (on Windows UTF-8) where it goes to a file or another program.
void writeConsole(std::FILE *stream, const QString &text);

/// One line on standard error, its white space simplified.
void printError(const QString &text);

/// The variable CORVANE_PASSWORD, which is wiped and removed, so that neither children nor the process list show it.
QString takePasswordVariable();

/// The first line of standard input without its end.
QString readPasswordLine();

} // namespace corvane
