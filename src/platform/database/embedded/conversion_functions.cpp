#include "platform/database/embedded/exact_numbers.h"
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

/// A date in a text argument as the server's number for it.
std::optional<double> daysIn(const FunctionCall &call)
{
    const auto moment = call.isText(0) ? storedMoment(call.text(0)) : std::nullopt;
    return moment ? std::optional(serverDays(*moment)) : std::nullopt;
}

/// The arguments of corvane_to_text behind the value.
struct TextForm
{
    explicit TextForm(const FunctionCall &call)
        : kind(ValueKind(call.integer(1)))
        , style(styleArgument(call, 2))
        , scale(int(call.integer(3)))
        , length(call.integer(4))
        , padded(call.integer(5) != 0)
        , money(call.integer(6) != 0)
    {
    }

    ValueKind kind;
    std::optional<int> style;
    int scale; ///< digits behind the point, also of a time's seconds; -1: not known
    qint64 length; ///< most characters; -1: any
    bool padded; ///< blanks fill the text up to its length
    bool money;
};

/// Style 0 shows two digits behind the point, 1 also commas, 2 four digits.
QByteArray moneyText(double amount, int style)
{
    QByteArray text
        = QByteArray::number(roundedTo(amount, style == 2 ? 4 : 2), 'f', style == 2 ? 4 : 2);
    if (style != 1)
        return text;
    const qsizetype first = text.startsWith('-') ? 1 : 0;
    for (qsizetype at = text.indexOf('.') - 3; at > first; at -= 3)
        text.insert(at, ',');
    return text;
}

/// Six digits, or eight and sixteen in the scientific form; the exponent has three digits.
QByteArray realText(double value, int style)
{
    QByteArray text = style == 1 ? QByteArray::number(value, 'e', 7)
        : style == 2             ? QByteArray::number(value, 'e', 15)
                                 : QByteArray::number(value, 'g', 6);
    const qsizetype exponent = text.indexOf('e');
    if (exponent >= 0 && text.size() - exponent == 4)
        text.insert(exponent + 2, '0');
    return text;
}

QByteArray numberText(const FunctionCall &call, const TextForm &form)
{
    if (form.money)
        return moneyText(call.real(0), form.style.value_or(0));
    if (form.kind == ValueKind::Decimal && form.scale >= 0)
        return QByteArray::number(call.real(0), 'f', form.scale);
    if (form.kind == ValueKind::Real)
        return realText(call.real(0), form.style.value_or(0));
    return call.isInteger(0) ? call.text(0).toByteArray()
                             : QByteArray::number(call.real(0), 'g', 15);
}

/// The text form of an argument before it is cut to its length; empty for an unknown style.
std::optional<QByteArray> plainText(const FunctionCall &call, const TextForm &form)
{
    if (call.isNumber(0))
        return numberText(call, form);
    const QByteArrayView text = call.text(0);
    const auto time = form.kind == ValueKind::Time ? storedTime(text) : std::nullopt;
    auto moment = time ? std::optional(Moment{*time}) : std::nullopt;
    if (form.kind == ValueKind::Date || form.kind == ValueKind::DateTime
        || (form.kind == ValueKind::Null && form.style))
        moment = storedMoment(text);
    return moment ? styledText(*moment, form.kind, form.style, form.scale)
                  : std::optional(text.toByteArray());
}

qsizetype bytesOfCharacters(const QByteArray &utf8, qint64 count)
{
    qsizetype at = 0;
    for (; at < utf8.size(); ++at)
        if ((uchar(utf8[at]) & 0xC0) != 0x80 && count-- == 0)
            break;
    return at;
}

/// Arguments: the value and those of TextForm.
void toText(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const TextForm form(call);
    auto text = plainText(call, form);
    if (!text)
        return call.fail(ServerError::kStyle,
            QByteArray::number(*form.style)
                + " is not a valid style number when converting from datetime to a character "
                  "string.");
    if (form.length >= 0) {
        const qsizetype kept = bytesOfCharacters(*text, form.length);
        // A number that is cut would be another number: a whole one shows as an asterisk.
        const bool cut = kept < text->size() && call.isNumber(0);
        if (cut && (form.kind == ValueKind::Decimal || form.kind == ValueKind::Real))
            return call.failOverflow("varchar");
        *text = cut ? QByteArray("*") : text->first(kept);
        if (form.padded)
            *text = text->leftJustified(
                text->size() + form.length - QString::fromUtf8(*text).size(), ' ');
    }
    call.setText(*text);
}

/// The whole numbers of the server's types, told by how many digits they have.
bool fitsWhole(double value, qint64 digits)
{
    constexpr double kMostSmall = 32'767;
    constexpr double kMostInt = 2'147'483'647;
    constexpr double kMostBig = 9.2e18;
    if (digits == 3)
        return value >= 0 && value <= 255;
    const double most = digits == 5 ? kMostSmall : digits > 10 ? kMostBig : kMostInt;
    return value >= -most - 1 && value <= most;
}

/// The second argument is how many digits the whole number may have: 3, 5, 10, 19.
void toInteger(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    double number = call.real(0);
    qint64 whole = call.isInteger(0) ? call.integer(0) : 0;
    if (call.isText(0)) {
        const QByteArray text = call.text(0).trimmed().toByteArray();
        const auto moment = storedMoment(text);
        bool valid = true;
        whole = moment       ? std::llround(serverDays(*moment))
            : text.isEmpty() ? 0
                             : text.toLongLong(&valid);
        if (!valid)
            return call.failConversion(0, "int");
        number = double(whole);
    }
    if (!fitsWhole(std::trunc(number), call.integer(1)))
        return call.failOverflow("int");
    call.setInteger(call.isInteger(0) || call.isText(0) ? whole : qint64(number));
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
    const auto days = daysIn(call);
    const auto number = days ? days : call.number(0);
    if (!number)
        return call.fail(ServerError::kNumberConversion,
            "Error converting data type varchar to float: '" + call.text(0).toByteArray() + "'.");
    call.setReal(*number);
}

/// A text that is an exact number: digits and a point, for an amount also "$" and commas, or none
/// at all.
std::optional<double> exactNumber(QByteArray text, bool money)
{
    text = text.trimmed();
    if (money) {
        text.replace(',', "").replace('$', "");
        if (text.isEmpty())
            return 0;
    }
    bool valid = !text.contains('e') && !text.contains('E');
    const double number = valid ? text.toDouble(&valid) : 0;
    return valid && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// Arguments: value, most digits, digits behind the point, whether it is an amount of money.
void toDecimal(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const auto days = daysIn(call);
    const auto number = days ? days
        : call.isNumber(0)   ? std::optional(call.real(0))
                             : exactNumber(call.text(0).toByteArray(), call.integer(3) != 0);
    if (!number)
        return call.fail(ServerError::kNumberConversion,
            "Error converting data type varchar to numeric: '" + call.text(0).toByteArray() + "'.");
    const auto scale = int(std::clamp<qint64>(call.integer(2), 0, 15));
    const double rounded = roundedTo(*number, scale);
    if (!(std::abs(rounded) < powerOfTen(int(call.integer(1) - call.integer(2)))))
        return call.failOverflow("numeric");
    if (call.isInteger(0))
        return call.setCopy(0);
    call.setReal(rounded);
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
    {"corvane_to_text", 7, toText},
    {"corvane_to_integer", 2, toInteger},
    {"corvane_to_bit", 1, toBit},
    {"corvane_to_real", 1, toReal},
    {"corvane_to_decimal", 4, toDecimal},
    {"corvane_to_moment", 3, toMoment},
};

} // namespace

std::span<const Function> conversionFunctions()
{
    return kFunctions;
}

} // namespace corvane::embedded
