#include "platform/engine/expression/expression.h"

#include "platform/engine/expression/evaluator.h"
#include "platform/engine/expression/nearest_name.h"
#include "platform/engine/expression/parser.h"

namespace corvane {

std::variant<ExpressionPtr, ExpressionFault> Expression::compile(QStringView text)
{
    auto program = parseExpression(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&program))
        return *fault;
    return std::make_shared<const Expression>(std::get<ExpressionProgram>(std::move(program)));
}

ExpressionPtr Expression::ofColumn(const QString &name)
{
    ExpressionProgram program;
    program.root.kind = NodeKind::Column;
    program.columns += name;
    program.columnOffsets.push_back(0);
    return std::make_shared<const Expression>(std::move(program));
}

Expression::Expression(ExpressionProgram program)
    : m_program(std::make_unique<const ExpressionProgram>(std::move(program)))
{
}

Expression::~Expression() = default;

Datum Expression::evaluate(EvaluationContext &context) const
{
    if (isPlainColumn())
        return context.column(*this, 0);
    return Evaluator(*this, *m_program, context).value(m_program->root);
}

const QStringList &Expression::columns() const
{
    return m_program->columns;
}

const std::vector<Aggregate> &Expression::aggregates() const
{
    return m_program->aggregates;
}

const QStringList &Expression::parameters() const
{
    return m_program->parameters;
}

bool Expression::uses(ReportVariable variable) const
{
    return (m_program->variables >> quint32(variable) & 1u) != 0;
}

bool Expression::isPlainColumn() const
{
    return m_program->root.kind == NodeKind::Column;
}

std::optional<ExpressionFault> Expression::findUnknownGroup(const QStringList &groupNames) const
{
    for (const Aggregate &aggregate : m_program->aggregates) {
        if (aggregate.scope == AggregateScope::Group
            && !groupNames.contains(aggregate.group, Qt::CaseInsensitive))
            return ExpressionFault{
                QStringLiteral("there is no group \"%1\"%2")
                    .arg(aggregate.group, didYouMean(aggregate.group, groupNames)),
                aggregate.offset};
    }
    return std::nullopt;
}

std::optional<ExpressionFault> Expression::findUnknownColumn(const QStringList &fieldNames) const
{
    for (qsizetype i = 0; i < columns().size(); ++i) {
        if (!fieldNames.contains(columns()[i], Qt::CaseInsensitive))
            return ExpressionFault{QStringLiteral("the record source has no column \"%1\"%2")
                                       .arg(columns()[i], didYouMean(columns()[i], fieldNames)),
                m_program->columnOffsets[size_t(i)]};
    }
    for (const Aggregate &aggregate : m_program->aggregates) {
        if (!aggregate.argument)
            continue;
        if (const auto fault = aggregate.argument->findUnknownColumn(fieldNames))
            return fault;
    }
    return std::nullopt;
}

} // namespace corvane
