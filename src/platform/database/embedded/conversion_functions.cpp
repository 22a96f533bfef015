#include "platform/database/embedded/function_values.h"
#include "platform/database/embedded/moment_styles.h"

#include <cmath>

namespace corvane::embedded {

namespace {

double serverDays(Moment moment)
{
    return double(moment.ms - kServerDayZero * kMsPerDay) / kMsPerDay;
}

std::optional<int> styleArgument(const FunctionCall &call, int i)
{
    return call.isNull(i) ? std::nullopt : std::optional(int(call.integer(i)));
}

/// The number in an argument: a number, a text that is one, or a date as days since 1900.
std::optional<double> numberOrDays(const FunctionCall &call)
{
    if (const auto moment = call.isText(0) ? storedMoment(call.text(0)) : std::nullopt)
        return serverDays(*moment);
    return call.number(0);
}

/// The text form of an argument before it is cut to its length; empty for an unknown style.
std::optional<QByteArray> plainText(const FunctionCall &call, ValueKind kind, int scale)
{
    const auto style = styleArgument(call, 2);
    if (call.isText(0)) {
        const QByteArrayView text = call.text(0);
        const auto time = kind == ValueKind::Time ? storedTime(text) : std::nullopt;
        auto moment = time ? std::optional(Moment{*time}) : std::nullopt;
        const bool dated = kind == ValueKind::Date || kind == ValueKind::DateTime
            || (kind == ValueKind::Null && style);
        if (dated)
            moment = storedMoment(text);
        return moment ? styledText(*moment, kind, style) : std::optional(text.toByteArray());
    }
    if (call.isNumber(0) && kind == ValueKind::Decimal && scale >= 0)
        return QByteArray::number(call.real(0), 'f', scale);
    if (call.isNumber(0) && !call.isInteger(0))
        return QByteArray::number(
            call.real(0), 'g', kind == ValueKind::Real && style.value_or(0) == 0 ? 6 : 15);
    return call.text(0).toByteArray();
}

qsizetype bytesOfCharacters(const QByteArray &utf8, qint64 count)
{
    qsizetype at = 0;
    for (; at < utf8.size(); ++at)
        if ((uchar(utf8[at]) & 0xC0) != 0x80 && count-- == 0)
            break;
    return at;
}

/// Arguments: value, its kind, style, scale, most characters (-1: any), whether blanks fill it up.
void toText(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    auto text = plainText(call, ValueKind(call.integer(1)), int(call.integer(3)));
    if (!text)
        return call.fail(QByteArray::number(call.integer(2))
            + " is not a valid style number when converting from datetime to a character string.");
    const qint64 length = call.integer(4);
    if (length >= 0) {
        const qsizetype kept = bytesOfCharacters(*text, length);
        const bool cut = kept < text->size();
        // A number that is cut would be another number: the server shows an asterisk.
        *text = cut && call.isNumber(0) ? QByteArray("*") : text->first(kept);
        if (call.integer(5) != 0)
            *text
                = text->leftJustified(text->size() + length - QString::fromUtf8(*text).size(), ' ');
    }
    call.setText(*text);
}

void toInteger(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    if (call.isInteger(0))
        return call.setCopy(0);
    const auto moment = call.isText(0) ? storedMoment(call.text(0)) : std::nullopt;
    if (moment)
        return call.setInteger(std::llround(serverDays(*moment)));
    const auto number = call.number(0);
    const bool isWhole = call.isNumber(0) || (number && *number == std::trunc(*number));
    if (!number || !isWhole)
        return call.failConversion(0, "int");
    if (!(std::abs(*number) < 9.2e18))
        return call.fail("Arithmetic overflow error converting expression to data type int.");
    call.setInteger(qint64(*number));
}

void toBit(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const QByteArray word
        = call.isText(0) ? call.text(0).trimmed().toByteArray().toLower() : QByteArray();
    if (word == "true" || word == "false")
        return call.setInteger(word == "true");
    const auto number = call.number(0);
    if (!number)
        return call.failConversion(0, "bit");
    call.setInteger(*number != 0);
}

void toReal(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const auto number = numberOrDays(call);
    if (!number)
        return call.failConversion(0, "float");
    call.setReal(*number);
}

void toDecimal(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    if (call.isInteger(0))
        return call.setCopy(0);
    const auto number = numberOrDays(call);
    if (!number)
        return call.failConversion(0, "decimal");
    call.setReal(roundedTo(*number, int(std::clamp<qint64>(call.integer(1), 0, 15))));
}

/// Arguments: value, the kind wanted, style.
void toMoment(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const auto kind = ValueKind(call.integer(1));
    const auto moment
        = call.moment(0, orderOfStyle(styleArgument(call, 2).value_or(0), call.dateOrder()));
    if (moment && kind == ValueKind::Date)
        return call.setText(dateText(moment->day()));
    if (moment && kind == ValueKind::Time)
        return call.setText(timeText(moment->timeOfDay()));
    call.setMoment(moment);
}

constexpr Function kFunctions[] = {
    {"corvane_to_text", 6, toText},
    {"corvane_to_integer", 1, toInteger},
    {"corvane_to_bit", 1, toBit},
    {"corvane_to_real", 1, toReal},
    {"corvane_to_decimal", 2, toDecimal},
    {"corvane_to_moment", 3, toMoment},
};

} // namespace

std::span<const Function> conversionFunctions()
{
    return kFunctions;
}

} // namespace corvane::embedded
