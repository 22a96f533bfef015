#include "render/report_run.h"
#include "session/logon.h"
#include "session/patient_search.h"
#include "session/startup.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtTest/QtTest>

#include <memory>

using namespace corvane;

namespace {

struct Program {
    explicit Program(const QString &folder)
    {
        state.programFolder = folder;
        connectDatabases(state, host);
        logOn(state, host, QStringLiteral("nora"), QStringLiteral("clinic"));
    }

    QString text() const { return run.document() ? documentText(*run.document()).trimmed() : QString(); }

    Reportr state;
    test::RecordingHost host;
    ReportRun run {state, host, host, QLocale::c()};
};

/// A layout that shows the expressions of `values` side by side in each row.
QByteArray layout(const QByteArray &name, const QByteArray &recordSource, const QByteArrayList &values, const QByteArray &more = {})
{
    QByteArray fields;
    for (qsizetype i = 0; i < values.size(); ++i)
        fields += "<Expression x=\"" + QByteArray::number(i) + "in\" y=\"0in\" width=\"0.9in\" height=\"0.2in\" value=\"" + values[i] + "\"/>";
    return "<Report name=\"" + name + "\"><RecordSource><![CDATA[" + recordSource + "]]></RecordSource>"
        "<Section kind=\"detail\" height=\"0.2in\">" + fields + more + "</Section></Report>";
}

QByteArray file(const QByteArrayList &layouts)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports>\n" + layouts.join('\n') + "\n</Reports>\n";
}

QByteArray place(const QByteArray &name)
{
    return "<Subreport name=\"" + name + "\" x=\"3in\" y=\"0in\" width=\"1.4in\" height=\"0.2in\"/>";
}

const QByteArray kPatients = "SELECT id, last_name FROM CorvaneDB.dbo.patient_info WHERE id = {*PID*}";
const QByteArray kDates = "SELECT {DATE*1|2|1|Visits|From|To|11/01/2026|11/30/2026} AS a, {DATE*2} AS b";
const QByteArray kPayers = "SELECT payer_id FROM CorvaneDB.dbo.payers WHERE payer_id IN {*SQL01*}name|payer_id|CorvaneDB.dbo.payers||Who|1|1|{*/SQL*} ORDER BY payer_id";

} // namespace

class tst_designed_run : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void asksTokenAfterToken();
    void aReportWithoutTokensAsksNothing();
    void cancelling_data();
    void cancelling();
    void aNewPatientLeavesNoTraceOfTheFirst();
    void aReRunWithoutAnswersIsCancelled();
    void tokensThatNothingReplaces_data();
    void tokensThatNothingReplaces();
    void layoutsGoIntoTheirSlots_data();
    void layoutsGoIntoTheirSlots();
    void answersReachTheSubreports();
    void theResolvedReadingAsksForParameters();
    void theProcedureNeverRunsAnythingElse();
    void aProcedureThatIsNotThereIsNoFailure();
    void failuresSayWhatAndWhere_data();
    void failuresSayWhatAndWhere();
    void theSpreadsheetGetsEveryRow();

private:
    RunResult open(const QByteArrayList &layouts)
    {
        m_demo.write(QStringLiteral("Reports/designed.rpt"), file(layouts));
        return m_program->run.openListed(m_demo.report(QStringLiteral("designed.rpt")));
    }
    test::RecordingHost &host() { return m_program->host; }

    test::DemoFolder m_demo {60};
    std::unique_ptr<Program> m_program;
};

void tst_designed_run::init()
{
    Suite::init();
    m_program = std::make_unique<Program>(m_demo.path());
    host().messages.clear();
    host().buttons = {};
    host().answerPatient = [this] { choosePatient(m_program->state, QStringLiteral("1001")); };
    host().answerDates = DateAnswers {QDate(2026, 11, 3), QDate(2026, 11, 4)};
    host().answerSelection = [](const QString &request) {
        return SelectionAnswers {SelectionToken::parseRequest(request).marker(), {QStringLiteral("ANC"), QStringLiteral("BLH")}};
    };
}

void tst_designed_run::asksTokenAfterToken()
{
    const QByteArray all = "SELECT TOP 1 {*PID*} AS p, {DATE*1|2|1|Visits|From|To||} AS a, {DATE*2} AS b "
                           "FROM CorvaneDB.dbo.payers WHERE payer_id IN {*SQL01*}name|payer_id|CorvaneDB.dbo.payers||Who|1|1|{*/SQL*}";
    QCOMPARE(open({layout("Main", all, {"[p]", "[a]", "[b]"})}), RunResult::Done);
    QCOMPARE(host().patientAsked, 1);
    QCOMPARE(host().asked.size(), 2);
    QVERIFY(host().asked[0].startsWith(QStringLiteral("dates SELECT TOP 1 '1001' AS p")));
    QVERIFY(host().asked[1].contains(QStringLiteral("'11/03/2026' AS a, '11/04/2026' AS b FROM Clinic.dbo.payers WHERE payer_id IN {*SQL01*}name|payer_id|Clinic.dbo")));
    QCOMPARE(m_program->text(), QStringLiteral("1001\t11/03/2026\t11/04/2026"));
    QCOMPARE(host().buttonsOn(), QStringLiteral("0 2 3 4 5 6"));
    QVERIFY(host().menu(ReportMenu::mnuFPrint) && host().menu(ReportMenu::mnuFSendTo));
    QCOMPARE(host().messages, QStringList());
}

void tst_designed_run::aReportWithoutTokensAsksNothing()
{
    QCOMPARE(open({layout("Main", "SELECT 1 AS one", {"[one]"})}), RunResult::Done);
    QCOMPARE(m_program->text(), QStringLiteral("1"));
    QCOMPARE(host().patientAsked + host().asked.size(), 0);
    QCOMPARE(host().buttonsOn(), QStringLiteral("0 2 4 5 6"));
    QCOMPARE(m_program->run.document()->info.title, QStringLiteral("Main"));
    QCOMPARE(open({layout("Main\" title=\"Ledger", "SELECT 1 AS one", {"[one]"})}), RunResult::Done);
    QCOMPARE(m_program->run.document()->info.title, QStringLiteral("Ledger"));
}

void tst_designed_run::cancelling_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<QString>("buttons");
    QTest::newRow("the patient search") << kPatients << QStringLiteral("0 3 5");
    QTest::newRow("the date question") << kDates << QStringLiteral("0 5");
    QTest::newRow("the selection") << kPayers << QStringLiteral("0 5");
    QTest::newRow("a record source that is empty") << QByteArray(" ") << QStringLiteral("0 5");
}

void tst_designed_run::cancelling()
{
    QFETCH(QByteArray, sql);
    host().answerPatient = {};
    host().answerDates.reset();
    host().answerSelection = {};
    QCOMPARE(open({layout("Main", sql, {"1"})}), RunResult::Stopped);
    QCOMPARE(host().messages, QStringList(QStringLiteral("Report Canceled|64|Report has been canceled.")));
    QTEST(host().buttonsOn(), "buttons");
    QVERIFY(!host().menu(ReportMenu::mnuFPrint) && !host().menu(ReportMenu::mnuFSendTo));
    QVERIFY(!m_program->run.document());
}

void tst_designed_run::aNewPatientLeavesNoTraceOfTheFirst()
{
    const QByteArray all = "SELECT p.id, p.last_name, {DATE*1|1|0||On||11/01/2026||} AS d FROM CorvaneDB.dbo.patient_info p WHERE p.id = {*PID*}"
                           " AND 'ANC' IN {*SQL01*}name|payer_id|CorvaneDB.dbo.payers||Who|1|1|{*/SQL*}";
    QCOMPARE(open({layout("Main", all, {"[id]", "[last_name]", "[d]", "{patient}"})}), RunResult::Done);
    const QString first = m_program->text();
    const QString firstName = m_program->state.gPatientText;
    QVERIFY2(first.startsWith(QStringLiteral("1001\t")), qPrintable(first));
    QVERIFY(choosePatient(m_program->state, QStringLiteral("1002")));
    host().reRun = true;
    host().answerDates.reset();
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QCOMPARE(host().patientAsked, 1);
    QCOMPARE(host().asked.size(), 2);
    const QString second = m_program->text();
    QVERIFY2(second.startsWith(QStringLiteral("1002\t")), qPrintable(second));
    QVERIFY(second.contains(QStringLiteral("\t11/03/2026\t")));
    QVERIFY(!second.contains(QStringLiteral("1001")) && !second.contains(firstName));
    QVERIFY(m_program->run.prepareExcel());
    const DataControl &fg = m_program->run.dataControl();
    QCOMPARE(fg.rowset()->rowCount(), 1);
    QCOMPARE(valueText(fg.rowset()->value(0, 0), {}), QStringLiteral("1002"));
    QVERIFY(!fg.recordSource().contains(QStringLiteral("1001")));
}

void tst_designed_run::aReRunWithoutAnswersIsCancelled()
{
    host().answerDates.reset();
    QCOMPARE(open({layout("Main", kDates, {"[a]"})}), RunResult::Stopped);
    host().reRun = true;
    QCOMPARE(m_program->run.runReport(), RunResult::Stopped);
    QCOMPARE(host().asked.size(), 1);
}

void tst_designed_run::tokensThatNothingReplaces_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<bool>("reRun");
    QTest::addColumn<int>("asked");
    QTest::addColumn<QString>("token");
    QTest::newRow("a patient token in small letters") << QByteArray("SELECT {*pid*}") << false << 100 << QStringLiteral("\"{*pid*}\"");
    QTest::newRow("and in a re-run") << QByteArray("SELECT {*pid*}") << true << 0 << QStringLiteral("\"{*pid*}\"");
    QTest::newRow("a date token in small letters") << QByteArray("SELECT {date*1|1|0||On|||}") << false << 0 << QStringLiteral("\"{date*1|\"");
    QTest::newRow("a selection token in small letters") << QByteArray("SELECT {*sql01*}a|b|c||d|0|0|{*/sql*}") << false << 0 << QStringLiteral("\"{*sql01*}\"");
}

void tst_designed_run::tokensThatNothingReplaces()
{
    QFETCH(QByteArray, sql);
    QFETCH(bool, reRun);
    QFETCH(int, asked);
    QFETCH(QString, token);
    m_demo.write(QStringLiteral("Reports/designed.rpt"), file({layout("Main", sql, {"1"})}));
    if (reRun) {
        QCOMPARE(open({layout("Main", "SELECT {*PID*}", {"1"})}), RunResult::Done);
        host().patientAsked = 0;
        host().reRun = true;
        m_demo.write(QStringLiteral("Reports/designed.rpt"), file({layout("Main", sql, {"1"})}));
        QCOMPARE(m_program->run.runReport(), RunResult::Failed);
    } else {
        QCOMPARE(m_program->run.openListed(m_demo.report(QStringLiteral("designed.rpt"))), RunResult::Failed);
    }
    QCOMPARE(host().patientAsked, asked);
    QCOMPARE(host().messages.size(), 1);
    QVERIFY2(host().messages[0].contains(token), qPrintable(host().messages[0]));
}

void tst_designed_run::layoutsGoIntoTheirSlots_data()
{
    QTest::addColumn<QByteArrayList>("names");
    QTest::addColumn<QString>("text");
    QTest::newRow("two places") << QByteArrayList({"SubreportTwo", "SubreportOne"}) << QStringLiteral("main SubreportOne SubreportTwo");
    QTest::newRow("an unknown name takes the slot chosen last")
        << QByteArrayList({"SubreportTwo", "SubreportSeven"}) << QStringLiteral("main SubreportSeven");
    QTest::newRow("an unknown name alone takes the first slot") << QByteArrayList({"My Subreport"}) << QStringLiteral("main My Subreport");
    QTest::newRow("the case counts") << QByteArrayList({"subreportOne"}) << QStringLiteral("main");
}

void tst_designed_run::layoutsGoIntoTheirSlots()
{
    QFETCH(QByteArrayList, names);
    QByteArrayList layouts {layout("Main", "SELECT 'main' AS m", {"[m]"}, place("SubreportOne") + place("SubreportTwo").replace("3in\" y", "5in\" y"))};
    for (const QByteArray &name : names)
        layouts += layout(name, "SELECT '" + name + "' AS m", {"[m]"});
    QCOMPARE(open(layouts), RunResult::Done);
    QTEST(m_program->text().simplified(), "text");
}

void tst_designed_run::answersReachTheSubreports()
{
    const QByteArray sub = "SELECT {DATE*1} AS a, {DATE*2} AS b, COUNT(*) AS n FROM CorvaneDB.dbo.payers WHERE payer_id IN **INSSQL01**";
    const QByteArray main = "SELECT {DATE*1|2|1|Visits|From|To||} AS a FROM CorvaneDB.dbo.payers WHERE payer_id = 'ANC' AND payer_id IN {*SQL01*}name|payer_id|CorvaneDB.dbo.payers||Who|1|1|{*/SQL*}";
    QCOMPARE(open({layout("Main", main, {"[a]"}, place("SubreportSix")), layout("SubreportSix", sub, {"[a]", "[b]", "[n]"})}), RunResult::Done);
    QCOMPARE(m_program->text().simplified(), QStringLiteral("11/03/2026 11/03/2026 11/04/2026 2"));
    // The next report starts with nothing of it.
    QCOMPARE(open({layout("Main", "SELECT 1 AS one", {"[one]"}, place("SubreportSix"))}), RunResult::Done);
    QCOMPARE(m_program->text(), QStringLiteral("1"));
    QVERIFY(!m_program->state.DateParamTable && m_program->state.SelectParamTable.empty());
}

void tst_designed_run::theResolvedReadingAsksForParameters()
{
    const QByteArray sql = "PARAMETERS [First day] DateTime #11/01/2026#, who Text; SELECT [First day] AS d, who AS w, #11/09/2026# AS e";
    m_program->state.commandLine = QStringLiteral("--folder x RecSrcTrue");
    host().answerParameters = ParameterAnswers {{QStringLiteral("first day"), QDate(2026, 11, 5)}, {QStringLiteral("who"), QStringLiteral("O'Hara")}};
    QCOMPARE(open({layout("Main", sql, {"[d]", "[w]", "[e]", "{Who}"})}), RunResult::Done);
    QCOMPARE(host().asked, QStringList({QStringLiteral("parameter First day"), QStringLiteral("parameter who")}));
    QCOMPARE(m_program->text(), QStringLiteral("11/05/2026\tO'Hara\t11/09/2026\tO'Hara"));
    host().answerParameters.reset();
    QCOMPARE(open({layout("Main", sql, {"[d]"})}), RunResult::Stopped);
    // As stored the text goes to the server, which does not know such a clause.
    m_program->state.commandLine.clear();
    QCOMPARE(open({layout("Main", sql, {"[d]"})}), RunResult::Failed);
    QCOMPARE(host().asked.size(), 4);
}

void tst_designed_run::theProcedureNeverRunsAnythingElse()
{
    QCOMPARE(open({layout("x'] DELETE FROM passwords --", "SELECT 1 AS one", {"[one]"})}), RunResult::Failed);
    QVERIFY2(host().messages.last().contains(QStringLiteral("Give the layout another name.")), qPrintable(host().messages.last()));
}

void tst_designed_run::aProcedureThatIsNotThereIsNoFailure()
{
    // The first layout is the main one, whatever its name; it fills a slot too.
    QCOMPARE(open({layout("SubreportOne", "SELECT 1 AS one", {"[one]"}, place("SubreportTwo"))}), RunResult::Done);
    QCOMPARE(host().messages, QStringList());
}

void tst_designed_run::failuresSayWhatAndWhere_data()
{
    QTest::addColumn<QByteArrayList>("layouts");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("a query that the server refuses") << QByteArrayList({layout("Main", "SELECT nothing FROM nowhere", {"1"})})
                                                     << QStringList({QStringLiteral("Corvane|16|Error rendering report. "), QStringLiteral("nowhere")});
    QTest::newRow("a column that is not there") << QByteArrayList({layout("Main", "SELECT 1 AS one", {"[two]"})})
                                                << QStringList({QStringLiteral("Corvane|16|Error rendering report. "), QStringLiteral("two")});
    QTest::newRow("an expression that does not parse") << QByteArrayList({layout("Main", "SELECT 1 AS one", {"[one"})})
                                                       << QStringList({QStringLiteral("designed.rpt"), QStringLiteral("line")});
    QTest::newRow("no layout at all") << QByteArrayList() << QStringList(QStringLiteral("designed.rpt"));
}

void tst_designed_run::failuresSayWhatAndWhere()
{
    QFETCH(QByteArrayList, layouts);
    QFETCH(QStringList, words);
    QCOMPARE(open(layouts), RunResult::Failed);
    QCOMPARE(host().messages.size(), 1);
    for (const QString &word : words)
        QVERIFY2(host().messages[0].contains(word), qPrintable(host().messages[0]));
    QCOMPARE(host().buttonsOn(), QStringLiteral("0 5"));
    QVERIFY(!m_program->run.document() && !host().hourglass);
    QCOMPARE(open({layout("Main", "SELECT 1 AS one", {"[one]"})}), RunResult::Done);
}

void tst_designed_run::theSpreadsheetGetsEveryRow()
{
    QCOMPARE(open({layout("Main", "SELECT payer_id, name FROM CorvaneDB.dbo.payers", {"[name]"})}), RunResult::Done);
    QVERIFY(!m_program->run.dataControl().rowset());
    QVERIFY(m_program->run.prepareExcel());
    const RowsetPtr rows = m_program->run.dataControl().rowset();
    QCOMPARE(rows->rowCount(), m_program->run.timings().rows);
    QCOMPARE(rows->fieldNames(), QStringList({QStringLiteral("payer_id"), QStringLiteral("name")}));
    QCOMPARE(m_program->text().count(u'\n') + 1, rows->rowCount());
}

QTEST_MAIN(tst_designed_run)
#include "tst_designed_run.moc"
