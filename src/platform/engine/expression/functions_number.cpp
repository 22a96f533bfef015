#include "platform/engine/expression/functions.h"

#include "platform/engine/expression/operators.h"

#include <cmath>

namespace corvane {

namespace {

constexpr int kMostDigits = 30;

/// The same step for exact numbers and for reals.
template <typename Exact, typename Real> Datum stepped(const Datum &number, Exact exact, Real real)
{
    return number.kind() == DatumKind::Real ? finite(real(number.toReal()))
                                            : Datum(exact(number.decimal()));
}

Datum absolute(const Arguments &arguments)
{
    return stepped(
        arguments.number(0), [](const Decimal &n) { return n.isNegative() ? n.negated() : n; },
        [](double n) { return std::abs(n); });
}

Datum sign(const Arguments &arguments)
{
    const double number = arguments.number(0).toReal();
    return Datum::number(number > 0 ? 1 : number < 0 ? -1 : 0);
}

/// A real rounds by its shortest decimal, so that 2.675 gives 2.68 whatever it is made of.
Datum roundNumber(const Arguments &arguments)
{
    const Datum number = arguments.number(0);
    const int digits = arguments.has(1) ? arguments.whole(1) : 0;
    if (digits < -kMostDigits || digits > kMostDigits)
        arguments.refuse(QStringLiteral("between -%1 and %1 digits").arg(kMostDigits));
    if (number.kind() != DatumKind::Real)
        return number.decimal().rounded(digits);
    const auto exact = Decimal::fromReal(number.toReal());
    return exact ? Datum(exact->rounded(digits)) : number;
}

Datum wholePart(const Arguments &arguments)
{
    return stepped(
        arguments.number(0), [](const Decimal &n) { return n.truncated(); },
        [](double n) { return std::trunc(n); });
}

Datum floorOf(const Arguments &arguments)
{
    return stepped(
        arguments.number(0), [](const Decimal &n) { return n.floor(); },
        [](double n) { return std::floor(n); });
}

Datum ceilingOf(const Arguments &arguments)
{
    return stepped(
        arguments.number(0), [](const Decimal &n) { return n.negated().floor().negated(); },
        [](double n) { return std::ceil(n); });
}

Datum modulo(const Arguments &arguments)
{
    return calculate(Operator::Modulo, arguments.number(0), arguments.number(1));
}

/// The argument that all others yield to.
Datum extreme(const Arguments &arguments, Operator isBetter)
{
    Datum best = arguments.at(0);
    for (int i = 1; i < arguments.count(); ++i) {
        if (compareBy(isBetter, arguments.at(i), best).isTrue())
            best = arguments.at(i);
    }
    return best;
}

Datum least(const Arguments &arguments)
{
    return extreme(arguments, Operator::Less);
}

Datum greatest(const Arguments &arguments)
{
    return extreme(arguments, Operator::Greater);
}

Datum percent(const Arguments &arguments)
{
    const Datum part = arguments.number(0);
    const Datum whole = arguments.number(1);
    return whole.toReal() == 0 ? Datum() : calculate(Operator::Divide, part, whole);
}

constexpr std::array kFunctions{
    Function{u"Abs", 1, 1, absolute},
    Function{u"Sign", 1, 1, sign},
    Function{u"Round", 1, 2, roundNumber},
    Function{u"Int", 1, 1, wholePart},
    Function{u"Floor", 1, 1, floorOf},
    Function{u"Ceiling", 1, 1, ceilingOf},
    Function{u"Mod", 2, 2, modulo},
    Function{u"Least", 1, Function::kAnyNumber, least},
    Function{u"Greatest", 1, Function::kAnyNumber, greatest},
    Function{u"Percent", 2, 2, percent},
};

} // namespace

std::span<const Function> numberFunctions()
{
    return kFunctions;
}

} // namespace corvane
