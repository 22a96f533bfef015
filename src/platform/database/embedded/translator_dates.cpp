#include "platform/database/embedded/translator.h"

#include "platform/database/error.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

[[noreturn]] void throwNoDate()
{
    throw DatabaseError(kDateConversionError,
        QStringLiteral(
            "Conversion failed when converting date and/or time from character string."));
}

/// The server's order of types: of two that meet, the later one here is what both become.
int rank(const SqlType &type)
{
    constexpr std::array kOrder{ValueKind::Null, ValueKind::Bytes, ValueKind::Text,
        ValueKind::Boolean, ValueKind::Integer, ValueKind::Decimal, ValueKind::Real,
        ValueKind::Time, ValueKind::Date, ValueKind::DateTime};
    return int(std::ranges::find(kOrder, type.kind) - kOrder.begin());
}

SqlType higher(const SqlType &left, const SqlType &right)
{
    const bool exact = left.kind == ValueKind::Decimal && right.isNumber();
    if (rank(left) == rank(right) || (exact && rank(right) < rank(left)))
        return exact ? sumType(left, right) : left;
    return rank(left) > rank(right) ? left : right;
}

} // namespace

/// Operands that meet in a comparison or stand for each other take the type that ranks highest, as
/// on the server: dates, then numbers, then texts. Beside something unknown a quoted text stays as
/// it is, or becomes a date when it is clearly one. The type is that of all operands together.
SqlType Translator::align(std::span<Expression *const> operands, Doubt doubt) const
{
    SqlType common;
    bool unknown = false;
    bool literals = false;
    for (const Expression *operand : operands) {
        literals = literals || operand->literal;
        if (operand->literal)
            continue;
        unknown = unknown || (!operand->type.known() && operand->sql != u"NULL");
        common = higher(common, operand->type);
    }
    for (Expression *operand : operands) {
        if (!operand->literal) {
            alignExpression(*operand, common);
            continue;
        }
        alignLiteral(*operand, common);
        if (unknown && !common.known() && doubt == Doubt::ReadDate
            && looksLikeDate(operand->literal->toUtf8()))
            operand->sql = dateLiteral(*operand->literal, ValueKind::DateTime);
    }
    if (!common.known() && literals)
        common = {ValueKind::Text};
    return unknown && !common.isMoment() ? SqlType() : common;
}

SqlType Translator::align(std::vector<Expression> &operands, Doubt doubt) const
{
    std::vector<Expression *> pointers;
    pointers.reserve(operands.size());
    for (Expression &operand : operands)
        pointers.push_back(&operand);
    return align(std::span<Expression *const>(pointers), doubt);
}

/// A computed text or number beside a date is read as one while the query runs, a text beside a
/// number likewise.
void Translator::alignExpression(Expression &operand, const SqlType &common)
{
    if (common.isMoment() && (operand.type.isText() || operand.type.isNumber()))
        operand.sql = u"corvane_to_moment(" % operand.sql % u", "
            % QString::number(int(common.kind)) % u", NULL)";
    else if (common.isNumber() && operand.type.isText())
        operand = asNumber(operand, common);
}

void Translator::alignLiteral(Expression &operand, const SqlType &common) const
{
    if (common.isMoment())
        operand.sql = dateLiteral(*operand.literal, common.kind);
    else if (common.isNumber())
        operand.sql = asNumber(operand, common).sql;
}

QString Translator::dateLiteral(const QString &content, ValueKind kind) const
{
    return dateLiteral(content, kind, DateOrder(m_settings.dateOrder));
}

QString Translator::dateLiteral(const QString &content, ValueKind kind, DateOrder order) const
{
    const auto moment = writtenMoment(content.toUtf8(), order);
    if (!moment)
        throwNoDate();
    const QByteArray text = kind == ValueKind::Time ? timeText(moment->timeOfDay())
        : kind == ValueKind::Date                   ? dateText(moment->day())
                                                    : momentText(*moment);
    return quotedText(QString::fromLatin1(text));
}

/// An argument of a date function: a quoted text there can only be a date.
Expression Translator::dateArgument()
{
    Expression argument = additive();
    if (argument.literal)
        argument.sql = dateLiteral(*argument.literal, ValueKind::DateTime);
    return argument;
}

} // namespace corvane::embedded
