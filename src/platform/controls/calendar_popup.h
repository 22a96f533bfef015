#pragma once

#include <QtCore/QDate>
#include <QtWidgets/QFrame>

class QCalendarWidget;

namespace corvane {

/// The calendar that a date picker drops down, with a "Today" button below it.
class CalendarPopup : public QFrame
{
    Q_OBJECT

public:
    explicit CalendarPopup(QWidget *parent);

    /// Shows the month of `selected` and marks today, before the popup is shown.
    void prepare(QDate selected, QDate today);

Q_SIGNALS:
    void chosen(QDate date);
    void todayWanted();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QCalendarWidget *m_calendar;
};

} // namespace corvane
