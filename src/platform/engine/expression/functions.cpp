#include "platform/engine/expression/functions.h"

#include "platform/engine/expression/operators.h"

#include <limits>

namespace corvane {

namespace {

std::array<std::span<const Function>, 5> allFunctions()
{
    return {conditionalFunctions(), textFunctions(), numberFunctions(), dateFunctions(),
        conversionFunctions()};
}

QString ordinal(int index)
{
    constexpr QStringView kOrdinals[]
        = {u"first", u"second", u"third", u"fourth", u"fifth", u"sixth"};
    return kOrdinals[std::min(size_t(index), std::size(kOrdinals) - 1)].toString();
}

} // namespace

Datum Arguments::number(int index) const
{
    const Datum &datum = at(index);
    if (datum.kind() == DatumKind::Boolean)
        return datum.decimal();
    if (!datum.isNumeric())
        refuse(QStringLiteral("a number as its %1 argument, not %2")
                   .arg(ordinal(index), describe(datum)));
    return datum;
}

int Arguments::whole(int index) const
{
    const Datum datum = number(index);
    const auto exact
        = datum.kind() == DatumKind::Real ? Decimal::fromReal(datum.toReal()) : datum.decimal();
    const auto whole = exact ? exact->truncated().toInt64() : std::nullopt;
    if (!whole || *whole < std::numeric_limits<int>::min()
        || *whole > std::numeric_limits<int>::max())
        refuse(QStringLiteral("a smaller number as its %1 argument, not %2")
                   .arg(ordinal(index), describe(datum)));
    return int(*whole);
}

const Datum &Arguments::date(int index) const
{
    if (!at(index).isDate())
        refuse(QStringLiteral("a date as its %1 argument, not %2")
                   .arg(ordinal(index), describe(at(index))));
    return at(index);
}

void Arguments::refuse(const QString &words) const
{
    throw EvaluationFault(QStringLiteral("%1 needs %2").arg(m_call.function->name, words));
}

const Function *findFunction(QStringView name)
{
    for (const auto functions : allFunctions()) {
        for (const Function &function : functions) {
            if (name.compare(function.name, Qt::CaseInsensitive) == 0)
                return &function;
        }
    }
    return nullptr;
}

QStringList functionNames()
{
    QStringList names;
    for (const auto functions : allFunctions()) {
        for (const Function &function : functions)
            names += function.name.toString();
    }
    return names;
}

} // namespace corvane
