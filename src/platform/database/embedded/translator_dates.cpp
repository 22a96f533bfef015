#include "platform/database/embedded/translator.h"

#include "platform/database/error.h"

namespace corvane::embedded {

namespace {

[[noreturn]] void throwNoDate()
{
    throw DatabaseError(kDateConversionError,
        QStringLiteral(
            "Conversion failed when converting date and/or time from character string."));
}

} // namespace

/// Operands that meet in a comparison or stand for each other take the type of the first that is
/// known, dates before all others; quoted texts follow it. Beside something unknown a text stays as
/// it is, or becomes a date when it is clearly one. The type is that of all operands together.
SqlType Translator::align(std::span<Expression *const> operands, Doubt doubt) const
{
    SqlType common;
    bool unknown = false;
    bool literals = false;
    for (const Expression *operand : operands) {
        if (operand->literal) {
            literals = true;
            continue;
        }
        unknown = unknown || (!operand->type.known() && operand->sql != u"NULL");
        if (operand->type.known()
            && (!common.known() || (operand->type.isMoment() && !common.isMoment())))
            common = operand->type;
    }
    for (Expression *operand : operands) {
        if (!operand->literal) {
            alignExpression(*operand, common, doubt);
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

/// A computed text or number beside a date is read as one while the query runs. A number beside a
/// text column is compared as a number, which SQLite does only for a number of declared kind.
void Translator::alignExpression(Expression &operand, const SqlType &common, Doubt doubt)
{
    if (common.isMoment() && (operand.type.isText() || operand.type.isNumber()))
        operand.sql = u"corvane_to_moment(" % operand.sql % u", "
            % QString::number(int(common.kind)) % u", NULL)";
    else if (common.isText() && operand.type.isNumber() && operand.column.isEmpty()
        && doubt == Doubt::ReadDate)
        operand.sql = u"CAST(" % operand.sql % u" AS NUMERIC)";
}

void Translator::alignLiteral(Expression &operand, const SqlType &common) const
{
    if (common.isMoment()) {
        operand.sql = dateLiteral(*operand.literal, common.kind);
    } else if (common.isNumber()) {
        bool isNumber = false;
        const QString content = operand.literal->trimmed();
        content.toDouble(&isNumber);
        if (isNumber)
            operand.sql = content;
        else if (content.isEmpty() || content.compare(u"false", Qt::CaseInsensitive) == 0)
            operand.sql = QStringLiteral("0");
        else if (content.compare(u"true", Qt::CaseInsensitive) == 0)
            operand.sql = QStringLiteral("1");
    }
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
