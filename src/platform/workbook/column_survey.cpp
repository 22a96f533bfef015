#include "platform/workbook/column_survey.h"

#include "platform/workbook/cell_text.h"

#include <QtCore/QDateTime>

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane {

namespace {

constexpr int kNarrowest = 6;
constexpr int kWidest = 60;
/// The filter's button covers the end of a heading.
constexpr int kFilterButton = 3;
/// "General" shows at most so many digits; what is longer needs a format of its own.
constexpr int kGeneralDigits = 11;
constexpr double kGeneralLimit = 1e11;
/// Most digits after the point that a column is filled up to.
constexpr int kMostFraction = 15;
/// Longer texts overflow a cell that is formatted as text: it would show number signs.
constexpr qsizetype kLongestFormattedText = 255;

int integerWidth(double number)
{
    int width = number < 0 ? 2 : 1;
    double rest = std::fabs(number);
    while (rest >= 10) {
        rest /= 10;
        ++width;
    }
    return width;
}

/// A date and time whose text is as long as any.
QDateTime longMoment()
{
    return {QDate(2028, 12, 28), QTime(22, 58, 58, 888), Qt::UTC};
}

} // namespace

ColumnSurvey::ColumnSurvey(const QString &heading)
    : m_width(std::min(textWidth(heading.toUtf8()) + kFilterButton, kWidest))
{
}

void ColumnSurvey::add(const Value &value, const CellValue &cell)
{
    switch (cell.kind) {
    case CellKind::Empty:
        break;
    case CellKind::Text: // no text is wider than its bytes are many
        if (value.data().size() > m_width && m_width < kWidest)
            widen(textWidth(
                value.data().first(std::min(value.data().size(), qsizetype(4) * kWidest))));
        break;
    case CellKind::Boolean:
        widen(int(sizeof "FALSE") - 1);
        break;
    case CellKind::Number:
        addNumber(value, cell.number);
        break;
    default:
        widen(std::min(kWidest, 2 + 2 * int(std::min<qsizetype>(value.data().size(), kWidest))));
        break;
    }
}

void ColumnSurvey::addNumber(const Value &value, double number)
{
    switch (value.kind()) {
    case ValueKind::Date:
        m_hasDate = true;
        break;
    case ValueKind::DateTime:
        m_hasDate = true;
        m_hasTimeOfDay = m_hasTimeOfDay || number != std::floor(number);
        break;
    case ValueKind::Time:
        m_hasTime = true;
        break;
    case ValueKind::Decimal: {
        const DecimalShape shape = decimalShape(value.data());
        m_wholeDigits = std::max(m_wholeDigits, shape.whole + (number < 0 ? 1 : 0));
        m_fraction = std::max(m_fraction, shape.fraction);
        break;
    }
    case ValueKind::Integer:
        widen(integerWidth(number));
        break;
    default:
        widen(number == std::floor(number) && std::fabs(number) < kGeneralLimit
                ? integerWidth(number)
                : kGeneralDigits);
        break;
    }
}

void ColumnSurvey::widen(int width)
{
    m_width = std::max(m_width, width);
}

int ColumnSurvey::width(const ValueTextStyle &style) const
{
    const QLocale c = QLocale::c();
    int width = m_width;
    if (m_fraction >= 0)
        width = std::max(width, m_wholeDigits + (m_fraction > 0 ? 1 + m_fraction : 0));
    if (m_hasDate)
        width = std::max(width, int(c.toString(longMoment().date(), style.dateFormat).size()));
    if (m_hasTimeOfDay)
        width = std::max(width,
            int(c.toString(longMoment(), QString(style.dateFormat + u' ' + style.timeFormat))
                    .size()));
    if (m_hasTime)
        width = std::max(width, int(c.toString(longMoment().time(), style.timeFormat).size()));
    return std::clamp(width + 1, kNarrowest, kWidest);
}

std::optional<int> ColumnSurvey::fractionDigits() const
{
    if (m_fraction < 0 || m_fraction > kMostFraction)
        return std::nullopt;
    return m_fraction;
}

quint16 ColumnFormats::of(const Value &value, const CellValue &cell) const
{
    if (cell.isText())
        return value.data().size()
                > kLongestFormattedText / (cell.kind == CellKind::BytesAsText ? 3 : 1)
            ? longText
            : text;
    switch (value.kind()) {
    case ValueKind::Integer:
        return std::fabs(cell.number) >= kGeneralLimit ? longInteger : plain;
    case ValueKind::Decimal:
        return decimal;
    case ValueKind::Date:
        return date;
    case ValueKind::DateTime:
        return dateTime;
    case ValueKind::Time:
        return time;
    default:
        return plain;
    }
}

ColumnFormats columnFormats(
    const ColumnSurvey &survey, const ValueTextStyle &style, CellFormats &formats)
{
    const auto xf = [&formats](const QString &code) { return formats.add({.code = code}); };
    const std::optional<int> digits = survey.fractionDigits();
    const QString date = numberFormat(style.dateFormat);
    const QString time = numberFormat(style.timeFormat);
    ColumnFormats columns;
    columns.plain = CellFormats::kDefaultXf;
    columns.longInteger = xf(QStringLiteral("0"));
    columns.decimal = digits
        ? xf(*digits > 0 ? QString(u"0." + QString(*digits, u'0')) : QStringLiteral("0"))
        : columns.plain;
    columns.date = xf(date);
    columns.dateTime = survey.hasTimeOfDay() ? xf(QString(date + u' ' + time)) : columns.date;
    columns.time = xf(time);
    columns.text = xf(QStringLiteral("@"));
    columns.longText = formats.add({.code = QStringLiteral("General"), .hasQuotePrefix = true});
    return columns;
}

} // namespace corvane
