#include "definitions/checker/near_word.h"

#include "platform/engine/expression/nearest_name.h"

namespace corvane {

namespace {

constexpr qsizetype kLongestWord = 40;

QString withoutBlanks(QStringView word)
{
    return word.toString().remove(u' ').remove(u'\t');
}

} // namespace

QString nearWord(QStringView word, std::span<const QString> candidates)
{
    if (word.size() > kLongestWord)
        return {};
    QStringList names;
    for (const QString &candidate : candidates)
        names += withoutBlanks(candidate);
    const auto nearest = nearestName(withoutBlanks(word), names);
    return nearest ? candidates[size_t(*nearest)] : QString();
}

} // namespace corvane
