#pragma once

#include <QtCore/QStringView>

#include <string>
#include <vector>

namespace corvane {

/// What was typed to narrow the report list: a name matches when it holds every typed word
/// somewhere, without regard to case and accents. Nothing typed matches everything.
class ReportFilter
{
public:
    explicit ReportFilter(QStringView typed = {});

    bool matches(QStringView name) const;

private:
    std::vector<std::u16string> m_words;
};

} // namespace corvane
