#include "shared/lists.h"

#include "shared/numbers.h"

namespace corvane {

QString getPiece(QStringView text, int index)
{
    for (int skip = toInt16(index); skip > 1; --skip) {
        const qsizetype bar = text.indexOf(u'|');
        if (bar < 0)
            return {};
        text = text.sliced(bar + 1);
    }
    const qsizetype bar = text.indexOf(u'|');
    return (bar < 0 ? text : text.first(bar)).toString();
}

std::optional<QStringList> splitText(QStringView text, QStringView delimiter)
{
    if (text.isEmpty())
        return std::nullopt;
    QStringList pieces;
    for (const QStringView piece : text.split(delimiter))
        pieces += piece.toString();
    return pieces;
}

qint16 countOf(QStringView text, QStringView substring)
{
    int count = 0;
    if (substring.isEmpty())
        return 0;
    for (qsizetype at = text.indexOf(substring); at >= 0; at = text.indexOf(substring, at + 1))
        ++count;
    return toInt16(count);
}

QString replaceEvery(const QString &text, QStringView search, QStringView replacement)
{
    if (search.isEmpty())
        return text;
    QString result = text;
    return result.replace(search.toString(), replacement.toString(), Qt::CaseSensitive);
}

} // namespace corvane
