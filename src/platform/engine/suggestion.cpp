#include "platform/engine/suggestion.h"

#include "platform/engine/expression/nearest_name.h"

namespace corvane {

namespace {

constexpr qsizetype kMostWords = 12;
constexpr QStringView kBetween = u"\", \"";

} // namespace

QString suggestion(QStringView written, const QStringList &words)
{
    if (const QString near = didYouMean(written, words); !near.isEmpty())
        return near;
    if (words.isEmpty())
        return QStringLiteral(".");
    if (words.size() == 1)
        return QStringLiteral("; possible is \"%1\".").arg(words.front());
    if (words.size() > kMostWords) {
        return QStringLiteral("; possible are \"%1\" and %2 others.")
            .arg(
                words.first(kMostWords).join(kBetween), QString::number(words.size() - kMostWords));
    }
    return QStringLiteral("; possible are \"%1\" and \"%2\".")
        .arg(words.first(words.size() - 1).join(kBetween), words.back());
}

} // namespace corvane
