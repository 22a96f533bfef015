#include "definitions/date_token.h"
#include "shared/run_time_fault.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QDate kToday(2026, 11, 2);

/// A token whose first five characters of fields matter; label, captions and defaults are the usual
/// ones.
QString token(const char *countAndCheck)
{
    return QStringLiteral("{DATE*1|%1|Visits|From|To|1/2/2026|Now()}")
        .arg(QString::fromLatin1(countAndCheck));
}

DateAnswers answered(const QString &first, const QString &second)
{
    return {readDate(first, DateOrder::MonthDayYear), readDate(second, DateOrder::MonthDayYear)};
}

} // namespace

class tst_date_token : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheFirstToken();
    void readsCountAndCheck_data();
    void readsCountAndCheck();
    void refusesBadTokens_data();
    void refusesBadTokens();
    void readsDefaults_data();
    void readsDefaults();
    void knowsWhenAllIsAnswered_data();
    void knowsWhenAllIsAnswered();
    void checksTheOrder_data();
    void checksTheOrder();
    void putsDatesIntoTheText_data();
    void putsDatesIntoTheText();
    void fillsTheTable();
};

void tst_date_token::readsTheFirstToken()
{
    const QString sql = QStringLiteral(
        "AB {DATE*1| 2 |1|  Both days count | First: | Last:|1/2/2026 | Now() |more}"
        " {DATE*1|1|0|x|y|z|a|b}");
    const DateToken read = DateToken::parseRequest(sql);
    QCOMPARE(read.tokenStart, 4);
    QCOMPARE(read.tokenEnd, int(sql.indexOf(u'}')) + 1);
    QCOMPARE(read.dateCount, 2);
    QCOMPARE(read.checkOrder, 1);
    QCOMPARE(read.label, QStringLiteral("Both days count"));
    QCOMPARE(read.captions[0], QStringLiteral("First:"));
    QCOMPARE(read.captions[1], QStringLiteral("Last:"));
    QCOMPARE(read.defaults[0], QStringLiteral("1/2/2026"));
    QCOMPARE(read.defaults[1], QStringLiteral("Now()"));
}

void tst_date_token::readsCountAndCheck_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("check");
    QTest::addColumn<bool>("two");
    const auto row = [](const char *name, const char *fields, int count, int check, bool two) {
        QTest::newRow(name) << token(fields) << count << check << two;
    };
    row("one", "1|1", 1, 1, false);
    row("two", "2|0", 2, 0, true);
    row("none is one", "0|0", 0, 0, false);
    row("negative is one", "-3|-1", -3, -1, false);
    row("many are two", "7|1", 7, 1, true);
    row("halves go to the even number", "1.5|0.5", 2, 0, true);
    row("the largest", "2147483647|-2147483648", 2147483647, std::numeric_limits<int>::min(), true);
}

void tst_date_token::readsCountAndCheck()
{
    QFETCH(QString, sql);
    const DateToken read = DateToken::parseRequest(sql);
    QTEST(read.dateCount, "count");
    QTEST(read.checkOrder, "check");
    QTEST(read.asksForTwo(), "two");
}

void tst_date_token::refusesBadTokens_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const QString &sql, const char *fault) {
        QTest::newRow(name) << sql << QString::fromUtf8(fault);
    };
    row("empty text", {},
        "5 Invalid procedure call or argument: the date token \"{DATE*1|\" does not stand anywhere "
        "in the 0 "
        "characters of the query");
    row("no token", QStringLiteral("SELECT 1"),
        "5 Invalid procedure call or argument: the date token \"{DATE*1|\" does not stand anywhere "
        "in the 8 "
        "characters of the query");
    row("lower case", QStringLiteral("AB {date*1|1|0|l|a|b|c|d}"),
        "5 Invalid procedure call or argument: the date token \"{date*1|\" at character 4 must be "
        "written in "
        "capitals: \"{DATE*1|\"");
    row("short token alone", QStringLiteral("AB {DATE*1}"),
        "5 Invalid procedure call or argument: the date token \"{DATE*1}\" at character 4 is not "
        "followed by its "
        "fields: \"{DATE*1|\" is expected");
    row("cut before its first bar", QStringLiteral("AB {DATE*1"),
        "5 Invalid procedure call or argument: the date token \"{DATE*1\" at character 4 is not "
        "followed by its "
        "fields: \"{DATE*1|\" is expected");
    row("no closing brace", QStringLiteral("} {DATE*1|2|1|l|a|b|c|d"),
        "5 Invalid procedure call or argument: the date token \"{DATE*1|2|1|l|a|b|c|d\" at "
        "character 3 has no "
        "closing brace");
    row("a long token is shown in part",
        QStringLiteral("{DATE*1|2|1|0123456789012345678901234567890123456789"),
        "5 Invalid procedure call or argument: the date token "
        "\"{DATE*1|2|1|0123456789012345678901234567…\" at "
        "character 1 has no closing brace");
    row("no fields", QStringLiteral("{DATE*1|}"),
        "13 Type mismatch: the date token \"{DATE*1|}\" at character 1 has the count \"\", which "
        "is no number");
    row("only a count", QStringLiteral("A {DATE*1|2}"),
        "9 Subscript out of range: the date token \"{DATE*1|2}\" at character 3 has 2 of 8 fields");
    row("one field missing", QStringLiteral("A {DATE*1|2|1|l|a|b|c}"),
        "9 Subscript out of range: the date token \"{DATE*1|2|1|l|a|b|c}\" at character 3 has 7 of "
        "8 fields");
    row("a brace in the label ends it", QStringLiteral("{DATE*1|2|1|l}|a|b|c|d}"),
        "9 Subscript out of range: the date token \"{DATE*1|2|1|l}\" at character 1 has 4 of 8 "
        "fields");
    row("count with a letter", QStringLiteral(" {DATE*1|2abc|1|l|a|b|c|d}"),
        "13 Type mismatch: the date token \"{DATE*1|2abc|1|l|a|b|c|d}\" at character 2 has the "
        "count \"2abc\", which is "
        "no number");
    row("the count comes before missing fields", QStringLiteral("{DATE*1|x}"),
        "13 Type mismatch: the date token \"{DATE*1|x}\" at character 1 has the count \"x\", which "
        "is no number");
    row("empty check", QStringLiteral("{DATE*1|2| |l|a|b|c|d}"),
        "13 Type mismatch: the date token \"{DATE*1|2| |l|a|b|c|d}\" at character 1 has the check "
        "\"\", which is no "
        "number");
    row("check too large", QStringLiteral("{DATE*1|2|2147483648|l|a|b|c|d}"),
        "6 Overflow: the date token \"{DATE*1|2|2147483648|l|a|b|c|d}\" at character 1 has the "
        "check \"2147483648\", "
        "which is too large");
    row("percent signs stay", QStringLiteral("{DATE*1|%2|1|l}"),
        "13 Type mismatch: the date token \"{DATE*1|%2|1|l}\" at character 1 has the count \"%2\", "
        "which is no number");
}

void tst_date_token::refusesBadTokens()
{
    QFETCH(QString, sql);
    const auto faultOf = [](const auto &action) {
        try {
            action();
        } catch (const RunTimeFault &fault) {
            return QString(QString::number(fault.number()) + u' ' + fault.description());
        }
        return QString();
    };
    QTEST(faultOf([&] { DateToken::parseRequest(sql); }), "fault");
    QTEST(faultOf([&] { applyDates(sql, {}, DateOrder::MonthDayYear); }), "fault");
}

void tst_date_token::readsDefaults_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("date");
    const auto row
        = [](const char *name, const char *field, int order, const char *text, QDate date) {
              QTest::newRow(name) << QString::fromLatin1(field) << order
                                  << QString::fromLatin1(text) << date;
          };
    row("a date stays as it is written", "1/2/2026", 0, "1/2/2026", QDate(2026, 1, 2));
    row("day first", "1/2/2026", 1, "1/2/2026", QDate(2026, 2, 1));
    row("year in front", "2026-03-04", 0, "2026-03-04", QDate(2026, 3, 4));
    row("today", "Now()", 0, "11/02/2026", kToday);
    row("today, day first", "Now()", 1, "02/11/2026", kToday);
    row("today, year first", "Now()", 2, "2026/11/02", kToday);
    row("today in lower case is none", "now()", 0, "", QDate());
    row("today in capitals is none", "NOW()", 0, "", QDate());
    row("today with a blank is none", "Now( )", 0, "", QDate());
    row("an impossible date is none", "2/30/2026", 0, "", QDate());
    row("words are none", "last month", 0, "", QDate());
    row("empty", "", 0, "", QDate());
}

void tst_date_token::readsDefaults()
{
    QFETCH(QString, field);
    QFETCH(int, order);
    QFETCH(QDate, date);
    QTEST(getDefaultSetting(field, dateOrderOf(order), kToday), "text");
    DateToken read;
    read.dateCount = 1;
    read.defaults = {QStringLiteral("none"), field};
    const DateAnswers defaults = defaultAnswers(read, dateOrderOf(order), kToday);
    QVERIFY(!defaults.first);
    QCOMPARE(defaults.second.value_or(QDate()), date);
}

void tst_date_token::knowsWhenAllIsAnswered_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("answered");
    const auto row
        = [](const char *name, int count, const char *first, const char *second, bool answered) {
              QTest::newRow(name) << count << QString::fromLatin1(first)
                                  << QString::fromLatin1(second) << answered;
          };
    row("one of one", 1, "1/1/1900", "", true);
    row("none of one", 1, "", "1/1/1900", false);
    row("one of two", 2, "1/1/1900", "", false);
    row("the second of two", 2, "", "1/1/1900", false);
    row("two of two", 2, "1/1/1900", "1/1/1900", true);
    row("day number 1 is no date", 1, "12/31/1899", "", false);
    row("nor is it as the second", 2, "1/1/1900", "12/31/1899", false);
}

void tst_date_token::knowsWhenAllIsAnswered()
{
    QFETCH(int, count);
    QFETCH(QString, first);
    QFETCH(QString, second);
    DateToken asked;
    asked.dateCount = count;
    QTEST(isAnswered(asked, answered(first, second)), "answered");
}

void tst_date_token::checksTheOrder_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const char *fields, const char *first, const char *second,
                         const char *fault) {
        QTest::newRow(name) << token(fields) << QString::fromLatin1(first)
                            << QString::fromLatin1(second) << QString::fromLatin1(fault);
    };
    row("in order", "2|1", "1/1/2026", "1/2/2026", "");
    row("equal", "2|1", "1/2/2026", "1/2/2026", "");
    row("one day too late", "2|1", "1/3/2026", "1/2/2026", "[From] must be earlier than To].");
    row("any number but 0 checks", "2|-1", "1/3/2026", "1/2/2026",
        "[From] must be earlier than To].");
    row("no check", "2|0", "1/3/2026", "1/2/2026", "");
    row("a single date has no order", "1|1", "1/3/2026", "1/2/2026", "");
}

void tst_date_token::checksTheOrder()
{
    QFETCH(QString, sql);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QTEST(orderFault(DateToken::parseRequest(sql), answered(first, second)).value_or(QString()), "fault");
}

void tst_date_token::putsDatesIntoTheText_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const QString &sql, const char *first, const char *second,
                         int order, const char *result) {
        QTest::newRow(name) << sql << QString::fromLatin1(first) << QString::fromLatin1(second)
                            << order << QString::fromLatin1(result);
    };
    const QString range = u"SELECT * FROM V WHERE D >= " + token("2|1") + u" AND D < {DATE*2}";
    row("two dates", range, "11/1/2026", "11/30/2026", 0,
        "SELECT * FROM V WHERE D >= '11/01/2026' AND D < '11/30/2026'");
    row("day first", range, "11/1/2026", "11/30/2026", 1,
        "SELECT * FROM V WHERE D >= '01/11/2026' AND D < '30/11/2026'");
    row("year first", range, "11/1/2026", "11/30/2026", 2,
        "SELECT * FROM V WHERE D >= '2026/11/01' AND D < '2026/11/30'");
    row("every short token", u"{DATE*2}{DATE*1} " + token("1|0") + u"{DATE*1}{DATE*2}{DATE*1}",
        "1/2/2026", "3/4/2026", 0,
        "'03/04/2026''01/02/2026' '01/02/2026''01/02/2026''03/04/2026''01/02/2026'");
    row("no second date is empty quotes", token("1|0") + u" {DATE*2}", "1/2/2026", "", 0,
        "'01/02/2026' ''");
    row("a second long token stays", token("1|0") + u" {DATE*1|1|0|l|a|b|c|d}", "1/2/2026", "", 0,
        "'01/02/2026' {DATE*1|1|0|l|a|b|c|d}");
    row("small letters stay", token("1|0") + u" {date*1} {Date*2}", "1/2/2026", "", 0,
        "'01/02/2026' {date*1} {Date*2}");
    row("the token alone", token("1|0"), "1/2/2026", "", 0, "'01/02/2026'");
    row("a brace missing takes the next",
        QStringLiteral("{DATE*1|1|0|l|a|b|c|d AND D < {DATE*2} ORDER"), "1/2/2026", "", 0,
        "'01/02/2026' ORDER");
}

void tst_date_token::putsDatesIntoTheText()
{
    QFETCH(QString, sql);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(int, order);
    QTEST(applyDates(sql, answered(first, second), dateOrderOf(order)), "result");
}

void tst_date_token::fillsTheTable()
{
    const DateParamTable table
        = dateParamTable({QDate(2026, 11, 1), std::nullopt}, DateOrder::DayMonthYear);
    const DateParamTable expected{{{QStringLiteral("{DATE*1}"), QStringLiteral("01/11/2026"), {}},
        {QStringLiteral("{DATE*2}"), {}, {}}, {}}};
    QVERIFY(table == expected);
}

QTEST_GUILESS_MAIN(tst_date_token)
#include "tst_date_token.moc"
