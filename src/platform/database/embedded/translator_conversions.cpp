#include "platform/database/embedded/moment_styles.h"
#include "platform/database/embedded/translator.h"

namespace corvane::embedded {

Expression Translator::cast()
{
    const Expression value = additive();
    m_in.expectWord("as");
    const SqlType target = typeName();
    m_in.expectSymbol(")");
    return converted(value, target, nullptr);
}

Expression Translator::convert()
{
    const SqlType target = typeName();
    m_in.expectSymbol(",");
    const Expression value = additive();
    Expression style;
    const bool styled = m_in.takeSymbol(",");
    if (styled)
        style = additive();
    m_in.expectSymbol(")");
    return converted(value, target, styled ? &style : nullptr);
}

SqlType Translator::typeName()
{
    const Token name = m_in.take();
    QString text = unquoted(name);
    if (m_in.takeSymbol("(")) {
        QChar before = u'(';
        do {
            if (m_in.peek().kind != Token::Kind::Number && !m_in.atWord("max"))
                m_in.refuseToken();
            text += before + m_in.take().text;
            before = u',';
        } while (m_in.takeSymbol(","));
        m_in.expectSymbol(")");
        text += u')';
    }
    const SqlType type = declaredType(text);
    if (!type.known())
        m_in.refuse(u"the type " % text, name.at);
    return type;
}

Expression Translator::converted(Expression value, const SqlType &target, const Expression *style)
{
    const QString styleText = style ? style->sql : QStringLiteral("NULL");
    if (target.isMoment() && value.literal)
        value.sql = dateLiteral(*value.literal, target.kind,
            orderOfStyle(styleText.toInt(), DateOrder(m_settings.dateOrder)));
    const QString from = QString::number(int(value.type.kind));
    constexpr int kDefaultLength = 30;
    switch (target.kind) {
    case ValueKind::Text: {
        const int length
            = target.length < 0 ? (target.unlimited ? -1 : kDefaultLength) : target.length;
        return primaryOf(u"corvane_to_text(" % value.sql % u", " % from % u", " % styleText % u", "
                % QString::number(value.type.scale) % u", " % QString::number(length) % u", "
                % QString::number(int(target.padded)) % u", "
                % QString::number(int(value.type.money)) % u')',
            {.kind = ValueKind::Text, .length = length});
    }
    case ValueKind::Integer:
    case ValueKind::Boolean:
    case ValueKind::Real:
    case ValueKind::Decimal:
        return asNumber(value, target);
    case ValueKind::Bytes:
        return primaryOf(u"CAST(" % value.sql % u" AS BLOB)", target);
    default:
        return primaryOf(u"corvane_to_moment(" % value.sql % u", "
                % QString::number(int(target.kind)) % u", " % styleText % u')',
            target);
    }
}

/// What is no text becomes the text that the server would make of it.
Expression Translator::asText(const Expression &value)
{
    const bool plain = !value.type.isMoment() && value.type.kind != ValueKind::Decimal
        && value.type.kind != ValueKind::Real;
    return plain ? value : converted(value, {.kind = ValueKind::Text, .unlimited = true}, nullptr);
}

} // namespace corvane::embedded
