#include "batch/console_host.h"

#include "platform/dates/date_text.h"
#include "platform/process/console.h"

namespace corvane {

ConsoleHost::ConsoleHost(QDateTime now, int dateOrder)
    : m_now(std::move(now))
    , m_dateOrder(dateOrder)
    , m_rangeFrom(m_now.date())
    , m_rangeTo(m_now.date())
    , m_from(m_rangeFrom)
    , m_to(m_rangeTo)
{
}

void ConsoleHost::setRange(QDate from, QDate to)
{
    m_rangeFrom = from;
    m_rangeTo = to;
}

MessageAnswer ConsoleHost::message(const QString &text, int flags, const QString &)
{
    printError(text);
    // Nobody is there to say yes.
    return MessageFlags::ask(flags) ? MessageAnswer::No : MessageAnswer::Ok;
}

void ConsoleHost::setDates(QDate from, QDate to)
{
    bDatesChanged = bDatesChanged || from != m_from || to != m_to;
    m_from = from;
    m_to = to;
}

DateEntry ConsoleHost::entry(QDate date) const
{
    return {dateText(date, dateOrderOf(m_dateOrder)), date};
}

} // namespace corvane
