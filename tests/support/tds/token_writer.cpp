#include "support/tds/token_writer.h"

#include "support/tds/type_encoding.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace corvane::test::tds {

namespace {

enum Token : quint8 {
    ReturnStatus = 0x79,
    ColumnMetaData = 0x81,
    ErrorToken = 0xaa,
    Info = 0xab,
    LoginAck = 0xad,
    Row = 0xd1,
    NullBitmapRow = 0xd2,
    EnvironmentChange = 0xe3
};

constexpr int kHighestInfo = 10;
const QString kServerName = QStringLiteral("LOOPBACK");

bool isNull(const Cell &cell)
{
    return !cell;
}

} // namespace

void TokenWriter::sized(int token, const WireWriter &content)
{
    m_out.byte(token).integer(quint64(content.data().size()), 2).bytes(content.data());
}

void TokenWriter::loginAcknowledged(quint32 version)
{
    constexpr int kTransactSql = 1;
    WireWriter content;
    content.byte(kTransactSql).integer(qbswap(version), 4);
    content.shortText(u"Loopback").bytes(QByteArrayView("\x0f\x00\x07\xd0", 4));
    sized(LoginAck, content);
}

void TokenWriter::changed(Environment what, const QString &now, const QString &before)
{
    sized(EnvironmentChange, WireWriter().byte(int(what)).shortText(now).shortText(before));
}

void TokenWriter::changedCollation()
{
    const QByteArrayView collation("\x05\x09\x04\xd0\x00\x34\x00", 7);
    sized(EnvironmentChange, WireWriter().byte(int(Environment::Collation)).bytes(collation));
}

void TokenWriter::message(const ServerMessage &message)
{
    WireWriter content;
    content.integer(quint64(message.number), 4).byte(message.state).byte(message.severity);
    content.longText(message.text).shortText(kServerName).shortText(u"");
    content.integer(1, 4); // line of the batch
    sized(message.severity > kHighestInfo ? ErrorToken : Info, content);
}

void TokenWriter::columns(const QList<Column> &columns)
{
    constexpr int kNullable = 1;
    m_out.byte(ColumnMetaData).integer(quint64(columns.size()), 2);
    for (const Column &column : columns) {
        m_out.integer(0, 4).integer(kNullable, 2);
        writeTypeInfo(m_out, column);
        if (namesItsTable(column.type))
            m_out.byte(1).longText(u"t");
        m_out.shortText(column.name);
    }
}

void TokenWriter::row(const QList<Column> &columns, const QList<Cell> &cells)
{
    const bool asBitmap = std::ranges::count_if(cells, isNull) * 2 >= cells.size();
    m_out.byte(asBitmap ? NullBitmapRow : Row);
    if (asBitmap) {
        QByteArray bitmap((cells.size() + 7) / 8, '\0');
        for (qsizetype i = 0; i < cells.size(); ++i)
            bitmap[i / 8] = char(quint8(bitmap[i / 8]) | (isNull(cells[i]) ? 1 << i % 8 : 0));
        m_out.bytes(bitmap);
    }
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (cells[i] || !asBitmap)
            writeValue(m_out, columns[i], cells[i]);
    }
}

void TokenWriter::done(Done token, int status, qint64 count)
{
    constexpr int kSelect = 0xc1;
    m_out.byte(int(token)).integer(quint64(status), 2).integer(kSelect, 2);
    m_out.integer(quint64(count), 8);
}

void TokenWriter::returnStatus(int status)
{
    m_out.byte(ReturnStatus).integer(quint64(status), 4);
}

} // namespace corvane::test::tds
