#pragma once

#include <QtCore/QString>

namespace corvane {

/// Tries both databases of a program folder step by step, and prints each step with what to do
/// about the first that fails.
/// @return an ExitStatus: Done; NoConnection without corvane.ini or main database; ReportFailed
/// when only the second database fails.
int runDoctor(const QString &folder, int dateOrder);

} // namespace corvane
