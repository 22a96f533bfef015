#include "platform/engine/expression/value_format.h"

#include <QtCore/QLocale>

#include <algorithm>

namespace corvane {

namespace {

const QDate kAnyDay(2000, 1, 1);

/// The number without its sign, rounded half away from zero.
QString roundedDigits(const Datum &number, bool isPercent, int digits)
{
    const bool isReal = number.kind() == DatumKind::Real;
    auto exact = isReal ? Decimal::fromReal(number.toReal()) : number.decimal();
    if (exact && isPercent)
        exact = *exact * Decimal(100);
    QString text = exact ? exact->rounded(digits).toString()
                         : QString::number(number.toReal() * (isPercent ? 100 : 1), 'f', digits);
    if (text.startsWith(u'-'))
        text.remove(0, 1);
    return text;
}

bool isZero(const QString &digits)
{
    return std::ranges::all_of(digits, [](QChar c) { return c == u'0' || c == u'.'; });
}

QString grouped(const QString &whole)
{
    QString text = whole;
    for (qsizetype at = text.size() - 3; at > 0; at -= 3)
        text.insert(at, u',');
    return text;
}

} // namespace

QString ValueFormat::apply(const Datum &datum, const ValueTextStyle &style) const
{
    const bool isBoolean = datum.kind() == DatumKind::Boolean;
    const bool isMoment = datum.isDate() || datum.kind() == DatumKind::Time;
    switch (m_kind) {
    case Kind::Plain:
        break;
    case Kind::Number:
        if (datum.isNumeric() && !isBoolean)
            return formatNumber(datum);
        break;
    case Kind::Choice:
        if (datum.isNumeric())
            return datum.isTrue() ? m_whenTrue : m_whenFalse;
        break;
    case Kind::Moment:
        if (isMoment && !(m_needsDate && !datum.isDate()))
            return formatMoment(datum);
        break;
    case Kind::StyleDate:
        if (datum.isDate())
            return Datum::date(datum.date()).toText(style);
        break;
    case Kind::StyleTime:
        if (isMoment)
            return Datum::time(datum.time()).toText(style);
        break;
    }
    return datum.toText(style);
}

/// What rounds to zero is shown as zero, without a sign.
QString ValueFormat::formatNumber(const Datum &number) const
{
    const bool isNegative = number.toReal() < 0;
    const NumberSection *section = &m_sections[isNegative && m_sections.size() > 1 ? 1 : 0];
    QString digits = roundedDigits(number, section->isPercent, section->mostFraction);
    const bool showsZero = section->hasDigits ? isZero(digits) : number.toReal() == 0;
    if (showsZero) {
        section = &m_sections[m_sections.size() > 2 ? 2 : 0];
        digits = roundedDigits(number, section->isPercent, section->mostFraction);
    }
    const bool needsSign = isNegative && !showsZero && m_sections.size() == 1;
    return (needsSign ? QStringLiteral("-") : QString()) + section->prefix + section->filled(digits)
        + section->suffix;
}

QString ValueFormat::NumberSection::filled(const QString &digits) const
{
    if (!hasDigits)
        return {};
    const qsizetype point = digits.indexOf(u'.');
    QString whole = point < 0 ? digits : digits.first(point);
    if (whole == u"0")
        whole.clear();
    whole = whole.rightJustified(leastWhole, u'0');
    const QString fraction
        = (point < 0 ? QString() : digits.sliced(point + 1)).leftJustified(leastFraction, u'0');
    qsizetype kept = fraction.size();
    while (kept > leastFraction && fraction[kept - 1] == u'0')
        --kept;
    return (isGrouped ? grouped(whole) : whole)
        + (kept > 0 ? QString(u'.' + fraction.first(kept)) : QString());
}

QString ValueFormat::formatMoment(const Datum &moment) const
{
    const QDate day = moment.isDate() ? moment.date() : kAnyDay;
    return QLocale::c().toString(QDateTime(day, moment.time(), Qt::UTC), m_momentFormat);
}

} // namespace corvane
