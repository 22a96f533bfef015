#pragma once

#include "definitions/parameter_dialogs.h"
#include "platform/composer/page_composer.h"
#include "platform/grid/data_control.h"
#include "platform/workbook/workbook_writer.h"
#include "render/designed_run.h"
#include "shared/report_host.h"
#include "shared/reportr.h"
#include "tabular/getrs.h"

#include <QtCore/QLocale>

namespace corvane {

class TabularDefinition;

/// How opening or running a report ended.
enum class RunResult {
    Done,
    NotRun,                ///< nobody logged on, no such kind, or dates that do not fit
    Failed,                ///< the user has seen what failed
    QueryRefused,          ///< the user has seen "SQL Error"; the document is not whole
    Stopped,               ///< the user asked for it
    SecondDatabaseMissing, ///< deliberately without a message
};

/// What one report run works on, and the routines that run it: the open document, the data control
/// and the dispatch from a chosen file to its kind. Used by the window and the batch program alike.
class ReportRun
{
public:
    ReportRun(Reportr &state, ReportHost &host, ParameterDialogs &dialogs, const QLocale &locale);

    /// Opens a file of the report list; its content is not checked.
    RunResult openListed(const QString &path);
    /// Opens a file chosen by path; anything that is no report is refused with a message.
    RunResult openReport(const QString &path);
    /// Runs the open report again.
    RunResult runReport();

    /// The latest document; null when there is none. It may be incomplete.
    const DocumentPtr &document() const { return m_document; }
    /// A document that may be printed and saved.
    bool hasWholeDocument() const { return m_document && m_document->isWhole; }

    /// What a workbook made of the data control says about itself.
    WorkbookOptions workbookOptions() const;
    /// Fills the data control of a designed report with its rows, which a tabular report has done by itself.
    /// False when the user cancelled what it asks for. @throws DatabaseError, RunTimeFault
    bool prepareExcel();
    const DataControl &dataControl() const { return m_adodc1; }
    /// How values read in cells and lists.
    const ValueTextStyle &valueStyle() const { return m_style; }
    const RunTimings &timings() const { return m_timings; }

private:
    void startOpening(const QString &path);
    bool mayRun();
    RunResult runGuarded();
    RunResult runByKind();
    RunResult doReport();

    RunResult doXMLReport();
    RunResult renderDesigned(const QString &recordSource);
    RenderSettings renderSettings();

    bool openDatabase(const TabularDefinition &definition);
    void setFonts(const TabularDefinition &definition);
    void setWidths(const TabularDefinition &definition);
    QString furnitureText(const QString &text) const;
    void writeHeadingLines(const TabularDefinition &definition);
    void drawHeadingTable(const QString &spacing, const QString &heading, const TabularDefinition &definition);
    RunResult composeBody(TabularDefinition &definition);
    void setButtonsAfterRun(const TabularDefinition &definition);

    /// The same, and which setting to look at where there is one.
    RunResult fail(const DatabaseError &error);
    RunResult fail(int number, const QString &description);
    RunResult failRendering(const QString &description);
    void setStatesAfterFailure();
    RunResult stop();
    void enableOutputMenus(bool enabled);

    Reportr &m_state;
    ReportHost &m_host;
    ParameterDialogs &m_dialogs;
    QLocale m_locale;
    ValueTextStyle m_style;
    PageComposer m_vp;
    DataControl m_adodc1;
    DesignedRun m_designed;
    DocumentPtr m_document;
    RunTimings m_timings;
    bool m_withheldMenus = false; ///< since a run that left nothing whole; the next whole report gives them back
};

} // namespace corvane
