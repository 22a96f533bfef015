#include "render/report_run.h"

#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "platform/database/error.h"
#include "shared/date_range.h"
#include "shared/dates.h"
#include "shared/run_time_fault.h"

#include <QtCore/QFileInfo>

#include <utility>

namespace corvane {

namespace {

const QString kTitle = QStringLiteral("Corvane");

} // namespace

ReportRun::ReportRun(Reportr &state, ReportHost &host, ParameterDialogs &dialogs, const QLocale &locale)
    : m_state(state)
    , m_host(host)
    , m_dialogs(dialogs)
    , m_locale(locale)
    , m_style(cellStyle(m_locale))
    , m_designed(state, host, dialogs)
{
}

void ReportRun::startOpening(const QString &path)
{
    m_host.reRun = false;
    m_host.enableButton(DatesButton, false);
    m_host.enableButton(PatientButton, false);
    m_host.resetDates();
    m_state.gRptFile = path;
    m_host.promptParams = true;
}

RunResult ReportRun::openListed(const QString &path)
{
    if (!mayRun())
        return RunResult::NotRun;
    startOpening(path);
    m_host.rptType = listedReportType(path);
    m_host.enableMenu(ReportMenu::mnuFProps, m_host.rptType == TabularReport);
    const RunResult result = runReport();
    const bool incomplete = result == RunResult::Failed || result == RunResult::Stopped;
    enableOutputMenus(!incomplete);
    m_host.promptParams = false;
    return result;
}

RunResult ReportRun::openReport(const QString &path)
{
    if (!mayRun())
        return RunResult::NotRun;
    startOpening(path);
    m_host.rptType = NoReport;
    if (const QString reason = unreadableReason(path); !reason.isEmpty())
        return runReport();
    const int kind = getReportType(path);
    if (kind == NoReport) {
        m_host.message(QStringLiteral("File is either not a valid report file or is corrupted"),
            MessageFlags::Critical, QStringLiteral("Invalid Report File"));
    } else {
        m_host.rptType = kind;
        m_host.enableMenu(ReportMenu::mnuFProps, kind == TabularReport);
    }
    const RunResult result = runReport();
    m_host.promptParams = false;
    return result;
}

bool ReportRun::mayRun()
{
    if (m_state.loggedOn)
        return true;
    m_host.message(QStringLiteral("No report can be run, because nobody is logged on. "
                                  "Close the program, start it again and log on."),
        MessageFlags::Exclamation, kTitle);
    return false;
}

RunResult ReportRun::runReport()
{
    if (!mayRun())
        return RunResult::NotRun;
    if (m_host.rptType == TabularReport) {
        const TabularDefinition definition(m_state.gRptFile);
        if (!datesFit(m_host.dateFrom(), m_host.dateTo(), definition.getDates())) {
            m_host.message(kDateOrderMessage, MessageFlags::Exclamation, kTitle);
            return RunResult::NotRun;
        }
    }
    m_host.clearPreview();
    m_document.reset();
    m_vp.reset();
    m_adodc1.clear();
    m_timings = {};
    const RunResult result = runGuarded();
    if (result == RunResult::Done && std::exchange(m_withheldMenus, false))
        enableOutputMenus(true);
    return result;
}

void ReportRun::enableOutputMenus(bool enabled)
{
    m_withheldMenus = !enabled;
    m_host.enableMenu(ReportMenu::mnuFPrint, enabled);
    m_host.enableMenu(ReportMenu::mnuFSendTo, enabled);
}

RunResult ReportRun::runGuarded()
{
    try {
        if (const QString reason = unreadableReason(m_state.gRptFile); !reason.isEmpty())
            return fail(0, reason);
        return runByKind();
    } catch (const DatabaseError &error) {
        return fail(error);
    } catch (const RunTimeFault &fault) {
        return fail(fault.number(), fault.description());
    } catch (const ReportError &error) {
        return fail(0, error.description());
    } catch (const ComposeError &error) {
        return fail(RunTimeFault::InvalidArgument, error.description());
    } catch (const RunStopped &) {
        return stop();
    }
}

RunResult ReportRun::runByKind()
{
    switch (m_host.rptType) {
    case TabularReport:
        return doReport();
    case DesignedReport:
        return doXMLReport();
    case ReservedReport:
        m_host.message(QStringLiteral("Report Type Not Yet Supported"),
            MessageFlags::SystemModal | MessageFlags::Information, QStringLiteral(" Unsupported Report Selection"));
        return RunResult::NotRun;
    default:
        return RunResult::NotRun;
    }
}

WorkbookOptions ReportRun::workbookOptions() const
{
    WorkbookOptions options;
    options.title = m_document ? m_document->info.title : QString();
    options.author = m_state.gUserID;
    options.writtenAt = m_host.now();
    options.sheetName = QFileInfo(m_state.gRptFile).completeBaseName();
    options.style = m_style;
    return options;
}

RunResult ReportRun::fail(const DatabaseError &error)
{
    const RunResult result = fail(error.number(), error.description());
    const bool second = TabularDefinition(m_state.gRptFile).usesSecondDatabase();
    const QString advice = m_state.advice(error.cause(), second ? m_state.gHvnConnectString : m_state.gConnectString);
    if (!advice.isEmpty())
        m_host.message(advice, MessageFlags::Information, kTitle);
    return result;
}

RunResult ReportRun::fail(int number, const QString &description)
{
    setStatesAfterFailure();
    const QString cause = number == 0 ? description : QStringLiteral("Error %1: %2").arg(number).arg(description);
    m_host.message(QStringLiteral("The report \"%1\" could not be run.\n\n%2")
                       .arg(QFileInfo(m_state.gRptFile).fileName(), cause),
        MessageFlags::Critical, kTitle);
    return RunResult::Failed;
}

RunResult ReportRun::failRendering(const QString &description)
{
    setStatesAfterFailure();
    m_host.message(QString(u"Error rendering report. " + description), MessageFlags::Critical, kTitle);
    return RunResult::Failed;
}

void ReportRun::setStatesAfterFailure()
{
    const bool tabular = m_host.rptType == TabularReport;
    const TabularDefinition definition(m_state.gRptFile);
    m_vp.abandonDocument();
    m_document.reset();
    m_adodc1.clear();
    m_host.promptParams = false;
    m_host.showProgress(0);
    m_host.showHourglass(false);
    m_host.btnState(true);
    m_host.enableButton(DatesButton, tabular && definition.getDates());
    m_host.enableButton(PatientButton, tabular ? definition.getPatient() : m_designed.asksForPatient());
    m_host.enableButton(PdfButton, false);
    m_host.enableButton(PropertiesButton, tabular);
    m_host.enableButton(ExcelButton, false);
    enableOutputMenus(false);
}

RunResult ReportRun::stop()
{
    m_vp.abandonDocument();
    m_document.reset();
    m_adodc1.clear();
    m_host.showProgress(0);
    m_host.showHourglass(false);
    m_host.message(QStringLiteral("Report has been canceled."), MessageFlags::Information, QStringLiteral("Report Canceled"));
    m_host.enableButton(ExitButton, true);
    m_host.enableButton(RefreshButton, true);
    for (const int button : {PdfButton, PropertiesButton, ExcelButton})
        m_host.enableButton(button, false);
    if (m_host.rptType == TabularReport) {
        const TabularDefinition definition(m_state.gRptFile); // too long a range is why most runs are stopped
        m_host.enableButton(DatesButton, definition.getDates());
        m_host.enableButton(PatientButton, definition.getPatient());
    }
    enableOutputMenus(false);
    return RunResult::Stopped;
}

} // namespace corvane
