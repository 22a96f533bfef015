#pragma once

#include "platform/engine/expression/program.h"

namespace corvane {

/// Computes a compiled expression for the row that the context stands on. @throws EvaluationFault
class Evaluator
{
public:
    Evaluator(const Expression &expression, const ExpressionProgram &program, EvaluationContext &context)
        : m_expression(expression)
        , m_program(program)
        , m_context(context)
    {
    }

    Datum value(const Node &node);

private:
    Datum binary(const Node &node);
    Datum joined(const Node &node);
    Datum logic(const Node &node, bool decisive);
    Datum isIn(const Node &node);
    Datum called(const Node &node);
    Datum negated(const Datum &condition) const;
    /// Null, or what a condition makes of the value. A text is no condition.
    std::optional<bool> truth(const Datum &datum) const;

    const Expression &m_expression;
    const ExpressionProgram &m_program;
    EvaluationContext &m_context;
};

} // namespace corvane
