#include "batch/batch_options.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_batch_options : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheCommandLine();
    void namesWhatIsWrong_data();
    void namesWhatIsWrong();
};

void tst_batch_options::readsTheCommandLine()
{
    const QStringList arguments = QStringLiteral("corvane-batch run Daily.rpt --folder F --user nora --password-stdin RecSrcTrue --date1 2026-01-01 --select 7 --select 9 "
                                                 "--from 2026-11-01 --to 11/30/2026 --pdf a.pdf --text=a.txt --timings")
                                      .split(u' ');
    const auto parsed = parseBatchOptions(arguments, 0);
    const auto *options = std::get_if<BatchOptions>(&parsed);
    QVERIFY(options);
    QCOMPARE(options->report, QStringLiteral("Daily.rpt"));
    QCOMPARE(options->folder, QStringLiteral("F"));
    QCOMPARE(options->user, QStringLiteral("nora"));
    QVERIFY(options->passwordFromInput && options->recSrcTrue && options->timings);
    QCOMPARE(options->from, QDate(2026, 11, 1));
    QCOMPARE(options->to, QDate(2026, 11, 30));
    QCOMPARE(options->date1, QDate(2026, 1, 1));
    QVERIFY(!options->date2 && !options->selectAll);
    QCOMPARE(options->select, QStringList({QStringLiteral("7"), QStringLiteral("9")}));
    QCOMPARE(options->pdfFile, QStringLiteral("a.pdf"));
    QCOMPARE(options->textFile, QStringLiteral("a.txt"));
}

void tst_batch_options::namesWhatIsWrong_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *line, const char *words) { QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(words); };
    row("b", "command is missing");
    row("b print x --user u", "\"print\" is no command");
    row("b run --user u", "Name one report");
    row("b run a b --user u", "Name one report");
    row("b run a", "--user ID is missing");
    row("b run a --user u --what", "what");
    row("b run a --user u --from 2026-02-30", "--from \"2026-02-30\" is no date");
    row("b run a --user u --to tomorrow", "--to \"tomorrow\" is no date");
    row("b run a --user u --xls x --text ./x", "--xls and --text name the same file");
    row("b run a --user u --date1 never", "--date1 \"never\" is no date");
    row("b run a --user u --select x --select-all", "exclude each other");
    row("b run a --user", "user");
}

void tst_batch_options::namesWhatIsWrong()
{
    QFETCH(QString, line);
    QFETCH(QString, words);
    const auto parsed = parseBatchOptions(line.split(u' '), 0);
    const auto *fault = std::get_if<UsageFault>(&parsed);
    QVERIFY(fault);
    QVERIFY2(fault->words.contains(words), qPrintable(fault->words));
}

QTEST_MAIN(tst_batch_options)
#include "tst_batch_options.moc"
