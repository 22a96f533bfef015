// corvane-batch as a process: statuses, messages, files left and not left.

#include "support/demo_folder.h"
#include "support/hindrances.h"
#include "support/host_program.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

struct Outcome {
    int status = -1;
    QString errors;
};

} // namespace

class tst_batch : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void writesTheFilesAskedFor();
    void endsWithTheRightStatus_data();
    void endsWithTheRightStatus();
    void takesThePasswordEitherWay();
    void logsNobodyOnByOddBytes();
    void leavesNoFileBehindAFailure_data();
    void leavesNoFileBehindAFailure();
    void saysWhatItHasNoRightTo_data();
    void saysWhatItHasNoRightTo();
    void aCorruptDatabaseIsNoConnection();

private:
    Outcome batch(const QString &arguments, const QByteArray &input = {}, const QString &variable = QStringLiteral("clinic"),
        const QString &folder = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        if (!variable.isNull())
            environment.insert(QStringLiteral("CORVANE_PASSWORD"), variable);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_out.path());
        QStringList list = QProcess::splitCommand(arguments);
        if (list.value(0) == u"run" && !arguments.contains(u"--folder"))
            list += {QStringLiteral("--folder"), folder.isEmpty() ? m_demo.path() : folder};
        process.start(QStringLiteral(CORVANE_BATCH), list);
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
            return {-1, QStringLiteral("no normal end")};
        return {process.exitCode(), test::printedText(process.readAllStandardError())};
    }

    QByteArray output(const QString &name) const
    {
        QFile file(m_out.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    test::DemoFolder m_demo;
    QTemporaryDir m_out;
};

/// A name that a report could have and that leads to no definition.
void tst_batch::initTestCase()
{
    QFile huge(m_demo.report(QStringLiteral("huge.rpt")));
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(65) * 1024 * 1024)); // without blocks on the disk
}

void tst_batch::init()
{
    Suite::init();
    for (const QString &name : QDir(m_out.path()).entryList(QDir::Files))
        QFile::remove(m_out.filePath(name));
}

void tst_batch::writesTheFilesAskedFor()
{
    const Outcome outcome = batch(QStringLiteral(
        "run \"Daily schedule\" --user nora --from 2026-11-02 --to 11/02/2026 --pdf out.pdf --xls out.xls --text out.txt --timings"));
    QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
    QVERIFY(output(QStringLiteral("out.pdf")).startsWith("%PDF-1.7"));
    QVERIFY(output(QStringLiteral("out.txt")).startsWith("Dates of Report: 11/02/2026 to 11/02/2026\n\n"));
    QVERIFY(output(QStringLiteral("out.xls")).startsWith("\xd0\xcf\x11\xe0"));
    const QRegularExpression timings(QStringLiteral(
        "^query_ms=\\d+ compose_ms=\\d+ pdf_ms=\\d+ xls_ms=\\d+ rows=\\d+ pages=\\d+ peak_rss_kib=\\d+\n$"));
    QVERIFY2(timings.match(outcome.errors).hasMatch(), qPrintable(outcome.errors));
}

void tst_batch::endsWithTheRightStatus_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, const char *arguments, int status, const char *words) {
        QTest::newRow(name) << QString::fromLatin1(arguments) << status << QString::fromLatin1(words);
    };
    row("a listed name", "run \"phone LIST.rpt\" --user nora --text out.txt", 0, "");
    row("no such report", "run Nothing.rpt --user nora --text out.txt", 1, "There is no report \"Nothing.rpt\"");
    row("a path to nothing", "run ./Nothing.rpt --user nora --text out.txt", 1, "there is no such file");
    row("a pipe by path", "run ./pipe.rpt --user nora --text out.txt", 1, "is no file");
    row("a device behind a listed name", "run device.rpt --user nora --text out.txt", 1, "is no file");
    row("a definition without end", "run huge.rpt --user nora --text out.txt", 1, "more than is read");
    row("no report by path", "run Data/../corvane.ini --user nora --text out.txt", 1, "");
    row("From after To", "run \"Daily schedule\" --user nora --from 2026-11-03 --to 2026-11-02 --text out.txt", 1,
        "Start Date must be earlier than End Date.");
    row("a patient", "run \"Patient ledger\" --user nora --patient 1001 --text out.txt", 0, "");
    row("a patient that nobody has", "run \"Patient ledger\" --user nora --patient 999999 --text out.txt", 3, "There is no patient \"999999\" that nora may see.");
    row("a provider's own patient", "run \"Patient ledger\" --user brook --patient 1007 --text out.txt", 0, "");
    row("another provider's patient", "run \"Patient ledger\" --user brook --patient 1001 --text out.txt", 3, "There is no patient \"1001\" that brook may see");
    row("a patient is missing", "run \"Patient ledger\" --user nora --text out.txt", 2, "add --patient ID");
    row("usage", "run --user nora", 2, "Name one report");
    row("no user", "run x", 2, "--user ID is missing");
    row("no command", "", 2, "command is missing");
    row("a user without rights", "run \"Phone list\" --user frontdesk --text out.txt", 3, "Invalid UID or Password");
    row("an unknown user", "run \"Phone list\" --user nobody --text out.txt", 3, "Invalid UID or Password. Try again.");
    row("no corvane.ini", "run x --user nora --folder /nonexistent", 4, "CORVANE.INI - is missing");
}

void tst_batch::endsWithTheRightStatus()
{
    QFETCH(QString, arguments);
    QFETCH(QString, words);
    if (arguments.contains(u"pipe.rpt"))
        QVERIFY(test::makePipe(m_out.filePath(QStringLiteral("pipe.rpt"))));
    if (arguments.contains(u"device.rpt"))
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), m_demo.report(QStringLiteral("device.rpt"))));
    const bool isBrook = arguments.contains(u"--user brook");
    const Outcome outcome = batch(arguments, {}, isBrook ? QStringLiteral("hinge") : QStringLiteral("clinic"));
    QTEST(outcome.status, "status");
    QVERIFY2(outcome.errors.contains(words), qPrintable(outcome.errors));
    QVERIFY(!outcome.errors.contains(QStringLiteral("clinic\"")));
    QCOMPARE(QDir(m_out.path()).entryList(QDir::Files).size(), outcome.status == 0 ? 1 : 0);
}

void tst_batch::takesThePasswordEitherWay()
{
    const QString run = QStringLiteral("run \"Phone list\" --user nora --text out.txt");
    QCOMPARE(batch(run).status, 0);
    QCOMPARE(batch(run, {}, QString()).status, 3);
    QCOMPARE(batch(run, "ignored\n", QStringLiteral("wrong")).status, 3);
    const QString fromInput = run + u" --password-stdin";
    QCOMPARE(batch(fromInput, "clinic\n", QStringLiteral("wrong")).status, 0);
    QCOMPARE(batch(fromInput, "clinic\r\n", QString()).status, 0);
    QCOMPARE(batch(fromInput, "clinic", QString()).status, 0);
    QCOMPARE(batch(fromInput, "clinic \n", QString()).status, 3);
    QCOMPARE(batch(fromInput, "", QStringLiteral("clinic")).status, 3);
}

void tst_batch::logsNobodyOnByOddBytes()
{
    // Every byte that the boxes would not let in, through the password line.
    const QString run = QStringLiteral("run \"Phone list\" --user nora --text out.txt --password-stdin");
    QByteArray refused;
    for (int code = 1; code < 256; ++code) {
        if ((code < 48 || code > 126 || code == 124) && code != '\n' && code != '\r')
            refused += char(code);
    }
    for (qsizetype i = 0; i < refused.size(); i += 16)
        QCOMPARE(batch(run, "clinic" + refused.mid(i, 16) + "\n").status, 3);
    QCOMPARE(batch(run, QByteArray("clinic\0\n", 8)).status, 3);
    QCOMPARE(batch(QStringLiteral("run \"Phone list\" --user \"nora' OR '1'='1\" --text out.txt")).status, 3);
}

void tst_batch::leavesNoFileBehindAFailure_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("words");
    const QByteArray list = test::providerList();
    QTest::newRow("a failed query") << QByteArray(list).replace("last_name", "nothing")
                                    << QStringLiteral("--pdf out.pdf --text out.txt") << QStringLiteral("Error in SQL Query. no such column: nothing");
    QTest::newRow("a fault in the rows") << list + "[ColumnFormat]\n1=MinToTime\n"
                                         << QStringLiteral("--pdf out.pdf --text out.txt") << QStringLiteral("Error 13");
    QTest::newRow("a NUL byte ends the definition") << QByteArray("\0", 1) + list << QStringLiteral("--pdf out.pdf --text out.txt") << QString();
    QTest::newRow("text into a missing folder") << list << QStringLiteral("--pdf out.pdf --text none/out.txt") << QStringLiteral("The text file \"%1\" was not saved. The folder").arg(QDir::toNativeSeparators(QStringLiteral("none/out.txt")));
    QTest::newRow("PDF into a missing folder") << list << QStringLiteral("--pdf none/out.pdf --text out.txt") << QStringLiteral("out.pdf");
    QTest::newRow("workbook into a missing folder") << list << QStringLiteral("--pdf out.pdf --xls none/out.xls") << QStringLiteral("out.xls");
    QTest::newRow("a workbook without rows") << QByteArray(list).replace("ORDER BY", "WHERE 1 = 0 ORDER BY")
                                             << QStringLiteral("--pdf out.pdf --xls out.xls") << QStringLiteral("There are no rows to save.");
    QTest::newRow("a printer that is not there") << list << QStringLiteral("--pdf out.pdf --text out.txt --print Nowhere")
                                                 << QStringLiteral("There is no printer \"Nowhere\"");
    QTest::newRow("PDF over a folder") << list << QStringLiteral("--pdf . --text out.txt") << QString();
}

void tst_batch::leavesNoFileBehindAFailure()
{
    QFETCH(QByteArray, definition);
    QFETCH(QString, files);
    QFETCH(QString, words);
    m_demo.write(QStringLiteral("Reports/test.rpt"), definition);
    const QStringList older {QStringLiteral("out.pdf"), QStringLiteral("out.txt"), QStringLiteral("out.xls")};
    for (const bool isThere : {false, true}) {
        for (const QString &name : isThere ? older : QStringList()) {
            QFile file(m_out.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("older") == 5);
        }
        const Outcome outcome = batch(QStringLiteral("run test.rpt --user nora ") + files);
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.contains(words), qPrintable(outcome.errors));
        QVERIFY(!outcome.errors.isEmpty());
        QCOMPARE(QDir(m_out.path()).entryList(QDir::Files | QDir::Hidden), isThere ? older : QStringList());
        for (const QString &name : older)
            QCOMPARE(output(name), QByteArray(isThere ? "older" : ""));
    }
    QFile::remove(m_demo.report(QStringLiteral("test.rpt")));
}

void tst_batch::saysWhatItHasNoRightTo_data()
{
    QTest::addColumn<QString>("locked"); // below the program folder; without any right while the case runs
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("words");
    QTest::newRow("the definition") << QStringLiteral("Reports/Phone list.rpt") << 1 << QStringLiteral("cannot be read: Permission denied");
    QTest::newRow("the reports' folder") << QStringLiteral("Reports") << 1 << QStringLiteral("There is no report");
    QTest::newRow("the databases' folder") << QStringLiteral("Data") << 4 << QStringLiteral("Error connecting to database!");
    QTest::newRow("the database") << QStringLiteral("Data/Clinic.db") << 4 << QStringLiteral("Error connecting to database!");
    QTest::newRow("the output's folder") << QStringLiteral("out") << 1 << QStringLiteral("out.txt\" was not saved. You may not write in the folder");
}

/// Root may read and write everything, so the program runs as somebody who may not.
void tst_batch::saysWhatItHasNoRightTo()
{
    QFETCH(QString, locked);
    QFETCH(QString, words);
    m_demo.write(QStringLiteral("out/.keep"), {});
    const QString program = m_demo.file(QStringLiteral("corvane-batch"));
    if (!QFile::exists(program))
        QVERIFY(QFile::copy(QStringLiteral(CORVANE_BATCH), program));
    QCOMPARE(QProcess::execute(QStringLiteral("chmod"), {QStringLiteral("-R"), QStringLiteral("a+rX"), m_demo.path()}), 0);
    const QString path = m_demo.file(locked);
    const QFile::Permissions old = QFile::permissions(path);
    QVERIFY(QFile::setPermissions(path, {}));

    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
    environment.insert(QStringLiteral("HOME"), QStringLiteral("/nonexistent"));
    process.setProcessEnvironment(environment);
    QStringList command = test::asUnprivileged({program, QStringLiteral("run"), QStringLiteral("Phone list"), QStringLiteral("--user"), QStringLiteral("nora"),
        QStringLiteral("--folder"), m_demo.path(), QStringLiteral("--text"), m_demo.file(QStringLiteral("out/out.txt"))});
    process.start(command.takeFirst(), command);
    const bool finished = process.waitForFinished(60'000);
    QFile::setPermissions(path, old);
    QVERIFY(finished);
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(errors.contains(words), qPrintable(errors));
    QTEST(process.exitCode(), "status");
    QVERIFY(!QFile::exists(m_demo.file(QStringLiteral("out/out.txt"))));
}

void tst_batch::aCorruptDatabaseIsNoConnection()
{
    test::DemoFolder broken(20);
    broken.write(QStringLiteral("Data/Clinic.db"), QByteArray(65536, 'x'));
    const Outcome outcome = batch(QStringLiteral("run \"Phone list\" --user nora --text out.txt"), {}, QStringLiteral("clinic"), broken.path());
    QCOMPARE(outcome.status, 4);
    QVERIFY2(outcome.errors.contains(QStringLiteral("Error connecting to database!")), qPrintable(outcome.errors));
}

QTEST_MAIN(tst_batch)
#include "tst_batch.moc"
