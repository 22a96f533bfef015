#include "platform/composer/table_format.h"

#include <QtCore/QList>

namespace corvane {

namespace {

QStringView withoutEndMark(QStringView text)
{
    return text.endsWith(u';') ? text.chopped(1) : text;
}

std::optional<Alignment> alignmentMark(QChar c)
{
    switch (c.unicode()) {
    case u'<':
        return Alignment::Left;
    case u'^':
        return Alignment::Centre;
    case u'>':
        return Alignment::Right;
    default:
        return std::nullopt;
    }
}

std::variant<ColumnFormat, QString> parseItem(QStringView item)
{
    ColumnFormat column;
    QStringView number = item.trimmed();
    while (!number.isEmpty()) {
        const auto mark = alignmentMark(number.front());
        if (!mark)
            break;
        column.alignment = *mark;
        number = number.sliced(1).trimmed();
    }
    bool ok = false;
    const double width = number.toDouble(&ok);
    if (!ok)
        return QStringLiteral("\"%1\" is no column width").arg(item.left(40));
    if (!(width > 0))
        return QStringLiteral("the column width %1 is not above 0").arg(width);
    if (width > kWidestColumn.count())
        return QStringLiteral("the column width %1 is beyond %2 twips (22.75 inches)").arg(width).arg(kWidestColumn.count());
    column.width = Twips::rounded(width);
    return column;
}

} // namespace

std::variant<std::vector<ColumnFormat>, FormatFault> parseColumnFormat(QStringView text)
{
    std::vector<ColumnFormat> columns;
    const QStringView list = withoutEndMark(text.trimmed());
    qsizetype offset = 0;
    for (const QStringView item : list.split(u'|')) {
        const bool isLast = offset + item.size() == list.size();
        if (isLast && item.trimmed().isEmpty())
            break;
        const auto parsed = parseItem(item);
        if (const QString *words = std::get_if<QString>(&parsed))
            return FormatFault {offset, *words};
        columns.push_back(std::get<ColumnFormat>(parsed));
        offset += item.size() + 1;
    }
    return columns;
}

std::optional<Twips> formatWidth(QStringView text)
{
    const auto parsed = parseColumnFormat(text);
    const auto *columns = std::get_if<std::vector<ColumnFormat>>(&parsed);
    if (!columns)
        return std::nullopt;
    Twips sum;
    for (const ColumnFormat &column : *columns)
        sum += column.width;
    return sum;
}

void splitCells(QStringView row, qsizetype columns, std::vector<QStringView> &cells)
{
    cells.clear();
    row = withoutEndMark(row);
    while (qsizetype(cells.size()) + 1 < columns) {
        const qsizetype bar = row.indexOf(u'|');
        if (bar < 0)
            break;
        cells.push_back(row.first(bar));
        row = row.sliced(bar + 1);
    }
    cells.push_back(row);
}

} // namespace corvane
