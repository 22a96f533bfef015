#pragma once

#include <QtCore/QString>

namespace corvane {

/// The comments in the version information that the system keeps with this executable; empty where it has none.
QString versionComments();

} // namespace corvane
