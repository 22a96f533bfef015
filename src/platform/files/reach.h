#pragma once

#include <QtCore/QString>

namespace corvane {

/// Why the system cannot tell whether a file or folder is there, in its own words, as of a share whose
/// connection is gone; empty when it can, also when there is none.
QString outOfReachReason(const QString &name);

} // namespace corvane
