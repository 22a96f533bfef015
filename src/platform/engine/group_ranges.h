#pragma once

#include <QtCore/QtGlobal>

#include <vector>

namespace corvane {

/// Where the groups of sorted rows begin, for each level; groups and positions count from 0.
class GroupRanges
{
public:
    GroupRanges() = default;
    GroupRanges(qsizetype rowCount, std::vector<std::vector<quint32>> starts)
        : m_rowCount(rowCount)
        , m_starts(std::move(starts))
    {
    }

    int levelCount() const { return int(m_starts.size()); }
    /// At least 1, so that an empty report has somewhere to keep its totals.
    size_t groupCount(int level) const
    {
        return std::max<size_t>(level < 0 ? 1 : m_starts[size_t(level)].size(), 1);
    }
    /// The group of a level that a row belongs to; `near` is where to look first.
    size_t groupAt(int level, qsizetype position, size_t near = 0) const;
    /// The outermost level that starts a group at this row; levelCount() when none does.
    int levelStartingAt(qsizetype position) const;
    qsizetype end(int level, size_t group) const
    {
        const auto &starts = m_starts[size_t(level)];
        return group + 1 < starts.size() ? qsizetype(starts[group + 1]) : m_rowCount;
    }

private:
    qsizetype m_rowCount = 0;
    std::vector<std::vector<quint32>>
        m_starts; ///< by level; a level has all starts of the level outside
};

} // namespace corvane
