#include "platform/engine/value_tally.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace corvane {

namespace {

constexpr qsizetype kMostPagesNamed = 6;

QString pageList(std::vector<int> pages)
{
    std::ranges::sort(pages);
    pages.erase(std::unique(pages.begin(), pages.end()), pages.end());
    QStringList names;
    for (const int page : pages)
        names += QString::number(page + 1);
    if (names.size() > kMostPagesNamed) {
        const qsizetype more = names.size() - kMostPagesNamed + 1;
        names = names.first(kMostPagesNamed - 1);
        names += QStringLiteral("%1 more").arg(more);
    }
    if (names.size() == 1)
        return QStringLiteral("page ") + names.front();
    const QString end = names.takeLast();
    return QStringLiteral("pages %1 and %2").arg(names.join(QStringLiteral(", ")), end);
}

} // namespace

void ValueTally::add(int page, const QString &words)
{
    if (m_count++ == 0)
        m_words = words;
    if (m_pages.empty() || m_pages.back() != page)
        m_pages.push_back(page);
}

QString ValueTally::note(const QString &one, const QString &many) const
{
    if (m_count == 0)
        return {};
    QString note = QStringLiteral("%1 %2, %3")
                       .arg(m_count)
                       .arg(m_count == 1 ? one : many, pageList(m_pages));
    return m_words.isEmpty() ? QString(note + u'.')
                             : QString(note + QStringLiteral(": ") + m_words);
}

} // namespace corvane
