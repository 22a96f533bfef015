#include "platform/engine/near_word.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace corvane {

namespace {

/// Longer ones are no slips of the pen, and comparing them takes time.
constexpr qsizetype kLongestWord = 60;
constexpr qsizetype kMostWords = 12;
constexpr QStringView kBetween = u"\", \"";

/// How many letters must be changed, added or taken out to make one text of the other
/// (Levenshtein's distance).
qsizetype distance(QStringView from, QStringView to)
{
    std::vector<qsizetype> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : from) {
        qsizetype diagonal = row[0]++;
        for (qsizetype i = 1; i <= to.size(); ++i) {
            const qsizetype changed
                = diagonal + (letter.toCaseFolded() == to[i - 1].toCaseFolded() ? 0 : 1);
            diagonal = row[i];
            row[i] = std::min({changed, row[i] + 1, row[i - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

QString nearWord(QStringView written, const QStringList &words)
{
    if (written.size() > kLongestWord)
        return {};
    QString nearest;
    qsizetype least = written.size();
    for (const QString &word : words) {
        if (qAbs(word.size() - written.size()) > word.size() / 3)
            continue;
        const qsizetype changes = distance(written, word);
        if (changes < least && changes <= std::max<qsizetype>(1, word.size() / 3)) {
            nearest = word;
            least = changes;
        }
    }
    return nearest;
}

QString suggestion(QStringView written, const QStringList &words)
{
    if (const QString near = nearWord(written, words); !near.isEmpty())
        return QStringLiteral("; did you mean \"%1\"?").arg(near);
    if (words.isEmpty())
        return QStringLiteral(".");
    if (words.size() == 1)
        return QStringLiteral("; possible is \"%1\".").arg(words.front());
    if (words.size() > kMostWords)
        return QStringLiteral("; possible are \"%1\" and %2 others.")
            .arg(
                words.first(kMostWords).join(kBetween), QString::number(words.size() - kMostWords));
    return QStringLiteral("; possible are \"%1\" and \"%2\".")
        .arg(words.first(words.size() - 1).join(kBetween), words.back());
}

} // namespace corvane
