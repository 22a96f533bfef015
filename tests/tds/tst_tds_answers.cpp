// What the server's types, results, messages and procedures become on their way through the driver.

#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/suite.h"
#include "support/tds/server.h"

#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;
using tds::ColumnType;

namespace {

const QString kStatement = QStringLiteral("SELECT v FROM types");

/// Kind and value to the last digit, dates in the standard's form.
QString exactly(const Value &value)
{
    const auto moment = [&] { return QDateTime::fromMSecsSinceEpoch(value.number(), Qt::UTC); };
    switch (value.kind()) {
    case ValueKind::Null:
        return QStringLiteral("null");
    case ValueKind::Integer:
        return QStringLiteral("integer %1").arg(value.number());
    case ValueKind::Real:
        return QStringLiteral("real %1").arg(value.realNumber(), 0, 'g', 17);
    case ValueKind::Decimal:
        return u"decimal " + QString::fromUtf8(value.data());
    case ValueKind::Text:
        return u"text " + QString::fromUtf8(value.data());
    case ValueKind::Date:
        return u"date " + QDate(1970, 1, 1).addDays(value.number()).toString(Qt::ISODate);
    case ValueKind::DateTime:
        return u"moment " + moment().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    case ValueKind::Time:
        return u"time " + moment().toString(QStringLiteral("HH:mm:ss.zzz"));
    case ValueKind::Boolean:
        return value.number() ? QStringLiteral("true") : QStringLiteral("false");
    case ValueKind::Bytes:
        break;
    }
    return u"bytes " + QString::fromLatin1(value.data().toByteArray().toHex());
}

QString exactly(const Rowset &rowset)
{
    QStringList rows;
    for (qsizetype row = 0; row < rowset.rowCount(); ++row) {
        QStringList cells;
        for (int field = 0; field < rowset.fieldCount(); ++field)
            cells += exactly(rowset.value(row, field));
        rows += cells.join(u" | ");
    }
    return rows.join(u" / ");
}

tds::ServerSettings onlyScripts()
{
    tds::ServerSettings settings;
    settings.open = [](const QString &) -> tds::Answerer {
        return [](const QString &sql) -> tds::Answer {
            throw DatabaseError(208, u"Nobody told what to answer to: " + sql);
        };
    };
    return settings;
}

tds::ResultRows numbers(const QStringList &values)
{
    tds::ResultRows result{{{QStringLiteral("n"), ColumnType::Int}}, {}};
    for (const QString &value : values)
        result.rows += QList<tds::Cell>{value};
    return result;
}

std::unique_ptr<Connection> connectTo(const tds::Server &server, TimeOuts timeOuts = {})
{
    const QString text = u"Provider=SQLOLEDB;Data Source=" + server.address()
        + u";Initial Catalog=Clinic;User Id=demo;Password=demo; ";
    return Connection::open(text, {{}, 0, timeOuts});
}

const tds::ServerMessage kNoSuchTable{
    208, 16, QStringLiteral("Invalid object name 'dbo.nothing'.")};
const tds::ServerMessage kRemark{
    8153, 10, QStringLiteral("Warning: Null value is eliminated by an aggregate.")};
const tds::ServerMessage kOverflow{
    8115, 16, QStringLiteral("Arithmetic overflow error converting expression to data type int.")};

} // namespace

class tst_tds_answers : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(m_server.refused(), QStringList()); }
    void keepsEveryTypeAndValue_data();
    void keepsEveryTypeAndValue();
    void findsFieldsByPlaceAndName();
    void takesTheFirstResultWithColumns_data();
    void takesTheFirstResultWithColumns();
    void passesOnWhatTheServerSays_data();
    void passesOnWhatTheServerSays();
    void readsManyRowsOnce();
    void stopsWaitingForAnAnswer();
    void refusesAndRemembersWhatItDoesNotImplement();

private:
    std::unique_ptr<Connection> connect(TimeOuts timeOuts = {}) const
    {
        return connectTo(m_server, timeOuts);
    }

    tds::Server m_server{onlyScripts()};
};

void tst_tds_answers::keepsEveryTypeAndValue_data()
{
    QTest::addColumn<tds::Column>("column");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, ColumnType type, const QString &value,
                         const QString &expected, int size = 50, int scale = 0) {
        QTest::newRow(name) << tds::Column{QStringLiteral("v"), type, size, scale} << value
                            << expected;
    };
    const auto text = [&](const char *name, ColumnType type, const QString &value, int size = 50) {
        row(name, type, value, u"text " + value, size);
    };
    const auto number = [&](const char *name, ColumnType type, const char *kind, const char *value,
                            int size = 50, int scale = 0) {
        const QString digits = QString::fromLatin1(value);
        row(name, type, digits, QString::fromLatin1(kind) + u' ' + digits, size, scale);
    };
    row("bit set", ColumnType::Bit, QStringLiteral("1"), QStringLiteral("true"));
    row("bit clear", ColumnType::Bit, QStringLiteral("0"), QStringLiteral("false"));
    number("tinyint has no sign", ColumnType::TinyInt, "integer", "255");
    number("smallint", ColumnType::SmallInt, "integer", "-32768");
    number("int", ColumnType::Int, "integer", "-2147483648");
    number("bigint", ColumnType::BigInt, "integer", "9223372036854775807");
    row("real", ColumnType::Real, QStringLiteral("0.1"),
        QStringLiteral("real 0.10000000000000001"));
    number("float", ColumnType::Float, "real", "-1.7976931348623157e+308");
    number("smallmoney", ColumnType::SmallMoney, "decimal", "-214748.3648");
    number("money to its last digit", ColumnType::Money, "decimal", "922337203685477.5807");
    number("small money amounts", ColumnType::Money, "decimal", "-0.0100");
    number("decimal", ColumnType::Decimal, "decimal", "-1234567.89", 9, 2);
    number("decimal below one", ColumnType::Decimal, "decimal", "0.05", 5, 2);
    number("decimal with 38 digits", ColumnType::Decimal, "decimal",
        "99999999999999999999999999999999999999", 38, 0);
    number("decimal all behind the point", ColumnType::Decimal, "decimal",
        "-0.12345678901234567890123456789012345678", 38, 38);
    number("smalldatetime", ColumnType::SmallDateTime, "moment", "2079-06-06 23:59:00.000");
    number("the first datetime", ColumnType::DateTime, "moment", "1753-01-01 00:00:00.000");
    number("the last datetime", ColumnType::DateTime, "moment", "9999-12-31 23:59:59.997");
    row("datetime2(7)", ColumnType::DateTime2, QStringLiteral("0001-01-01 08:30:00.1239999"),
        QStringLiteral("moment 0001-01-01 08:30:00.123"), 50, 7);
    number("datetime2(0)", ColumnType::DateTime2, "moment", "2026-11-01 08:30:05.000");
    number("datetime2(3)", ColumnType::DateTime2, "moment", "2026-11-01 08:30:05.678", 50, 3);
    number("the first date", ColumnType::Date, "date", "0001-01-01");
    number("the last date", ColumnType::Date, "date", "9999-12-31");
    row("time(7)", ColumnType::Time, QStringLiteral("23:59:59.9999999"),
        QStringLiteral("time 23:59:59.999"), 50, 7);
    number("time(0)", ColumnType::Time, "time", "00:00:01.000");
    number("time(3)", ColumnType::Time, "time", "08:30:00.250", 50, 3);
    text("uniqueidentifier", ColumnType::UniqueIdentifier,
        QStringLiteral("6F9619FF-8B86-D011-B42D-00C04FC964FF"));
    row("char is filled up", ColumnType::Char, QStringLiteral("ab"), QStringLiteral("text ab   "),
        5);
    row("nchar is filled up", ColumnType::NChar, QStringLiteral("ř"), QStringLiteral("text ř  "),
        3);
    text("varchar in the server's code page", ColumnType::VarChar, QStringLiteral("Zoë £ ½"));
    text("varchar, empty", ColumnType::VarChar, QStringLiteral(""));
    text("the longest varchar", ColumnType::VarChar, QString(8000, u'x'), 8000);
    text("varchar(max), empty", ColumnType::VarCharMax, QStringLiteral(""));
    text("varchar(max), long", ColumnType::VarCharMax, QString(70'001, u'ë'));
    text("nvarchar", ColumnType::NVarChar, QStringLiteral("Dvořák 日本 𝄞 שלום"));
    text("the longest nvarchar", ColumnType::NVarChar, QString(4000, u'日'), 4000);
    text("nvarchar(max), long", ColumnType::NVarCharMax, QStringLiteral("日𝄞").repeated(20'000));
    text("text", ColumnType::Text, QString(9'001, u'é'));
    text("ntext", ColumnType::NText, QString(9'001, u'語'));
    text("xml", ColumnType::Xml, QStringLiteral("<note to=\"Zoë\">日本</note>"));
    number("varbinary", ColumnType::VarBinary, "bytes", "00ff10");
    number("varbinary(max)", ColumnType::VarBinaryMax, "bytes",
        QByteArray("00ff").repeated(9'000).constData());
    number("image", ColumnType::Image, "bytes", QByteArray("89504e47").repeated(9'000).constData());
}

/// Between two other columns, with the null as a row has it and as a bitmap has it.
void tst_tds_answers::keepsEveryTypeAndValue()
{
    QFETCH(tds::Column, column);
    QFETCH(QString, value);
    QFETCH(QString, expected);
    const tds::Column before{QStringLiteral("before"), ColumnType::Int};
    const tds::Column after{QStringLiteral("after"), ColumnType::NVarChar};
    const QString end = QStringLiteral("end");
    m_server.script(kStatement,
        {tds::ResultRows{{before, column, after},
            {{QStringLiteral("1"), value, end}, {QStringLiteral("2"), std::nullopt, end},
                {std::nullopt, std::nullopt, end}, {QStringLiteral("4"), value, end}}}});
    const auto rowset = connect()->openRowset(kStatement);
    const QString rows
        = QStringLiteral("integer 1 | %1 | text end / integer 2 | null | text end / null | null | "
                         "text end / integer 4 | %1 | text end");
    QCOMPARE(exactly(*rowset), rows.arg(expected));
}

void tst_tds_answers::findsFieldsByPlaceAndName()
{
    const auto named = [](const char *name) {
        return tds::Column{QString::fromUtf8(name), ColumnType::NVarChar};
    };
    m_server.script(kStatement,
        {tds::ResultRows{{named("Name"), named(""), named("größe"), named("name")},
            {{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                QStringLiteral("d")}}}});
    const auto rowset = connect()->openRowset(kStatement);
    QCOMPARE(rowset->fieldNames().join(u'|'), QStringLiteral("Name||größe|name"));
    QCOMPARE(rowset->fieldIndex(u"NAME"), 0);
    QCOMPARE(rowset->fieldIndex(u"größe"), 2);
    QCOMPARE(exactly(*rowset), QStringLiteral("text a | text b | text c | text d"));
}

void tst_tds_answers::takesTheFirstResultWithColumns_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<tds::Answer>("answer");
    QTest::addColumn<QString>("rows");
    const QString batch = QStringLiteral("EXEC the_batch");
    const QString call = QStringLiteral("{call visits}");
    const tds::ServerMessage print{0, 0, QStringLiteral("printed")};
    const tds::ResultRows first = numbers({QStringLiteral("1"), QStringLiteral("2")});
    const tds::ResultRows second = numbers({QStringLiteral("3")});
    const QString expected = QStringLiteral("integer 1 / integer 2");
    for (const QString &statement : {batch, call}) {
        const QByteArray kind = statement == batch ? "batch: " : "procedure: ";
        const auto row = [&](const char *name, const tds::Answer &answer, const QString &rows) {
            QTest::newRow(QByteArray(kind + name).constData()) << statement << answer << rows;
        };
        row("one result", {first}, expected);
        row("a row count first", {tds::RowCount{7}, first}, expected);
        row("several row counts and messages first",
            {tds::RowCount{7}, print, tds::RowCount{0}, print, first}, expected);
        row("several results", {first, second}, expected);
        row("a result without rows", {numbers({}), second}, QString());
        row("a message behind the rows", {first, kRemark}, expected);
        row("a row count behind the rows", {first, tds::RowCount{1}}, expected);
        row("messages without rows", {print, print}, QString());
        row("a row count alone", {tds::RowCount{3}}, QString());
    }
}

void tst_tds_answers::takesTheFirstResultWithColumns()
{
    QFETCH(QString, statement);
    QFETCH(tds::Answer, answer);
    QFETCH(QString, rows);
    m_server.script(QStringLiteral("EXEC the_batch"), answer);
    m_server.script(QStringLiteral("visits"), answer);
    m_server.script(kStatement, {numbers({QStringLiteral("9")})});
    const auto connection = connect();
    QCOMPARE(exactly(*connection->openRowset(statement)), rows);
    QCOMPARE(exactly(*connection->openRowset(kStatement)), QStringLiteral("integer 9"));
}

void tst_tds_answers::passesOnWhatTheServerSays_data()
{
    QTest::addColumn<tds::Answer>("answer");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("words");
    tds::ResultRows broken = numbers({QStringLiteral("1"), QStringLiteral("2")});
    broken.failure = kOverflow;
    tds::ResultRows brokenLate = numbers(QStringList(5'000, QStringLiteral("1")));
    brokenLate.failure = kOverflow;
    const auto row = [](const char *name, const tds::Answer &answer, const tds::ServerMessage &m) {
        QTest::newRow(name) << answer << m.number << m.text;
    };
    row("an error at once", {kNoSuchTable}, kNoSuchTable);
    row("an error behind a remark", {kRemark, kNoSuchTable}, kNoSuchTable);
    row("an error behind a row count", {tds::RowCount{1}, kNoSuchTable}, kNoSuchTable);
    row("the first of two errors", {kNoSuchTable, kOverflow}, kNoSuchTable);
    row("an error before any row", {tds::ResultRows{numbers({}).columns, {}, kOverflow}},
        kOverflow);
    row("an error among the rows", {broken}, kOverflow);
    row("an error behind thousands of rows", {brokenLate}, kOverflow);
    row("an error behind the rows", {numbers({QStringLiteral("1")}), kNoSuchTable}, kNoSuchTable);
    row("an error by the number of its caller",
        {tds::ServerMessage{51000, 12, QStringLiteral("Zoë's 日本 message")}},
        {51000, 12, QStringLiteral("Zoë's 日本 message")});
}

void tst_tds_answers::passesOnWhatTheServerSays()
{
    QFETCH(tds::Answer, answer);
    m_server.script(QStringLiteral("SELECT broken"), answer);
    m_server.script(kStatement, {numbers({QStringLiteral("9")})});
    const auto connection = connect();
    int number = 0;
    QString words;
    try {
        connection->openRowset(QStringLiteral("SELECT broken"));
    } catch (const DatabaseError &error) {
        number = error.number();
        words = error.description();
    }
    QTEST(number, "number");
    QTEST(words, "words");
    QCOMPARE(exactly(*connection->openRowset(kStatement)), QStringLiteral("integer 9"));
}

void tst_tds_answers::readsManyRowsOnce()
{
    QStringList values;
    for (int i = 0; i < 30'000; ++i)
        values += QString::number(i);
    m_server.script(kStatement, {numbers(values)});
    const qsizetype before = m_server.statements().size();
    const auto rowset = connect()->openRowset(kStatement);
    QCOMPARE(rowset->rowCount(), values.size());
    QCOMPARE(rowset->value(29'999, 0).number(), 29'999);
    QCOMPARE(m_server.statements().mid(before), QStringList(kStatement));
}

/// The server answers nothing until the driver asks it to stop.
void tst_tds_answers::stopsWaitingForAnAnswer()
{
    const QString endless = QStringLiteral("SELECT endless");
    m_server.script(endless, {tds::NoAnswer()});
    m_server.script(kStatement, {numbers({QStringLiteral("9")})});
    const auto connection = connect({15, 1});
    std::optional<DatabaseError> failure;
    try {
        connection->openRowset(endless);
    } catch (const DatabaseError &error) {
        failure = error;
    }
    QVERIFY(failure);
    QCOMPARE(failure->cause(), FailureCause::TimeOut);
    QCOMPARE(exactly(*connect()->openRowset(kStatement)), QStringLiteral("integer 9"));
}

/// What the assertion behind every other test rests on.
void tst_tds_answers::refusesAndRemembersWhatItDoesNotImplement()
{
    const tds::Server server(onlyScripts());
    const auto connection = connectTo(server);
    for (const QString &statement :
        {QStringLiteral("DELETE FROM visits"), QStringLiteral("{call unknown}")})
        QVERIFY_THROWS_EXCEPTION(DatabaseError, connection->openRowset(statement));
    QCOMPARE(server.refused().join(u'|'), QStringLiteral("DELETE FROM visits|call unknown"));
}

QTEST_GUILESS_MAIN(tst_tds_answers)
#include "tst_tds_answers.moc"
