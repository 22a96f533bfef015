#include "fixed_context.h"

#include <array>

namespace corvane::test {

namespace {

struct Column
{
    QStringView name;
    std::array<Datum, 4> rows; ///< the first one is the current row
};

QDateTime moment(int day, int hour)
{
    return QDateTime(QDate(2026, 11, day), QTime(hour, 30), Qt::UTC);
}

Datum exact(const char *digits)
{
    return *Decimal::parse(digits);
}

const std::vector<Column> &columns()
{
    static const std::vector<Column> kColumns{
        {u"name",
            {QStringLiteral("Ada Reyes"), QStringLiteral("Bo Ek"), QStringLiteral("ADA REYES"),
                Datum()}},
        {u"amount", {exact("120.50"), exact("-20.25"), Datum(), exact("0.10")}},
        {u"visits", {Datum::number(3), Datum::number(4), Datum::number(3), Datum::number(0)}},
        {u"weight", {Datum::real(72.5), Datum::real(0.1), Datum::real(0.2), Datum::real(1e300)}},
        {u"born",
            {Datum::date(QDate(1984, 2, 29)), Datum(), Datum::date(QDate(2000, 1, 1)), Datum()}},
        {u"seen",
            {Datum::dateTime(moment(2, 14)), Datum::dateTime(moment(3, 0)), Datum(), Datum()}},
        {u"starts", {Datum::time(QTime(9, 5)), Datum(), Datum(), Datum()}},
        {u"paid", {Datum::boolean(true), Datum::boolean(false), Datum::boolean(true), Datum()}},
        {u"nothing", {}},
        {u"odd ] name", {Datum::number(7), Datum(), Datum(), Datum()}},
        {u"photo", {Datum::bytes("\x89PNG"), Datum(), Datum(), Datum()}},
    };
    return kColumns;
}

} // namespace

Datum FixedContext::column(const Expression &expression, int index)
{
    const QString &name = expression.columns()[index];
    for (const Column &column : columns()) {
        if (name.compare(column.name, Qt::CaseInsensitive) == 0)
            return column.rows[size_t(m_row)];
    }
    throw EvaluationFault(QStringLiteral("no column \"%1\"").arg(name));
}

Datum FixedContext::aggregate(const Expression &expression, int index)
{
    const Aggregate &aggregate = expression.aggregates()[size_t(index)];
    Accumulator accumulator(aggregate.function);
    // The whole report has all rows; any other scope ends before the last one, what runs after the
    // second.
    const int rows = aggregate.isRunning ? 2 : aggregate.scope == AggregateScope::Report ? 4 : 3;
    for (m_row = 0; m_row < rows; ++m_row) {
        if (aggregate.argument)
            accumulator.add(aggregate.argument->evaluate(*this));
        else
            accumulator.addRow();
    }
    m_row = 0;
    return accumulator.value();
}

Datum FixedContext::variable(ReportVariable variable)
{
    switch (variable) {
    case ReportVariable::PageNumber:
        return Datum::number(2);
    case ReportVariable::PageCount:
        return Datum::number(5);
    case ReportVariable::RowNumber:
        return Datum::number(1);
    case ReportVariable::User:
        return QStringLiteral("nora");
    case ReportVariable::Database:
        return QStringLiteral("Clinic");
    case ReportVariable::PrintTime:
        return Datum::dateTime(moment(22, 8));
    case ReportVariable::ReportName:
        break;
    }
    return QStringLiteral("Patient ledger");
}

Datum FixedContext::parameter(const QString &name)
{
    if (name.compare(u"from date", Qt::CaseInsensitive) == 0)
        return Datum::date(QDate(2026, 11, 1));
    throw EvaluationFault(QStringLiteral("no parameter \"%1\"").arg(name));
}

void FixedContext::setDayFirst()
{
    m_style.dateFormat = QStringLiteral("dd/MM/yyyy");
}

QString evaluated(const QString &text, EvaluationContext &context)
{
    const auto compiled = Expression::compile(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&compiled))
        return QStringLiteral("fault at %1: %2").arg(QString::number(fault->offset), fault->words);
    try {
        return std::get<ExpressionPtr>(compiled)->evaluate(context).toText(context.style());
    } catch (const EvaluationFault &fault) {
        return u"fault: " + fault.words();
    }
}

QString evaluated(const QString &text)
{
    FixedContext context;
    return evaluated(text, context);
}

} // namespace corvane::test
