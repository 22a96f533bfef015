#include "platform/engine/group_ranges.h"

#include <algorithm>

namespace corvane {

size_t GroupRanges::groupAt(int level, qsizetype position, size_t near) const
{
    if (level < 0 || position < 0)
        return 0;
    const auto &starts = m_starts[size_t(level)];
    // Rows are read in order: it is the same group as before or the next one nearly always.
    for (size_t group = near; group < std::min(near + 2, starts.size()); ++group) {
        if (position >= qsizetype(starts[group]) && position < end(level, group))
            return group;
    }
    const auto behind = std::ranges::upper_bound(starts, quint32(position));
    return size_t(std::max<qsizetype>(behind - starts.begin() - 1, 0));
}

int GroupRanges::levelStartingAt(qsizetype position) const
{
    for (int level = 0; level < levelCount(); ++level) {
        if (std::ranges::binary_search(m_starts[size_t(level)], quint32(position)))
            return level;
    }
    return levelCount();
}

} // namespace corvane
