#pragma once

#include "platform/controls/date_field.h"

#include <functional>

class QToolButton;

namespace corvane {

class CalendarPopup;

/// A date field with a calendar to drop down: its arrow, Alt+Down or F4 open it, Escape closes it.
class DatePicker : public DateField
{
    Q_OBJECT

public:
    using TodayFunction = std::function<QDate()>;

    /// @param today asked whenever the calendar opens and when its "Today" button is pressed
    explicit DatePicker(TodayFunction today, QWidget *parent = nullptr);
    explicit DatePicker(QWidget *parent = nullptr);

    bool isCalendarOpen() const;

public Q_SLOTS:
    void openCalendar();
    void closeCalendar();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void choose(QDate date);

    TodayFunction m_today;
    QToolButton *m_arrow = nullptr;
    CalendarPopup *m_popup = nullptr;
};

} // namespace corvane
