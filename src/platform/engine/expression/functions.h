#pragma once

#include "platform/engine/expression/program.h"

#include <QtCore/QStringList>

#include <array>
#include <span>

namespace corvane {

/// The arguments of one call, none of them null. Each reading throws an EvaluationFault that names
/// the function.
class Arguments
{
public:
    Arguments(const Node &call, std::span<const Datum> values, EvaluationContext &context)
        : m_call(call)
        , m_values(values)
        , m_context(context)
    {
    }

    int count() const { return int(m_values.size()); }
    bool has(int index) const { return index < count(); }
    const Datum &at(int index) const { return m_values[size_t(index)]; }
    EvaluationContext &context() const { return m_context; }
    const Node &call() const { return m_call; }

    /// Any value in its plain text form.
    QString text(int index) const { return at(index).toText(m_context.style()); }
    /// A Number or Real; Boolean as 1 or 0.
    Datum number(int index) const;
    /// Without its fraction, within 32 bits.
    int whole(int index) const;
    /// A Date or DateTime.
    const Datum &date(int index) const;
    [[noreturn]] void refuse(const QString &words) const;

private:
    const Node &m_call;
    std::span<const Datum> m_values;
    EvaluationContext &m_context;
};

/// A call whose arguments are computed on demand, so that what is not chosen cannot fail.
class LazyCall
{
public:
    virtual int count() const = 0;
    virtual Datum value(int index) = 0;

protected:
    ~LazyCall() = default;
};

/// A function by its name, with the least and the largest number of arguments. Most give null as
/// soon as one argument is null; lazy ones look at their arguments themselves.
struct Function
{
    using Strict = Datum (*)(const Arguments &);
    using Lazy = Datum (*)(LazyCall &);
    static constexpr int kAnyNumber = 1000;

    QStringView name;
    int least;
    int most;
    Strict strict;
    Lazy lazy = nullptr;
    bool needsPrintTime = false;
};

/// Without regard to case; null when there is none.
const Function *findFunction(QStringView name);
QStringList functionNames();

std::span<const Function> conditionalFunctions();
std::span<const Function> textFunctions();
std::span<const Function> numberFunctions();
std::span<const Function> dateFunctions();
std::span<const Function> conversionFunctions();

} // namespace corvane
