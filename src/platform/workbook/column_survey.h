#pragma once

#include "platform/workbook/cell_formats.h"
#include "platform/workbook/cell_value.h"

#include <optional>

namespace corvane {

/// What a column's cells need: how wide it is and which formats it shows them in.
class ColumnSurvey
{
public:
    explicit ColumnSurvey(const QString &heading);

    void add(const Value &value, const CellValue &cell);

    /// Width in characters of the default font, within limits; formatted dates and decimals
    /// counted.
    int width(const ValueTextStyle &style) const;
    bool hasTimeOfDay() const { return m_hasTimeOfDay; }
    /// Decimals of a column show the same number of digits after the point; empty when "General"
    /// suits better.
    std::optional<int> fractionDigits() const;

private:
    void addNumber(const Value &value, double number);
    void widen(int width);

    int m_width;
    int m_wholeDigits = 0; ///< of decimals, with the sign
    int m_fraction = -1;
    bool m_hasDate = false;
    bool m_hasTimeOfDay = false;
    bool m_hasTime = false;
};

/// The XF indices that a column's cells use.
struct ColumnFormats
{
    quint16 plain = 0;
    quint16 longInteger = 0;
    quint16 decimal = 0;
    quint16 date = 0;
    quint16 dateTime = 0;
    quint16 time = 0;
    quint16 text = 0;
    quint16 longText = 0;

    quint16 of(const Value &value, const CellValue &cell) const;
};
ColumnFormats columnFormats(
    const ColumnSurvey &survey, const ValueTextStyle &style, CellFormats &formats);

} // namespace corvane
