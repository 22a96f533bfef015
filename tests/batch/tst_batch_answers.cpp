#include "batch/batch_answers.h"
#include "batch/batch_run.h"
#include "shared/run_time_fault.h"
#include "support/canned_driver.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QDate kToday(2026, 11, 22);
const QString kDates = QStringLiteral("a BETWEEN {DATE*1|2|1|Visits|From|To|11/01/2026|Now()} AND {DATE*2}");
const QString kPayers = QStringLiteral("payer IN {*SQL01*}name|id|payers||Choose payers|1|1|{*/SQL*} AND 1=1");
const QString kOnePayer = QStringLiteral("payer = {*SQL01*}name|id|payers||Choose a payer|0|0|{*/SQL*}");

QString applied(const QString &request, const DateAnswers &answers)
{
    return applyDates(request, answers, DateOrder::MonthDayYear);
}

QString applied(const QString &request, const SelectionAnswers &answers)
{
    return applySelection(request, answers).sql;
}

QString applied(const QString &request, const ParameterAnswers &answers)
{
    return resolvedQuery(request, answers, DateOrder::MonthDayYear);
}

/// "status words" of a fault, what a success makes of the text.
template <typename Answers>
QString told(const QString &request, const std::variant<Answers, AnswerFault> &answer)
{
    if (const auto *fault = std::get_if<AnswerFault>(&answer))
        return QStringLiteral("%1 %2").arg(fault->status).arg(fault->words);
    return applied(request, std::get<Answers>(answer));
}

} // namespace

class tst_batch_answers : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void answersDates_data();
    void answersDates();
    void answersSelections_data();
    void answersSelections();
    void answersParameters_data();
    void answersParameters();
    void leavesFaultsOfTheTextToItsCaller();
};

void tst_batch_answers::answersDates_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<QDate>("date1");
    QTest::addColumn<QDate>("date2");
    QTest::addColumn<QString>("answer");
    const QString noDefaults = QStringLiteral("d = {DATE*1|1|0|Day|On||none|}");
    QTest::newRow("the token's defaults") << kDates << QDate() << QDate() << QStringLiteral("a BETWEEN '11/01/2026' AND '11/22/2026'");
    QTest::newRow("one from the command line")
        << kDates << QDate(2026, 11, 5) << QDate() << QStringLiteral("a BETWEEN '11/05/2026' AND '11/22/2026'");
    QTest::newRow("both") << kDates << QDate(2026, 1, 2) << QDate(2026, 1, 2) << QStringLiteral("a BETWEEN '01/02/2026' AND '01/02/2026'");
    QTest::newRow("in the wrong order") << kDates << QDate(2026, 12, 1) << QDate() << QStringLiteral("1 ");
    QTest::newRow("a date is missing") << noDefaults << QDate() << QDate() << QStringLiteral("2 The report asks for a date (\"On\"): add --date1 DATE.");
    QTest::newRow("a date is given") << noDefaults << QDate(2026, 2, 3) << QDate() << QStringLiteral("d = '02/03/2026'");
}

void tst_batch_answers::answersDates()
{
    QFETCH(QString, request);
    QFETCH(QDate, date1);
    QFETCH(QDate, date2);
    QFETCH(QString, answer);
    BatchOptions options;
    if (date1.isValid())
        options.date1 = date1;
    if (date2.isValid())
        options.date2 = date2;
    const QString found = told(request, answerDates(request, options, DateOrder::MonthDayYear, kToday));
    if (answer.endsWith(u' '))
        QVERIFY2(found.startsWith(answer) && found.size() > answer.size(), qPrintable(found));
    else
        QCOMPARE(found, answer);
}

void tst_batch_answers::answersSelections_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<QStringList>("select");
    QTest::addColumn<bool>("all");
    QTest::addColumn<QString>("answer");
    const auto s = [](const char *text) { return QString::fromLatin1(text); };
    QTest::newRow("two values, in the list's order") << kPayers << QStringList({s("C"), s("A")}) << false << s("payer IN ( 'A', 'C' )  AND 1=1");
    QTest::newRow("all of them") << kPayers << QStringList() << true << s("payer IN ( 'A', 'B''s', 'C' )  AND 1=1");
    QTest::newRow("one value") << kOnePayer << QStringList(s("C")) << false << s("payer = C");
    QTest::newRow("none named") << kPayers << QStringList() << false << s("2 The report asks for a selection (\"Choose payers\"): add --select VALUE or --select-all.");
    QTest::newRow("two where one is taken") << kOnePayer << QStringList({s("A"), s("C")}) << false << s("2 The report takes one value (\"Choose a payer\"): give one --select VALUE.");
    QTest::newRow("a value that is not there") << kPayers << QStringList({s("A"), s("Z")}) << false << s("1 The value \"Z\" is not in the report's list. --select takes the value behind an entry, not the entry's text.");
    QTest::newRow("what is shown is not the value") << kPayers << QStringList(s("Alpha")) << false << s("1 The value \"Alpha\" is not in the report's list. --select takes the value behind an entry, not the entry's text.");
}

void tst_batch_answers::answersSelections()
{
    QFETCH(QString, request);
    QFETCH(QStringList, select);
    QFETCH(bool, all);
    BatchOptions options;
    options.select = select;
    options.selectAll = all;
    const QList<QStringList> rows {{QStringLiteral("Alpha"), QStringLiteral("A")}, {QStringLiteral("Beta"), QStringLiteral("B's")}, {QStringLiteral("Gamma"), QStringLiteral("C")}};
    Connection connection({}, std::make_unique<test::CannedDriver>(QStringList({QStringLiteral("name"), QStringLiteral("id")}), rows));
    QTEST(told(request, answerSelection(request, options, connection, {})), "answer");
}

void tst_batch_answers::answersParameters_data()
{
    QTest::addColumn<QString>("param");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *claim, const char *param, const char *answer) {
        QTest::newRow(claim) << QString::fromLatin1(param) << QString::fromLatin1(answer);
    };
    row("value given, default taken", "payer=O'Hara", "SELECT * FROM t WHERE d >= '01/02/2026' AND p = 'O''Hara'");
    row("both given", "payer=A,first day=2026-03-04", "SELECT * FROM t WHERE d >= '03/04/2026' AND p = 'A'");
    row("one without a default is missing", "", "2 The report asks for \"payer\": add --param \"payer=VALUE\".");
    row("no date", "payer=A,first day=soon", "2 --param \"first day=soon\": the value does not fit the parameter's type.");
    row("a name that is not there", "payer=A,other=1", "2 The report has no parameter \"other\".");
}

void tst_batch_answers::answersParameters()
{
    QFETCH(QString, param);
    const QString request = QStringLiteral("PARAMETERS [first day] DateTime #1/2/2026#, payer Text; SELECT * FROM t WHERE d >= [First Day] AND p = payer");
    BatchOptions options;
    for (const QString &pair : param.split(u',', Qt::SkipEmptyParts))
        options.params.emplace_back(pair.section(u'=', 0, 0), pair.section(u'=', 1));
    const auto clause = ParametersClause::parse(request, DateOrder::MonthDayYear);
    QVERIFY(clause);
    QTEST(told(request, answerParameters(*clause, options, DateOrder::MonthDayYear)), "answer");
}

void tst_batch_answers::leavesFaultsOfTheTextToItsCaller()
{
    Connection connection({}, std::make_unique<test::CannedDriver>(QStringList(), QList<QStringList>()));
    QVERIFY_EXCEPTION_THROWN(answerDates(QStringLiteral("{DATE*1|2abc"), {}, DateOrder::MonthDayYear, kToday), RunTimeFault);
    QVERIFY_EXCEPTION_THROWN(answerSelection(QStringLiteral("{*sql01*}"), {}, connection, {}), RunTimeFault);
}

QTEST_MAIN(tst_batch_answers)
#include "tst_batch_answers.moc"
