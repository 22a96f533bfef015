#include "engine/layout_fixture.h"

#include "platform/database/driver.h"
#include "platform/database/error.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

namespace corvane::test {

namespace {

void addCell(RowsetBuilder &builder, const QString &cell)
{
    static const QRegularExpression decimal(QStringLiteral("^-?\\d+\\.\\d+$"));
    bool isWhole = false;
    const qint64 whole = cell.toLongLong(&isWhole);
    const QDate date = QDate::fromString(cell, Qt::ISODate);
    const QByteArray bytes = cell.toUtf8();
    if (cell == u"~") {
        builder.add(Value());
    } else if (cell.startsWith(u"0x")) {
        const QByteArray raw = QByteArray::fromHex(bytes.sliced(2));
        builder.add(Value::bytes(raw.constData(), quint32(raw.size())));
    } else if (isWhole) {
        builder.add(Value::integer(whole));
    } else if (decimal.match(cell).hasMatch()) {
        builder.add(Value::decimal(bytes.constData(), quint32(bytes.size())));
    } else if (date.isValid()) {
        builder.add(Value::date(QDate(1970, 1, 1).daysTo(date)));
    } else {
        builder.addText(bytes);
    }
}

class TableDriver : public Driver
{
public:
    TableDriver(const std::map<QString, QString> &answers, QStringList &queries)
        : m_answers(answers)
        , m_queries(queries)
    {
    }

    RowsetPtr query(const QString &sql) override
    {
        m_queries += sql;
        const auto answer = m_answers.find(sql);
        if (answer == m_answers.end())
            throw DatabaseError(1, QStringLiteral("no such query: %1").arg(sql));
        QStringList lines = answer->second.split(u'\n');
        RowsetBuilder builder(lines.takeFirst().split(u'|'));
        for (const QString &line : lines) {
            for (const QString &cell : line.split(u'|'))
                addCell(builder, cell);
        }
        return builder.finish();
    }

private:
    const std::map<QString, QString> &m_answers;
    QStringList &m_queries;
};

} // namespace

RenderResult LayoutFixture::render(
    const QString &report, const QString &table, const QString &others)
{
    const QString path = m_folder.filePath(QStringLiteral("report.rpt"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no report file");
    QString text = QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports><Report name=\"Main\">");
    // Page, Styles, RecordSource and Groups stand in this order.
    const qsizetype body = report.indexOf(QRegularExpression(QStringLiteral("<Groups|<Section")));
    text += QString(report.first(body) + u"<RecordSource>rows</RecordSource>" + report.sliced(body)
        + u"</Report>" + others + u"</Reports>");
    file.write(text.toUtf8());
    file.close();
    answer(QStringLiteral("rows"), table);
    queries.clear();
    Connection connection(
        QStringLiteral("test"), std::make_unique<TableDriver>(m_answers, queries));
    settings.connection = &connection;
    ReportControl control;
    control.load(path, QStringLiteral("Main"));
    for (Section &section : control.layout().sections) {
        for (Field &field : section.fields)
            field.subreport
                = bindToItself && field.kind == FieldKind::Subreport ? &control : nullptr;
    }
    return control.render(settings);
}

QString LayoutFixture::refusal(const QString &report, const QString &table, const QString &others)
{
    try {
        render(report, table, others);
    } catch (const ReportError &error) {
        return error.description();
    }
    return {};
}

QString numberedRows(int count, int groupSize)
{
    QString table = QStringLiteral("n|g");
    for (int i = 0; i < count; ++i)
        table += QStringLiteral("\n%1|%2").arg(i + 1).arg(i / groupSize + 1);
    return table;
}

} // namespace corvane::test
