#include "platform/engine/expression/accumulator.h"

#include "platform/engine/expression/operators.h"

#include <cmath>

namespace corvane {

void Accumulator::add(const Datum &value)
{
    if (value.isNull())
        return;
    switch (m_function) {
    case AggregateFunction::Sum:
    case AggregateFunction::Average:
        addToSum(value);
        break;
    case AggregateFunction::DistinctCount:
        m_distinct.insert(value);
        break;
    case AggregateFunction::Minimum:
        if (m_count == 0 || compare(value, m_extreme) < 0)
            m_extreme = value;
        break;
    case AggregateFunction::Maximum:
        if (m_count == 0 || compare(value, m_extreme) > 0)
            m_extreme = value;
        break;
    case AggregateFunction::Count:
        break;
    }
    ++m_count;
}

void Accumulator::reset()
{
    *this = Accumulator(m_function);
}

Datum Accumulator::value() const
{
    switch (m_function) {
    case AggregateFunction::Sum:
        return sum();
    case AggregateFunction::Average:
        return average();
    case AggregateFunction::Count:
        return Datum::number(m_count);
    case AggregateFunction::DistinctCount:
        return Datum::number(qint64(m_distinct.size()));
    case AggregateFunction::Minimum:
    case AggregateFunction::Maximum:
        break;
    }
    return m_extreme;
}

/// Exact numbers add up exactly and apart from reals, whose sum is off anyway.
void Accumulator::addToSum(const Datum &number)
{
    if (!number.isNumeric())
        throw EvaluationFault(QStringLiteral("%1 needs numbers, not %2")
                                  .arg(m_function == AggregateFunction::Sum ? QStringLiteral("Sum")
                                                                            : QStringLiteral("Avg"),
                                      describe(number)));
    if (number.kind() == DatumKind::Real)
        return addReal(number.toReal());
    if (const auto sum = m_exact + number.decimal())
        m_exact = *sum;
    else
        addReal(number.toReal());
}

/// Neumaier's summation: the digits that an addition drops are kept beside the sum.
void Accumulator::addReal(double number)
{
    m_hasReal = true;
    const double sum = m_real + number;
    m_lost
        += std::abs(m_real) >= std::abs(number) ? (m_real - sum) + number : (number - sum) + m_real;
    m_real = sum;
}

Datum Accumulator::sum() const
{
    if (m_count == 0)
        return {};
    return m_hasReal ? finite(m_real + m_lost + m_exact.toReal()) : Datum(m_exact);
}

Datum Accumulator::average() const
{
    return m_count == 0 ? Datum() : calculate(Operator::Divide, sum(), Datum::number(m_count));
}

} // namespace corvane
