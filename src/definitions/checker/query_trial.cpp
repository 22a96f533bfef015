// The query run as a report would run it, and the field numbers held against its result.

#include "definitions/checker/check_pass.h"
#include "definitions/query_template.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "shared/reportr.h"

namespace corvane {

namespace {

constexpr auto kNobody = u"0"; // a number too, so that it fits with and without quotes

QString trialQuery(const CheckPass &pass, const Reportr &state, const QString &date)
{
    QueryTokens tokens;
    if (pass.value(u"Data Source", u"GetDates") == u"True")
        tokens.dates = {date, date};
    if (pass.value(u"Data Source", u"GetPatient") == u"True")
        tokens.patient = QString::fromUtf16(kNobody);
    return queryText(pass.value(u"Data Source", u"RecordSource1"),
        pass.value(u"Data Source", u"RecordSource2"), databaseNames(state), tokens);
}

void checkField(CheckPass &pass, const QString &what, QStringView text, TextPlace place, int count)
{
    const auto ordinal = wholeNumber(text);
    if (ordinal && *ordinal >= count)
        pass.add(FindingKind::NoSuchField, place,
            QStringLiteral("%1 is %2, but the result has %3 fields, 0 to %4.")
                .arg(what)
                .arg(*ordinal)
                .arg(count)
                .arg(count - 1),
            QStringLiteral("Fields are counted from 0 in the order of the SELECT list."));
}

void checkFields(CheckPass &pass, int count)
{
    const QString list = pass.value(u"Columns", u"Fields");
    for (const QStringView item : QStringView(list).split(u'|'))
        checkField(pass, QStringLiteral("A field number in %1").arg(keyName(u"Columns", u"Fields")),
            item, pass.place(u"Columns", u"Fields", item.data() - list.data()), count);
    for (const QStringView section : {u"Group", u"SubColumn"})
        checkField(pass, keyName(section, u"Field"), pass.value(section, u"Field"),
            pass.place(section, u"Field"), count);
    for (const PlacedLine &line : pass.profile.lines()) {
        if (line.kind == ProfileLineKind::Key
            && line.section.compare(u"ColumnFormat", Qt::CaseInsensitive) == 0)
            checkField(
                pass, QStringLiteral("A key of [ColumnFormat]"), line.name, line.place, count);
    }
}

} // namespace

void tryQuery(CheckPass &pass, const Reportr &state, const QString &date)
{
    const bool onSecond = pass.value(u"Data Source", u"Database") == u"A";
    const QString &text = onSecond ? state.gHvnConnectString : state.gConnectString;
    if (pass.value(u"Data Source", u"RecordSource1").isEmpty() || text.isEmpty())
        return; // both are findings already
    try {
        const auto connection = Connection::open(text, state.drivers(text));
        checkFields(pass, connection->openRowset(trialQuery(pass, state, date))->fieldCount());
    } catch (const DatabaseError &error) {
        const QString words = error.description().trimmed();
        pass.add(FindingKind::QueryRefused, pass.place(u"Data Source", u"RecordSource1"),
            QStringLiteral("The database refuses the query: %1").arg(words)
                + QStringView(words.endsWith(u'.') ? u"" : u"."),
            QStringLiteral("It was tried with %1 for the dates and 0 for the patient.").arg(date));
    }
}

} // namespace corvane
