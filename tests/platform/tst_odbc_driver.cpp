#include "database_files.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "platform/database/odbc/keywords.h"
#include "platform/database/odbc/provider.h"
#include "support/failures.h"
#include "support/host_program.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

/// The drivers "SQLite3" and "FreeTDS" must be installed: the first is a whole database behind
/// ODBC, the second meets a server that is not there.
class tst_odbc_driver : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void providers_data();
    void providers();
    void keywords_data();
    void keywords();
    void keywordsOfEachDriver_data();
    void keywordsOfEachDriver();
    void passwordsStayOut_data();
    void passwordsStayOut();
    void values();
    void bigResults();
    void failedQueries();
    void statementsWithoutRows();
    void failedConnections_data();
    void failedConnections();
    void rowsetsOutliveConnections();

private:
    std::unique_ptr<Connection> open(TimeOuts timeOuts = {}) const;

    QTemporaryDir m_folder;
};

std::unique_ptr<Connection> tst_odbc_driver::open(TimeOuts timeOuts) const
{
    return Connection::open(
        u"Provider=SQLite3;Data Source=anything;User Id=me;Password=s{e}c;Initial Catalog="
            + test::hostPath(m_folder.filePath(QStringLiteral("odbc.db"))),
        {{}, 0, timeOuts});
}

void tst_odbc_driver::initTestCase()
{
    test::writeDatabase(m_folder.filePath(QStringLiteral("odbc.db")),
        "CREATE TABLE t(i int, b bigint, ok bit, f float, d date, dt datetime, tm time, v "
        "varchar(20), n varchar(20), bl blob, big text);"
        "INSERT INTO t VALUES(-1, 9223372036854775807, 1, 0.1, '2026-11-01', '2026-11-01 "
        "08:30:00', '23:59:59',"
        " 'Zo\xc3\xab \xe6\x97\xa5', NULL, x'00ff', replace(hex(zeroblob(524288)),'0','x'));"
        "CREATE TABLE counts(n int); INSERT INTO counts VALUES(1),(2),(-9223372036854775807 - "
        "1),(3);"
        "CREATE TABLE many(n int, name varchar(20));"
        "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM s WHERE i<20000) INSERT INTO "
        "many SELECT i, 'name ' || i FROM s;");
}

void tst_odbc_driver::providers_data()
{
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QString>("driver");
    const QStringList both{QStringLiteral("FreeTDS"),
        QStringLiteral("ODBC Driver 9 for SQL Server"),
        QStringLiteral("ODBC Driver 18 for SQL Server"), QStringLiteral("SQL Server Helper")};
    const QStringList free{QStringLiteral("SQLite3"), QStringLiteral("FreeTDS")};
    const QString newest = QStringLiteral("ODBC Driver 18 for SQL Server");
    const QString freeTds = QStringLiteral("FreeTDS");
    QTest::newRow("the vendor's newest driver by number")
        << QStringLiteral("SQLOLEDB") << both << newest;
    QTest::newRow("a provider with a version") << QStringLiteral("sqlncli11.1") << both << newest;
    QTest::newRow("the latest provider") << QStringLiteral(" MSOLEDBSQL19 ") << both << newest;
    QTest::newRow("FreeTDS without the vendor's")
        << QStringLiteral("SQLOLEDB.1") << free << freeTds;
    QTest::newRow("a driver by its name")
        << QStringLiteral("sqlite3") << free << QStringLiteral("SQLite3");
    QTest::newRow("FreeTDS asked for") << QStringLiteral("FreeTDS") << both << freeTds;
    QTest::newRow("none for the server")
        << QStringLiteral("SQLOLEDB") << QStringList(QStringLiteral("SQLite3")) << QString();
    QTest::newRow("part of a name") << QStringLiteral("SQLite") << free << QString();
    QTest::newRow("nothing installed") << QStringLiteral("SQLite3") << QStringList() << QString();
    QTest::newRow("no provider") << QString() << free << QString();
}

void tst_odbc_driver::providers()
{
    QFETCH(QString, provider);
    QFETCH(QStringList, installed);
    QFETCH(QString, driver);
    QString chosen;
    const auto failure
        = test::databaseFailure([&] { chosen = odbc::driverFor(provider, installed); });
    QCOMPARE(chosen, driver);
    QCOMPARE(failure.has_value(), driver.isEmpty());
    if (!failure)
        return;
    QCOMPARE(failure->cause(), FailureCause::Provider);
    QVERIFY(failure->description().contains(provider));
    QVERIFY(failure->description().contains(
        installed.isEmpty() ? QStringLiteral("none") : installed.join(u", ")));
}

void tst_odbc_driver::keywords_data()
{
    QTest::addColumn<QString>("server");
    QTest::addColumn<QString>("catalogue");
    QTest::addColumn<bool>("trusted");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << QStringLiteral("HOST\\ONE,1433") << QStringLiteral("Clinic") << false
                           << QStringLiteral("Driver={D};Server=HOST\\ONE,1433;Database=Clinic");
    QTest::newRow("trusted") << QStringLiteral("HOST") << QString() << true
                             << QStringLiteral("Driver={D};Server=HOST;Trusted_Connection=Yes");
    QTest::newRow("a keyword in a value")
        << QStringLiteral("h;Driver=x") << QStringLiteral("a=b") << false
        << QStringLiteral("Driver={D};Server={h;Driver=x};Database={a=b}");
    QTest::newRow("braces in a value")
        << QStringLiteral("h};PWD=x") << QStringLiteral(" a{ ") << false
        << QStringLiteral("Driver={D};Server={h}};PWD=x};Database={ a{ }");
}

void tst_odbc_driver::keywords()
{
    QFETCH(QString, server);
    QFETCH(QString, catalogue);
    QFETCH(bool, trusted);
    QFETCH(QString, text);
    ConnectionText connection;
    connection.dataSource = server;
    connection.catalogue = catalogue;
    connection.integratedSecurity = trusted;
    connection.userId = QStringLiteral("sa");
    connection.password = QStringLiteral("secret");
    QCOMPARE(odbc::serverKeywords(QStringLiteral("D"), connection), text);
}

void tst_odbc_driver::keywordsOfEachDriver_data()
{
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("connection");
    QTest::addColumn<QString>("keywords"); // behind the driver's name
    const auto row
        = [](const char *name, const char *driver, const char *connection, const char *keywords) {
              QTest::newRow(name) << QString::fromLatin1(driver) << QString::fromLatin1(connection)
                                  << QString::fromLatin1(keywords);
          };
    const char *vendor = "ODBC Driver 18 for SQL Server";
    const char *postgres = "PostgreSQL Unicode";
    const char *fixed = ";BoolsAsChar=0;LFConversion=0;UseDeclareFetch=0";
    row("a port", "FreeTDS", "Server=HOST,1433", "Servername=HOST;Port=1433;TDS_Version=7.4");
    row("an instance", "FreeTDS", "Server=HOST\\ONE", "Servername=HOST\\ONE;TDS_Version=7.4");
    row("a port makes the instance needless", "FreeTDS", "Server=tcp:HOST\\ONE, 1500",
        "Servername=HOST;Port=1500;TDS_Version=7.4");
    row("this computer", "FreeTDS", "Server=(local)\\ONE;Database=C",
        "Servername=localhost\\ONE;Database=C;TDS_Version=7.4");
    row("encryption asked for", "FreeTDS", "Server=H;Encrypt=Mandatory;TrustServerCertificate=yes",
        "Servername=H;TDS_Version=7.4;Encryption=require");
    row("encryption strict", "FreeTDS", "Server=H;Encrypt=strict",
        "Servername=H;TDS_Version=7.4;Encryption=strict");
    row("the vendor's driver is never left to trust", vendor,
        "Server=HOST\\ONE,1433;Integrated Security=SSPI",
        "Server=HOST\\ONE,1433;Trusted_Connection=Yes;TrustServerCertificate=no");
    row("trust asked for", vendor, "Server=H;Encrypt=True;Trust Server Certificate=True",
        "Server=H;Encrypt=yes;TrustServerCertificate=yes");
    row("no encryption", vendor, "Server=H;Use Encryption for Data=no",
        "Server=H;Encrypt=no;TrustServerCertificate=no");
    row("a checked certificate", postgres, "Server=H,5433;Encrypt=yes",
        QByteArray(QByteArray("Server=H;Port=5433;SSLmode=verify-full") + fixed).constData());
    row("encryption without a check", postgres, "Server=H;Encrypt=yes;TrustServerCertificate=yes",
        QByteArray(QByteArray("Server=H;SSLmode=require") + fixed).constData());
    row("another driver's own way of writing", "SQLite3", "Server=a,b\\c", "Server=a,b\\c");
}

void tst_odbc_driver::keywordsOfEachDriver()
{
    QFETCH(QString, driver);
    QFETCH(QString, connection);
    QFETCH(QString, keywords);
    const QString expected = u"Driver={" % driver % u"};" % keywords;
    QCOMPARE(odbc::serverKeywords(driver, parseConnectionText(connection)), expected);
    QCOMPARE(
        odbc::logonKeywords(driver, parseConnectionText(QString(connection % u";UID=sa;PWD=a}b"))),
        QString(expected % u";UID=sa;PWD={a}}b}"));
}

void tst_odbc_driver::passwordsStayOut_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("shown");
    QTest::newRow("repeated") << QStringLiteral("Login with 'hunter2' failed")
                              << QStringLiteral("hunter2")
                              << QStringLiteral("Login with '***' failed");
    QTest::newRow("by keyword") << QStringLiteral("bad: UID=sa;PWD=x;Server=h")
                                << QStringLiteral("x")
                                << QStringLiteral("bad: UID=sa;PWD=***;Server=h");
    QTest::newRow("in braces") << QStringLiteral("Password={a;}}b};UID=sa")
                               << QStringLiteral("a;}b") << QStringLiteral("Password=***;UID=sa");
    QTest::newRow("innocent letters")
        << QStringLiteral("a table") << QStringLiteral("a") << QStringLiteral("a table");
    QTest::newRow("no password") << QStringLiteral("no such table") << QString()
                                 << QStringLiteral("no such table");
}

void tst_odbc_driver::passwordsStayOut()
{
    QFETCH(QString, message);
    QFETCH(QString, password);
    QFETCH(QString, shown);
    QCOMPARE(odbc::withoutPassword(message, password), shown);
}

void tst_odbc_driver::values()
{
    const auto rowset = open()->openRowset(
        QStringLiteral("SELECT i, b, ok, f, d, dt, tm, v, n, bl, big, i AS V FROM t"));
    QCOMPARE(rowset->rowCount(), 1);
    QCOMPARE(rowset->fieldNames().first(8).join(u' '), QStringLiteral("i b ok f d dt tm v"));
    QStringList cells;
    for (int field = 0; field < 9; ++field)
        cells += test::described(rowset->value(0, field));
    const QString expected = QString::fromUtf8(
        "Integer -1 | Integer 9223372036854775807 | Boolean True | Real 0.1 | Date 11/01/2026 | "
        "DateTime 11/01/2026 8:30:00 AM | Time 11:59:59 PM | Text Zo\xc3\xab \xe6\x97\xa5 | Null");
    QCOMPARE(cells.join(u" | "), expected);
    QCOMPARE(rowset->value(0, 9).kind(), ValueKind::Bytes);
    QCOMPARE(rowset->value(0, 9).data(), QByteArrayView("\0\xff", 2));
    QCOMPARE(rowset->value(0, 10).data(), QByteArrayView(QByteArray(1 << 20, 'x')));
    QCOMPARE(rowset->fieldIndex(u"V"), 7);
}

void tst_odbc_driver::bigResults()
{
    const auto connection = open();
    const auto rowset
        = connection->openRowset(QStringLiteral("SELECT n, name FROM many ORDER BY n DESC"));
    QCOMPARE(rowset->rowCount(), 20'000);
    QCOMPARE(test::described(rowset->value(19'999, 1)), QStringLiteral("Text name 1"));
    QCOMPARE(
        connection->openRowset(QStringLiteral("SELECT n FROM many WHERE n < 0"))->rowCount(), 0);
}

void tst_odbc_driver::failedQueries()
{
    const auto connection = open();
    const auto failure = test::databaseFailure(
        [&] { connection->openRowset(QStringLiteral("SELECT * FROM nowhere")); });
    QVERIFY(failure);
    QVERIFY2(failure->description().contains(u"no such table: nowhere"),
        qPrintable(failure->description()));
    QVERIFY(failure->number() != 0);
    const auto middle = test::databaseFailure(
        [&] { connection->openRowset(QStringLiteral("SELECT abs(n) FROM counts")); });
    QVERIFY(middle);
    QVERIFY2(
        middle->description().contains(u"integer overflow"), qPrintable(middle->description()));
    QVERIFY(test::databaseFailure([&] { connection->openRowset(QStringLiteral(" ")); }));
    QCOMPARE(connection->openRowset(QStringLiteral("SELECT n FROM counts"))->rowCount(), 4);
}

void tst_odbc_driver::statementsWithoutRows()
{
    const auto connection = open();
    const auto rowset = connection->openRowset(QStringLiteral("CREATE TABLE made(x int)"));
    QCOMPARE(rowset->fieldCount(), 0);
    QCOMPARE(rowset->rowCount(), 0);
    QCOMPARE(connection->openRowset(QStringLiteral("SELECT x FROM made"))->fieldCount(), 1);
}

void tst_odbc_driver::failedConnections_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<FailureCause>("cause");
    QTest::newRow("unknown provider")
        << QStringLiteral("Provider=NoSuch.1;Data Source=h;Initial Catalog=c;Password=secret")
        << FailureCause::Provider;
    QTest::newRow("nobody listens") << QStringLiteral(
        "Provider=FreeTDS;Data Source=127.0.0.1,1;Initial Catalog=c;User Id=sa;Password=secret")
                                    << FailureCause::Server;
    QTest::newRow("nobody listens, by the server's provider") << QStringLiteral(
        "Provider=SQLOLEDB;Data Source=127.0.0.1,1;Initial Catalog=c;User Id=sa;Password=secret")
                                                              << FailureCause::Server;
    QTest::newRow("a folder that is not there") << QStringLiteral(
        "Provider=SQLite3;Data Source=h;Initial Catalog=/nonexistent/folder/x.db;Password=secret")
                                                << FailureCause::Server;
}

void tst_odbc_driver::failedConnections()
{
    QFETCH(QString, text);
    QFETCH(FailureCause, cause);
    QElapsedTimer clock;
    clock.start();
    const auto failure = test::databaseFailure([&] { Connection::open(text, {}); });
    QVERIFY(failure);
    QCOMPARE(failure->cause(), cause);
    QVERIFY(failure->number() != 0);
    QVERIFY(!failure->description().isEmpty());
    QVERIFY(!failure->description().contains(u"secret"));
    QVERIFY(clock.elapsed() < 10'000);
}

void tst_odbc_driver::rowsetsOutliveConnections()
{
    auto first = open();
    const auto second = open();
    const auto rowset = first->openRowset(QStringLiteral("SELECT v FROM t"));
    first.reset();
    QCOMPARE(test::described(*rowset), QString::fromUtf8("Text Zo\xc3\xab \xe6\x97\xa5"));
    QCOMPARE(second->openRowset(QStringLiteral("SELECT n FROM counts"))->rowCount(), 4);
    const QStringList installed = installedOdbcDrivers();
    QVERIFY2(installed.contains(QStringLiteral("SQLite3"))
            && installed.contains(QStringLiteral("FreeTDS")),
        qPrintable(installed.join(u", ")));
}

QTEST_GUILESS_MAIN(tst_odbc_driver)
#include "tst_odbc_driver.moc"
