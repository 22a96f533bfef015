#include "definitions/checker/near_word.h"

#include <algorithm>
#include <vector>

namespace corvane {

namespace {

constexpr qsizetype kLongestWord = 40;

/// Letters to put in, take out or replace, or neighbours to exchange (optimal string alignment).
int distance(QStringView a, QStringView b)
{
    const auto width = size_t(b.size()) + 1;
    std::vector<int> cells(size_t(a.size() + 1) * width);
    const auto at
        = [&](qsizetype i, qsizetype j) -> int & { return cells[size_t(i) * width + size_t(j)]; };
    for (qsizetype i = 0; i <= a.size(); ++i) {
        for (qsizetype j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = int(i + j);
                continue;
            }
            const int replaced = at(i - 1, j - 1) + int(a[i - 1] != b[j - 1]);
            at(i, j) = std::min({replaced, at(i - 1, j) + 1, at(i, j - 1) + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return at(a.size(), b.size());
}

QString plain(QStringView word)
{
    QString text = word.toString().toCaseFolded();
    return text.remove(u' ').remove(u'\t');
}

} // namespace

QString nearWord(QStringView word, std::span<const QString> candidates)
{
    if (word.size() > kLongestWord)
        return {};
    const QString wanted = plain(word);
    QString nearest;
    int least = std::max(1, int(wanted.size()) / 3) + 1;
    for (const QString &candidate : candidates) {
        const int steps = distance(wanted, plain(candidate));
        if (steps < least) {
            least = steps;
            nearest = candidate;
        }
    }
    return nearest;
}

} // namespace corvane
