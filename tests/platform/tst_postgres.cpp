#include "support/demo_folder.h"
#include "support/postgres_server.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

/// The ODBC driver against a server that is really there.
class tst_postgres : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void serverHoldsTheClinic();

private:
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

QTEST_GUILESS_MAIN(tst_postgres)
#include "tst_postgres.moc"
