#include "platform/engine/expression/nearest_name.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// How many letters must be put in, taken out, changed or swapped with their neighbour (the optimal string alignment
/// distance), without regard to case.
int distance(QStringView a, QStringView b)
{
    const auto isSame = [&](qsizetype i, qsizetype j) { return a[i].toCaseFolded() == b[j].toCaseFolded(); };
    std::vector<int> beforeLast;
    std::vector<int> last(size_t(b.size()) + 1);
    std::iota(last.begin(), last.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        std::vector<int> row(last.size(), int(i) + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int changed = last[size_t(j)] + (isSame(i, j) ? 0 : 1);
            row[size_t(j) + 1] = std::min({changed, last[size_t(j) + 1] + 1, row[size_t(j)] + 1});
            if (i > 0 && j > 0 && isSame(i, j - 1) && isSame(i - 1, j))
                row[size_t(j) + 1] = std::min(row[size_t(j) + 1], beforeLast[size_t(j) - 1] + 1);
        }
        beforeLast = std::exchange(last, std::move(row));
    }
    return last.back();
}

} // namespace

std::optional<qsizetype> nearestName(QStringView name, const QStringList &names)
{
    constexpr qsizetype kLongestName = 60;
    if (name.size() > kLongestName)
        return {};
    std::optional<qsizetype> nearest;
    int least = std::max(1, int(name.size()) / 3) + 1;
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (names[i].size() > kLongestName)
            continue;
        if (const int changes = distance(name, names[i]); changes < least) {
            least = changes;
            nearest = i;
        }
    }
    return nearest;
}

QString didYouMean(QStringView name, const QStringList &names)
{
    const auto nearest = nearestName(name, names);
    return nearest ? QStringLiteral("; did you mean %1?").arg(names[*nearest]) : QString();
}

} // namespace corvane
