// corvane-batch check as a process: what it prints, and how it ends.

#include "support/demo_folder.h"
#include "support/host_program.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

class tst_batch_check : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void printsFindings_data();
    void printsFindings();
    void looksForReports();
    void saysHowItIsUsed();

private:
    struct Outcome {
        int status = -1;
        QString output;
        QString errors;
    };

    Outcome check(const QString &arguments, const QByteArray &input = {}) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_demo.file(QStringLiteral("Reports")));
        process.start(QStringLiteral(CORVANE_BATCH), QStringList {QStringLiteral("check")} + QProcess::splitCommand(arguments));
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), test::printedText(process.readAllStandardOutput()), test::printedText(process.readAllStandardError())};
    }

    test::DemoFolder m_demo {20};
};

void tst_batch_check::initTestCase()
{
    m_demo.write(QStringLiteral("Reports/Warned.rpt"), test::providerList("[Footer]\nLText=x\n"));
    m_demo.write(QStringLiteral("Reports/Refused.rpt"), test::providerList().replace("last_name", "nothing"));
    m_demo.write(QStringLiteral("Reports/Wrong.rpt"), test::providerList().replace("Fields=2", "Fields=3"));
}

void tst_batch_check::printsFindings_data()
{
    QTest::addColumn<QString>("arguments"); // %1 for the program folder
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *claim, const char *arguments, int status, const QByteArray &output) {
        QTest::newRow(claim) << QString::fromUtf8(arguments) << status << QString::fromUtf8(output).replace(QStringLiteral("./"), QDir::toNativeSeparators(QStringLiteral("./")));
    };
    const QByteArray warned = "./Warned.rpt:12:7: warning: The left footer text \"x\" is kept but not printed; the database's name stands there. Move it to CText or RText.\n";
    row("nothing to find", "\"./Phone list.rpt\" --folder %1", 0, "");
    row("warnings alone", "./Warned.rpt", 0, warned);
    row("an error", "./Wrong.rpt", 1, "./Wrong.rpt:3:8: error: Fields of [Data Source] is 3, but each list of [Columns] has 2 items. Write Fields=2.\n");
    row("one of several", "./Warned.rpt ./Missing.rpt", 1,
        warned + "./Missing.rpt:1:1: error: The report definition \"./Missing.rpt\" cannot be read: there is no such file. Look at its name and at your rights to it.\n");
    row("a query that is not tried", "./Refused.rpt --folder %1", 0, "");
    row("all queries tried", "\"Claims by payer\" \"Patient ledger\" \"Daily schedule\" --folder %1 --user nora", 0, "");
    row("no report", "--folder %1", 2, "");
    row("an option of nobody's", "x --what", 2, "");
    row("a user without a name", "x --user=", 2, "");
    row("a user without rights", "./Warned.rpt --folder %1 --user frontdesk", 3, "");
    row("no configuration", "./Warned.rpt --folder /nonexistent --user nora", 4, "");
}

void tst_batch_check::printsFindings()
{
    QFETCH(QString, arguments);
    const Outcome outcome = check(arguments.contains(u"%1") ? arguments.arg(m_demo.path()) : arguments);
    QTEST(outcome.output, "output");
    QTEST(outcome.status, "status");
    QCOMPARE(outcome.errors.isEmpty(), outcome.status < 2);
}

void tst_batch_check::looksForReports()
{
    // In the list of the program folder, and without one of that name in the working folder.
    const Outcome listed = check(QStringLiteral("wrong --folder ") + m_demo.path());
    QVERIFY2(listed.output.startsWith(QDir::toNativeSeparators(m_demo.report(QStringLiteral("Wrong.rpt"))) + u":3:8: error"), qPrintable(listed.output));
    const Outcome here = check(QStringLiteral("Wrong.rpt --folder /nonexistent"));
    QVERIFY2(here.output.startsWith(QStringLiteral("Wrong.rpt:3:8: error")), qPrintable(here.output));
    // Where no shell expands it.
    const Outcome both = check(QStringLiteral("W*ed.rpt *ong.rpt --folder /nonexistent"));
    QVERIFY2(both.output.contains(QStringLiteral("Warned.rpt:")) && both.output.contains(QStringLiteral("Wrong.rpt:3:8: error")), qPrintable(both.output));
    const Outcome tried = check(QStringLiteral("Refused.rpt --user nora --password-stdin --folder ") + m_demo.path(), "clinic\n");
    QCOMPARE(tried.status, 1);
    QVERIFY2(tried.output.contains(QStringLiteral("Refused.rpt:2:15: error: The database refuses the query: no such column: nothing.")), qPrintable(tried.output));
}

void tst_batch_check::saysHowItIsUsed()
{
    const Outcome help = check(QStringLiteral("--help"));
    QCOMPARE(help.status, 0);
    QVERIFY(help.output.contains(QStringLiteral("corvane-batch check REPORT...")));
    QVERIFY(help.output.contains(QStringLiteral("corvane-batch run REPORT")));
}

QTEST_GUILESS_MAIN(tst_batch_check)
#include "tst_batch_check.moc"
