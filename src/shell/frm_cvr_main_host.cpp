// What a report's run does to the main window, and what it asks of it.

#include "shell/frm_cvr_main.h"

#include "platform/controls/date_field.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/ribbon_button.h"
#include "platform/preview/preview.h"
#include "shell/input_gate.h"

#include <QtGui/QAction>
#include <QtWidgets/QLabel>

namespace corvane {

MessageAnswer frmCVRMain::message(const QString &text, int flags, const QString &title)
{
    return m_desktop.message(text, flags, title);
}

void frmCVRMain::enableButton(int index, bool enabled)
{
    btnvp[size_t(index)]->setEnabled(enabled);
}

void frmCVRMain::enableMenu(ReportMenu menu, bool enabled)
{
    switch (menu) {
    case ReportMenu::mnuFSendTo:
        mnuFSendTo->setEnabled(enabled);
        break;
    case ReportMenu::mnuFPrint:
        mnuFPrint->setEnabled(enabled);
        break;
    case ReportMenu::mnuFProps:
        mnuFProps->setEnabled(enabled);
        break;
    }
}

void frmCVRMain::clearPreview()
{
    vp->setDocument(nullptr);
    m_summary->hide();
    m_summary->clear();
    showNotes({});
}

void frmCVRMain::showHourglass(bool on)
{
    if (on)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

void frmCVRMain::showProgress(int percent)
{
    if (percent != pnlprogress->floodPercent()) {
        pnlprogress->setFloodPercent(percent);
        pnlprogress->setVisible(percent > 0);
    }
    if (m_gate->isClosed())
        m_gate->serve();
}

bool frmCVRMain::stopRequested()
{
    if (!m_gate->takeEscape())
        return false;
    return message(m_stopQuestion, MessageFlags::YesNo, kTitle) == MessageAnswer::Yes;
}

DateEntry frmCVRMain::dateFrom() const
{
    return {DateFrom->text(), DateFrom->date()};
}

DateEntry frmCVRMain::dateTo() const
{
    return {DateTo->text(), DateTo->date()};
}

void frmCVRMain::setDates(QDate from, QDate to)
{
    DateFrom->setDate(from);
    DateTo->setDate(to);
}

void frmCVRMain::resetDates()
{
    const QDate today = m_clock().date();
    setDates(today, today);
}

} // namespace corvane
