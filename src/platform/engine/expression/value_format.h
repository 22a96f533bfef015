#pragma once

#include "platform/engine/expression/expression.h"

#include <QtCore/QString>

#include <variant>
#include <vector>

namespace corvane {

/// How numbers, dates, times or yes-and-no values show: "#,##0.00;(#,##0.00)", "yyyy-MM-dd",
/// "yes/no". Read once, used for many values; a value of another kind keeps its plain text form,
/// null is empty.
class ValueFormat
{
public:
    /// An empty text is the plain text form.
    static std::variant<ValueFormat, ExpressionFault> compile(QStringView text);

    QString apply(const Datum &datum, const ValueTextStyle &style) const;

private:
    friend class ValueFormatReader;
    enum class Kind : quint8 { Plain, Number, Moment, Choice, StyleDate, StyleTime };

    /// One of the sections for positive numbers, negative ones and zero.
    struct NumberSection
    {
        QString prefix;
        QString suffix;
        int leastWhole = 0; ///< digits before the point that always show
        int leastFraction = 0; ///< digits behind the point that always show
        int mostFraction = 0;
        bool hasDigits = false; ///< false: only its texts show
        bool isGrouped = false;
        bool isPercent = false;

        /// Digits with a point as this section shows them.
        QString filled(const QString &digits) const;
    };

    QString formatNumber(const Datum &number) const;
    QString formatMoment(const Datum &moment) const;

    Kind m_kind = Kind::Plain;
    std::vector<NumberSection> m_sections;
    QString m_momentFormat; ///< in the library's letters
    bool m_needsDate = false;
    bool m_needsTime = false;
    QString m_whenTrue;
    QString m_whenFalse;
};

} // namespace corvane
