#include "fuzz/expression_promises.h"

#include "engine/fixed_context.h"

namespace corvane::test {

QString brokenPromise(QByteArrayView input)
{
    const QString text
        = QString::fromUtf8(input).replace(QChar::ReplacementCharacter, QChar(0xd800));
    const auto compiled = Expression::compile(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&compiled)) {
        if (fault->words.isEmpty())
            return QStringLiteral("a fault has words");
        return fault->offset < 0 || fault->offset > text.size()
            ? QStringLiteral("a fault lies within its text")
            : QString();
    }
    const QString value = evaluated(text);
    if (value != evaluated(text))
        return QStringLiteral("the same row gives the same value");
    const QString enclosed = evaluated(QString(u'(' + text + u')'));
    if (value != enclosed && !enclosed.contains(u"more than"))
        return QStringLiteral("parentheses around an expression change nothing");
    return {};
}

} // namespace corvane::test
