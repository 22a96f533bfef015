// What the main window asks with forms, and how it prints and saves.

#include "shell/frm_cvr_main.h"

#include "dialogs/frm_def_dates.h"
#include "dialogs/frm_rptr_dates.h"
#include "dialogs/frm_rptr_params.h"
#include "dialogs/frm_rptr_select.h"
#include "dialogs/frmspatnt.h"
#include "export/print_document.h"
#include "export/save_excel.h"
#include "export/save_pdf.h"
#include "platform/database/error.h"
#include "platform/preview/preview.h"
#include "shared/run_time_fault.h"
#include "shell/input_gate.h"

namespace corvane {

void frmCVRMain::mnuFPrint_Click()
{
    exportWith([this] {
        m_stopQuestion = tr("Do you want to stop printing?");
        PrintOptions options {vp->currentPage(), [this](int page, int pageCount) {
            showProgress(100 * page / pageCount);
            return !stopRequested();
        }};
        if (const auto printed = printDocument(m_desktop, m_run.document(), options))
            showNotes(printed->notes);
    });
}

void frmCVRMain::mnuAdobe_Click()
{
    exportWith([this] {
        if (const QString failure = savepdf(m_desktop, m_run.document(), m_state.programFolder); !failure.isEmpty())
            showNotes({failure});
    });
}

void frmCVRMain::mnuExcel_Click()
{
    exportWith([this] {
        m_stopQuestion = tr("Do you want to stop saving?");
        if (!m_run.prepareExcel())
            return;
        SaveExcel(m_desktop, *this, m_run.dataControl(), m_run.workbookOptions(), m_state.programFolder);
    });
}

/// Nothing but repainting, Escape and the call's own dialogs is served while it runs.
template <typename Call>
void frmCVRMain::exportWith(Call call)
{
    if (m_gate->isClosed())
        return;
    m_gate->takeEscape();
    m_gate->close();
    const auto tellUnread = [this](const QString &cause) {
        message(tr("The report's rows cannot be read again for the workbook. Choose \"Refresh\", then save again.\n\nCause: %1").arg(cause),
            MessageFlags::Exclamation, kTitle);
    };
    try {
        call();
    } catch (const WorkbookError &error) {
        message(error.message(), MessageFlags::Exclamation, kTitle);
    } catch (const DatabaseError &error) {
        tellUnread(error.description());
    } catch (const RunTimeFault &fault) {
        tellUnread(fault.description());
    }
    m_gate->open();
    showProgress(0);
    if (m_gate->takeCloseWish())
        close();
}

void frmCVRMain::askDateRange(ReportHost &host)
{
    const InputGate::Opened opened(*m_gate);
    frmDefDates(host, *this, m_state.gDateOrder, [this] { return m_clock().date(); }, this).exec();
}

void frmCVRMain::askPatient()
{
    const InputGate::Opened opened(*m_gate);
    frmspatnt(m_state, *this, this).exec();
}

std::optional<DateAnswers> frmCVRMain::askDates(const QString &request)
{
    frmRptrDates form(m_state.DateParamTable, *this, m_state.gDateOrder, [this] { return m_clock().date(); }, this);
    form.RequestSQL = request;
    form.Form_Load();
    const InputGate::Opened opened(*m_gate);
    form.exec();
    return form.ResultSQL.isEmpty() ? std::nullopt : std::optional(form.answers());
}

std::optional<SelectionAnswers> frmCVRMain::askSelection(const QString &request)
{
    frmRptrSelect form(*m_state.gConn, *this, m_run.valueStyle(), this);
    form.RequestSQL = request;
    form.load();
    const InputGate::Opened opened(*m_gate);
    form.exec();
    return form.ResultSQL.isEmpty() ? std::nullopt : std::optional(form.answers());
}

std::optional<ParameterAnswers> frmCVRMain::askParameters(const ParametersClause &clause)
{
    frmRptrParams form(clause, m_state.gDateOrder, [this] { return m_clock().date(); }, this);
    const InputGate::Opened opened(*m_gate);
    form.exec();
    return form.answers();
}

} // namespace corvane
