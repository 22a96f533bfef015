#include "platform/engine/expression/operators.h"

#include <cmath>

namespace corvane {

namespace {

constexpr qint64 kMsPerDay = 86'400'000;
constexpr qsizetype kShownLetters = 40;
const QDate kFirstDay(1, 1, 1);
const QDate kLastDay(9999, 12, 31);

QStringView sign(Operator op)
{
    constexpr QStringView kSigns[]
        = {u"+", u"-", u"*", u"/", u"mod", u"^", u"&", u"=", u"<>", u"<", u"<=", u">", u">="};
    return kSigns[size_t(op)];
}

[[noreturn]] void refuseOperands(Operator op, const Datum &a, const Datum &b)
{
    const bool isJoin
        = op == Operator::Add && (a.kind() == DatumKind::Text || b.kind() == DatumKind::Text);
    const Datum &wrong = a.isNumeric() ? b : a;
    const QString help = isJoin           ? QStringLiteral("; use & to join texts")
        : wrong.kind() == DatumKind::Text ? QStringLiteral("; Number() turns a text into a number")
                                          : QString();
    throw EvaluationFault(
        QStringLiteral("\"%1\" needs numbers, not %2%3").arg(sign(op), describe(wrong), help));
}

void refuseZero(Operator op, const Datum &divisor)
{
    if (divisor.toReal() == 0)
        throw EvaluationFault(QStringLiteral("\"%1\" divides by zero").arg(sign(op)));
}

std::optional<Decimal> power(Decimal base, qint64 exponent)
{
    std::optional<Decimal> result = Decimal(1);
    for (; exponent > 0 && result; exponent /= 2) {
        if (exponent % 2 == 1)
            result = *result * base;
        if (exponent == 1)
            break;
        const auto square = base * base;
        if (!square)
            return std::nullopt;
        base = *square;
    }
    return result;
}

std::optional<Decimal> exactPower(const Decimal &base, const Decimal &exponent)
{
    const auto whole = exponent.toInt64();
    if (!exponent.isWhole() || !whole || *whole < -1000 || *whole > 1000)
        return std::nullopt;
    const auto result = power(base, std::abs(*whole));
    return result && *whole < 0 ? Decimal(1) / *result : result;
}

std::optional<Decimal> exactResult(Operator op, const Decimal &a, const Decimal &b)
{
    switch (op) {
    case Operator::Add:
        return a + b;
    case Operator::Subtract:
        return a - b;
    case Operator::Multiply:
        return a * b;
    case Operator::Divide:
        return a / b;
    case Operator::Modulo:
        return remainder(a, b);
    default:
        return exactPower(a, b);
    }
}

double realResult(Operator op, double a, double b)
{
    switch (op) {
    case Operator::Add:
        return a + b;
    case Operator::Subtract:
        return a - b;
    case Operator::Multiply:
        return a * b;
    case Operator::Divide:
        return a / b;
    case Operator::Modulo:
        return std::fmod(a, b);
    default:
        return std::pow(a, b);
    }
}

Datum addDays(const Datum &date, const Datum &days)
{
    const double ms = days.toReal() * double(kMsPerDay);
    constexpr double kFurthest = 4e14; // more than 9999 years
    const QDateTime moment
        = std::abs(ms) < kFurthest ? date.dateTime().addMSecs(std::llround(ms)) : QDateTime();
    return dateWithin(
        moment, date.kind() == DatumKind::Date && moment.time().msecsSinceStartOfDay() == 0);
}

Datum daysBetween(const Datum &first, const Datum &second)
{
    const qint64 ms = first.dateTime().msecsTo(second.dateTime());
    if (const auto days = Decimal(ms) / Decimal(kMsPerDay))
        return *days;
    return finite(double(ms) / double(kMsPerDay));
}

bool doCompare(const Datum &a, const Datum &b)
{
    return a.kind() == b.kind() || (a.isNumeric() && b.isNumeric()) || (a.isDate() && b.isDate());
}

/// A Boolean beside a number counts as 1 or 0.
std::strong_ordering order(const Datum &a, const Datum &b)
{
    const auto plain = [](const Datum &datum) {
        return datum.kind() == DatumKind::Boolean ? Datum(datum.decimal()) : datum;
    };
    return a.kind() == b.kind() ? compare(a, b) : compare(plain(a), plain(b));
}

bool holds(Operator op, std::strong_ordering order)
{
    switch (op) {
    case Operator::Equal:
        return order == 0;
    case Operator::NotEqual:
        return order != 0;
    case Operator::Less:
        return order < 0;
    case Operator::LessOrEqual:
        return order <= 0;
    case Operator::Greater:
        return order > 0;
    default:
        return order >= 0;
    }
}

} // namespace

Datum calculate(Operator op, const Datum &a, const Datum &b)
{
    if (a.isDate() && b.isNumeric() && (op == Operator::Add || op == Operator::Subtract))
        return addDays(a, op == Operator::Add ? b : negate(b));
    if (a.isNumeric() && b.isDate() && op == Operator::Add)
        return addDays(b, a);
    if (a.isDate() && b.isDate() && op == Operator::Subtract)
        return daysBetween(b, a);
    if (!a.isNumeric() || !b.isNumeric())
        refuseOperands(op, a, b);
    if (op == Operator::Divide || op == Operator::Modulo)
        refuseZero(op, b);
    if (op == Operator::Power && b.toReal() < 0)
        refuseZero(op, a);
    if (a.kind() != DatumKind::Real && b.kind() != DatumKind::Real) {
        if (const auto exact = exactResult(op, a.decimal(), b.decimal()))
            return *exact;
    }
    return finite(realResult(op, a.toReal(), b.toReal()));
}

Datum compareBy(Operator op, const Datum &a, const Datum &b)
{
    if (a.isNull() || b.isNull())
        return {};
    if (!doCompare(a, b))
        throw EvaluationFault(
            QStringLiteral("%1 cannot be compared with %2; Number(), Text() and ToDate() convert")
                .arg(describe(a), describe(b)));
    return Datum::boolean(holds(op, order(a, b)));
}

Datum negate(const Datum &number)
{
    if (number.isNull())
        return {};
    if (!number.isNumeric())
        refuseOperands(Operator::Subtract, number, number);
    if (number.kind() == DatumKind::Real)
        return Datum::real(-number.toReal());
    return number.decimal().negated();
}

Datum finite(double real)
{
    if (!std::isfinite(real))
        throw EvaluationFault(QStringLiteral("the result is no number or too large"));
    return Datum::real(real);
}

Datum dateWithin(const QDateTime &moment, bool isWholeDay)
{
    if (!moment.isValid() || moment.date() < kFirstDay || moment.date() > kLastDay)
        throw EvaluationFault(QStringLiteral("the date is outside the years 1 to 9999"));
    return isWholeDay ? Datum::date(moment.date()) : Datum::dateTime(moment);
}

bool conditionHolds(const Datum &datum)
{
    if (!datum.isNull() && !datum.isNumeric())
        throw EvaluationFault(QStringLiteral("a condition is needed, not %1").arg(describe(datum)));
    return datum.isTrue();
}

QString describe(const Datum &datum)
{
    QString text = datum.toText(ValueTextStyle());
    switch (datum.kind()) {
    case DatumKind::Null:
        return QStringLiteral("nothing");
    case DatumKind::Boolean:
        return text;
    case DatumKind::Number:
    case DatumKind::Real:
        return QStringLiteral("the number %1").arg(text);
    case DatumKind::Text:
        return QStringLiteral("the text \"%1\"")
            .arg(text.size() > kShownLetters ? QString(text.first(kShownLetters) + u'…') : text);
    case DatumKind::Date:
    case DatumKind::DateTime:
        return QStringLiteral("the date %1").arg(text);
    case DatumKind::Time:
        return QStringLiteral("the time %1").arg(text);
    case DatumKind::Bytes:
        break;
    }
    return QStringLiteral("the bytes of a picture or file");
}

void checkLength(qsizetype length)
{
    if (length > kLongestText)
        throw EvaluationFault(
            QStringLiteral("the text would have %1 letters; at most %2 are possible")
                .arg(QString::number(length), QString::number(kLongestText)));
}

} // namespace corvane
