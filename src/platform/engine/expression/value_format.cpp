#include "platform/engine/expression/value_format.h"

namespace corvane {

std::variant<ValueFormat, ExpressionFault> ValueFormat::compile(QStringView)
{
    return ValueFormat();
}

QString ValueFormat::apply(const Datum &datum, const ValueTextStyle &style) const
{
    return datum.toText(style);
}

} // namespace corvane
