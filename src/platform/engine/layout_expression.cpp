#include "platform/engine/layout_expression.h"

#include <QtCore/QStringList>

namespace corvane {

ExpressionPtr readExpression(
    const AttributeReader &reader, const char *name, const std::vector<Group> &groups)
{
    ExpressionPtr expression = reader.expression(name);
    if (!expression)
        return nullptr;
    QStringList names;
    for (const Group &group : groups)
        names += group.name;
    if (const auto fault = expression->findUnknownGroup(names))
        reader.fail(name, *fault);
    return expression;
}

ExpressionPtr readRowExpression(const AttributeReader &reader, const char *name)
{
    ExpressionPtr expression = reader.expression(name);
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
