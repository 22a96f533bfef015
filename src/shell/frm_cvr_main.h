#pragma once

#include "definitions/parameter_dialogs.h"
#include "render/report_run.h"
#include "shared/report_host.h"
#include "shared/reportr.h"
#include "shell/gated_desktop.h"

#include <QtWidgets/QMainWindow>

#include <array>
#include <functional>

class QAction;
class QLabel;
class QSettings;
class QSplitter;

namespace corvane {

class DateField;
class FloodPanel;
class HelpDesk;
class InputGate;
class Preview;
class PreviewPane;
class ReportListPane;
class ReportListView;
class RibbonButton;
class SingleInstance;

/// The main window: the report list, the preview of the chosen report, the toolbar and the menus. It
/// lends itself to a run as its surroundings and asks the report's parameters with its dialogs.
class frmCVRMain : public QMainWindow, public ReportHost, public ParameterDialogs
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    frmCVRMain(Reportr &state, Desktop &desktop, Clock clock, const QLocale &locale);

    /// The start-up sequence; false when the program is to end.
    bool Form_Load(const SingleInstance &instance);

    /// Takes the preview's view settings from a store, which must outlive the window, and keeps them there.
    void keepViewSettings(QSettings &store);

    // What a run does to its surroundings.
    MessageAnswer message(const QString &text, int flags, const QString &title) override;
    void enableButton(int index, bool enabled) override;
    void enableMenu(ReportMenu menu, bool enabled) override;
    void clearPreview() override;
    void showHourglass(bool on) override;
    void showProgress(int percent) override;
    bool stopRequested() override;
    DateEntry dateFrom() const override;
    DateEntry dateTo() const override;
    void setDates(QDate from, QDate to) override;
    void resetDates() override;
    QDateTime now() const override { return m_clock(); }
    void askDateRange(ReportHost &host) override;
    void askPatient() override;
    std::optional<DateAnswers> askDates(const QString &request) override;
    std::optional<SelectionAnswers> askSelection(const QString &request) override;
    std::optional<ParameterAnswers> askParameters(const ParametersClause &clause) override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void buildToolbar();
    void buildMenus();
    void buildPanes();
    void buildStatusBar();
    void connectDates();
    QAction *addMenuItem(class QMenu *menu, const char16_t *name, const QString &caption);

    bool logOnWithForm();
    void startWithoutConnection();

    void File1_Click(const QString &fileName);
    void btnvp_Click(int index);
    void changeDates();
    void selectPatient();
    void mnuOpen_Click();
    void openFile(const QString &file);
    bool isBusy() const;
    bool mayTakeDrop(const QDropEvent &event) const;
    void mnuFPrint_Click();
    void mnuAdobe_Click();
    void mnuExcel_Click();
    void mnuFProps_Click();
    void mnuHContents_Click();
    void mnuHAbout_Click();

    template <typename Call>
    void runReportWith(Call call);
    template <typename Call>
    void exportWith(Call call);
    void showDocument();
    void showProblems(RunResult result);
    void showNotes(const QStringList &notes);
    void openAddress(const QUrl &address);

    inline static const QString kTitle = QStringLiteral("Corvane"); ///< of its message boxes

    Reportr &m_state;
    InputGate *m_gate;
    GatedDesktop m_desktop;
    Clock m_clock;
    ReportRun m_run;
    QString m_lastFolder;
    QString m_stopQuestion; ///< what Escape asks while the program is busy
    HelpDesk *m_help;

    std::array<RibbonButton *, kToolButtonCount> btnvp {};
    DateField *DateFrom = nullptr;
    DateField *DateTo = nullptr;
    QSplitter *SSSplitter1 = nullptr;
    ReportListPane *m_listPane = nullptr;
    ReportListView *File1 = nullptr;
    PreviewPane *m_previewPane = nullptr;
    Preview *vp = nullptr;
    FloodPanel *pnlprogress = nullptr;
    QLabel *m_summary = nullptr;
    QLabel *m_notes = nullptr;
    QLabel *m_user = nullptr;
    QAction *mnuFPrint = nullptr;
    QAction *mnuFSendTo = nullptr;
    QAction *mnuFProps = nullptr;
};

} // namespace corvane
