#pragma once

#include <QtCore/QString>

namespace corvane::bench {

/// A program folder with one table of `rows` appointments of 7 columns and a definition "Bench.rpt" that
/// prints them all; user "bench", password "bench".
void makeBenchClinic(const QString &folder, int rows);

} // namespace corvane::bench
