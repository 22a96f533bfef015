#include "definitions/query_template.h"

#include "platform/database/error.h"
#include "platform/dates/date_text.h"
#include "shared/dates.h"
#include "shared/lists.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"

namespace corvane {

namespace {

constexpr qsizetype kDateTokenLength = 7; // "{DATE1}"

QString withName(const QString &sql, QStringView placeholder, const QString &name)
{
    const auto rewritten = [&](const QString &text, QStringView end) {
        return replaceEvery(text, QString(placeholder + end), QString(name + end));
    };
    return rewritten(rewritten(sql, u".dbo"), u"].dbo");
}

} // namespace

DatabaseNames databaseNames(const Reportr &state)
{
    return {state.gDBName, state.gHvnDBName};
}

QString fixDBNames(const QString &sql, const DatabaseNames &names)
{
    const QString main = withName(sql, u"CorvaneDB", names.main);
    return names.second.isEmpty() ? main : withName(main, u"HalvernDB", names.second);
}

QString queryText(const QString &first, const QString &second, const DatabaseNames &names, const QueryTokens &tokens)
{
    QString query = fixDBNames(first + u' ', names);
    if (!second.isEmpty())
        query += fixDBNames(second, names) + u' ';
    if (tokens.dates) {
        query = replaceEvery(query, u"{DATE1}", tokens.dates->front());
        query = replaceEvery(query, u"{DATE2}", tokens.dates->back());
    }
    return tokens.patient ? replaceEvery(query, u"<PID>", *tokens.patient) : query;
}

QString ParseSQL(const QString &szsql, const QString &findStr, const QString &repString, int dateOrder)
{
    const qsizetype at = szsql.indexOf(findStr);
    if (at < 0)
        return szsql;
    const auto date = readDate(repString, dateOrderOf(dateOrder));
    if (!date)
        throw RunTimeFault(RunTimeFault::TypeMismatch, QStringLiteral("\"%1\" is no date").arg(repString));
    return szsql.first(at) + fmtDate(*date) + szsql.mid(at + kDateTokenLength);
}

bool TestSQL(Reportr &state, MessageBoxes &boxes, const QString &szsql, const QueryWatch &watch)
{
    try {
        state.gConn->openRowset(szsql, watch);
        return true;
    } catch (const DatabaseError &error) {
        boxes.message(QStringLiteral("Error in SQL Query. ") + error.description(), MessageFlags::Exclamation,
            QStringLiteral("SQL Error"));
        if (const QString advice = state.advice(error.cause(), state.gConn->connectionText()); !advice.isEmpty())
            boxes.message(advice, MessageFlags::Information, QStringLiteral("SQL Error"));
        return false;
    }
}

} // namespace corvane
