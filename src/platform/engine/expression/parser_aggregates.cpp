#include "platform/engine/expression/parser.h"

namespace corvane {

Node ExpressionParser::parseAggregate(const Token &name, const AggregateName &known)
{
    if (!m_aggregate.isEmpty())
        return refuse(
            name.offset, QStringLiteral("%1 cannot stand inside %2").arg(known.name, m_aggregate));
    take();
    Aggregate aggregate;
    aggregate.function = known.function;
    aggregate.isRunning = known.isRunning;
    aggregate.offset = name.offset;
    if (known.isPercent)
        aggregate.scope = AggregateScope::Report;
    const bool isCount = known.function == AggregateFunction::Count;
    if (isCount && startsScope())
        parseScope(aggregate);
    else if (!isCount || !current().isSymbol(u")"))
        parseAggregateArgument(known, aggregate);
    expectSymbol(u")");
    return known.isPercent ? percentNode(aggregate) : aggregateNode(std::move(aggregate));
}

/// The argument is an expression of its own: it is evaluated on other rows than what surrounds it.
void ExpressionParser::parseAggregateArgument(const AggregateName &known, Aggregate &aggregate)
{
    ExpressionProgram outer = std::exchange(m_program, ExpressionProgram());
    m_aggregate = known.name.toString();
    m_program.root = parseOr();
    m_aggregate.clear();
    ExpressionProgram argument = std::exchange(m_program, std::move(outer));
    m_program.variables |= argument.variables;
    for (const QString &parameter : argument.parameters) {
        if (!m_program.parameters.contains(parameter, Qt::CaseInsensitive))
            m_program.parameters += parameter;
    }
    aggregate.argument = std::make_shared<const Expression>(std::move(argument));
    if (takeSymbol(u","))
        parseScope(aggregate);
}

/// Count('patient') counts the group's rows: counting a fixed text would be of no use.
bool ExpressionParser::startsScope() const
{
    const bool isScope = current().kind == TokenKind::Text || current().isWord(u"Page")
        || current().isWord(u"Report");
    return isScope && following().isSymbol(u")");
}

void ExpressionParser::parseScope(Aggregate &aggregate)
{
    const Token token = take();
    if (token.isWord(u"Page")) {
        aggregate.scope = AggregateScope::Page;
    } else if (token.isWord(u"Report")) {
        aggregate.scope = AggregateScope::Report;
    } else if (token.kind == TokenKind::Text) {
        aggregate.scope = AggregateScope::Group;
        aggregate.group = token.text;
        aggregate.offset = token.offset;
    } else {
        refuse(token.offset,
            QStringLiteral("Page, Report or a group's name in quotes is expected, not %1")
                .arg(token.shown()));
    }
}

Node ExpressionParser::aggregateNode(Aggregate aggregate)
{
    Node node;
    node.kind = NodeKind::Aggregate;
    node.index = int(m_program.aggregates.size());
    m_program.aggregates.push_back(std::move(aggregate));
    return node;
}

Node ExpressionParser::percentNode(const Aggregate &whole)
{
    Aggregate part = whole;
    part.scope = AggregateScope::Section;
    part.group.clear();
    Node node;
    node.kind = NodeKind::Call;
    node.function = findFunction(u"Percent");
    node.children.push_back(aggregateNode(std::move(part)));
    node.children.push_back(aggregateNode(whole));
    return node;
}

} // namespace corvane
