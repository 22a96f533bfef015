#include "support/tds/embedded_answers.h"

#include "platform/database/driver.h"

#include <algorithm>

namespace corvane::test::tds {

namespace {

constexpr int kLongestText = 4000;
constexpr int kPrecision = 28;

QDateTime momentOf(qint64 epochMs)
{
    return QDateTime::fromMSecsSinceEpoch(epochMs, Qt::UTC);
}

Cell cellOf(const Value &value)
{
    switch (value.kind()) {
    case ValueKind::Null:
        return {};
    case ValueKind::Integer:
    case ValueKind::Boolean:
        return QString::number(value.number());
    case ValueKind::Real:
        return QString::number(value.realNumber(), 'g', 17);
    case ValueKind::Decimal:
    case ValueKind::Text:
        return QString::fromUtf8(value.data());
    case ValueKind::Date:
        return QDate(1970, 1, 1).addDays(value.number()).toString(Qt::ISODate);
    case ValueKind::DateTime:
        return momentOf(value.number()).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    case ValueKind::Time:
        return momentOf(value.number()).toString(QStringLiteral("HH:mm:ss.zzz"));
    case ValueKind::Bytes:
        break;
    }
    return QString::fromLatin1(value.data().toByteArray().toHex());
}

ColumnType typeOf(ValueKind kind)
{
    switch (kind) {
    case ValueKind::Integer:
        return ColumnType::BigInt;
    case ValueKind::Real:
        return ColumnType::Float;
    case ValueKind::Decimal:
        return ColumnType::Decimal;
    case ValueKind::Date:
        return ColumnType::Date;
    case ValueKind::DateTime:
        return ColumnType::DateTime;
    case ValueKind::Time:
        return ColumnType::Time;
    case ValueKind::Boolean:
        return ColumnType::Bit;
    case ValueKind::Bytes:
        return ColumnType::Image;
    default:
        return ColumnType::NVarChar;
    }
}

/// Files have no column types: the first value that is there tells it; a column of several kinds
/// is text.
Column columnOf(const Rowset &rowset, int field)
{
    Column column{rowset.fieldNames()[field]};
    ValueKind kind = ValueKind::Null;
    int longest = 1;
    int behindPoint = 0;
    for (qsizetype row = 0; row < rowset.rowCount(); ++row) {
        const Value value = rowset.value(row, field);
        if (value.isNull())
            continue;
        kind = kind == ValueKind::Null || kind == value.kind() ? value.kind() : ValueKind::Text;
        const QByteArrayView digits = value.data();
        longest = std::max(longest, int(digits.size()));
        if (value.kind() == ValueKind::Decimal && digits.contains('.'))
            behindPoint = std::max(behindPoint, int(digits.size() - digits.indexOf('.') - 1));
    }
    column.type = typeOf(kind);
    column.size = kind == ValueKind::Decimal ? kPrecision : longest;
    column.scale = kind == ValueKind::Time ? 3 : behindPoint;
    if (column.type == ColumnType::NVarChar && longest > kLongestText)
        column.type = ColumnType::NVarCharMax;
    return column;
}

Answer answerOf(const Rowset &rowset)
{
    ResultRows result;
    for (int field = 0; field < rowset.fieldCount(); ++field)
        result.columns += columnOf(rowset, field);
    for (qsizetype row = 0; row < rowset.rowCount(); ++row) {
        QList<Cell> cells;
        for (int field = 0; field < rowset.fieldCount(); ++field)
            cells += cellOf(rowset.value(row, field));
        result.rows += cells;
    }
    return {result};
}

} // namespace

std::function<Answerer(const QString &database)> embeddedAnswers(const QString &programFolder)
{
    return [programFolder](const QString &database) -> Answerer {
        ConnectionText text;
        text.dataSource = QStringLiteral("sqlite:Data");
        text.catalogue = database;
        const std::shared_ptr<Driver> driver = openEmbedded(text, {programFolder, 0});
        return [driver](const QString &sql) { return answerOf(*driver->query(sql)); };
    };
}

} // namespace corvane::test::tds
