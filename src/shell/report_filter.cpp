#include "shell/report_filter.h"

#include "platform/preview/search_folding.h"

#include <QtCore/QList>

#include <algorithm>

namespace corvane {

namespace {

std::u16string folded(QStringView text)
{
    static const SearchFolding folding;
    return folding.fold(text, CaseRule::Ignore).text;
}

} // namespace

ReportFilter::ReportFilter(QStringView typed)
{
    const std::u16string text = folded(typed);
    for (const QStringView word : QStringView(text).split(u' ', Qt::SkipEmptyParts))
        m_words.push_back(word.toString().toStdU16String());
}

bool ReportFilter::matches(QStringView name) const
{
    const std::u16string text = folded(name);
    return std::ranges::all_of(m_words,
        [&](const std::u16string &word) { return text.find(word) != std::u16string::npos; });
}

} // namespace corvane
