#include "platform/engine/layout_expression.h"

#include "platform/engine/near_word.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace corvane {

ExpressionPtr readExpression(
    const AttributeReader &reader, const char *name, const std::vector<Group> &groups)
{
    const ExpressionPtr expression = reader.expression(name);
    if (!expression)
        return nullptr;
    for (const Aggregate &aggregate : expression->aggregates()) {
        if (aggregate.scope != AggregateScope::Group
            || std::ranges::count(groups, aggregate.group, &Group::name))
            continue;
        QStringList names;
        for (const Group &group : groups)
            names += group.name;
        reader.fail(name,
            QString(QStringLiteral("there is no group \"%1\"").arg(aggregate.group)
                % suggestion(aggregate.group, names)));
    }
    return expression;
}

ExpressionPtr readRowExpression(const AttributeReader &reader, const char *name)
{
    const ExpressionPtr expression = reader.expression(name);
    if (!expression)
        return nullptr;
    if (!expression->aggregates().empty())
        reader.fail(name,
            QStringLiteral(
                "rows are grouped before anything is summed; sums and counts cannot stand here."));
    for (const ReportVariable variable :
        {ReportVariable::PageNumber, ReportVariable::PageCount, ReportVariable::RowNumber}) {
        if (expression->uses(variable)) {
            reader.fail(name,
                QStringLiteral(
                    "rows are grouped before they are placed; page and row numbers cannot "
                    "stand here."));
        }
    }
    return expression;
}

} // namespace corvane
