#pragma once

#include <QtCore/QDate>
#include <QtCore/QLocale>

namespace corvane::test {

/// A letter's date is the day of the run; reviewed texts have a word in its place.
inline QString withoutPrintDate(QString text)
{
    const QDate today = QDate::currentDate();
    for (const QDate day : {today.addDays(-1), today})
        text.replace(QLocale::c().toString(day, QStringLiteral("MMMM d, yyyy")), QStringLiteral("(print date)"));
    return text;
}

} // namespace corvane::test
