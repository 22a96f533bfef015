#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>
#include <optional>
#include <variant>

namespace corvane::test::tds {

/// The server's column types that reports meet.
enum class ColumnType {
    Bit,
    TinyInt,
    SmallInt,
    Int,
    BigInt,
    Real,
    Float,
    SmallMoney,
    Money,
    Decimal,
    SmallDateTime,
    DateTime,
    DateTime2,
    Date,
    Time,
    DateTimeOffset,
    UniqueIdentifier,
    Char,
    VarChar,
    VarCharMax,
    NChar,
    NVarChar,
    NVarCharMax,
    Text,
    NText,
    Xml,
    VarBinary,
    VarBinaryMax,
    Image
};

/// `size`: most characters or bytes, or a decimal's precision. `scale`: digits behind the point of
/// a decimal or of the seconds.
struct Column
{
    QString name;
    ColumnType type = ColumnType::NVarChar;
    int size = 50;
    int scale = 0;
};

/// A value in the form of the server's literals: "-12.5", "2026-11-01 08:30:00.1234567",
/// hexadecimal digits for bytes; empty for null.
using Cell = std::optional<QString>;

/// A message of the server's; from severity 11 on it is an error and ends the statement.
struct ServerMessage
{
    int number = 50000;
    int severity = 16;
    QString text;
    int state = 1;
};

/// One result. A `failure` comes instead of the rows that would follow.
struct ResultRows
{
    QList<Column> columns;
    QList<QList<Cell>> rows;
    std::optional<ServerMessage> failure = {};
};

/// Of a statement without rows: how many it changed.
struct RowCount
{
    qint64 rows = 0;
};

/// The statement is never answered; only an attention ends it.
struct NoAnswer
{
};

using AnswerPart = std::variant<ResultRows, RowCount, ServerMessage, NoAnswer>;

/// What a batch or a procedure gives, in order.
using Answer = QList<AnswerPart>;

/// Answers the statements of one session.
using Answerer = std::function<Answer(const QString &sql)>;

} // namespace corvane::test::tds
