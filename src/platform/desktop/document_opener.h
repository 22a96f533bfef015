#pragma once

#include <QtCore/QString>

namespace corvane {

/// Opens a file in the program that the system keeps for its kind, without waiting for that program.
/// @return a code of OpenCodes
int openWithItsProgram(const QString &path);

} // namespace corvane
