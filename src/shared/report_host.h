#pragma once

#include "platform/messages/message_boxes.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>

#include <optional>

namespace corvane {

/// The toolbar's buttons by index.
enum ToolButton { ExitButton, DatesButton, PdfButton, PatientButton, PropertiesButton, RefreshButton, ExcelButton };
inline constexpr int kToolButtonCount = 7;

enum class ReportMenu { mnuFProps, mnuFPrint, mnuFSendTo };

enum ReportKind { NoReport = 0, TabularReport = 1, DesignedReport = 2, ReservedReport = 4 };

/// A date field as it stands: what it shows, and the date when it is whole and real.
struct DateEntry {
    QString text;
    std::optional<QDate> date;
};

/// What a run does to its surroundings. The main window is one, the batch program another.
class ReportHost : public MessageBoxes
{
public:
    virtual void enableButton(int index, bool enabled) = 0;
    virtual void enableMenu(ReportMenu menu, bool enabled) = 0;
    /// A run begins: the document shown so far is gone.
    virtual void clearPreview() { }
    virtual void showHourglass(bool on) = 0;
    /// The flood panel's fill, 0 to 100; also the moment to repaint and to look for Escape.
    virtual void showProgress(int percent) = 0;
    /// True once the user has asked for the running report to stop.
    virtual bool stopRequested() = 0;

    virtual DateEntry dateFrom() const = 0;
    virtual DateEntry dateTo() const = 0;
    /// Setting a date that differs from the shown one sets bDatesChanged.
    virtual void setDates(QDate from, QDate to) = 0;
    /// The range that a freshly opened report starts with: today, unless the command line says more.
    virtual void resetDates() = 0;
    virtual QDateTime now() const = 0;

    /// All seven toolbar buttons at once.
    void btnState(bool b)
    {
        for (int index = 0; index < kToolButtonCount; ++index)
            enableButton(index, b);
    }

    int rptType = NoReport;
    bool promptParams = false;  ///< a report file is being opened: its dialogs are to be shown
    bool reRun = false;         ///< the parameters were given before
    bool bDatesChanged = false; ///< DateFrom or DateTo changed since the last finished report
};

} // namespace corvane
