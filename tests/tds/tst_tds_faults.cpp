// Connections that break, at every place between packets, and servers that keep silent.

#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/suite.h"
#include "tds/tds_clinic.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;

namespace {

constexpr int kRows = 200;

tds::ServerSettings smallPackets()
{
    tds::ServerSettings settings;
    settings.packetSize = 512;
    return settings;
}

std::optional<DatabaseError> failureOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const DatabaseError &error) {
        return error;
    }
    return {};
}

} // namespace

class tst_tds_faults : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void aCutConnectionIsNeverAWholeReport_data();
    void aCutConnectionIsNeverAWholeReport();
    void aConnectionCutBetweenTwoRunsIsOpenedAgain();
    void aServerThatGoesAwayIsNamed();
    void silenceEndsWithTheTimeOut();

private:
    TdsClinic m_clinic{kRows, smallPackets()};
    std::unique_ptr<Program> m_program;
    QString m_report;
    QString m_whole;
    int m_packets = 0; ///< of the server's, in one run
};

void tst_tds_faults::initTestCase()
{
    m_clinic.folder().write(QStringLiteral("Reports/list.rpt"),
        providerList().replace(
            "provider_id, last_name FROM CorvaneDB.dbo.providers ORDER BY provider_id",
            "TOP 200 id, last_name, address, city FROM CorvaneDB.dbo.patient_info ORDER BY id"));
    m_report = m_clinic.folder().report(QStringLiteral("list.rpt"));
    m_program = std::make_unique<Program>(m_clinic.folder().path());
    QVERIFY(m_program->logOn());
    m_clinic.server().cutter().disarm();
    QCOMPARE(m_program->run.openListed(m_report), RunResult::Done);
    m_packets = m_clinic.server().cutter().packetsSent();
    m_whole = m_program->text();
    QCOMPARE(m_program->run.dataControl().rowset()->rowCount(), kRows);
    QVERIFY2(m_packets > 20, qPrintable(QString::number(m_packets)));
}

void tst_tds_faults::init()
{
    Suite::init();
    m_program->host.messages.clear();
}

void tst_tds_faults::cleanup()
{
    m_clinic.server().cutter().disarm();
    m_clinic.server().setSilent(false);
    QCOMPARE(m_clinic.server().refused(), QStringList());
}

void tst_tds_faults::aCutConnectionIsNeverAWholeReport_data()
{
    QTest::addColumn<int>("headerBytes");
    QTest::newRow("behind each packet") << 0;
    QTest::newRow("behind the first byte of each header") << 1;
    QTest::newRow("in the middle of each header") << 4;
    QTest::newRow("before the last byte of each header") << 7;
}

/// One run for every packet: each ends with a message and nothing to print or to save, and the run
/// behind it is whole.
void tst_tds_faults::aCutConnectionIsNeverAWholeReport()
{
    QFETCH(int, headerBytes);
    RecordingHost &host = m_program->host;
    for (int packet = 0; packet < m_packets; ++packet) {
        const QByteArray place = "packet " + QByteArray::number(packet);
        host.messages.clear();
        m_clinic.server().cutter().arm(packet, headerBytes);
        const RunResult result = m_program->run.runReport();
        const bool inLogon = packet < 2;
        QVERIFY2(result == (inLogon ? RunResult::Failed : RunResult::QueryRefused), place);
        QVERIFY2(!host.messages.isEmpty(), place);
        QVERIFY2(host.messages[0].contains(inLogon
                         ? QStringLiteral("The report \"list.rpt\" could not be run.\n\nError ")
                         : QStringLiteral("SQL Error|48|Error in SQL Query. ")),
            qPrintable(host.messages[0]));
        QVERIFY2(!m_program->run.hasWholeDocument(), place);
        QVERIFY2(!host.hourglass && host.buttons[RefreshButton] && host.buttons[ExitButton], place);
        m_clinic.server().cutter().disarm();
        host.messages.clear();
        QCOMPARE(m_program->run.runReport(), RunResult::Done);
        QCOMPARE(m_program->text(), m_whole);
        QCOMPARE(host.messages, QStringList());
    }
}

void tst_tds_faults::aConnectionCutBetweenTwoRunsIsOpenedAgain()
{
    m_clinic.server().cutter().arm(m_packets, 0);
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QCOMPARE(m_program->text(), m_whole);
    m_clinic.server().cutter().disarm();
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QCOMPARE(m_program->text(), m_whole);
    QCOMPARE(m_program->host.messages, QStringList());
}

void tst_tds_faults::aServerThatGoesAwayIsNamed()
{
    const auto connection = Connection::open(m_clinic.connectionText(), {});
    m_clinic.server().cutter().arm(0, 0);
    const auto lost = failureOf([&] { connection->openRowset(QStringLiteral("SELECT 1 AS n")); });
    QVERIFY(lost);
    QVERIFY2(lost->cause() == FailureCause::Lost || lost->cause() == FailureCause::Server,
        qPrintable(lost->description()));
    const auto refused = failureOf([&] { Connection::open(m_clinic.connectionText(), {}); });
    QVERIFY(refused);
    QVERIFY2(refused->cause() == FailureCause::Lost || refused->cause() == FailureCause::Server,
        qPrintable(refused->description()));
}

/// The server takes what comes and answers nothing, not even the request to stop.
void tst_tds_faults::silenceEndsWithTheTimeOut()
{
    QElapsedTimer clock;
    clock.start();
    const auto connection = Connection::open(m_clinic.connectionText(), {{}, 0, {2, 1}});
    m_clinic.server().setSilent(true);
    const auto query = failureOf([&] { connection->openRowset(QStringLiteral("SELECT 1 AS n")); });
    QVERIFY(query);
    QVERIFY2(query->cause() == FailureCause::TimeOut, qPrintable(query->description()));
    const auto logon = failureOf([&] {
        Connection::open(m_clinic.connectionText(), {{}, 0, {1, 1}});
    });
    QVERIFY(logon);
    QVERIFY2(logon->cause() == FailureCause::TimeOut, qPrintable(logon->description()));
    QVERIFY2(clock.elapsed() < 15'000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_MAIN(tst_tds_faults)
#include "tst_tds_faults.moc"
