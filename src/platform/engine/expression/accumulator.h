#pragma once

#include "platform/engine/expression/expression.h"

#include <unordered_set>

namespace corvane {

/// Computes one aggregate value by value. Nulls are skipped; over no value at all counts are 0, the
/// rest is null.
class Accumulator
{
public:
    explicit Accumulator(AggregateFunction function)
        : m_function(function)
    {
    }

    /// @throws EvaluationFault for a sum or average of something that is no number
    void add(const Datum &value);
    /// One row more, for a Count without an argument.
    void addRow() { ++m_count; }
    void reset();
    Datum value() const;

private:
    struct Hash
    {
        size_t operator()(const Datum &datum) const { return qHash(datum, 0); }
    };

    void addToSum(const Datum &number);
    void addReal(double number);
    Datum sum() const;
    Datum average() const;

    AggregateFunction m_function;
    qint64 m_count = 0;
    Decimal m_exact;
    bool m_hasReal = false;
    double m_real = 0;
    double m_lost = 0; ///< what rounding took from m_real so far
    Datum m_extreme;
    std::unordered_set<Datum, Hash> m_distinct;
};

} // namespace corvane
