#include "platform/database/embedded/exact_numbers.h"
#include "platform/database/embedded/function_values.h"

#include <QtCore/QString>

#include <cmath>

namespace corvane::embedded {

namespace {

/// A running value of an addition: a number, a text, or a date that a text holds.
struct Summand
{
    bool isText = false;
    bool isReal = false;
    qint64 integer = 0;
    double real = 0;
    QByteArray text;

    double number() const { return isReal ? real : double(integer); }
};

Summand summand(const FunctionCall &call, int i)
{
    Summand result;
    result.isText = !call.isNumber(i);
    result.isReal = !result.isText && !call.isInteger(i);
    if (result.isText)
        result.text = call.text(i).toByteArray();
    else if (result.isReal)
        result.real = call.real(i);
    else
        result.integer = call.integer(i);
    return result;
}

Summand ofReal(double value)
{
    Summand result;
    result.isReal = true;
    result.real = value;
    return result;
}

Summand ofText(QByteArray text)
{
    Summand result;
    result.isText = true;
    result.text = std::move(text);
    return result;
}

std::optional<Summand> numberIn(const QByteArray &text)
{
    Summand result;
    bool valid = false;
    const QByteArray trimmed = text.trimmed();
    result.integer = trimmed.isEmpty() ? 0 : trimmed.toLongLong(&valid);
    if (valid || trimmed.isEmpty())
        return result;
    const double real = trimmed.toDouble(&valid);
    return valid ? std::optional(ofReal(real)) : std::nullopt;
}

std::optional<Moment> shifted(Moment moment, double days)
{
    const double ms = double(moment.ms) + days * kMsPerDay;
    constexpr double kFirst = -62'135'596'800'000.0; // 0001-01-01
    constexpr double kLast = 253'402'300'799'999.0; // 9999-12-31
    return ms >= kFirst && ms <= kLast ? std::optional(Moment{qint64(std::llround(ms))})
                                       : std::nullopt;
}

/// Text and text join, numbers add, a date and a number give a later date, a text that is a number
/// is one; empty for anything else.
std::optional<Summand> added(const Summand &left, const Summand &right)
{
    if (left.isText && right.isText)
        return ofText(left.text + right.text);
    if (left.isText || right.isText) {
        const Summand &text = left.isText ? left : right;
        const Summand &other = left.isText ? right : left;
        if (const auto moment = storedMoment(text.text)) {
            const auto later = shifted(*moment, other.number());
            return later ? std::optional(ofText(momentText(*later))) : std::nullopt;
        }
        const auto number = numberIn(text.text);
        return number ? added(*number, other) : std::nullopt;
    }
    Summand sum;
    if (left.isReal || right.isReal)
        return ofReal(left.number() + right.number());
    if (__builtin_add_overflow(left.integer, right.integer, &sum.integer))
        return ofReal(left.number() + right.number());
    return sum;
}

void setSummand(const FunctionCall &call, const Summand &value)
{
    if (value.isText)
        call.setText(value.text);
    else if (value.isReal)
        call.setReal(value.real);
    else
        call.setInteger(value.integer);
}

void add(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    Summand sum = summand(call, 0);
    for (int i = 1; i < call.count(); ++i) {
        const auto next = added(sum, summand(call, i));
        if (!next)
            return call.failConversion(sum.isText ? 0 : i, "number");
        sum = *next;
    }
    setSummand(call, sum);
}

/// A date less a number is an earlier date; a date less a date counts from the first day of 1900,
/// as the server's date-times do.
void subtract(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    if (call.isInteger(0) && call.isInteger(1)) {
        qint64 difference = 0;
        if (!__builtin_sub_overflow(call.integer(0), call.integer(1), &difference))
            return call.setInteger(difference);
    }
    const auto from = call.isText(0) ? storedMoment(call.text(0)) : std::nullopt;
    const auto less = call.isText(1) ? storedMoment(call.text(1)) : std::nullopt;
    if (from && less)
        return call.setMoment(
            shifted(Moment{kServerDayZero * kMsPerDay}, double(from->ms - less->ms) / kMsPerDay));
    const auto right = call.number(1);
    if (!right)
        return call.failConversion(1, "number");
    if (from)
        return call.setMoment(shifted(*from, -*right));
    const auto left = call.number(0);
    if (!left)
        return call.failConversion(0, "number");
    call.setReal(*left - *right);
}

/// With a third argument other than 0 the digits are cut off instead.
void round(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const auto value = call.number(0);
    if (!value)
        return call.failConversion(0, "number");
    const bool cuts = call.count() > 2 && call.integer(2) != 0;
    const int digits = int(std::clamp<qint64>(call.integer(1), -15, 15));
    const double rounded = cuts ? cutTo(*value, digits) : roundedTo(*value, digits);
    constexpr double kMostWhole = 9.2e18;
    if (call.isInteger(0) && std::abs(rounded) < kMostWhole)
        call.setInteger(qint64(rounded));
    else
        call.setReal(rounded);
}

/// True, until the statement's common tables have made too many rows from themselves.
void recursion(const FunctionCall &call)
{
    constexpr int kMostRows = 32'767;
    if (++call.state().recursions > kMostRows)
        return call.fail(ServerError::kRecursion,
            "The statement terminated. A common table that reads itself made more than 32,767 "
            "rows.");
    call.setInteger(1);
}

constexpr Function kFunctions[] = {
    {"corvane_recursion", 0, recursion, true},
    {"corvane_add", -1, add},
    {"corvane_subtract", 2, subtract},
    {"corvane_round", 2, round},
    {"corvane_round", 3, round},
};

} // namespace

std::span<const Function> arithmeticFunctions()
{
    return kFunctions;
}

} // namespace corvane::embedded
