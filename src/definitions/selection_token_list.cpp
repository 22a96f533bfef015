#include "definitions/selection_token_list.h"

#include "platform/database/error.h"

namespace corvane {

QString selectionListQuery(const SelectionToken &token)
{
    const QString &display = token.fields[0];
    const QString &value = token.fields[1];
    const QString &table = token.fields[2];
    const QString &condition = token.fields[3];
    if (display.isEmpty() && value.isEmpty())
        return table.trimmed();
    QString query = u"Select " + display + u", " + value + u" from " + table;
    if (!condition.trimmed().isEmpty())
        query += u" where " + condition;
    query += u" order by " + display;
    return query.trimmed();
}

RowsetPtr openSelectionList(Connection &connection, const SelectionToken &token)
{
    try {
        return connection.openRowset(selectionListQuery(token));
    } catch (const DatabaseError &error) {
        throw DatabaseError(error.number(),
            QStringLiteral("The list of the %1 cannot be read: %2").arg(token.place(), error.description()),
            error.cause());
    }
}

QString fillSelection(const Rowset &rows, const ValueTextStyle &style, const SelectionSink &add,
    const std::function<void(int)> &progress)
{
    QString display;
    QString value;
    int percent = 0;
    for (qsizetype row = 0; row < rows.rowCount(); ++row) {
        display.clear();
        value.clear();
        appendValueText(display, rows.value(row, 0), style);
        try {
            appendValueText(value, rows.value(row, 1), style);
        } catch (const DatabaseError &error) {
            // Deliberate: the row is there with its text before its value is asked for, and stays.
            add(display, {});
            return error.description();
        }
        add(display, value);
        const int done = int((row + 1) * 100 / rows.rowCount());
        if (done != percent)
            progress(percent = done);
    }
    return {};
}

} // namespace corvane
