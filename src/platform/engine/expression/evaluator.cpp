#include "platform/engine/expression/evaluator.h"

#include "platform/engine/expression/functions.h"
#include "platform/engine/expression/operators.h"

#include <QtCore/QVarLengthArray>

namespace corvane {

namespace {

class NodeCall final : public LazyCall
{
public:
    NodeCall(Evaluator &evaluator, const Node &node)
        : m_evaluator(evaluator)
        , m_node(node)
    {
    }
    int count() const override { return int(m_node.children.size()); }
    Datum value(int index) override { return m_evaluator.value(m_node.children[size_t(index)]); }

private:
    Evaluator &m_evaluator;
    const Node &m_node;
};

bool isComparison(Operator op)
{
    return op >= Operator::Equal;
}

} // namespace

Datum Evaluator::value(const Node &node)
{
    switch (node.kind) {
    case NodeKind::Constant:
        return node.constant;
    case NodeKind::Column:
        return m_context.column(m_expression, node.index);
    case NodeKind::Aggregate:
        return m_context.aggregate(m_expression, node.index);
    case NodeKind::Variable:
        return m_context.variable(node.variable);
    case NodeKind::Parameter:
        return m_context.parameter(m_program.parameters[node.index]);
    case NodeKind::Binary:
        return node.operators[0] == Operator::Join ? joined(node) : binary(node);
    case NodeKind::And:
        return logic(node, false);
    case NodeKind::Or:
        return logic(node, true);
    case NodeKind::Not:
        return negated(value(node.children[0]));
    case NodeKind::Negate:
        return negate(value(node.children[0]));
    case NodeKind::In:
        return isIn(node);
    case NodeKind::NotIn:
        return negated(isIn(node));
    case NodeKind::IsNull:
        return Datum::boolean(value(node.children[0]).isNull());
    case NodeKind::IsNotNull:
        return Datum::boolean(!value(node.children[0]).isNull());
    case NodeKind::Call:
        break;
    }
    return called(node);
}

Datum Evaluator::binary(const Node &node)
{
    Datum result = value(node.children[0]);
    for (size_t i = 0; i < node.operators.size(); ++i) {
        const Datum right = value(node.children[i + 1]);
        if (result.isNull() || right.isNull())
            return {};
        result = isComparison(node.operators[i]) ? compareBy(node.operators[i], result, right)
                                                 : calculate(node.operators[i], result, right);
    }
    return result;
}

Datum Evaluator::joined(const Node &node)
{
    QString text;
    for (const Node &child : node.children) {
        value(child).appendText(text, m_context.style());
        checkLength(text.size());
    }
    return text;
}

/// The decisive operand settles the matter whatever the others are, so the rest is not computed: a
/// test against zero may stand before a division. Without one, an unknown operand makes the whole
/// unknown.
Datum Evaluator::logic(const Node &node, bool decisive)
{
    bool isUnknown = false;
    for (const Node &child : node.children) {
        const std::optional<bool> operand = truth(value(child));
        if (operand == decisive)
            return Datum::boolean(decisive);
        isUnknown |= !operand;
    }
    return isUnknown ? Datum() : Datum::boolean(!decisive);
}

Datum Evaluator::isIn(const Node &node)
{
    const Datum wanted = value(node.children[0]);
    bool isUnknown = wanted.isNull();
    for (size_t i = 1; i < node.children.size() && !wanted.isNull(); ++i) {
        const Datum isSame = compareBy(Operator::Equal, wanted, value(node.children[i]));
        if (isSame.isTrue())
            return isSame;
        isUnknown |= isSame.isNull();
    }
    return isUnknown ? Datum() : Datum::boolean(false);
}

Datum Evaluator::called(const Node &node)
{
    if (node.function->lazy) {
        NodeCall call(*this, node);
        return node.function->lazy(call);
    }
    QVarLengthArray<Datum, 4> values;
    bool hasNull = false;
    for (const Node &child : node.children) {
        values.push_back(value(child));
        hasNull |= values.back().isNull();
    }
    if (hasNull)
        return {};
    return node.function->strict(
        Arguments(node, {values.constData(), size_t(values.size())}, m_context));
}

Datum Evaluator::negated(const Datum &condition) const
{
    const std::optional<bool> isTrue = truth(condition);
    return isTrue ? Datum::boolean(!*isTrue) : Datum();
}

std::optional<bool> Evaluator::truth(const Datum &datum) const
{
    if (datum.isNull())
        return std::nullopt;
    return conditionHolds(datum);
}

} // namespace corvane
