#pragma once

#include <QtCore/QDate>
#include <QtWidgets/QDialog>

#include <functional>

class QLabel;
class QPushButton;

namespace corvane {

class DatePicker;
enum class CalendarRange;
class MessageBoxes;
class ReportHost;

/// "Report Dates": changes the main window's date range in place after checking its order. A menu of calendar
/// ranges fills both dates; weeks begin on the form's locale's first day.
class frmDefDates : public QDialog
{
    Q_OBJECT

public:
    /// Starts from the host's dates; on "Ok" writes the confirmed ones back to it.
    frmDefDates(ReportHost &host, MessageBoxes &boxes, int dateOrder, const std::function<QDate()> &today, QWidget *parent);

private:
    void buildForm(int dateOrder);
    void buildRanges();
    bool eventFilter(QObject *watched, QEvent *event) override;
    void fillDates(CalendarRange range);
    void dates_Change();
    void Command1_Click();

    ReportHost &m_host;
    MessageBoxes &m_boxes;
    std::function<QDate()> m_today;

    QLabel *Label1;
    DatePicker *DateFrom;
    QLabel *Label2;
    DatePicker *DateTo;
    QPushButton *cmdrange;
    QPushButton *Command1;
    QPushButton *cmdcancel;
};

} // namespace corvane
