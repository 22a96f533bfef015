#include "platform/database/embedded/fetch.h"

#include "platform/database/embedded/moment.h"
#include "platform/database/embedded/sqlite_handles.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace corvane::embedded {

namespace {

/// The cell is asked for once and read through SQLite's value functions, which take no lock; the
/// connection belongs to one thread, so that is allowed.
QByteArrayView textOf(sqlite3_value *cell)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(cell));
    return QByteArrayView(text, sqlite3_value_bytes(cell));
}

void addStored(RowsetBuilder &builder, sqlite3_value *cell)
{
    switch (sqlite3_value_type(cell)) {
    case SQLITE_INTEGER:
        return builder.add(Value::integer(sqlite3_value_int64(cell)));
    case SQLITE_FLOAT:
        return builder.add(Value::real(sqlite3_value_double(cell)));
    case SQLITE_TEXT:
        return builder.addText(textOf(cell));
    case SQLITE_BLOB: {
        const auto *data = static_cast<const char *>(sqlite3_value_blob(cell));
        return builder.add(Value::bytes(data, quint32(sqlite3_value_bytes(cell))));
    }
    default:
        builder.add(Value());
    }
}

/// Amounts have two or four digits behind the point: a whole number of such parts that divides back
/// to the very same number has its exact digits. 0 when the number is no such amount.
template <int Digits, int Parts> quint32 amountDigits(char *out, char *end, double number)
{
    constexpr double kMostParts = 1e15;
    const double parts = std::nearbyint(number * Parts);
    if (!(std::abs(parts) < kMostParts) || parts / Parts != number)
        return 0;
    auto rest = qint64(parts);
    char *at = out;
    if (rest < 0) {
        *at++ = '-';
        rest = -rest;
    }
    at = std::to_chars(at, end, rest / Parts).ptr;
    *at++ = '.';
    rest %= Parts;
    for (int i = Digits - 1; i >= 0; --i, rest /= 10)
        at[i] = char('0' + rest % 10);
    return quint32(at + Digits - out);
}

/// SQLite keeps 15 digits of a number with a point; more would be noise of the binary form.
void addReal(RowsetBuilder &builder, double number)
{
    char digits[400];
    quint32 length = amountDigits<2, 100>(digits, std::end(digits), number);
    if (length == 0)
        length = amountDigits<4, 10'000>(digits, std::end(digits), number);
    if (length == 0) {
        char rounded[40];
        const auto end
            = std::to_chars(rounded, std::end(rounded), number, std::chars_format::scientific, 14);
        double exact = number;
        std::from_chars(rounded, end.ptr, exact);
        const auto plain = std::to_chars(digits, std::end(digits), exact, std::chars_format::fixed);
        length = quint32(plain.ptr - digits);
    }
    builder.add(Value::decimal(digits, length));
}

bool isDecimal(QByteArrayView text)
{
    const QByteArrayView digits = text.startsWith('-') ? text.sliced(1) : text;
    return !digits.isEmpty() && std::ranges::count(digits, '.') <= 1
        && std::ranges::any_of(digits, [](char c) { return c != '.'; })
        && std::ranges::all_of(digits, [](char c) { return (c >= '0' && c <= '9') || c == '.'; });
}

void addDecimal(RowsetBuilder &builder, sqlite3_value *cell)
{
    const int type = sqlite3_value_type(cell);
    if (type == SQLITE_FLOAT)
        return addReal(builder, sqlite3_value_double(cell));
    if (type == SQLITE_NULL || type == SQLITE_BLOB)
        return addStored(builder, cell);
    const QByteArrayView text = textOf(cell);
    if (isDecimal(text))
        builder.add(Value::decimal(text.data(), quint32(text.size())));
    else
        builder.addText(text);
}

void addMoment(RowsetBuilder &builder, sqlite3_value *cell, ValueKind kind)
{
    if (sqlite3_value_type(cell) != SQLITE_TEXT)
        return addStored(builder, cell);
    const QByteArrayView text = textOf(cell);
    if (kind == ValueKind::Date) {
        if (const auto day = storedDate(text))
            return builder.add(Value::date(*day));
    }
    if (kind == ValueKind::Time) {
        if (const auto time = storedTime(text))
            return builder.add(Value::time(*time));
    } else if (const auto moment = storedMoment(text)) {
        return builder.add(Value::dateTime(moment->ms));
    }
    builder.addText(text);
}

void addCell(RowsetBuilder &builder, sqlite3_value *cell, ValueKind kind)
{
    switch (kind) {
    case ValueKind::Text:
        if (sqlite3_value_type(cell) == SQLITE_NULL)
            builder.add(Value());
        else
            builder.addText(textOf(cell));
        return;
    case ValueKind::Date:
    case ValueKind::DateTime:
    case ValueKind::Time:
        return addMoment(builder, cell, kind);
    case ValueKind::Decimal:
        return addDecimal(builder, cell);
    case ValueKind::Boolean:
        if (sqlite3_value_type(cell) == SQLITE_INTEGER)
            return builder.add(Value::boolean(sqlite3_value_int64(cell) != 0));
        return addStored(builder, cell);
    case ValueKind::Real:
        if (sqlite3_value_type(cell) == SQLITE_INTEGER)
            return builder.add(Value::real(sqlite3_value_double(cell)));
        return addStored(builder, cell);
    case ValueKind::Bytes:
        if (sqlite3_value_type(cell) == SQLITE_TEXT) {
            const QByteArrayView text = textOf(cell);
            return builder.add(Value::bytes(text.data(), quint32(text.size())));
        }
        return addStored(builder, cell);
    default:
        addStored(builder, cell);
    }
}

/// What the translation knows of a column: counted from the left up to the first "all columns of a
/// table", and from the right down to the last one.
ValueKind knownKind(const std::vector<ResultType> &results, size_t column, size_t columns)
{
    const auto several = [](const ResultType &result) { return result.several; };
    const auto first = std::ranges::find_if(results, several);
    if (column < size_t(first - results.begin()))
        return results[column].type.kind;
    const size_t fromRight = columns - 1 - column;
    const auto last = std::find_if(results.rbegin(), results.rend(), several);
    return fromRight < size_t(last - results.rbegin())
        ? results[results.size() - 1 - fromRight].type.kind
        : ValueKind::Null;
}

std::vector<ValueKind> columnKinds(sqlite3_stmt *statement, const std::vector<ResultType> &results)
{
    std::vector<ValueKind> kinds;
    const int columns = sqlite3_column_count(statement);
    for (int i = 0; i < columns; ++i) {
        const char *declared = sqlite3_column_decltype(statement, i);
        const ValueKind kind = declaredType(QString::fromUtf8(declared)).kind;
        kinds.push_back(declared ? kind : knownKind(results, size_t(i), size_t(columns)));
    }
    return kinds;
}

} // namespace

RowsetPtr fetchAll(sqlite3_stmt *statement, const std::vector<ResultType> &results)
{
    const std::vector<ValueKind> kinds = columnKinds(statement, results);
    const int columns = int(kinds.size());
    QStringList names;
    for (int i = 0; i < columns; ++i)
        names += QString::fromUtf8(sqlite3_column_name(statement, i));
    RowsetBuilder builder(std::move(names));
    int code = sqlite3_step(statement);
    for (; code == SQLITE_ROW; code = sqlite3_step(statement))
        for (int i = 0; i < columns; ++i)
            addCell(builder, sqlite3_column_value(statement, i), kinds[size_t(i)]);
    if (code != SQLITE_DONE)
        throw latestError(sqlite3_db_handle(statement));
    return builder.finish();
}

} // namespace corvane::embedded
