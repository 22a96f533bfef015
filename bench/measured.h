#pragma once

#include <optional>
#include <string>

namespace corvane::bench {

/// Keeps a figure for the check against the budget, under the name that it has there; the largest
/// of those that are recorded under one name.
void record(const std::string &name, double value);
std::optional<double> recorded(const std::string &name);

} // namespace corvane::bench
