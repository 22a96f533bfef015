// The whole program against a server: driver, wire and rows give what the embedded databases give.

#include "platform/database/error.h"
#include "shared/scramble.h"
#include "support/print_date.h"
#include "support/suite.h"
#include "tds/tds_clinic.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;

namespace {

/// Those of the reviewed texts.
constexpr int kPatients = 60;

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

struct Outcome
{
    int status = -1;
    QString errors;
};

} // namespace

class tst_tds_reports : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(m_clinic.server().refused(), QStringList()); }
    void batchGivesTheReviewedTexts_data();
    void batchGivesTheReviewedTexts();
    void oneExecutionServesOneRun();
    void theWorkbookAsksForParametersAgain();
    void switchesToTheSecondDatabaseAndBack();
    void goesOnWithoutTheSecondDatabase_data();
    void goesOnWithoutTheSecondDatabase();
    void saysWhyNobodyCanLogOn_data();
    void saysWhyNobodyCanLogOn();
    void checksTheProgramsOwnPasswords();
    void refusedQueriesShowTheServersWords();

private:
    Outcome batch(const QString &report, const QString &password, const QString &output)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("CORVANE_PASSWORD"), password);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(CORVANE_BATCH),
            {QStringLiteral("run"), report, QStringLiteral("--folder"), m_clinic.folder().path(),
                QStringLiteral("--user"), QStringLiteral("nora"), QStringLiteral("--from"),
                QStringLiteral("2026-10-01"), QStringLiteral("--to"), QStringLiteral("2026-11-30"),
                QStringLiteral("--patient"), QStringLiteral("1001"), QStringLiteral("--date1"),
                QStringLiteral("2026-11-02"), QStringLiteral("--date2"), QStringLiteral("2026-11-04"),
                QStringLiteral("--select"), QStringLiteral("ANC"), QStringLiteral("--text"), output});
        if (!process.waitForFinished(120'000))
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
    }
    QString report(const char *name) const
    {
        return m_clinic.folder().report(QString::fromLatin1(name));
    }
    QString write(const QByteArray &definition)
    {
        m_clinic.folder().write(QStringLiteral("Reports/test.rpt"), definition);
        return report("test.rpt");
    }

    TdsClinic m_clinic{kPatients};
};

void tst_tds_reports::batchGivesTheReviewedTexts_data()
{
    QTest::addColumn<QString>("report");
    for (const QString &name : QDir(report("")).entryList({QStringLiteral("*.rpt")}))
        QTest::newRow(qPrintable(name)) << name;
}

void tst_tds_reports::batchGivesTheReviewedTexts()
{
    QFETCH(QString, report);
    const QString text = m_clinic.folder().file(QStringLiteral("out.txt"));
    QFile::remove(text);
    const qsizetype before = m_clinic.server().statements().size();
    const Outcome outcome = batch(report, QStringLiteral("clinic"), text);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QVERIFY(m_clinic.server().statements().size() > before);
    const QString reviewed = QStringLiteral(CORVANE_SOURCE_DIR "/tests/expectations/")
        + QFileInfo(report).completeBaseName() + u".txt";
    QCOMPARE(test::withoutPrintDate(QString::fromUtf8(readFile(text))).split(u'\n'),
        QString::fromUtf8(readFile(reviewed)).split(u'\n'));
}

void tst_tds_reports::oneExecutionServesOneRun()
{
    Program program(m_clinic.folder().path());
    QVERIFY(program.logOn());
    const qsizetype before = m_clinic.server().statements().size();
    QCOMPARE(program.run.openListed(write(providerList())), RunResult::Done);
    const QStringList sent = m_clinic.server().statements().mid(before);
    QCOMPARE(sent.size(), 1);
    QVERIFY2(sent[0].contains(u"Clinic.dbo.providers"), qPrintable(sent[0]));
}

/// A server that knows PARAMETERS itself gets the stored text; for the workbook the values are asked for again.
void tst_tds_reports::theWorkbookAsksForParametersAgain()
{
    const QString stored = QStringLiteral("Parameters [on day] DateTime #11/1/2026#; SELECT 1 AS one WHERE 1 = 1");
    tds::ResultRows rows;
    rows.columns += tds::Column {QStringLiteral("one"), tds::ColumnType::Int};
    rows.rows += QList<tds::Cell> {QStringLiteral("1")};
    m_clinic.server().script(stored, {rows});
    const QString path = write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports><Report name=\"Main\"><RecordSource>" + stored.toUtf8()
        + "</RecordSource><Section kind=\"detail\" height=\"0.2in\"><Data column=\"one\" width=\"1in\" height=\"0.2in\"/>"
          "</Section></Report></Reports>");
    Program program(m_clinic.folder().path());
    QVERIFY(program.logOn());
    program.host.messages.clear();
    QCOMPARE(program.run.openListed(path), RunResult::Done);
    QCOMPARE(program.host.asked, QStringList());
    QVERIFY(!program.run.prepareExcel()); // cancelled
    program.host.answerParameters = ParameterAnswers {{QStringLiteral("on day"), QDate(2026, 11, 2)}};
    QVERIFY(program.run.prepareExcel());
    QCOMPARE(program.host.messages,
        QStringList(2, QStringLiteral("Report Parameters|64|In Order to Generate MS Excel Export Data, \nYou Will Need to Re-Enter the Report Parameter(s).")));
    QCOMPARE(program.run.dataControl().recordSource(), QStringLiteral("SELECT 1 AS one WHERE 1 = 1"));
    QCOMPARE(program.run.dataControl().rowset()->rowCount(), 1);
}

void tst_tds_reports::switchesToTheSecondDatabaseAndBack()
{
    Program program(m_clinic.folder().path());
    QCOMPARE(program.host.messages, QStringList());
    QVERIFY(program.logOn());
    const QDate first(2026, 10, 1);
    program.host.answerRange
        = [&] { program.host.setDates(first, first.addMonths(2).addDays(-1)); };
    for (const bool second : {false, true, false, true}) {
        const QString path = second ? report("Claims by payer.rpt") : write(providerList());
        QCOMPARE(program.run.openListed(path), RunResult::Done);
        QCOMPARE(m_clinic.server().logins().last().database,
            second ? QStringLiteral("Halvern") : QStringLiteral("Clinic"));
        QVERIFY(program.run.hasWholeDocument());
        QVERIFY(program.run.dataControl().rowset()->rowCount() > 0);
    }
}

void tst_tds_reports::goesOnWithoutTheSecondDatabase_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<QString>("words");
    QTest::newRow("no such database")
        << QByteArray("DataSource=Halvern") << QByteArray("DataSource=Nowhere")
        << QStringLiteral("Cannot open database \"Nowhere\" requested by the login.");
    QTest::newRow("wrong password") << QByteArray("PW=" + scramblePW(u"demo").toLatin1())
                                    << QByteArray("PW=" + scramblePW(u"other").toLatin1())
                                    << QStringLiteral("Login failed for user 'demo'.");
    QTest::newRow("not configured")
        << QByteArray("Server=" + m_clinic.server().address().toLatin1()) << QByteArray("Server=")
        << QString();
}

/// One message at the start; a report of that database ends without a word, the others run.
void tst_tds_reports::goesOnWithoutTheSecondDatabase()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, other);
    QFETCH(QString, words);
    m_clinic.changeConfiguration(line, other);
    Program program(m_clinic.folder().path());
    m_clinic.changeConfiguration(other, line);
    QCOMPARE(program.host.messages.isEmpty(), words.isEmpty());
    if (!words.isEmpty()) {
        const QString shown = program.host.messages[0];
        QVERIFY2(shown.contains(u"Error connecting to HVN database. ") && shown.contains(words),
            qPrintable(shown));
    }
    QVERIFY(program.logOn());
    program.host.messages.clear();
    QCOMPARE(
        program.run.openListed(report("Claims by payer.rpt")), RunResult::SecondDatabaseMissing);
    QCOMPARE(program.host.messages, QStringList());
    QCOMPARE(program.run.openListed(write(providerList())), RunResult::Done);
}

void tst_tds_reports::saysWhyNobodyCanLogOn_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<QString>("message");
    const QByteArray password = "Password=" + scramblePW(u"demo").toLatin1();
    QTest::newRow("wrong password")
        << password << QByteArray("Password=" + scramblePW(u"other").toLatin1())
        << QStringLiteral("Error connecting to database! 18456, Login failed for user 'demo'.");
    QTest::newRow("a password that only begins alike")
        << password << QByteArray("Password=" + scramblePW(u"demos").toLatin1())
        << QStringLiteral("Error connecting to database! 18456, Login failed for user 'demo'.");
    QTest::newRow("unknown user")
        << QByteArray("UID=demo\r\n" + password) << QByteArray("UID=nobody\r\n" + password)
        << QStringLiteral("Error connecting to database! 18456, Login failed for user 'nobody'.");
    QTest::newRow("unknown database")
        << QByteArray("InitialCatalog=Clinic") << QByteArray("InitialCatalog=Nowhere")
        << QStringLiteral("Error connecting to database! 4060, Cannot open database \"Nowhere\" "
                          "requested by the login. The login failed.");
}

void tst_tds_reports::saysWhyNobodyCanLogOn()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, other);
    QFETCH(QString, message);
    m_clinic.changeConfiguration(line, other);
    const Program program(m_clinic.folder().path());
    const Outcome outcome = batch(QStringLiteral("Phone list"), QStringLiteral("clinic"),
        m_clinic.folder().file(QStringLiteral("none.txt")));
    m_clinic.changeConfiguration(other, line);
    QVERIFY(!program.state.gConn);
    QVERIFY(!program.host.messages.isEmpty());
    QCOMPARE(program.host.messages[0].section(u'|', 2), message);
    QCOMPARE(outcome.status, 4);
    QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
    QVERIFY(!QFile::exists(m_clinic.folder().file(QStringLiteral("none.txt"))));
}

void tst_tds_reports::checksTheProgramsOwnPasswords()
{
    Program program(m_clinic.folder().path());
    QVERIFY(!program.logOn(QStringLiteral("wrong")));
    QCOMPARE(program.host.messages,
        QStringList(QStringLiteral("Corvane|48|Invalid UID or Password. Try again.")));
    QVERIFY(program.logOn());
    const Outcome outcome = batch(QStringLiteral("Phone list"), QStringLiteral("wrong"),
        m_clinic.folder().file(QStringLiteral("none.txt")));
    QCOMPARE(outcome.status, 3);
    QVERIFY2(outcome.errors.contains(u"Invalid UID or Password"), qPrintable(outcome.errors));
}

void tst_tds_reports::refusedQueriesShowTheServersWords()
{
    Program program(m_clinic.folder().path());
    QVERIFY(program.logOn());
    const QString path
        = write(providerList().replace("CorvaneDB.dbo.providers", "CorvaneDB.dbo.nothing"));
    QCOMPARE(program.run.openListed(path), RunResult::QueryRefused);
    QVERIFY2(program.host.messages[0].startsWith(
                 u"SQL Error|48|Error in SQL Query. no such table: Clinic.nothing"),
        qPrintable(program.host.messages[0]));
    QVERIFY(!program.run.hasWholeDocument());
}

QTEST_MAIN(tst_tds_reports)
#include "tst_tds_reports.moc"
