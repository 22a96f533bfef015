#include "render/designed_run.h"

#include "definitions/query_template.h"
#include "platform/database/error.h"
#include "shared/lists.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr auto kPatientToken = QLatin1StringView("{*PID*}");
constexpr auto kDateToken = QLatin1StringView("{DATE*1|");
constexpr auto kSelectionToken = QLatin1StringView("{*SQL");

constexpr std::array<QLatin1StringView, DesignedRun::kSubreportSlots> kSlotNames {
    QLatin1StringView("SubreportOne"), QLatin1StringView("SubreportTwo"), QLatin1StringView("SubreportThree"),
    QLatin1StringView("SubreportFour"), QLatin1StringView("SubreportFive"), QLatin1StringView("SubreportSix")};

std::optional<size_t> slotOf(const QString &name)
{
    const auto found = std::ranges::find(kSlotNames, name);
    return found == kSlotNames.end() ? std::nullopt : std::optional(size_t(found - kSlotNames.begin()));
}

bool holds(const QString &sql, QLatin1StringView token)
{
    return sql.contains(token, Qt::CaseInsensitive);
}

/// Ends a loop that no answer ends: an answer that changes nothing leaves the token for the next pass.
class PassGuard
{
public:
    void check(const QString &before, const QString &after)
    {
        m_unchanged = before == after ? m_unchanged + 1 : 0;
        if (m_unchanged < kUnchangedPasses && ++m_passes < kPasses)
            return;
        for (const QLatin1StringView token : {kPatientToken, kDateToken, kSelectionToken}) {
            if (const qsizetype at = after.indexOf(token, 0, Qt::CaseInsensitive); at >= 0)
                throw ReportError(QStringLiteral("The token \"%1\" at character %2 of the record source is asked for again and again, "
                                                 "because no answer replaces it. Write it in capitals: \"%3\".")
                                      .arg(after.mid(at, token.size())).arg(at + 1).arg(token));
        }
    }

private:
    static constexpr int kUnchangedPasses = 100;
    static constexpr int kPasses = 10000; ///< answers that bring new tokens with them

    int m_unchanged = 0;
    int m_passes = 0;
};

Datum datumOf(const ParameterValue &value)
{
    if (const auto *text = std::get_if<QString>(&value))
        return Datum(*text);
    if (const auto *number = std::get_if<double>(&value))
        return Datum::real(*number);
    if (const auto *date = std::get_if<QDate>(&value))
        return Datum::date(*date);
    return Datum::boolean(std::get<bool>(value));
}

} // namespace

void DesignedRun::clear()
{
    VSRpt.clear();
    for (ReportControl &slot : vsrSub)
        slot.clear();
    m_answers = {};
    m_state.DateParamTable.reset();
    m_state.SelectParamTable.clear();
}

void DesignedRun::load()
{
    m_nextDates = m_nextSelection = 0;
    m_asksForPatient = false;
    if (!m_host.reRun)
        clear();
    const QStringList names = ReportControl::layoutNames(m_state.gRptFile);
    loadSubreports(names);
    const QString name = names.value(0).trimmed();
    VSRpt.load(m_state.gRptFile, name);
    VSRpt.dataSource().connectionString = m_state.gConnectString;
    runProcedure(name);
}

void DesignedRun::loadSubreports(const QStringList &names)
{
    for (ReportControl &slot : vsrSub)
        slot.clear();
    size_t slot = 0;
    for (const QString &name : names) {
        if (!name.contains(QLatin1StringView("Subreport")))
            continue;
        // Deliberate: a name that is none of the six takes the slot chosen last and replaces what is there.
        slot = slotOf(name).value_or(slot);
        vsrSub[slot].load(m_state.gRptFile, name);
        vsrSub[slot].dataSource().connectionString = m_state.gConnectString;
    }
}

void DesignedRun::runProcedure(const QString &name)
{
    if (name.contains(u']') || name.contains(u'\''))
        throw ReportError(QStringLiteral("The name of the layout \"%1\" holds \"]\" or \"'\", which a stored procedure of that name "
                                         "cannot be looked up with. Give the layout another name.").arg(name));
    try {
        m_state.gConn->openRowset(u"IF  EXISTS (SELECT * FROM sys.objects WHERE object_id = OBJECT_ID(N'[dbo].[" + name
            + u"]') AND type in (N'P', N'PC'))  EXEC [" + name + u']');
    } catch (const DatabaseError &) {
        // Deliberate: most reports have no procedure, and not every server knows the words.
    }
    m_state.gConn->forgetResult();
}

QString DesignedRun::storedRecordSource()
{
    QString stored = VSRpt.dataSource().recordSource;
    if (!m_state.commandLine.contains(QLatin1StringView("RecSrcTrue")))
        return stored;
    const DateOrder order = dateOrderOf(m_state.gDateOrder);
    const auto clause = ParametersClause::parse(stored, order);
    if (clause && !m_host.reRun)
        m_answers.parameters = m_dialogs.askParameters(*clause);
    if (clause && !m_answers.parameters)
        return {};
    return resolvedQuery(stored, m_answers.parameters.value_or(ParameterAnswers()), order);
}

QString DesignedRun::askedRecordSource()
{
    QString sql = storedRecordSource();
    PassGuard guard;
    while (!sql.trimmed().isEmpty()) {
        const QString before = sql;
        if (holds(sql, kPatientToken))
            sql = takePatient(sql);
        else if (holds(sql, kDateToken))
            sql = takeDates(sql);
        else if (holds(sql, kSelectionToken))
            sql = takeSelection(sql);
        else
            break;
        guard.check(before, sql);
    }
    return sql;
}

QString DesignedRun::takePatient(const QString &sql)
{
    if (!m_host.reRun)
        m_dialogs.askPatient();
    m_asksForPatient = true;
    m_host.enableButton(PatientButton, true);
    if (m_state.gPatientID.trimmed().isEmpty())
        return {};
    // Deliberate: found in any case, replaced in capitals only.
    return replaceEvery(sql, QString(kPatientToken), QString(u'\'' + m_state.gPatientID + u'\''));
}

QString DesignedRun::takeDates(const QString &sql)
{
    if (!m_host.reRun) {
        m_state.DateParamTable.reset();
        const auto answers = m_dialogs.askDates(sql);
        if (!answers)
            return {};
        m_answers.dates.push_back(*answers);
    }
    if (m_nextDates >= m_answers.dates.size())
        return {};
    const DateAnswers &answers = m_answers.dates[m_nextDates++];
    const DateOrder order = dateOrderOf(m_state.gDateOrder);
    m_state.DateParamTable = dateParamTable(answers, order);
    return applyDates(sql, answers, order);
}

QString DesignedRun::takeSelection(const QString &sql)
{
    QString request = sql;
    if (!m_host.reRun) {
        request = fixDBNames(sql, databaseNames(m_state));
        m_state.SelectParamTable.clear();
        const auto answers = m_dialogs.askSelection(request);
        if (!answers)
            return {};
        m_answers.selections.push_back(*answers);
    }
    if (m_nextSelection >= m_answers.selections.size())
        return {};
    SelectionResult result = applySelection(request, m_answers.selections[m_nextSelection++]);
    m_state.SelectParamTable = std::move(result.table);
    return result.sql;
}

void DesignedRun::setSubreportParams()
{
    for (ReportControl &slot : vsrSub) {
        QString &sql = slot.dataSource().recordSource;
        if (sql.isEmpty())
            continue;
        if (m_state.DateParamTable) {
            for (const auto &row : *m_state.DateParamTable)
                sql = replaceEvery(sql, row[0], QString(u'\'' + row[1] + u'\''));
        }
        for (const auto &row : m_state.SelectParamTable)
            sql = replaceEvery(sql, row[0], row[1]);
        sql = fixDBNames(sql, databaseNames(m_state));
    }
}

void DesignedRun::setSubreports(ReportControl &report)
{
    for (Section &section : report.layout().sections) {
        for (Field &field : section.fields) {
            if (const auto slot = slotOf(field.name))
                field.subreport = &vsrSub[*slot];
        }
    }
}

std::map<QString, Datum> DesignedRun::expressionParameters() const
{
    std::map<QString, Datum> parameters {
        {QStringLiteral("patient"), Datum(m_state.gPatientText)}, {QStringLiteral("patient_id"), Datum(m_state.gPatientID)}};
    if (!m_answers.dates.empty()) {
        const DateAnswers &dates = m_answers.dates.front();
        parameters[QStringLiteral("date1")] = Datum::date(dates.first.value_or(QDate()));
        parameters[QStringLiteral("date2")] = Datum::date(dates.second.value_or(QDate()));
    }
    for (const auto &[name, value] : m_answers.parameters.value_or(ParameterAnswers()))
        parameters[name] = datumOf(value);
    return parameters;
}

RenderResult DesignedRun::render(const QString &recordSource, RenderSettings settings)
{
    setSubreportParams();
    setSubreports(VSRpt);
    VSRpt.dataSource().recordSource = fixDBNames(recordSource, databaseNames(m_state));
    settings.parameters = expressionParameters();
    settings.connection = m_state.gConn.get();
    settings.drivers = m_state.drivers(m_state.gConnectString);
    settings.database = m_state.gDBName;
    return VSRpt.render(settings);
}

QString DesignedRun::excelRecordSource()
{
    QString sql = VSRpt.dataSource().recordSource;
    if (ParametersClause::startsIn(sql)) {
        m_host.message(QStringLiteral("In Order to Generate MS Excel Export Data, \nYou Will Need to Re-Enter the Report Parameter(s)."),
            MessageFlags::Information, QStringLiteral("Report Parameters"));
    }
    sql.replace(u'#', u'\'');
    const DateOrder order = dateOrderOf(m_state.gDateOrder);
    const auto clause = ParametersClause::parse(sql, order);
    if (!clause)
        return sql;
    const auto answers = m_dialogs.askParameters(*clause);
    return answers ? resolvedQuery(sql, *answers, order) : QString();
}

} // namespace corvane
