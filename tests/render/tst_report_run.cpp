#include "render/report_run.h"
#include "session/logon.h"
#include "session/startup.h"
#include "support/demo_folder.h"
#include "support/document_dump.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtTest/QtTest>

#include <memory>

using namespace corvane;

namespace {

/// A logged-on program without a window.
struct Program {
    explicit Program(const QString &folder)
    {
        state.programFolder = folder;
        connectDatabases(state, host);
        logOn(state, host, QStringLiteral("nora"), QStringLiteral("clinic"));
        host.menus = {false, true, true};
    }

    QString text() const { return run.document() ? documentText(*run.document()) : QString(); }

    Reportr state;
    test::RecordingHost host;
    ReportRun run {state, host, host, QLocale::c()};
};

const QString kOrderMessage = QStringLiteral("Corvane|48|Start Date must be earlier than End Date.");

} // namespace

class tst_report_run : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void composesHeadingLinesHeaderAndFooter_data();
    void composesHeadingLinesHeaderAndFooter();
    void setsStatesForTheReport_data();
    void setsStatesForTheReport();
    void asksForDatesOnlyWhileOpening();
    void asksForThePatientOnlyWhileOpening();
    void refusesDatesThatDoNotFit();
    void choosesTheDatabase();
    void aReportLooksTheSameWhateverRanBefore();
    void failuresLeaveTheWindowUsable_data();
    void failuresLeaveTheWindowUsable();
    void aRefusedQueryLeavesAnIncompleteDocument();
    void stopsOnRequest_data();
    void stopsOnRequest();
    void stopsWhileAQueryRuns_data();
    void stopsWhileAQueryRuns();
    void checksFilesOpenedByPath_data();
    void checksFilesOpenedByPath();
    void nothingRunsWithoutALogon();
    void aLostConnectionComesBackWithTheNextRun();
    void survivesACorruptDatabase();

private:
    QString write(const QByteArray &definition)
    {
        m_demo.write(QStringLiteral("Reports/test.rpt"), definition);
        return m_demo.report(QStringLiteral("test.rpt"));
    }

    test::DemoFolder m_demo;
    std::unique_ptr<Program> m_program;
};

void tst_report_run::init()
{
    Suite::init();
    m_program = std::make_unique<Program>(m_demo.path());
    QCOMPARE(m_program->host.messages, QStringList());
}

void tst_report_run::composesHeadingLinesHeaderAndFooter_data()
{
    QTest::addColumn<QByteArray>("more");
    QTest::addColumn<QStringList>("firstBlocks");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QString>("footer");

    const QString date = QStringLiteral("Date of Report: 11/02/2026");
    const QString now = QStringLiteral("11/02/2026 8:05 AM");
    QTest::newRow("no keys") << QByteArray() << QStringList({date, QString(), QStringLiteral("Id|Name")})
                             << QStringLiteral("||") << QStringLiteral("Database: Clinic||");
    QTest::newRow("a brace brings the date, whatever stands beside it")
        << QByteArray("[Header]\nLText=Printed {Date} now\nCText=Title\nRText=}\n[Footer]\nLText=never\nCText=Page %d\nRText={Date}\n")
        << QStringList({date, QString(), QStringLiteral("Id|Name")}) << QString(now + u"|Title|" + now)
        << QString(u"Database: Clinic|Page %d|" + now);
    QTest::newRow("dates") << QByteArray("[Data Source]\nx=\n") << QStringList({date}) << QStringLiteral("||") << QStringLiteral("Database: Clinic||");
    QTest::newRow("a patient line of its own") << QByteArray("@GetPatient=True")
                                               << QStringList({date, QString(), QStringLiteral("Patient: O'Neill, Ann"), QString(), QStringLiteral("Id|Name")})
                                               << QStringLiteral("||") << QStringLiteral("Database: Clinic||");
    QTest::newRow("a date range") << QByteArray("@GetDates=True")
                                  << QStringList({QStringLiteral("Dates of Report: 11/02/2026 to 11/02/2026"), QString(), QStringLiteral("Id|Name")})
                                  << QStringLiteral("||") << QStringLiteral("Database: Clinic||");
    QTest::newRow("the switches are compared exactly") << QByteArray("@GetDates=true\nGetPatient=TRUE")
                                                       << QStringList({date, QString(), QStringLiteral("Id|Name")})
                                                       << QStringLiteral("||") << QStringLiteral("Database: Clinic||");
}

void tst_report_run::composesHeadingLinesHeaderAndFooter()
{
    QFETCH(QByteArray, more);
    QFETCH(QStringList, firstBlocks);
    QByteArray definition = test::providerList(more.startsWith('@') ? QByteArray() : more);
    if (more.startsWith('@'))
        definition.replace("[Columns]", QByteArray(more.sliced(1) + "\n[Columns]"));
    m_program->state.gPatientText = QStringLiteral("O'Neill, Ann");
    QCOMPARE(m_program->run.openListed(write(definition)), RunResult::Done);
    const Document &document = *m_program->run.document();
    QCOMPARE(test::blockTexts(document, 0).first(firstBlocks.size()), firstBlocks);
    const auto parts = [](const Furniture &furniture) { return QString(furniture.left + u'|' + furniture.centre + u'|' + furniture.right); };
    QTEST(parts(document.header), "header");
    QTEST(parts(document.footer), "footer");
    QCOMPARE(document.info.user, QStringLiteral("nora"));
    QCOMPARE(document.info.report, QStringLiteral("test.rpt"));
}

void tst_report_run::setsStatesForTheReport_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("buttons");
    QTest::newRow("neither dates nor patient") << QByteArray() << QStringLiteral("0 2 4 5 6");
    QTest::newRow("dates") << QByteArray("GetDates=True\n") << QStringLiteral("0 1 2 4 5 6");
    QTest::newRow("patient") << QByteArray("GetPatient=True\n") << QStringLiteral("0 2 3 4 5 6");
    QTest::newRow("both") << QByteArray("GetDates=True\nGetPatient=True\n") << QStringLiteral("0 1 2 3 4 5 6");
}

void tst_report_run::setsStatesForTheReport()
{
    QFETCH(QByteArray, keys);
    QString whileRunning;
    m_program->host.onProgress = [&](int percent) {
        if (percent == 100)
            whileRunning = m_program->host.buttonsOn() + (m_program->host.hourglass ? u" hourglass" : u"");
    };
    m_program->host.reRun = true;
    QByteArray definition = test::providerList();
    definition.replace("[Columns]", QByteArray(keys + "[Columns]"));
    QCOMPARE(m_program->run.openListed(write(definition)), RunResult::Done);
    QCOMPARE(whileRunning, QStringLiteral(" hourglass"));
    QTEST(m_program->host.buttonsOn(), "buttons");
    QVERIFY(!m_program->host.hourglass);
    QVERIFY(!m_program->host.promptParams);
    QVERIFY(!m_program->host.bDatesChanged);
    QVERIFY(!m_program->host.reRun);
    QCOMPARE(m_program->host.rptType, 1);
    for (const ReportMenu menu : {ReportMenu::mnuFProps, ReportMenu::mnuFPrint, ReportMenu::mnuFSendTo})
        QVERIFY(m_program->host.menu(menu));
    QCOMPARE(m_program->run.dataControl().rowset()->rowCount(), m_program->run.timings().rows);
}

void tst_report_run::asksForDatesOnlyWhileOpening()
{
    QByteArray definition = test::providerList();
    definition.replace("[Columns]", "GetDates=True\n[Columns]");
    m_program->host.answerRange = [&] { m_program->host.setDates(QDate(2026, 11, 1), QDate(2026, 11, 30)); };
    QCOMPARE(m_program->run.openListed(write(definition)), RunResult::Done);
    QCOMPARE(m_program->host.rangeAsked, 1);
    QVERIFY(m_program->text().startsWith(QStringLiteral("Dates of Report: 11/01/2026 to 11/30/2026\n")));
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QCOMPARE(m_program->host.rangeAsked, 1);
    QVERIFY(m_program->text().startsWith(QStringLiteral("Dates of Report: 11/01/2026 to 11/30/2026\n")));
    QCOMPARE(m_program->run.openReport(m_demo.report(QStringLiteral("test.rpt"))), RunResult::Done);
    QCOMPARE(m_program->host.rangeAsked, 2);
}

void tst_report_run::asksForThePatientOnlyWhileOpening()
{
    m_program->host.answerPatient = [&] {
        m_program->state.gPatientID = QStringLiteral("1001");
        m_program->state.gPatientText = QStringLiteral("Abbott, Ann G.");
    };
    QCOMPARE(m_program->run.openListed(m_demo.report(QStringLiteral("Patient visits.rpt"))), RunResult::Done);
    QCOMPARE(m_program->host.patientAsked, 1);
    QCOMPARE(m_program->host.rangeAsked, 1);
    QVERIFY(m_program->run.dataControl().recordSource().contains(QStringLiteral("a.patient_id = '1001'")));
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QCOMPARE(m_program->host.patientAsked, 1);
}

void tst_report_run::refusesDatesThatDoNotFit()
{
    QByteArray ranged = test::providerList();
    ranged.replace("[Columns]", "GetDates=True\n[Columns]");
    m_program->run.openListed(write(ranged));
    const DocumentPtr before = m_program->run.document();
    m_program->host.setDates(QDate(2026, 11, 3), QDate(2026, 11, 2));
    QCOMPARE(m_program->run.runReport(), RunResult::NotRun);
    m_program->host.from = {QStringLiteral("11/__/____"), std::nullopt};
    QCOMPARE(m_program->run.runReport(), RunResult::NotRun);
    QCOMPARE(m_program->host.messages, QStringList({kOrderMessage, kOrderMessage}));
    QCOMPARE(m_program->run.document(), before);

    // A report without a range prints its From date alone: the order does not matter to it.
    m_program->run.openListed(write(test::providerList()));
    m_program->host.setDates(QDate(2026, 11, 3), QDate(2026, 11, 2));
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    m_program->host.to = {QString(), std::nullopt};
    QCOMPARE(m_program->run.runReport(), RunResult::NotRun);
}

void tst_report_run::choosesTheDatabase()
{
    QCOMPARE(m_program->run.openListed(m_demo.report(QStringLiteral("Claims by payer.rpt"))), RunResult::Done);
    QCOMPARE(m_program->run.document()->footer.left, QStringLiteral("Database: Halvern"));
    QCOMPARE(m_program->state.gConn->connectionText(), m_program->state.gHvnConnectString);
    QCOMPARE(m_program->run.dataControl().connectionString(), m_program->state.gHvnConnectString);
    QCOMPARE(m_program->run.openListed(write(test::providerList())), RunResult::Done);
    QCOMPARE(m_program->state.gConn->connectionText(), m_program->state.gConnectString);

    m_program->state.gHvnConnectString.clear();
    QCOMPARE(m_program->run.openListed(m_demo.report(QStringLiteral("Claims by payer.rpt"))), RunResult::SecondDatabaseMissing);
    QCOMPARE(m_program->host.messages, QStringList());
    QCOMPARE(m_program->host.buttonsOn(), QString());
    QVERIFY(!m_program->run.document());
    QVERIFY(m_program->host.menu(ReportMenu::mnuFPrint));
    QCOMPARE(m_program->run.openListed(m_demo.report(QStringLiteral("test.rpt"))), RunResult::Done);
}

void tst_report_run::aReportLooksTheSameWhateverRanBefore()
{
    const QString plain = write(test::providerList().replace("Font=Arial;9\nFontsize=9\n", ""));
    m_program->run.openListed(plain);
    const QStringList first = test::dump(*m_program->run.document());
    for (const char *other : {"Phone list.rpt", "Claims by payer.rpt", "Therapist notes.rpt"}) {
        m_program->run.openListed(m_demo.report(QString::fromLatin1(other)));
        m_program->run.openListed(plain);
        QCOMPARE(test::dump(*m_program->run.document()), first);
    }
}

void tst_report_run::failuresLeaveTheWindowUsable_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QString>("words");

    const QByteArray list = test::providerList();
    const auto changed = [&](const char *from, const char *to) { return QByteArray(list).replace(from, to); };
    QTest::newRow("an ordinal beyond the fields") << changed("Fields=0|1", "Fields=0|7") << QStringLiteral("Error 3265: The query returns 2 fields");
    QTest::newRow("a format that is none") << changed("Spacing=2000|3000;", "Spacing=abc|;") << QStringLiteral("Error 5: The column layout \"abc|;\" cannot be used: \"abc\" is no column width");
    QTest::newRow("a negative width") << changed("Spacing=2000", "Spacing=-2000") << QStringLiteral("is not above 0");
    QTest::newRow("a huge width") << changed("Spacing=2000", "Spacing=99999") << QStringLiteral("beyond 32760 twips");
    QTest::newRow("a number beyond 16 bits") << changed("PageColumns=1", "PageColumns=40000") << QStringLiteral("Error 6: Overflow: \"PageColumns\" of [Columns] is 40000");
    QTest::newRow("a font size that is none") << changed("Fontsize=9", "Fontsize=900") << QStringLiteral("The font size 900");
    QTest::newRow("a value that is no number") << list + "[ColumnFormat]\n1=MinToTime\n" << QStringLiteral("Error 13: Type mismatch");
    QTest::newRow("an error in the middle of the rows")
        << changed("SELECT provider_id, last_name FROM CorvaneDB.dbo.providers ORDER BY provider_id",
               "SELECT id, CASE WHEN id > 100 THEN abs(-9223372036854775807 - 1) ELSE id END FROM CorvaneDB.dbo.patient_info")
        << QString(); // the test run finds it: "SQL Error"
    QTest::newRow("a missing definition") << QByteArray() << QStringLiteral("there is no such file");
}

void tst_report_run::failuresLeaveTheWindowUsable()
{
    QFETCH(QByteArray, definition);
    QFETCH(QString, words);
    const QString path = write(definition);
    if (definition.isEmpty())
        QFile::remove(path);
    const RunResult result = m_program->run.openListed(path);
    QCOMPARE(m_program->host.messages.size(), 1);
    const QString &message = m_program->host.messages[0];
    QVERIFY(!m_program->host.promptParams);
    QVERIFY(!m_program->host.hourglass);
    QVERIFY(!m_program->run.hasWholeDocument());
    if (words.isEmpty()) {
        QCOMPARE(result, RunResult::QueryRefused);
        QVERIFY2(message.startsWith(QStringLiteral("SQL Error|48|Error in SQL Query. ")), qPrintable(message));
    } else {
        QCOMPARE(result, RunResult::Failed);
        QVERIFY2(message.startsWith(QStringLiteral("Corvane|16|The report \"test.rpt\" could not be run.\n\n")), qPrintable(message));
        QVERIFY2(message.contains(words), qPrintable(message));
        QVERIFY(!m_program->run.document());
        QCOMPARE(m_program->host.buttonsOn(), definition.isEmpty() ? QStringLiteral("0 5") : QStringLiteral("0 4 5"));
        QVERIFY(!m_program->host.menu(ReportMenu::mnuFPrint));
        QVERIFY(!m_program->host.menu(ReportMenu::mnuFSendTo));
    }
    QCOMPARE(m_program->run.openListed(write(test::providerList())), RunResult::Done);
    QVERIFY(m_program->run.hasWholeDocument());
    QVERIFY(m_program->host.menu(ReportMenu::mnuFPrint));
}

void tst_report_run::aRefusedQueryLeavesAnIncompleteDocument()
{
    const QString path = write(test::providerList().replace("provider_id, last_name", "nothing"));
    QCOMPARE(m_program->run.openListed(path), RunResult::QueryRefused);
    QCOMPARE(m_program->host.messages.size(), 1);
    QVERIFY(m_program->host.messages[0].startsWith(QStringLiteral("SQL Error|48|Error in SQL Query. no such column: nothing")));
    QVERIFY(m_program->run.document());
    QVERIFY(!m_program->run.document()->isWhole);
    QCOMPARE(m_program->host.buttonsOn(), QStringLiteral("0 2 4 5 6"));
}

void tst_report_run::stopsOnRequest_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("buttons");
    QTest::newRow("nothing asked") << QByteArray() << QStringLiteral("0 5");
    QTest::newRow("with a range to shorten") << QByteArray("GetDates=True") << QStringLiteral("0 1 5");
    QTest::newRow("with a patient to change") << QByteArray("GetPatient=True") << QStringLiteral("0 3 5");
}

void tst_report_run::stopsOnRequest()
{
    QFETCH(QByteArray, key);
    m_program->host.onProgress = [&](int percent) { m_program->host.stop = percent > 50; };
    QCOMPARE(m_program->run.openListed(write(test::providerList().replace("[Columns]", QByteArray(key + "\n[Columns]")))), RunResult::Stopped);
    QCOMPARE(m_program->host.messages, QStringList(QStringLiteral("Report Canceled|64|Report has been canceled.")));
    QTEST(m_program->host.buttonsOn(), "buttons");
    QVERIFY(!m_program->run.document());
    QVERIFY(!m_program->run.dataControl().rowset());
    QVERIFY(!m_program->host.menu(ReportMenu::mnuFPrint));
    QVERIFY(!m_program->host.menu(ReportMenu::mnuFSendTo));
    QVERIFY(!m_program->host.hourglass);
    QCOMPARE(m_program->host.progress, 0);
    m_program->host.onProgress = nullptr;
    m_program->host.stop = false;
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
    QVERIFY(m_program->host.menu(ReportMenu::mnuFPrint));
    QVERIFY(m_program->host.menu(ReportMenu::mnuFSendTo));
}

void tst_report_run::stopsWhileAQueryRuns_data()
{
    QTest::addColumn<QByteArray>("definition");
    // One row, after minutes of work.
    QByteArray slow = "SELECT count(*) AS provider_id, 1 AS last_name FROM CorvaneDB.dbo.patient_info a";
    for (const char table : {'b', 'c', 'd'})
        slow += QByteArray(" JOIN CorvaneDB.dbo.patient_info ") + table + " ON " + table + ".id > a.id - 500";
    const auto layout = [](const QByteArray &name, const QByteArray &sql, const QByteArray &field) {
        return QByteArray("<Report name=\"" + name + "\"><RecordSource><![CDATA[" + sql
            + "]]></RecordSource><Section kind=\"detail\" height=\"0.2in\">" + field + "</Section></Report>");
    };
    const QByteArray xml = "<?xml version=\"1.0\"?>\n<Reports>";
    QTest::newRow("tabular") << test::providerList().replace("SELECT provider_id, last_name FROM CorvaneDB.dbo.providers ORDER BY provider_id", slow);
    QTest::newRow("designed") << QByteArray(xml + layout("Main", slow, "<Data column=\"last_name\" width=\"3in\" height=\"0.2in\"/>") + "</Reports>");
    QTest::newRow("sub-report") << QByteArray(xml
        + layout("Main", "SELECT 1 AS n", "<Subreport name=\"SubreportOne\" width=\"3in\" height=\"0.2in\"/>")
        + layout("SubreportOne", slow, "") + "</Reports>");
}

void tst_report_run::stopsWhileAQueryRuns()
{
    QFETCH(QByteArray, definition);
    int calls = 0;
    m_program->host.onProgress = [&](int) { m_program->host.stop = ++calls > 100; };
    QCOMPARE(m_program->run.openListed(write(definition)), RunResult::Stopped);
    QCOMPARE(m_program->host.messages, QStringList(QStringLiteral("Report Canceled|64|Report has been canceled.")));
    QVERIFY(!m_program->run.document());
    m_program->host.onProgress = nullptr;
    m_program->host.stop = false;
    QCOMPARE(m_program->run.openListed(write(test::providerList())), RunResult::Done);
}

void tst_report_run::checksFilesOpenedByPath_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("message");
    QTest::newRow("tabular") << test::providerList() << 1 << QString();
    QTest::newRow("neither") << QByteArray("hello") << 0
                             << QStringLiteral("Invalid Report File|16|File is either not a valid report file or is corrupted");
    QTest::newRow("a root too late") << QByteArray("<?xml version=\"1.0\"?>\n<!-- " + QByteArray(60, 'x') + " -->\n<Reports>") << 0
                                     << QStringLiteral("Invalid Report File|16|File is either not a valid report file or is corrupted");
}

void tst_report_run::checksFilesOpenedByPath()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    QFETCH(QString, message);
    m_program->host.menus = {true, false, false};
    const RunResult result = m_program->run.openReport(write(bytes));
    QCOMPARE(result, kind == 1 ? RunResult::Done : RunResult::NotRun);
    QCOMPARE(m_program->host.rptType, kind);
    QCOMPARE(m_program->host.messages, message.isEmpty() ? QStringList() : QStringList(message));
    QVERIFY(!m_program->host.promptParams);
    QCOMPARE(m_program->run.document() != nullptr, kind == 1);
    // Opened by path, a report leaves the two menu items as they were.
    QVERIFY(!m_program->host.menu(ReportMenu::mnuFPrint));
    QVERIFY(!m_program->host.menu(ReportMenu::mnuFSendTo));
}

void tst_report_run::nothingRunsWithoutALogon()
{
    const QString path = write(test::providerList());
    m_program->state.loggedOn = false;
    QCOMPARE(m_program->run.openListed(path), RunResult::NotRun);
    QCOMPARE(m_program->run.openReport(path), RunResult::NotRun);
    m_program->host.rptType = 1;
    QCOMPARE(m_program->run.runReport(), RunResult::NotRun);
    QCOMPARE(m_program->host.messages.size(), 3);
    QVERIFY(!m_program->run.document());
    m_program->host.rptType = 4;
    m_program->state.loggedOn = true;
    m_program->state.gRptFile = path;
    QCOMPARE(m_program->run.runReport(), RunResult::NotRun);
    QCOMPARE(m_program->host.messages.last(), QStringLiteral(" Unsupported Report Selection|4160|Report Type Not Yet Supported"));
}

void tst_report_run::aLostConnectionComesBackWithTheNextRun()
{
    const QString path = write(test::providerList());
    m_program->state.closeConn();
    QCOMPARE(m_program->run.openListed(path), RunResult::Done);
    QVERIFY(QFile::rename(m_demo.file(QStringLiteral("Data/Clinic.db")), m_demo.file(QStringLiteral("Data/away"))));
    QCOMPARE(m_program->run.runReport(), RunResult::Failed);
    QCOMPARE(m_program->host.messages.size(), 2);
    QVERIFY(m_program->host.messages[1].contains(QStringLiteral("Key InitialCatalog in section [SQLServer] of corvane.ini says \"Clinic\".")));
    QVERIFY(QFile::rename(m_demo.file(QStringLiteral("Data/away")), m_demo.file(QStringLiteral("Data/Clinic.db"))));
    QCOMPARE(m_program->run.runReport(), RunResult::Done);
}

void tst_report_run::survivesACorruptDatabase()
{
    m_demo.write(QStringLiteral("Data/Broken.db"), QByteArray(8192, 'x'));
    const QString path = write(test::providerList().replace("CorvaneDB.dbo.providers", "Broken.dbo.providers"));
    const RunResult result = m_program->run.openListed(path);
    QVERIFY(result == RunResult::Failed || result == RunResult::QueryRefused);
    QCOMPARE(m_program->host.messages.size(), 1);
    QFile::remove(m_demo.file(QStringLiteral("Data/Broken.db")));
}

QTEST_MAIN(tst_report_run)
#include "tst_report_run.moc"
