#include "platform/engine/expression/functions.h"

#include "platform/engine/expression/operators.h"

#include <array>

namespace corvane {

namespace {

Datum chooseIf(LazyCall &call)
{
    return call.value(conditionHolds(call.value(0)) ? 1 : 2);
}

/// Pairs of condition and value; a single value at the end is for the rest.
Datum switchOn(LazyCall &call)
{
    int i = 0;
    for (; i + 1 < call.count(); i += 2) {
        if (conditionHolds(call.value(i)))
            return call.value(i + 1);
    }
    return i < call.count() ? call.value(i) : Datum();
}

Datum choose(LazyCall &call)
{
    const Datum index = call.value(0);
    if (index.isNull())
        return {};
    if (!index.isNumeric())
        throw EvaluationFault(QStringLiteral("Choose needs a number as its first argument, not %1")
                                  .arg(describe(index)));
    const double chosen = index.toReal();
    return chosen >= 1 && chosen < call.count() ? call.value(int(chosen)) : Datum();
}

Datum coalesce(LazyCall &call)
{
    for (int i = 0; i < call.count(); ++i) {
        Datum value = call.value(i);
        if (!value.isNull())
            return value;
    }
    return {};
}

Datum isNull(LazyCall &call)
{
    return call.count() == 1 ? Datum::boolean(call.value(0).isNull()) : coalesce(call);
}

constexpr std::array kFunctions{
    Function{u"If", 3, 3, nullptr, chooseIf},
    Function{u"Switch", 2, Function::kAnyNumber, nullptr, switchOn},
    Function{u"Choose", 2, Function::kAnyNumber, nullptr, choose},
    Function{u"Coalesce", 1, Function::kAnyNumber, nullptr, coalesce},
    Function{u"IsNull", 1, 2, nullptr, isNull},
};

} // namespace

std::span<const Function> conditionalFunctions()
{
    return kFunctions;
}

} // namespace corvane
