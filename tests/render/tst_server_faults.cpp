#include "render/report_run.h"
#include "session/logon.h"
#include "session/startup.h"
#include "shared/profile.h"
#include "shared/scramble.h"
#include "support/cutting_proxy.h"
#include "support/demo_folder.h"
#include "support/document_dump.h"
#include "support/failures.h"
#include "support/postgres_server.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr auto kReport
    = "[Data Source]\nRecordSource1=SELECT n, 'Name ' || n FROM generate_series(1, 200) AS s(n)\n"
      "Fields=2\n[Columns]\nFields=0|1\nHeading=Number|Name;\nSpacing=2000|3000;\nPageColumns=1\n"
      "Font=Arial;9\nFontsize=9\n";

struct Program
{
    explicit Program(const QString &folder)
    {
        state.programFolder = folder;
        started = connectDatabases(state, host);
        if (state.gConn)
            loggedOn = logOn(state, host, QStringLiteral("nora"), QStringLiteral("clinic"));
        host.menus = {false, true, true};
    }

    QString text() const { return run.document() ? documentText(*run.document()) : QString(); }

    Reportr state;
    test::RecordingHost host;
    StartState started = StartState::NoConfiguration;
    bool loggedOn = false;
    ReportRun run{state, host, host, QLocale::c()};
};

} // namespace

/// The program and a server that is away, refuses, breaks off or falls silent.
class tst_server_faults : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void refusedConnections_data();
    void refusedConnections();
    void aConnectionCutAnywhereLosesNoRowSilently();
    void aConnectionCutWhileConnectingIsAFailedConnection();
    void theNextRunReopensADeadConnection_data();
    void theNextRunReopensADeadConnection();
    void aSilentServerEndsInATimeOut();
    void aSilentServerEndsAQuery();
    void aServerSilentInAQueryEndsInATimeOut();
    void aQueryCanBeStopped_data();
    void aQueryCanBeStopped();
    void theSecondDatabaseIsAServer();

private:
    QByteArray configuration(int port, const QByteArray &more = {}) const
    {
        return m_server.configuration(QStringLiteral("clinic"))
                   .replace(QByteArray::number(m_server.port()), QByteArray::number(port))
            + more;
    }
    Program started(int port, const QByteArray &more = {})
    {
        m_demo.write(QStringLiteral("corvane.ini"), configuration(port, more));
        return Program(m_demo.path());
    }
    QString report() const { return m_demo.report(QStringLiteral("numbers.rpt")); }

    test::PostgresServer m_server;
    test::DemoFolder m_demo{20};
    QString m_whole; ///< the report as it is when nothing fails
};

void tst_server_faults::initTestCase()
{
    const QString library
        = ReadINI(QStringLiteral("/etc/odbcinst.ini"), u"PostgreSQL Unicode", u"Driver");
    QVERIFY2(!library.isEmpty(), "odbc-postgresql is not installed");
    const QByteArray driver = "]\nDriver=" + library.toUtf8() + '\n';
    m_demo.write(
        QStringLiteral("odbcinst.ini"), "[PostgreSQL Unicode" + driver + "[FreeTDS" + driver);
    qputenv("ODBCSYSINI", QFile::encodeName(m_demo.path())); // before the first connection
    QCOMPARE(m_server.start(), QString());
    for (const char *name : {"Clinic", "Halvern"}) {
        const QString file
            = m_demo.file(QStringLiteral("Data/%1.db").arg(QString::fromLatin1(name)));
        QCOMPARE(m_server.loadTables(QString::fromLatin1(name).toLower(), file), QString());
    }
    m_demo.write(QStringLiteral("Reports/numbers.rpt"), kReport);
    Program program = started(m_server.port());
    QVERIFY(program.loggedOn);
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    QCOMPARE(program.host.messages, QStringList());
    m_whole = program.text();
    QVERIFY(m_whole.contains(u"Name 200"));
}

void tst_server_faults::refusedConnections_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("instead");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("advice");
    const auto row = [](const char *name, const QByteArray &part, const QByteArray &instead,
                         const char *words, const char *advice) {
        QTest::newRow(name) << part << instead << QString::fromLatin1(words)
                            << QString::fromLatin1(advice);
    };
    row("no such driver", "PostgreSQL Unicode", "Nothing",
        "no database driver for the provider \"Nothing\"", "It is the driver. Key Provider");
    row("no such machine", "127.0.0.1", "nowhere.invalid", "could not translate host name",
        "It is the server name: no such place answers. Key DataSource");
    row("server down", QByteArray::number(m_server.port()), "1", "Connection refused",
        "It is the port: the computer is there");
    row("wrong password", "Password=", "Password=x", "password authentication failed",
        "It is the logon. Key UID in section [SQLServer] of corvane.ini says \"clinic\".");
    row("unknown database", "InitialCatalog=clinic", "InitialCatalog=nowhere",
        "database \"nowhere\" does not exist",
        "It is the database: the server has none of that name, or this logon may not use it. Key "
        "InitialCatalog");
}

void tst_server_faults::refusedConnections()
{
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, instead);
    QFETCH(QString, words);
    QFETCH(QString, advice);
    m_demo.write(QStringLiteral("corvane.ini"),
        m_server.configuration(QStringLiteral("clinic")).replace(part, instead));
    const Program program(m_demo.path());
    QCOMPARE(program.started, StartState::NoConnection);
    QCOMPARE(program.host.messages.size(), 2);
    QVERIFY2(program.host.messages[0].startsWith(u"|0|Error connecting to database! "),
        qPrintable(program.host.messages[0]));
    QVERIFY2(program.host.messages[0].contains(words), qPrintable(program.host.messages[0]));
    QVERIFY2(program.host.messages[1].startsWith(u"Corvane|64|" + advice),
        qPrintable(program.host.messages[1]));
    QVERIFY(!program.host.messages.join(u' ').contains(u"o}r 1"));
}

/// After each of the bytes that the server sends from logon to the last row, in steps that no
/// packet's length is a multiple of: whole, or a message and no document to print or save.
void tst_server_faults::aConnectionCutAnywhereLosesNoRowSilently()
{
    test::CuttingProxy proxy(m_server.port());
    Program program = started(proxy.port());
    QVERIFY(program.loggedOn);
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    const long everything = proxy.sent();
    QVERIFY(everything > 3'000);
    constexpr long kStep = 61;
    int broken = 0;
    for (long bytes = 0; bytes <= everything; bytes += bytes < 600 ? 7 : kStep) {
        proxy.cutAfter(bytes);
        program.host.messages.clear();
        const RunResult result = program.run.openListed(report());
        if (program.run.hasWholeDocument()) {
            QCOMPARE(program.text(), m_whole);
            QCOMPARE(result, RunResult::Done);
            continue;
        }
        ++broken;
        QVERIFY2(!program.host.messages.isEmpty(),
            qPrintable(QStringLiteral("cut after %1").arg(bytes)));
        QVERIFY2(program.host.buttonsOn() != QString(), "the toolbar stays off");
        QVERIFY(!program.host.hourglass);
    }
    QVERIFY(broken > 50);
    proxy.cutAfter(test::CuttingProxy::kNever);
    program.host.messages.clear();
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    QCOMPARE(program.text(), m_whole);
    QCOMPARE(program.host.messages, QStringList());
}

void tst_server_faults::aConnectionCutWhileConnectingIsAFailedConnection()
{
    test::CuttingProxy proxy(m_server.port());
    for (const long bytes : {0L, 1L, 5L, 9L, 30L, 200L}) {
        proxy.cutAfter(bytes);
        const Program program = started(proxy.port());
        QCOMPARE(program.started, StartState::NoConnection);
        QVERIFY2(program.host.messages.value(0).startsWith(u"|0|Error connecting to database! "),
            qPrintable(program.host.messages.join(u'\n')));
    }
}

void tst_server_faults::theNextRunReopensADeadConnection_data()
{
    QTest::addColumn<bool>("restart");
    QTest::newRow("the network broke between two runs") << false;
    QTest::newRow("the server was started anew between two runs") << true;
}

void tst_server_faults::theNextRunReopensADeadConnection()
{
    QFETCH(bool, restart);
    test::CuttingProxy proxy(m_server.port());
    Program program = started(proxy.port());
    QVERIFY(program.loggedOn);
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    proxy.cutNow();
    if (restart)
        QCOMPARE(m_server.start(), QString());
    program.host.messages.clear();
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    QCOMPARE(program.text(), m_whole);
    QCOMPARE(program.host.messages, QStringList());
}

void tst_server_faults::aSilentServerEndsInATimeOut()
{
    test::CuttingProxy proxy(m_server.port());
    proxy.fallSilent(true);
    QElapsedTimer clock;
    clock.start();
    const Program program = started(proxy.port(), "LoginTimeout=2\n");
    QCOMPARE(program.started, StartState::NoConnection);
    QVERIFY2(clock.elapsed() < 15'000, "the time-out of the section counts");
    QCOMPARE(program.host.messages.size(), 2);
    QVERIFY2(program.host.messages[1].contains(
                 u"now 2 seconds for a connection and without end for a query"),
        qPrintable(program.host.messages.join(u'\n')));
}

void tst_server_faults::aSilentServerEndsAQuery()
{
    test::CuttingProxy proxy(m_server.port());
    Program program = started(proxy.port(), "QueryTimeout=1\n");
    QVERIFY(program.loggedOn);
    m_demo.write(QStringLiteral("Reports/slow.rpt"),
        QByteArray(kReport).replace(
            "generate_series(1, 200)", "(SELECT 1 FROM pg_sleep(60)) q, generate_series(1, 200)"));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(program.run.openListed(m_demo.report(QStringLiteral("slow.rpt"))) != RunResult::Done);
    QVERIFY(clock.elapsed() < 20'000);
    QVERIFY(!program.run.hasWholeDocument());
    QVERIFY2(program.host.messages.value(0).startsWith(u"SQL Error|48|Error in SQL Query. "),
        qPrintable(program.host.messages.join(u'\n')));
    QVERIFY2(program.host.messages.value(1).contains(u"1 seconds for a query"),
        qPrintable(program.host.messages.join(u'\n')));
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    QCOMPARE(program.text(), m_whole);
}

/// The server's own time-out cannot be told any more: the program gives up waiting by itself.
void tst_server_faults::aServerSilentInAQueryEndsInATimeOut()
{
    test::CuttingProxy proxy(m_server.port());
    QString text = m_server.connectionText(QStringLiteral("clinic"));
    text.replace(QString::number(m_server.port()), QString::number(proxy.port()));
    const auto connection = Connection::open(text, {{}, 0, {15, 1}});
    const QString sql = QStringLiteral("SELECT count(*) FROM patient_info");
    QCOMPARE(connection->openRowset(sql)->rowCount(), 1);
    connection->forgetResult();
    proxy.fallSilent(true);
    QElapsedTimer clock;
    clock.start();
    const auto failure = test::databaseFailure([&] { connection->openRowset(sql); });
    QVERIFY(failure);
    QCOMPARE(failure->cause(), FailureCause::TimeOut);
    QVERIFY(clock.elapsed() < 20'000);
    QVERIFY2(test::databaseFailure([&] { connection->openRowset(sql); }),
        "a connection given up stays so");
    const auto next = Connection::open(m_server.connectionText(QStringLiteral("clinic")), {});
    QCOMPARE(next->openRowset(sql)->rowCount(), 1);
}

void tst_server_faults::aQueryCanBeStopped_data()
{
    QTest::addColumn<bool>("isSilent");
    QTest::newRow("a server that works") << false;
    QTest::newRow("a server that fell silent") << true;
}

void tst_server_faults::aQueryCanBeStopped()
{
    QFETCH(bool, isSilent);
    test::CuttingProxy proxy(m_server.port());
    Program program = started(proxy.port());
    QVERIFY(program.loggedOn);
    m_demo.write(QStringLiteral("Reports/slow.rpt"),
        QByteArray(kReport).replace(
            "generate_series(1, 200)", "(SELECT 1 FROM pg_sleep(600)) q, generate_series(1, 200)"));
    int calls = 0;
    program.host.onProgress = [&](int) {
        if (++calls == 5 && isSilent)
            proxy.fallSilent(true);
        program.host.stop = calls > 10;
    };
    QCOMPARE(program.run.openListed(m_demo.report(QStringLiteral("slow.rpt"))), RunResult::Stopped);
    QCOMPARE(program.host.messages, QStringList(QStringLiteral("Report Canceled|64|Report has been canceled.")));
    program.host.onProgress = nullptr;
    program.host.stop = false;
    proxy.fallSilent(false);
    QCOMPARE(program.run.openListed(report()), RunResult::Done);
    QCOMPARE(program.text(), m_whole);
}

/// The second database's provider is always SQL Server's. Here the name of its driver leads to
/// PostgreSQL's, as an administrator may have it.
void tst_server_faults::theSecondDatabaseIsAServer()
{
    const QByteArray second = "[HALVERN]\nServer=" + m_server.address().toLatin1()
        + "\nDataSource=halvern\nUID=clinic\nPW="
        + scramblePW(QString::fromLatin1(test::PostgresServer::kPassword)).toLatin1()
        + "\nLoginTimeout=5\n";
    m_demo.write(QStringLiteral("corvane.ini"),
        "[SQLServer]\nDataSource=sqlite:Data\nInitialCatalog=Clinic\n" + second);
    m_demo.write(QStringLiteral("Reports/second.rpt"),
        QByteArray(kReport).replace("generate_series(1, 200) AS s(n)",
            "(SELECT claim_id AS n FROM HalvernDB.dbo.claims) q ORDER BY n\nDatabase=A"));
    m_demo.write(QStringLiteral("Reports/first.rpt"), test::providerList());
    const QString first = m_demo.report(QStringLiteral("first.rpt"));
    const QString secondReport = m_demo.report(QStringLiteral("second.rpt"));

    Program program(m_demo.path());
    QVERIFY2(program.loggedOn, qPrintable(program.host.messages.join(u'\n')));
    for (int turn = 0; turn < 2; ++turn) {
        QCOMPARE(program.run.openListed(secondReport), RunResult::Done);
        QVERIFY(program.text().contains(u"Name 500001"));
        QCOMPARE(program.state.gConn->connectionText(), program.state.gHvnConnectString);
        QCOMPARE(program.run.openListed(first), RunResult::Done);
        QCOMPARE(program.state.gConn->connectionText(), program.state.gConnectString);
    }
    m_server.stop();
    QCOMPARE(program.run.openListed(secondReport), RunResult::Failed);
    QVERIFY2(program.host.messages.value(0).contains(u"Connection refused"),
        qPrintable(program.host.messages.join(u'\n')));
    QVERIFY2(program.host.messages.value(1).contains(u"It is the port: ")
            && program.host.messages[1].contains(u"Key Server in section [HALVERN]"),
        qPrintable(program.host.messages.join(u'\n')));

    Program without(m_demo.path());
    QVERIFY(without.loggedOn);
    QCOMPARE(without.host.messages.size(), 2);
    QVERIFY2(without.host.messages[0].startsWith(u"|0|Error connecting to HVN database. ")
            && without.host.messages[0].endsWith(u']'),
        qPrintable(without.host.messages[0]));
    without.host.messages.clear();
    QCOMPARE(without.run.openListed(secondReport), RunResult::SecondDatabaseMissing);
    QCOMPARE(without.host.messages, QStringList());
    QCOMPARE(without.run.openListed(first), RunResult::Done);
    QCOMPARE(m_server.start(), QString());
}

QTEST_MAIN(tst_server_faults)
#include "tst_server_faults.moc"
