#include "platform/database/embedded/functions.h"

#include "platform/database/embedded/function_values.h"
#include "platform/database/error.h"

#include <cmath>

namespace corvane::embedded {

namespace {

void invoke(sqlite3_context *context, int count, sqlite3_value **values)
{
    static_cast<const Registration *>(sqlite3_user_data(context))
        ->body(FunctionCall(context, count, values));
}

void forget(void *registration)
{
    delete static_cast<Registration *>(registration);
}

void registerAll(sqlite3 *database, FunctionState &state, std::span<const Function> functions)
{
    for (const Function &function : functions) {
        auto *registration = new Registration{state, function.body};
        const int code = sqlite3_create_function_v2(database, function.name, function.arguments,
            kFunctionFlags | (function.changes ? 0 : SQLITE_DETERMINISTIC), registration, invoke,
            nullptr, nullptr, forget);
        if (code != SQLITE_OK)
            throw DatabaseError(code, QString::fromUtf8(sqlite3_errmsg(database)));
    }
}

} // namespace

bool FunctionCall::anyNull() const
{
    for (int i = 0; i < count(); ++i)
        if (isNull(i))
            return true;
    return false;
}

QByteArrayView FunctionCall::text(int i) const
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(m_values[size_t(i)]));
    return QByteArrayView(text, text ? sqlite3_value_bytes(m_values[size_t(i)]) : 0);
}

std::optional<double> FunctionCall::number(int i) const
{
    if (isNumber(i))
        return real(i);
    const QByteArray trimmed = text(i).trimmed().toByteArray();
    bool valid = trimmed.isEmpty();
    const double value = valid ? 0 : trimmed.toDouble(&valid);
    return valid && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<Moment> FunctionCall::moment(int i, DateOrder order) const
{
    if (!isNumber(i))
        return writtenMoment(text(i), order);
    constexpr double kFarthest = 3'000'000;
    const double days = real(i);
    if (!(std::abs(days) < kFarthest))
        return std::nullopt;
    return Moment{kServerDayZero * kMsPerDay + qint64(std::llround(days * kMsPerDay))};
}

void FunctionCall::setText(QByteArrayView text) const
{
    sqlite3_result_text64(m_context, text.data() ? text.data() : "", quint64(text.size()),
        SQLITE_TRANSIENT, SQLITE_UTF8);
}

void FunctionCall::setMoment(std::optional<Moment> moment) const
{
    if (moment)
        setText(momentText(*moment));
    else
        fail(ServerError::kDateConversion,
            "Conversion failed when converting date and/or time from character string.");
}

void FunctionCall::fail(int number, const QByteArray &message) const
{
    state().failure = number;
    sqlite3_result_error(m_context, message.constData(), int(message.size()));
}

void FunctionCall::failConversion(int i, const char *target) const
{
    constexpr qsizetype kShown = 60;
    const QByteArrayView value = text(i);
    fail(ServerError::kConversion,
        "Conversion failed when converting the text value '"
            + value.first(std::min(value.size(), kShown)).toByteArray() + "' to data type " + target
            + '.');
}

void FunctionCall::failOverflow(const char *target) const
{
    fail(ServerError::kOverflow,
        QByteArray("Arithmetic overflow error converting expression to data type ") + target + '.');
}

void registerFunctions(sqlite3 *database, FunctionState &state)
{
    registerAll(database, state, textFunctions());
    registerAll(database, state, dateFunctions());
    registerAll(database, state, conversionFunctions());
    registerAll(database, state, arithmeticFunctions());
    registerAll(database, state, exactFunctions());
    registerTotals(database);
}

} // namespace corvane::embedded
