#pragma once

#include <QtCore/QStringList>

namespace corvane {

/// "; did you mean Sum?" for the name that takes the fewest changed letters; empty where none is
/// near.
QString didYouMean(QStringView name, const QStringList &names);

} // namespace corvane
