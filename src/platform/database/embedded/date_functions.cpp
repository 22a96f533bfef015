#include "platform/database/embedded/date_parts.h"
#include "platform/database/embedded/function_values.h"

#include <cmath>

namespace corvane::embedded {

namespace {

DatePart partArgument(const FunctionCall &call)
{
    return DatePart(call.integer(0));
}

void dateAdd(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const auto count = call.number(1);
    const auto moment = call.moment(2, call.dateOrder());
    if (!count)
        return call.failConversion(1, "int");
    if (!moment)
        return call.setMoment(moment);
    constexpr double kMostCounted = 1e18;
    const auto sum = std::abs(*count) < kMostCounted
        ? addParts(*moment, partArgument(call), qint64(*count))
        : std::nullopt;
    if (!sum)
        return call.fail(ServerError::kDateOverflow,
            "Adding a value to a 'datetime' column caused an overflow.");
    call.setMoment(sum);
}

void dateDifference(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const auto from = call.moment(1, call.dateOrder());
    const auto to = call.moment(2, call.dateOrder());
    if (!from || !to)
        return call.setMoment({});
    call.setInteger(partsBetween(*from, *to, partArgument(call)));
}

void datePart(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const auto moment = call.moment(1, call.dateOrder());
    if (!moment)
        return call.setMoment(moment);
    call.setInteger(partOf(*moment, partArgument(call)));
}

void dateName(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const auto moment = call.moment(1, call.dateOrder());
    if (!moment)
        return call.setMoment(moment);
    call.setText(partName(*moment, partArgument(call)));
}

constexpr Function kFunctions[] = {
    {"corvane_dateadd", 3, dateAdd},
    {"corvane_datediff", 3, dateDifference},
    {"corvane_datepart", 2, datePart},
    {"corvane_datename", 2, dateName},
};

} // namespace

std::span<const Function> dateFunctions()
{
    return kFunctions;
}

} // namespace corvane::embedded
