#include "definitions/parameters_clause.h"
#include "shared/run_time_fault.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_parameters_clause : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void readsClauses_data();
    void readsClauses();
    void refusesWhatItCannotRead_data();
    void refusesWhatItCannotRead();
    void readsAnswers_data();
    void readsAnswers();
    void resolvesQueries_data();
    void resolvesQueries();
};

void tst_parameters_clause::readsClauses_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("read"); ///< "name/type/default" of each, then the query
    const auto row = [](const char *claim, const char *sql, const char *read) {
        QTest::newRow(claim) << QString::fromLatin1(sql) << QString::fromLatin1(read);
    };
    row("no clause", "SELECT 1", "none");
    row("a column of a like name", "parameters_id FROM t", "none");
    row("one without a default", "PARAMETERS who Text; SELECT 1", "who/0/, SELECT 1");
    row("any case, brackets, defaults", "parameters [First day] datetime #11/1/2026#, n LONG 7, w Text 'O''Hara', b Bit yes;Q",
        "First day/2/11/1/2026, n/1/7, w/0/O'Hara, b/3/yes,Q");
    row("a length behind the type", "PARAMETERS who Text (255); Q", "who/0/, Q");
    row("a default with a sign", "PARAMETERS n Double -1.5; Q", "n/1/-1.5, Q");
    row("a quoted date, as the spreadsheet gets it", "PARAMETERS d DateTime '11/1/2026'; Q", "d/2/11/1/2026, Q");
    row("comments between", "PARAMETERS /* a, b; */ who -- the name\nText; Q", "who/0/, Q");
}

void tst_parameters_clause::readsClauses()
{
    QFETCH(QString, sql);
    const auto clause = ParametersClause::parse(sql, DateOrder::MonthDayYear);
    QStringList read;
    if (clause) {
        for (const QueryParameter &parameter : clause->parameters)
            read += QStringLiteral("%1/%2/%3").arg(parameter.name).arg(int(parameter.type)).arg(parameter.defaultText);
    }
    const QString found = clause ? QString(read.join(QStringLiteral(", ")) + u',' + sql.sliced(clause->end)) : QStringLiteral("none");
    QTEST(found, "read");
}

void tst_parameters_clause::refusesWhatItCannotRead_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *claim, const char *sql, const char *words) {
        QTest::newRow(claim) << QString::fromLatin1(sql) << QString::fromLatin1(words);
    };
    row("no end", "PARAMETERS who Text SELECT 1", "\"1\" is not expected there");
    row("nothing in it", "PARAMETERS ;", "character 12: a parameter's name is expected");
    row("an unknown type", "PARAMETERS who Blob; Q", "character 16: the type of \"who\" must be");
    row("a name twice", "PARAMETERS a Text, A Text; Q", "the parameter \"A\" is named twice");
    row("a default of another type", "PARAMETERS d DateTime 'soon'; Q", "the default \"soon\" of \"d\" does not fit its type");
    row("a text that never ends", "PARAMETERS d Text 'soon; Q", "must end with \";\"");
}

void tst_parameters_clause::refusesWhatItCannotRead()
{
    QFETCH(QString, sql);
    QFETCH(QString, words);
    try {
        ParametersClause::parse(sql, DateOrder::MonthDayYear);
        QFAIL("nothing was refused");
    } catch (const RunTimeFault &fault) {
        QCOMPARE(fault.number(), int(RunTimeFault::InvalidArgument));
        QVERIFY2(fault.description().contains(words), qPrintable(fault.description()));
    }
}

void tst_parameters_clause::readsAnswers_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("read");
    const auto row = [](const char *claim, ParameterType type, const char *text, const char *read) {
        QTest::newRow(claim) << int(type) << QString::fromLatin1(text) << QString::fromLatin1(read);
    };
    row("an empty text", ParameterType::Text, "", "");
    row("a number", ParameterType::Number, " -1.50 ", "-1.5");
    row("no number", ParameterType::Number, "1,5", "refused");
    row("an empty number", ParameterType::Number, "", "refused");
    row("no finite number", ParameterType::Number, "inf", "refused");
    row("a date", ParameterType::Date, "1/2/2026", "01/02/2026");
    row("no date", ParameterType::Date, "2/30/2026", "refused");
    row("a truth", ParameterType::Boolean, "TRUE", "Yes");
    row("an untruth", ParameterType::Boolean, "0", "No");
    row("neither", ParameterType::Boolean, "maybe", "refused");
}

void tst_parameters_clause::readsAnswers()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    const auto value = readParameter(ParameterType(type), text, DateOrder::MonthDayYear);
    QTEST(value ? parameterText(*value, DateOrder::MonthDayYear) : QStringLiteral("refused"), "read");
}

void tst_parameters_clause::resolvesQueries_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("resolved");
    const QString clause = QStringLiteral("PARAMETERS who Text, n Number, [on day] DateTime, ok Bit; ");
    const auto row = [&](const char *claim, const char *sql, const char *resolved) {
        QTest::newRow(claim) << QString(clause + QString::fromLatin1(sql)) << QString::fromLatin1(resolved);
    };
    row("each type as a literal", "SELECT who, n, [on day], ok", "SELECT 'a''b; --', 2.5, '03/04/2026', 1");
    row("any case, with and without brackets", "SELECT [WHO], Who", "SELECT 'a''b; --', 'a''b; --'");
    row("no part of a longer name", "SELECT whom, t.n2", "SELECT whom, t.n2");
    row("not within texts and comments", "SELECT 'who' -- n\n, /* who */ n", "SELECT 'who' -- n\n, /* who */ 2.5");
    row("dates between number signs", "SELECT #11/1/2026#, #temp", "SELECT '11/1/2026', #temp");
    QTest::newRow("without a clause") << QStringLiteral(" SELECT #11/1/2026# , who") << QStringLiteral(" SELECT '11/1/2026' , who");
}

void tst_parameters_clause::resolvesQueries()
{
    QFETCH(QString, sql);
    const ParameterAnswers answers {{QStringLiteral("who"), QStringLiteral("a'b; --")}, {QStringLiteral("n"), 2.5},
        {QStringLiteral("on day"), QDate(2026, 3, 4)}, {QStringLiteral("ok"), true}};
    QTEST(resolvedQuery(sql, answers, DateOrder::MonthDayYear), "resolved");
    if (sql.contains(QStringLiteral("SELECT who,")))
        QVERIFY_EXCEPTION_THROWN(resolvedQuery(sql, {}, DateOrder::MonthDayYear), RunTimeFault);
}

QTEST_GUILESS_MAIN(tst_parameters_clause)
#include "tst_parameters_clause.moc"
