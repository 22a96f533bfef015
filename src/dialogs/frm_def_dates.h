#pragma once

#include <QtCore/QDate>
#include <QtWidgets/QDialog>

#include <functional>

class QLabel;
class QPushButton;

namespace corvane {

class DatePicker;
class MessageBoxes;
class ReportHost;

/// "Report Dates": changes the main window's date range in place after checking its order.
class frmDefDates : public QDialog
{
    Q_OBJECT

public:
    /// Starts from the host's dates; on "Ok" writes the confirmed ones back to it.
    frmDefDates(ReportHost &host, MessageBoxes &boxes, int dateOrder, std::function<QDate()> today, QWidget *parent);

private:
    void buildForm(int dateOrder);
    void dates_Change();
    void Command1_Click();

    ReportHost &m_host;
    MessageBoxes &m_boxes;

    QLabel *Label1;
    DatePicker *DateFrom;
    QLabel *Label2;
    DatePicker *DateTo;
    QPushButton *Command1;
    QPushButton *cmdcancel;
};

} // namespace corvane
