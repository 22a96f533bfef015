#include "database_files.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/demo_folder.h"
#include "support/failures.h"
#include "support/postgres_server.h"
#include "support/suite.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

using namespace corvane;

/// The ODBC driver against a server that is really there.
class tst_postgres : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void serverHoldsTheClinic();
    void values_data();
    void values();
    void longValuesAreWhole_data();
    void longValuesAreWhole();
    void resultsWithoutColumnsArePassedOver();
    void failuresSayStateAndWords_data();
    void failuresSayStateAndWords();
    void failedConnections_data();
    void failedConnections();
    void aSlowQueryTimesOut();
    void rowsComeAsFastAsTheServerSendsThem();

private:
    std::unique_ptr<Connection> open(const DriverSettings &settings = {})
    {
        return Connection::open(m_server.connectionText(QStringLiteral("clinic")), settings);
    }

    test::PostgresServer m_server;
    test::DemoFolder m_demo{20};
};

void tst_postgres::initTestCase()
{
    QCOMPARE(m_server.start(), QString());
    QCOMPARE(m_server.loadTables(
                 QStringLiteral("clinic"), m_demo.file(QStringLiteral("Data/Clinic.db"))),
        QString());
}

void tst_postgres::serverHoldsTheClinic()
{
    const QString clinic = QStringLiteral("clinic");
    QCOMPARE(
        m_server.run(clinic, "SELECT 1 / (count(*) - 19) FROM clinic.dbo.patient_info"), QString());
    QVERIFY(m_server.run(clinic, "SELECT 1 / (count(*) - 20) FROM patient_info")
                .contains(u"division by zero"));
    QVERIFY(m_server.run(QStringLiteral("nowhere"), "SELECT 1").contains(u"does not exist"));
}

void tst_postgres::values_data()
{
    QTest::addColumn<QByteArray>("expression");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const char *expression, const char *value) {
        QTest::newRow(name) << QByteArray(expression) << QString::fromUtf8(value);
    };
    row("whole numbers", "(-32768)::smallint", "Integer -32768");
    row("whole numbers of eight bytes", "9223372036854775807", "Integer 9223372036854775807");
    row("Booleans", "true", "Boolean True");
    row("amounts with a zero before the point", "(-0.05)::numeric(10,2)", "Decimal -0.05");
    row("38 digits", "1234567890123456789012345678901234.5678::numeric(38,4)",
        "Decimal 1234567890123456789012345678901234.5678");
    row("decimals without a declared size", "1::numeric / 3", "Decimal 0.33333333333333333333");
    row("what is no number", "'NaN'::numeric", "Text NaN");
    row("money", "'-$1,234.50'::money", "Real -1234.5");
    row("four bytes", "0.1::real", "Real 0.1");
    row("eight bytes", "0.1::float8 + 0.2", "Real 0.3");
    row("dates", "date '2024-02-29'", "Date 02/29/2024");
    row("dates before the first day of 1970", "date '1899-12-31'", "Date 12/31/1899");
    row("date-times", "timestamp '2026-11-01 08:30:00.997'", "DateTime 11/01/2026 8:30:00 AM");
    row("midnight", "timestamp '2026-11-01 00:00:00'", "DateTime 11/01/2026");
    row("times", "time '23:59:59.5'", "Time 11:59:59 PM");
    row("texts", "'Zo\xc3\xab'::varchar(10)", "Text Zo\xc3\xab");
    row("texts beyond the first plane, as long as declared", "repeat(U&'\\+01F600', 3)::varchar(3)",
        "Text \xf0\x9f\x98\x80\xf0\x9f\x98\x80\xf0\x9f\x98\x80");
    row("line ends as they are", "E'a\\nb\\r\\nc'::text", "Text a\nb\r\nc");
    row("padded texts", "'ab'::char(4)", "Text ab  ");
    row("empty is not null", "''::varchar(5)", "Text ");
    row("null", "NULL::int", "Null");
    row("identifiers", "'6f9619ff-8b86-d011-b42d-00c04fc964ff'::uuid",
        "Text 6F9619FF-8B86-D011-B42D-00C04FC964FF");
    row("bytes", "'\\x004142'::bytea", "Bytes"); // what they are is compared for itself
}

void tst_postgres::values()
{
    QFETCH(QByteArray, expression);
    QFETCH(QString, value);
    // Beside a long text and behind it, as the columns of a real report are.
    const auto rowset = open()->openRowset(
        u"SELECT " + QString::fromUtf8(expression) + u" AS v, repeat('x', 9000) AS long");
    QCOMPARE(rowset->rowCount(), 1);
    QString shown = test::described(rowset->value(0, 0));
    if (rowset->value(0, 0).kind() == ValueKind::Bytes)
        QCOMPARE(rowset->value(0, 0).data(), QByteArrayView("\0AB", 3));
    else
        QCOMPARE(shown, value);
    QCOMPARE(rowset->value(0, 1).data(), QByteArrayView(QByteArray(9000, 'x')));
}

void tst_postgres::longValuesAreWhole_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<int>("unit"); // bytes that one repetition has
    QTest::newRow("text") << QStringLiteral("repeat('\u00e9', n)") << 2;
    QTest::newRow("bytes") << QStringLiteral("decode(repeat('00ff', n), 'hex')") << 2;
    QTest::newRow("XML") << QStringLiteral("('<a>' || repeat('x', n) || '</a>')::xml") << 1;
}

void tst_postgres::longValuesAreWhole()
{
    QFETCH(QString, column);
    QFETCH(int, unit);
    const auto rowset = open()->openRowset(u"SELECT n, " + column
        + u", n AS again FROM (VALUES (1), (255), (256), (257), (8190), (8191), (16384), (300000)) "
          u"v(n)");
    QCOMPARE(rowset->rowCount(), 8);
    const int around = unit == 1 ? 7 : 0;
    for (qsizetype row = 0; row < rowset->rowCount(); ++row) {
        QCOMPARE(
            rowset->value(row, 1).data().size(), rowset->value(row, 0).number() * unit + around);
        QCOMPARE(rowset->value(row, 2).number(), rowset->value(row, 0).number());
    }
}

void tst_postgres::resultsWithoutColumnsArePassedOver()
{
    const auto connection = open();
    const auto rowset = connection->openRowset(
        QStringLiteral("CREATE TEMP TABLE made(n int); INSERT INTO made VALUES (1), (2);"
                       "DO $$ BEGIN RAISE NOTICE 'two rows made'; END $$; SELECT n, n AS N FROM "
                       "made ORDER BY n; SELECT 3"));
    QCOMPARE(
        test::described(*rowset), QStringLiteral("Integer 1 | Integer 1 / Integer 2 | Integer 2"));
    QCOMPARE(rowset->fieldIndex(u"N"), 0);
    QCOMPARE(connection->openRowset(QStringLiteral("DELETE FROM made"))->fieldCount(), 0);
    QCOMPARE(connection->openRowset(QStringLiteral("SELECT n FROM made"))->rowCount(), 0);
    QCOMPARE(m_server.run(QStringLiteral("clinic"),
                 "CREATE FUNCTION twice(n int) RETURNS TABLE(a int, b text) LANGUAGE sql AS "
                 "'SELECT n, ''x'' UNION ALL SELECT n, ''y'''"),
        QString());
    QCOMPARE(test::described(*connection->openRowset(QStringLiteral("{call twice(7)}"))),
        QStringLiteral("Integer 7 | Text x / Integer 7 | Text y"));
}

void tst_postgres::failuresSayStateAndWords_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("words");
    QTest::newRow("no such table")
        << QStringLiteral("SELECT * FROM nowhere") << QStringLiteral("42P01")
        << QStringLiteral("ERROR: relation \"nowhere\" does not exist");
    QTest::newRow("the server's own functions are unknown here")
        << QStringLiteral("SELECT ISNULL(room, '') FROM clinic.dbo.providers")
        << QStringLiteral("42883")
        << QStringLiteral("ERROR: function isnull(character varying, unknown) does not exist");
    QTest::newRow("a column that is called like a failed connection")
        << QStringLiteral("SELECT ssl_certificate_timeout FROM providers")
        << QStringLiteral("42703")
        << QStringLiteral("ERROR: column \"ssl_certificate_timeout\" does not exist");
    QTest::newRow("among the rows")
        << QStringLiteral("SELECT 1 / (5000 - n) FROM generate_series(1, 10000) AS s(n)")
        << QStringLiteral("22012") << QStringLiteral("ERROR: division by zero");
    QTest::newRow("behind the rows")
        << QStringLiteral("SELECT 1; SELECT 1 / 0") << QStringLiteral("22012")
        << QStringLiteral("ERROR: division by zero");
}

void tst_postgres::failuresSayStateAndWords()
{
    QFETCH(QString, sql);
    QFETCH(QString, words);
    const auto connection = open();
    const auto failure = test::databaseFailure([&] { connection->openRowset(sql); });
    QVERIFY(failure);
    QTEST(failure->state(), "state");
    QVERIFY2(failure->description().startsWith(words), qPrintable(failure->description()));
    QCOMPARE(failure->cause(), FailureCause::Unknown);
    QCOMPARE(connection->openRowset(QStringLiteral("SELECT 1"))->rowCount(), 1);
}

void tst_postgres::failedConnections_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("instead");
    QTest::addColumn<FailureCause>("cause");
    const QString port = QString::number(m_server.port());
    QTest::newRow("no such machine")
        << QStringLiteral("127.0.0.1") << QStringLiteral("nowhere.invalid") << FailureCause::Server;
    QTest::newRow("nobody listens") << port << QStringLiteral("1") << FailureCause::Port;
    QTest::newRow("wrong password")
        << QStringLiteral("harb") << QStringLiteral("secret") << FailureCause::Logon;
    QTest::newRow("unknown user") << QStringLiteral("User Id=clinic")
                                  << QStringLiteral("User Id=stranger") << FailureCause::Logon;
    QTest::newRow("unknown database")
        << QStringLiteral("Catalog=clinic") << QStringLiteral("Catalog=nowhere")
        << FailureCause::Catalogue;
    QTest::newRow("no encryption to be had")
        << QStringLiteral("Catalog=clinic") << QStringLiteral("Catalog=clinic;Encrypt=yes")
        << FailureCause::Certificate;
}

void tst_postgres::failedConnections()
{
    QFETCH(QString, part);
    QFETCH(QString, instead);
    QString text = m_server.connectionText(QStringLiteral("clinic"));
    text.replace(part, instead);
    const auto failure = test::databaseFailure([&] { Connection::open(text, {}); });
    QVERIFY(failure);
    QTEST(failure->cause(), "cause");
    QVERIFY(!failure->description().contains(u"o}r 1"));
}

void tst_postgres::aSlowQueryTimesOut()
{
    const auto connection = open({{}, 0, {15, 1}});
    QElapsedTimer clock;
    clock.start();
    const auto failure = test::databaseFailure(
        [&] { connection->openRowset(QStringLiteral("SELECT pg_sleep(60)")); });
    QVERIFY(failure);
    QCOMPARE(failure->cause(), FailureCause::TimeOut);
    QVERIFY(clock.elapsed() < 20'000);
    QCOMPARE(connection->openRowset(QStringLiteral("SELECT 1"))->rowCount(), 1);
}

/// Best of five each: fetching against the server's own client that writes the same rows to a
/// file.
void tst_postgres::rowsComeAsFastAsTheServerSendsThem()
{
#if defined(__SANITIZE_ADDRESS__) || defined(CORVANE_COVERAGE)
    constexpr double kMostRatio = 10; // checks and counters slow this program down, not the client
#else
    constexpr double kMostRatio = 2;
#endif
    const QString sql = QStringLiteral(
        "SELECT n, 'Last name ' || n, ('First ' || n % 977)::varchar(40), date '2026-01-01' + n % "
        "365, "
        "timestamp '2026-01-01' + n * interval '1 minute', (n % 10000 / 100.0)::numeric(10,2), "
        "n % 3 = 0 FROM generate_series(1, 100000) AS s(n)");
    const QByteArray toFile = "\\pset format unaligned\n\\o rows.txt\n" + sql.toUtf8() + ";\n";
    const auto time = [](const std::function<void()> &work) {
        QElapsedTimer clock;
        clock.start();
        work();
        return double(clock.nsecsElapsed());
    };
    double client = std::numeric_limits<double>::max();
    double driver = client;
    for (int i = 0; i < 5; ++i) { // in turn, so that a busy machine slows both
        client = std::min(client,
            time([&] { QCOMPARE(m_server.run(QStringLiteral("clinic"), toFile), QString()); }));
        driver = std::min(
            driver, time([&] { QCOMPARE(open()->openRowset(sql)->rowCount(), 100'000); }));
    }
    qInfo("fetching takes %.2f times the client", driver / client);
    QVERIFY(driver / client <= kMostRatio);
}

QTEST_GUILESS_MAIN(tst_postgres)
#include "tst_postgres.moc"
