#include "platform/database/embedded/expression.h"

namespace corvane::embedded {

Expression asNumber(const Expression &e, const SqlType &type)
{
    if (e.literal) {
        bool whole = false;
        e.literal->trimmed().toLongLong(&whole);
        if (whole)
            return primaryOf(e.literal->trimmed(), type);
    }
    if (type.kind == ValueKind::Integer)
        return primaryOf(
            u"corvane_to_integer(" % e.sql % u", " % QString::number(type.precision) % u')', type);
    if (type.kind == ValueKind::Boolean)
        return primaryOf(u"corvane_to_bit(" % e.sql % u')', type);
    if (type.kind == ValueKind::Real)
        return primaryOf(u"corvane_to_real(" % e.sql % u')', type);
    return primaryOf(u"corvane_to_decimal(" % e.sql % u", " % QString::number(type.precision)
            % u", " % QString::number(type.scale) % u", " % QString::number(int(type.money)) % u')',
        type);
}

QString balanced(const QStringList &parts, QStringView word)
{
    constexpr qsizetype kMostInARow = 100;
    if (parts.size() <= kMostInARow)
        return parts.join(word);
    const qsizetype half = parts.size() / 2;
    return u'(' % balanced(parts.first(half), word) % u')' % word % u'('
        % balanced(parts.sliced(half), word) % u')';
}

} // namespace corvane::embedded
