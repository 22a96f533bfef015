#include "fuzz/promise.h"
#include "platform/composer/table_format.h"
#include "platform/engine/expression/value_format.h"

using namespace corvane;
using test::promise;

namespace {

QString written(const std::vector<ColumnFormat> &columns)
{
    QString text;
    for (const ColumnFormat &column : columns)
        text += QStringView(u"<^>")[int(column.alignment)] + QString::number(column.width.count())
            + u'|';
    return text;
}

void readColumns(const QString &text)
{
    const auto read = parseColumnFormat(text);
    if (const auto *fault = std::get_if<FormatFault>(&read)) {
        promise(!fault->words.isEmpty(), "a fault has words");
        promise(fault->offset >= 0 && fault->offset <= text.trimmed().size(),
            "a fault lies within its text");
        promise(!formatWidth(text), "what is no format has no width");
        return;
    }
    const auto &columns = std::get<std::vector<ColumnFormat>>(read);
    Twips sum;
    for (const ColumnFormat &column : columns) {
        promise(column.width >= Twips() && column.width <= kWidestColumn,
            "a column is within the limits");
        sum += column.width;
    }
    promise(formatWidth(text) == sum, "the width is that of the columns");
    if (std::ranges::all_of(
            columns, [](const ColumnFormat &column) { return column.width > Twips(); }))
        promise(std::get<std::vector<ColumnFormat>>(parseColumnFormat(written(columns))) == columns,
            "columns written down are read back");
}

void splitRow(const QString &row, qsizetype columns)
{
    std::vector<QStringView> cells;
    splitCells(row, columns, cells);
    promise(
        qsizetype(cells.size()) <= std::max<qsizetype>(columns, 1), "no more cells than columns");
    QStringList texts;
    for (const QStringView cell : cells)
        texts += cell.toString();
    promise(texts.join(u'|') == (row.endsWith(u';') ? row.chopped(1) : row),
        "cells lose nothing of their row");
}

void applyFormat(const QString &text)
{
    const auto read = ValueFormat::compile(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&read)) {
        promise(!fault->words.isEmpty(), "a fault has words");
        promise(fault->offset >= 0 && fault->offset <= text.size(), "a fault lies within its text");
        return;
    }
    const auto &format = std::get<ValueFormat>(read);
    const QDateTime moment(QDate(2026, 2, 28), QTime(23, 59, 59), Qt::UTC);
    const Datum values[]{*Decimal::parse("-1234567.895"), *Decimal::parse("0.004"),
        Datum::number(0), Datum::number(std::numeric_limits<qint64>::min()), Datum::real(1e300),
        Datum::real(-0.0), Datum::date(moment.date()), Datum::dateTime(moment),
        Datum::time(moment.time()), Datum::boolean(true), Datum::bytes("\x89PNG")};
    for (const Datum &value : values)
        promise(
            format.apply(value, {}) == format.apply(value, {}), "the same value shows the same");
    promise(format.apply(Datum(), {}).isEmpty(), "no value shows nothing");
    const QString name = QStringLiteral("O'Neil; {0}");
    promise(format.apply(Datum(name), {}) == name, "a text keeps its letters");
}

} // namespace

/// A table's format text and a row of it, or the format of a value.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const test::InputParts parts(QByteArrayView(data, qsizetype(size)));
    const QString text = test::inputText(parts.line);
    readColumns(text);
    applyFormat(text);
    for (const qsizetype columns : {0, 1, 3})
        splitRow(test::inputText(parts.rest), columns);
    return 0;
}
