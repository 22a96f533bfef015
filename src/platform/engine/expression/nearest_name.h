#pragma once

#include <QtCore/QStringList>

#include <optional>

namespace corvane {

/// Index of the name that takes the fewest changed letters, without regard to case; empty where none is near.
std::optional<qsizetype> nearestName(QStringView name, const QStringList &names);

/// "; did you mean Sum?" for the name that takes the fewest changed letters; empty where none is
/// near.
QString didYouMean(QStringView name, const QStringList &names);

} // namespace corvane
