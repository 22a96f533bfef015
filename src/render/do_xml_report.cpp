// The designed half of ReportRun: asks, lays out, and sets the states that a designed report leaves.

#include "render/report_run.h"

#include "platform/database/error.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

const QString kTitle = QStringLiteral("Corvane");

} // namespace

RunResult ReportRun::doXMLReport()
{
    m_state.closeConn();
    m_state.openConn(m_state.gConnectString);
    m_host.enableButton(PatientButton, false);
    m_adodc1.setConnectionString(m_state.gConnectString);
    m_designed.load();
    const QString recordSource = m_designed.askedRecordSource();
    if (recordSource.trimmed().isEmpty())
        return stop();
    m_host.showHourglass(true);
    const RunResult result = renderDesigned(recordSource);
    m_host.showHourglass(false);
    m_host.showProgress(0);
    return result;
}

RunResult ReportRun::renderDesigned(const QString &recordSource)
{
    RenderResult rendered;
    QElapsedTimer timer;
    timer.start();
    try {
        rendered = m_designed.render(recordSource, renderSettings());
    } catch (const ReportError &error) {
        return failRendering(error.description());
    } catch (const DatabaseError &error) {
        return failRendering(QStringLiteral("The query of \"%1\" failed: %2")
                                 .arg(QFileInfo(m_state.gRptFile).fileName(), error.description()));
    }
    if (rendered.isStopped)
        return stop();
    m_document = rendered.document;
    m_timings.rows = rendered.rows->rowCount();
    m_timings.queryMs = rendered.queryMs;
    m_timings.composeMs = timer.elapsed() - rendered.queryMs;
    for (const int button : {ExitButton, PdfButton, PropertiesButton, RefreshButton, ExcelButton})
        m_host.enableButton(button, true);
    m_host.enableMenu(ReportMenu::mnuFPrint, true);
    m_host.enableMenu(ReportMenu::mnuFSendTo, true);
    return RunResult::Done;
}

RenderSettings ReportRun::renderSettings()
{
    RenderSettings settings;
    settings.info.report = QFileInfo(m_state.gRptFile).fileName();
    settings.info.user = m_state.gUserID;
    settings.info.printedAt = m_host.now();
    settings.info.language = m_locale.bcp47Name();
    settings.style = m_style;
    settings.progress = [this](int percent) {
        m_host.showProgress(percent);
        return !m_host.stopRequested();
    };
    return settings;
}

bool ReportRun::prepareExcel()
{
    if (m_host.rptType != DesignedReport || !hasWholeDocument())
        return true;
    const QString sql = m_designed.excelRecordSource();
    if (sql.trimmed().isEmpty())
        return false;
    m_adodc1.setRecordSource(sql);
    m_adodc1.refresh(m_state.gConn.get(), m_state.drivers(m_state.gConnectString));
    return true;
}

} // namespace corvane
