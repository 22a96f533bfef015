#pragma once

#include "shared/report_host.h"

namespace corvane {

/// The surroundings of a run without a window: messages go to standard error, the date range comes
/// from the command line, and nothing else shows.
class ConsoleHost : public ReportHost
{
public:
    ConsoleHost(QDateTime now, int dateOrder);

    /// The range that every opened report starts with.
    void setRange(QDate from, QDate to);

    MessageAnswer message(const QString &text, int flags, const QString &title) override;
    void enableButton(int, bool) override { }
    void enableMenu(ReportMenu, bool) override { }
    void showHourglass(bool) override { }
    void showProgress(int) override { }
    bool stopRequested() override { return false; }

    DateEntry dateFrom() const override { return entry(m_from); }
    DateEntry dateTo() const override { return entry(m_to); }
    void setDates(QDate from, QDate to) override;
    void resetDates() override { setDates(m_rangeFrom, m_rangeTo); }
    QDateTime now() const override { return m_now; }

private:
    DateEntry entry(QDate date) const;

    QDateTime m_now;
    int m_dateOrder;
    QDate m_rangeFrom;
    QDate m_rangeTo;
    QDate m_from;
    QDate m_to;
};

} // namespace corvane
