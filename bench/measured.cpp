#include "measured.h"

#include <algorithm>
#include <map>

namespace corvane::bench {

namespace {

std::map<std::string, double> &figures()
{
    static std::map<std::string, double> all;
    return all;
}

} // namespace

void record(const std::string &name, double value)
{
    double &kept = figures().try_emplace(name, value).first->second;
    kept = std::max(kept, value);
}

std::optional<double> recorded(const std::string &name)
{
    const auto found = figures().find(name);
    return found == figures().end() ? std::nullopt : std::optional(found->second);
}

} // namespace corvane::bench
