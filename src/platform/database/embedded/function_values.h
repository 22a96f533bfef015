#pragma once

#include "platform/database/embedded/moment.h"

#include <sqlite3.h>

#include <QtCore/QByteArray>

#include <span>

namespace corvane::embedded {

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
    DateOrder dateOrder() const
    {
        return *static_cast<const DateOrder *>(sqlite3_user_data(m_context));
    }

    void setNull() const { sqlite3_result_null(m_context); }
    void setInteger(qint64 value) const { sqlite3_result_int64(m_context, value); }
    void setReal(double value) const { sqlite3_result_double(m_context, value); }
    void setText(QByteArrayView text) const;
    void setCopy(int i) const { sqlite3_result_value(m_context, m_values[size_t(i)]); }
    void setMoment(std::optional<Moment> moment) const;
    void fail(const QByteArray &message) const;
    /// The server's words for a text that is no number.
    void failConversion(int i, const char *target) const;

private:
    int type(int i) const { return sqlite3_value_type(m_values[size_t(i)]); }

    sqlite3_context *m_context;
    std::span<sqlite3_value *> m_values;
};

/// Half away from zero, as a decimal of 15 digits does it: 1.005, stored a little below,
/// gives 1.01.
double roundedTo(double value, int decimals);

using FunctionBody = void (*)(const FunctionCall &);

/// One function: -1 arguments for any number of them.
struct Function
{
    const char *name;
    int arguments;
    FunctionBody body;
};

std::span<const Function> textFunctions();
std::span<const Function> dateFunctions();
std::span<const Function> conversionFunctions();
std::span<const Function> arithmeticFunctions();

} // namespace corvane::embedded
