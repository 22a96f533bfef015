#include "platform/engine/expression/nearest_name.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace corvane {

namespace {

/// How many letters must be put in, taken out or changed (Levenshtein's distance), without regard
/// to case.
int distance(QStringView a, QStringView b)
{
    std::vector<int> row(size_t(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], int(i) + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            const bool isSame = a[i].toCaseFolded() == b[j].toCaseFolded();
            const int changed = diagonal + (isSame ? 0 : 1);
            diagonal = row[size_t(j) + 1];
            row[size_t(j) + 1] = std::min({changed, diagonal + 1, row[size_t(j)] + 1});
        }
    }
    return row.back();
}

} // namespace

QString didYouMean(QStringView name, const QStringList &names)
{
    constexpr qsizetype kLongestName = 60;
    if (name.size() > kLongestName)
        return {};
    QString nearest;
    int least = std::max(1, int(name.size()) / 3) + 1;
    for (const QString &candidate : names) {
        if (candidate.size() > kLongestName)
            continue;
        if (const int changes = distance(name, candidate); changes < least) {
            least = changes;
            nearest = candidate;
        }
    }
    return nearest.isEmpty() ? QString() : QStringLiteral("; did you mean %1?").arg(nearest);
}

} // namespace corvane
