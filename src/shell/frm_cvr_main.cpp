#include "shell/frm_cvr_main.h"

#include "definitions/checker/definition_check.h"
#include "dialogs/frm_about.h"
#include "editor/frm_cvr_props.h"
#include "help/help_desk.h"
#include "help/help_topics.h"
#include "platform/controls/date_field.h"
#include "platform/controls/ribbon_button.h"
#include "platform/controls/spacing.h"
#include "platform/controls/tool_tip.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_pane.h"
#include "platform/process/single_instance.h"
#include "session/report_list.h"
#include "session/startup.h"
#include "shared/dates.h"
#include "shell/dropped_report.h"
#include "shell/frm_reportr_logon.h"
#include "shell/input_gate.h"
#include "shell/report_list_pane.h"
#include "shell/report_list_view.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtGui/QCloseEvent>
#include <QtGui/QDropEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>

namespace corvane {

namespace {

constexpr int kWindowLetters = 177; ///< to begin with, when the screen is large enough
constexpr int kWindowLines = 48;
const QString kChooseReport = QStringLiteral("Choose a report from the list.");

QString counted(qint64 count, const QString &one, const QString &many)
{
    return QLocale().toString(count) + u' ' + (count == 1 ? one : many);
}

QString summaryOf(qint64 pages, qint64 rows)
{
    return counted(pages, QStringLiteral("page"), QStringLiteral("pages")) + QStringLiteral(" \u00b7 ")
        + counted(rows, QStringLiteral("row"), QStringLiteral("rows"));
}

QStringList problemLines(const std::vector<Finding> &findings)
{
    QStringList lines;
    for (const Finding &finding : findings)
        lines += QStringLiteral("%1:%2: %3 %4").arg(finding.place.line).arg(finding.place.column).arg(finding.text, finding.mend).trimmed();
    return lines;
}

} // namespace

frmCVRMain::frmCVRMain(Reportr &state, Desktop &desktop, Clock clock, const QLocale &locale)
    : m_state(state)
    , m_gate(new InputGate(this))
    , m_desktop(desktop, *m_gate)
    , m_clock(std::move(clock))
    , m_run(state, *this, *this, locale)
    , m_help(new HelpDesk(desktop, state.programFolder, this))
{
    setObjectName(QStringLiteral("frmCVRMain"));
    setWindowTitle(tr("Corvane Reporter"));
    state.gDateOrder = getDateOrder(locale);
    buildToolbar();
    buildMenus();
    buildPanes();
    buildStatusBar();
    connectDates();
    resize(QSize(lettersWide(this, kWindowLetters), linesHigh(this, kWindowLines)).boundedTo(screen()->availableSize()));
}

bool frmCVRMain::Form_Load(const SingleInstance &instance)
{
    if (!instance.isFirst()) {
        message(tr("This program is already running. You can only have one instance open."),
            MessageFlags::Exclamation, kTitle);
        return false;
    }
    const StartState start = connectDatabases(m_state, *this);
    if (start == StartState::NoConfiguration)
        return false;
    for (const ReportMenu menu : {ReportMenu::mnuFProps, ReportMenu::mnuFPrint, ReportMenu::mnuFSendTo})
        enableMenu(menu, false);
    DateFrom->setDateOrder(m_state.gDateOrder);
    DateTo->setDateOrder(m_state.gDateOrder);
    resetDates();
    show();
    if (start == StartState::NoConnection) {
        startWithoutConnection();
        return true;
    }
    return logOnWithForm();
}

bool frmCVRMain::logOnWithForm()
{
    {
        frmReportrLogon form(m_state, *this, this);
        form.exec();
        enableButton(ExitButton, true);
        if (!form.accepted()) {
            m_state.closeConn();
            return false;
        }
    }
    for (int index = DatesButton; index <= ExcelButton; ++index)
        enableButton(index, false);
    enableMenu(ReportMenu::mnuFPrint, true);
    enableMenu(ReportMenu::mnuFSendTo, true);
    m_user->setText(m_state.gUserID);
    File1->setFolder(reportFolder(m_state.programFolder));
    File1->setFocus();
    return true;
}

void frmCVRMain::startWithoutConnection()
{
    for (const int index : {DatesButton, PdfButton, PatientButton})
        enableButton(index, false);
    m_listPane->setEnabled(false);
    vp->setEmptyText(tr("There is no connection to the database. Close the program, mend the cause, and start it again."));
}

void frmCVRMain::closeEvent(QCloseEvent *event)
{
    m_state.closeConn();
    event->accept();
}

void frmCVRMain::File1_Click(const QString &fileName)
{
    runReportWith([&] { return m_run.openListed(QDir(File1->folder()).filePath(fileName)); });
}

void frmCVRMain::btnvp_Click(int index)
{
    RibbonButton &button = *btnvp[size_t(index)];
    if (!button.isChecked())
        return;
    button.setChecked(false);
    switch (index) {
    case ExitButton:
        close();
        break;
    case DatesButton:
        changeDates();
        break;
    case PdfButton:
        mnuAdobe_Click();
        break;
    case PatientButton:
        selectPatient();
        break;
    case ExcelButton:
        mnuExcel_Click();
        break;
    case PropertiesButton:
        mnuFProps_Click();
        break;
    case RefreshButton:
        runReportWith([&] { return m_run.runReport(); });
        break;
    default:
        break;
    }
}

void frmCVRMain::changeDates()
{
    askDateRange(*this);
    reRun = true;
    if (bDatesChanged)
        runReportWith([&] { return m_run.runReport(); });
}

void frmCVRMain::selectPatient()
{
    askPatient();
    reRun = true;
    runReportWith([&] { return m_run.runReport(); });
}

void frmCVRMain::mnuOpen_Click()
{
    if (m_lastFolder.isEmpty())
        m_lastFolder = m_state.programFolder;
    const QString file = m_desktop.openFile(tr("Open"), m_lastFolder, {});
    if (!file.trimmed().isEmpty())
        openFile(file);
}

void frmCVRMain::openFile(const QString &file)
{
    m_lastFolder = QFileInfo(file).absolutePath();
    runReportWith([&] { return m_run.openReport(file); });
}

/// A run goes on, or a question stands.
bool frmCVRMain::isBusy() const
{
    return m_gate->isBusy() || QApplication::activeModalWidget();
}

/// Only a copy is taken: whoever drags a file to move it would delete it afterwards.
bool frmCVRMain::mayTakeDrop(const QDropEvent &event) const
{
    return !isBusy() && event.possibleActions().testFlag(Qt::CopyAction) && !droppedReport(*event.mimeData()).isEmpty();
}

void frmCVRMain::dragEnterEvent(QDragEnterEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(mayTakeDrop(*event));
}

void frmCVRMain::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(mayTakeDrop(*event));
    if (!event->isAccepted())
        return;
    // Later, because the program that the file came from waits until this handler returns.
    const auto open = [this, file = droppedReport(*event->mimeData())] {
        if (!isBusy())
            openFile(file);
    };
    QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
    activateWindow();
}

void frmCVRMain::mnuFProps_Click()
{
    if (rptType != TabularReport) {
        message(tr("Only tabular reports have properties. Open a tabular report first."), MessageFlags::Information,
            tr("Report Properties"));
        return;
    }
    frmCVRProps form(m_state.gRptFile, *this, this);
    if (!form.Form_Load())
        return;
    form.setProblems(problemLines(checkDefinition(m_state.gRptFile, SecondDatabase {m_state.gHvnDBName, !m_state.gHvnConnectString.isEmpty()})));
    form.exec();
}

void frmCVRMain::mnuHContents_Click()
{
    m_help->showContext(kMainHelpContext);
}

void frmCVRMain::mnuHAbout_Click()
{
    frmAbout(this).exec();
}

/// Nothing but repainting and Escape is served while the call runs.
template <typename Call>
void frmCVRMain::runReportWith(Call call)
{
    if (m_gate->isClosed())
        return;
    m_stopQuestion = tr("Do you want to stop this report?");
    vp->setEmptyText(tr("The report is being prepared. Escape stops it."));
    m_gate->takeEscape();
    m_gate->close();
    const RunResult result = call();
    m_gate->open();
    showDocument();
    showProblems(result);
    if (result == RunResult::NotRun && !dateFrom().date)
        DateFrom->setFocus();
    if (m_gate->takeCloseWish())
        close();
}

void frmCVRMain::showDocument()
{
    const DocumentPtr &document = m_run.document();
    if (document != vp->document())
        vp->setDocument(document);
    m_summary->setText(document ? summaryOf(document->pageCount(), m_run.timings().rows) : QString());
    m_summary->setVisible(document != nullptr);
    showNotes(document ? document->notes : QStringList());
}

/// What the checker says about a definition whose run failed, where its pages would be, or beside them.
void frmCVRMain::showProblems(RunResult result)
{
    vp->setEmptyText(kChooseReport);
    const bool failed = result == RunResult::Failed || result == RunResult::QueryRefused;
    if (!failed || rptType != TabularReport)
        return;
    const QStringList problems = problemLines(
        m_state.gConn ? checkDefinition(m_state.gRptFile, m_state, dateFrom().text) : checkDefinition(m_state.gRptFile));
    if (problems.isEmpty())
        return;
    const QString heading = tr("Problems in %1 (line:column)").arg(QFileInfo(m_state.gRptFile).fileName());
    vp->setEmptyText(QString(heading + u"\n\n" + problems.join(u'\n')));
    showNotes(problems);
}

void frmCVRMain::showNotes(const QStringList &notes)
{
    m_notes->setText(notes.isEmpty() ? QString() : notes.size() == 1 ? notes.front() : tr("%1 notes: %2").arg(notes.size()).arg(notes.front()));
    m_notes->setToolTip(plainToolTip(notes.join(u'\n')));
}

void frmCVRMain::openAddress(const QUrl &address)
{
    if (!m_desktop.openAddress(address))
        m_desktop.message(tr("%1\ncould not be opened: the system has no program for such addresses. A right click on the link copies its address.").arg(address.toDisplayString()),
            MessageFlags::Exclamation, kTitle);
}

void frmCVRMain::keepViewSettings(QSettings &store)
{
    m_previewPane->keepViewSettings(store);
}

} // namespace corvane
