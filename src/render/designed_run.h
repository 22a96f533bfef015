#pragma once

#include "definitions/parameter_dialogs.h"
#include "platform/engine/report_control.h"
#include "shared/report_host.h"
#include "shared/reportr.h"

#include <array>

namespace corvane {

/// What the dialogs of a designed report answered, in the order in which they came up. A re-run applies
/// them to the record source as it then stands in the file.
struct DesignedAnswers {
    std::optional<ParameterAnswers> parameters;
    std::vector<DateAnswers> dates;
    std::vector<SelectionAnswers> selections;
};

/// One designed report: its layouts in VSRpt and the six slots of vsrSub, and what its dialogs answered.
class DesignedRun
{
public:
    static constexpr int kSubreportSlots = 6;

    DesignedRun(Reportr &state, ReportHost &host, ParameterDialogs &dialogs)
        : m_state(state)
        , m_host(host)
        , m_dialogs(dialogs)
    {
    }

    /// Loads the layouts of gRptFile into VSRpt and the slots of vsrSub: the first is the main report, and
    /// every one whose name holds "Subreport" goes into a slot. Runs the stored procedure of its name.
    /// @throws ReportError, DatabaseError for the connection
    void load();

    /// The main report's record source with everything asked for filled in; empty when the user
    /// cancelled. @throws RunTimeFault, DatabaseError from the dialogs
    QString askedRecordSource();

    /// Fills slots and main report with what was answered and lays it out.
    /// @throws ReportError, DatabaseError
    RenderResult render(const QString &recordSource, RenderSettings settings);

    /// Drops layouts and answers.
    void clear();

    /// The query behind the report for the spreadsheet; empty when the user cancelled its parameters.
    /// @throws RunTimeFault for a PARAMETERS clause that cannot be read
    QString excelRecordSource();

    /// Whether the record source asked for a patient when it was last read.
    bool asksForPatient() const { return m_asksForPatient; }

private:
    void loadSubreports(const QStringList &names);
    void runProcedure(const QString &name);
    QString storedRecordSource();
    QString takePatient(const QString &sql);
    QString takeDates(const QString &sql);
    QString takeSelection(const QString &sql);
    void setSubreportParams();
    void setSubreports(ReportControl &report);
    std::map<QString, Datum> expressionParameters() const;

    Reportr &m_state;
    ReportHost &m_host;
    ParameterDialogs &m_dialogs;
    ReportControl VSRpt;
    std::array<ReportControl, kSubreportSlots> vsrSub;
    DesignedAnswers m_answers;
    bool m_asksForPatient = false;
    size_t m_nextDates = 0;      ///< of the kept answers, in a re-run
    size_t m_nextSelection = 0;
};

} // namespace corvane
