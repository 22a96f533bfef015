// Reports and doctor of corvane-batch on PostgreSQL: the portable definitions read as they do on
// the embedded database, cell by cell.

#include "support/demo_folder.h"
#include "support/postgres_server.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

struct Outcome
{
    int status = -1;
    QString output;
    QString errors;
};

const QDir kPortable(QStringLiteral(CORVANE_SOURCE_DIR "/tests/batch/portable"));

} // namespace

class tst_postgres_reports : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void portableReportsReadAlike_data();
    void portableReportsReadAlike();
    void otherServersWordsAreRefusedByTheServer();
    void doctorTriesEachStep_data();
    void doctorTriesEachStep();
    void cleanup();

private:
    Outcome batch(const QStringList &arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
        environment.insert(QStringLiteral("LC_ALL"), m_locale);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(CORVANE_BATCH), arguments);
        if (!process.waitForFinished(120'000))
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
    }
    Outcome runReport(const QString &report, const QString &textFile) const
    {
        return batch({QStringLiteral("run"), report, QStringLiteral("--folder"), m_demo.path(),
            QStringLiteral("--user"), QStringLiteral("nora"), QStringLiteral("--from"),
            QStringLiteral("2026-10-01"), QStringLiteral("--to"), QStringLiteral("2026-11-12"),
            QStringLiteral("--patient"), QStringLiteral("1001"), QStringLiteral("--text"),
            textFile});
    }

    test::PostgresServer m_server;
    test::DemoFolder m_demo{60};
    QByteArray m_embedded; ///< corvane.ini as the demo clinic has it
    QString m_locale = QStringLiteral("C");
};

void tst_postgres_reports::initTestCase()
{
    QCOMPARE(m_server.start(), QString());
    QCOMPARE(m_server.loadTables(
                 QStringLiteral("clinic"), m_demo.file(QStringLiteral("Data/Clinic.db"))),
        QString());
    m_embedded = m_demo.read(QStringLiteral("corvane.ini"));
    QVERIFY(m_embedded.contains("sqlite:Data"));
}

void tst_postgres_reports::cleanup()
{
    m_locale = QStringLiteral("C");
}

void tst_postgres_reports::portableReportsReadAlike_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<int>("dateOrder");
    for (const QString &report : kPortable.entryList({QStringLiteral("*.rpt")}))
        QTest::newRow(qPrintable(report)) << report << 0;
    QTest::newRow("dates with the day first") << QStringLiteral("Schedule by room.rpt") << 1;
}

void tst_postgres_reports::portableReportsReadAlike()
{
    QFETCH(QString, report);
    QFETCH(int, dateOrder);
    QCOMPARE(m_server.start(dateOrder), QString());
    if (dateOrder == 1)
        m_locale = QStringLiteral("en_GB.UTF-8");
    const QStringList folders{QStringLiteral("embedded.txt"), QStringLiteral("server.txt")};
    for (const QString &name : folders) {
        const bool onServer = name == folders[1];
        m_demo.write(QStringLiteral("corvane.ini"),
            onServer ? m_server.configuration(QStringLiteral("clinic")) : m_embedded);
        const Outcome outcome = runReport(kPortable.filePath(report), m_demo.file(name));
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
    }
    const auto lines
        = [&](const QString &name) { return QString::fromUtf8(m_demo.read(name)).split(u'\n'); };
    QVERIFY(lines(folders[0]).size() > 5);
    QCOMPARE(lines(folders[1]), lines(folders[0]));
}

void tst_postgres_reports::otherServersWordsAreRefusedByTheServer()
{
    m_demo.write(QStringLiteral("corvane.ini"), m_server.configuration(QStringLiteral("clinic")));
    const Outcome outcome = runReport(
        QStringLiteral("Missed appointments.rpt"), m_demo.file(QStringLiteral("out.txt")));
    QCOMPARE(outcome.status, 0); // plain enough for both
    const Outcome refused = runReport(
        QStringLiteral("Incomplete records.rpt"), m_demo.file(QStringLiteral("none.txt")));
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.errors.startsWith(u"Error in SQL Query. ERROR: function isnull(character "
                                       u"varying, unknown) does not exist"),
        qPrintable(refused.errors));
    QVERIFY(!QFile::exists(m_demo.file(QStringLiteral("none.txt"))));
}

void tst_postgres_reports::doctorTriesEachStep_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::addColumn<QByteArray>("instead");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("lines"); // beginnings, blanks apart
    const auto row = [](const char *name, const QByteArray &part, const QByteArray &instead,
                         int status, const QStringList &lines) {
        QTest::newRow(name) << part << instead << status << lines;
    };
    const QString driver = QStringLiteral("driver ok PostgreSQL Unicode");
    const QString host = QStringLiteral("server name ok 127.0.0.1");
    const QString port = QStringLiteral("port ok %1").arg(m_server.port());
    const QString certificate = QStringLiteral("certificate none is asked for");
    const QString none = QStringLiteral("no second database: key Server is empty");
    row("all is well", "", "", 0,
        {driver, host, port, certificate, QStringLiteral("logon ok accepted"),
            QStringLiteral("database ok clinic"), QStringLiteral("tables ok"),
            QStringLiteral("[HALVERN]"), none});
    row("driver", "PostgreSQL Unicode", "Nothing", 4,
        {QStringLiteral("driver FAILED There is no database driver for the provider \"Nothing\"."),
            QStringLiteral("It is the driver. Key Provider")});
    row("server name", "127.0.0.1", "nowhere.invalid", 4,
        {driver, QStringLiteral("server name FAILED \"nowhere.invalid\": Host not found."),
            QStringLiteral("It is the server name")});
    row("port", QByteArray::number(m_server.port()), "1", 4,
        {driver, host, QStringLiteral("port FAILED 1: Connection refused."),
            QStringLiteral("It is the port")});
    row("logon", "Password=", "Password=x", 4,
        {driver, host, port, certificate, QStringLiteral("logon FAILED"),
            QStringLiteral("It is the logon. Key UID")});
    row("database", "InitialCatalog=clinic", "InitialCatalog=postgrey", 4,
        {driver, host, port, certificate, QStringLiteral("database FAILED"),
            QStringLiteral("It is the database")});
    row("tables", "InitialCatalog=clinic", "InitialCatalog=postgres", 4,
        {driver, host, port, certificate, QStringLiteral("logon ok"),
            QStringLiteral("database ok postgres"),
            QStringLiteral("tables FAILED ERROR: relation \"passwords\"")});
    row("no server named", "DataSource=", "Nothing=", 4,
        {QStringLiteral("Key DataSource is empty")});
    row("the second alone", "[SQLServer]", "[HALVERN]\nServer=sqlite:None\n[SQLServer]", 1,
        {driver, host, port, certificate, QStringLiteral("logon ok"), QStringLiteral("database ok"),
            QStringLiteral("tables ok"), QStringLiteral("[HALVERN]"),
            QStringLiteral("driver ok the embedded one"), QStringLiteral("server name FAILED"),
            QStringLiteral(
                "It is the server name: no such place answers. Key Server in section [HALVERN]")});
}

void tst_postgres_reports::doctorTriesEachStep()
{
    QFETCH(QByteArray, part);
    QFETCH(QByteArray, instead);
    QFETCH(QStringList, lines);
    QByteArray ini = m_server.configuration(QStringLiteral("clinic"));
    if (!part.isEmpty())
        ini.replace(part, instead);
    m_demo.write(QStringLiteral("corvane.ini"), ini);
    const Outcome outcome
        = batch({QStringLiteral("doctor"), QStringLiteral("--folder"), m_demo.path()});
    QTEST(outcome.status, "status");
    QVERIFY(!outcome.output.contains(u"o}r 1"));
    const QStringList printed = outcome.output.split(u'\n', Qt::SkipEmptyParts);
    qsizetype at = 2; // behind the file's name and the section
    for (const QString &line : lines) {
        QVERIFY2(printed.value(at).simplified().startsWith(line), qPrintable(outcome.output));
        ++at;
    }
}

QTEST_GUILESS_MAIN(tst_postgres_reports)
#include "tst_postgres_reports.moc"
