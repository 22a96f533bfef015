#pragma once

#include "platform/engine/expression/accumulator.h"

#include <optional>

namespace corvane {

/// The value of an aggregate, or why it has none.
struct AggregateValue
{
    Datum value;
    std::optional<EvaluationFault> fault;

    /// @throws EvaluationFault
    const Datum &get() const
    {
        if (fault)
            throw *fault;
        return value;
    }
};

/// An accumulator that keeps the first fault instead of stopping the report.
class AggregateValueBuilder
{
public:
    explicit AggregateValueBuilder(AggregateFunction function)
        : m_accumulator(function)
    {
    }

    void reset()
    {
        m_accumulator.reset();
        m_fault.reset();
    }
    void add(const Datum &value)
    {
        try {
            m_accumulator.add(value);
        } catch (const EvaluationFault &fault) {
            fail(fault);
        }
    }
    void addRow() { m_accumulator.addRow(); }
    void fail(const EvaluationFault &fault)
    {
        if (!m_fault)
            m_fault = fault;
    }
    AggregateValue value() const
    {
        return m_fault ? AggregateValue{{}, m_fault} : AggregateValue{m_accumulator.value(), {}};
    }

private:
    Accumulator m_accumulator;
    std::optional<EvaluationFault> m_fault;
};

} // namespace corvane
