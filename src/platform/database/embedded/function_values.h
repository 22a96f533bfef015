#pragma once

#include "platform/database/embedded/functions.h"
#include "platform/database/embedded/moment.h"

#include <sqlite3.h>

#include <QtCore/QByteArray>

#include <span>

namespace corvane::embedded {

/// The server's numbers of what can fail while a statement runs.
namespace ServerError {

constexpr int kDateConversion = 241;
constexpr int kConversion = 245;
constexpr int kStyle = 281;
constexpr int kDateOverflow = 517;
constexpr int kRecursion = 530;
constexpr int kLength = 537;
constexpr int kNumberConversion = 8114;
constexpr int kOverflow = 8115;
constexpr int kDivideByZero = 8134;

} // namespace ServerError

class FunctionCall;
using FunctionBody = void (*)(const FunctionCall &);

/// What SQLite keeps for a function.
struct Registration
{
    FunctionState &state;
    FunctionBody body;
};

constexpr int kFunctionFlags = SQLITE_UTF8 | SQLITE_INNOCUOUS;

/// What a function of the dialect gets: its arguments and where the result goes.
class FunctionCall
{
public:
    FunctionCall(sqlite3_context *context, int count, sqlite3_value **values)
        : m_context(context)
        , m_values(values, size_t(count))
    {
    }

    int count() const { return int(m_values.size()); }
    bool isNull(int i) const { return type(i) == SQLITE_NULL; }
    bool isText(int i) const { return type(i) == SQLITE_TEXT; }
    bool isInteger(int i) const { return type(i) == SQLITE_INTEGER; }
    bool isNumber(int i) const { return isInteger(i) || type(i) == SQLITE_FLOAT; }
    bool anyNull() const;

    qint64 integer(int i) const { return sqlite3_value_int64(m_values[size_t(i)]); }
    double real(int i) const { return sqlite3_value_double(m_values[size_t(i)]); }
    /// The text form, UTF-8; numbers become digits.
    QByteArrayView text(int i) const;
    /// A number, or a text that is one.
    std::optional<double> number(int i) const;
    /// A date text in the stored or a written form, or a number of days since 1900.
    std::optional<Moment> moment(int i, DateOrder order) const;
    DateOrder dateOrder() const { return state().dateOrder; }
    FunctionState &state() const
    {
        return static_cast<const Registration *>(sqlite3_user_data(m_context))->state;
    }

    void setNull() const { sqlite3_result_null(m_context); }
    void setInteger(qint64 value) const { sqlite3_result_int64(m_context, value); }
    void setReal(double value) const { sqlite3_result_double(m_context, value); }
    void setText(QByteArrayView text) const;
    void setCopy(int i) const { sqlite3_result_value(m_context, m_values[size_t(i)]); }
    void setMoment(std::optional<Moment> moment) const;
    /// Ends the statement with the server's number and words.
    void fail(int number, const QByteArray &message) const;
    /// For a text that is no number.
    void failConversion(int i, const char *target) const;
    void failOverflow(const char *target) const;

private:
    int type(int i) const { return sqlite3_value_type(m_values[size_t(i)]); }

    sqlite3_context *m_context;
    std::span<sqlite3_value *> m_values;
};

/// One function: -1 arguments for any number of them.
struct Function
{
    const char *name;
    int arguments;
    FunctionBody body;
    bool changes = false; ///< gives another result for the same arguments
};

std::span<const Function> textFunctions();
std::span<const Function> dateFunctions();
std::span<const Function> conversionFunctions();
std::span<const Function> arithmeticFunctions();
std::span<const Function> exactFunctions();
/// The aggregates, which keep a state between rows.
void registerTotals(sqlite3 *database);

} // namespace corvane::embedded
