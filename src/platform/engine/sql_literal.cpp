#include "platform/engine/sql_literal.h"

namespace corvane {

namespace {

QString quoted(QString text)
{
    text.replace(u'\'', QStringLiteral("''"));
    return QString(u'\'' + text + u'\'');
}

} // namespace

QString sqlLiteral(const Datum &value)
{
    switch (value.kind()) {
    case DatumKind::Null:
        return QStringLiteral("NULL");
    case DatumKind::Boolean:
        return value.isTrue() ? QStringLiteral("1") : QStringLiteral("0");
    case DatumKind::Number:
    case DatumKind::Real:
        return value.toText({});
    case DatumKind::Date:
        return quoted(value.date().toString(QStringLiteral("yyyyMMdd")));
    case DatumKind::DateTime:
        return quoted(value.dateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    case DatumKind::Time:
        return quoted(value.time().toString(QStringLiteral("HH:mm:ss")));
    case DatumKind::Bytes:
        return QString(QStringLiteral("0x") + QString::fromLatin1(value.bytes().toHex()));
    case DatumKind::Text:
        break;
    }
    return quoted(value.text());
}

} // namespace corvane
