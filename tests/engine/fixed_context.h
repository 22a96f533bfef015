#pragma once

#include "platform/engine/expression/accumulator.h"
#include "platform/engine/expression/expression.h"

namespace corvane::test {

/// One row and its surroundings, without a report: aggregates run over a few fixed rows whatever
/// their scope.
class FixedContext : public EvaluationContext
{
public:
    Datum column(const Expression &expression, int index) override;
    Datum aggregate(const Expression &expression, int index) override;
    Datum variable(ReportVariable variable) override;
    Datum parameter(const QString &name) override;
    const ValueTextStyle &style() const override { return m_style; }

    void setDayFirst();

private:
    ValueTextStyle m_style;
    int m_row = 0;
};

/// The value's text, or "fault: " and the words, or "fault at 3: " and the words where it does not
/// compile.
QString evaluated(const QString &text, EvaluationContext &context);
QString evaluated(const QString &text);

} // namespace corvane::test
