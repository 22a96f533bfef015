#include "fixed_context.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;
using test::evaluated;

namespace {

ExpressionPtr compiled(const QString &text)
{
    return std::get<ExpressionPtr>(Expression::compile(text));
}

} // namespace

class tst_expression : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void evaluates_data();
    void evaluates();
    void marksWhatCannotBeComputed_data();
    void marksWhatCannotBeComputed();
    void refusesWithPlaceAndHelp_data();
    void refusesWithPlaceAndHelp();
    void endsOnHostileTexts_data();
    void endsOnHostileTexts();
    void tellsWhatItNeeds();
    void findsUnknownNames();
    void takesTheOrderOfDatesFromTheStyle();
};

void tst_expression::evaluates_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *expression, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(expression) << QString::fromUtf8(text);
    };
    row("decimals are exact", "0.1 + 0.2 = 0.3", "True");
    row("products before sums", "2 + 3 * 4 - 10 / 4", "11.5");
    row("sums before &, & before comparisons", "1 + 1 & 2 = 'x' or 1 + 1 & 2 = '22'", "True");
    row("and before or, not before and", "True or False and not True", "True");
    row("parentheses first", "(2 + 3) * 4", "20");
    row("differences from the left", "10 - 3 - 2", "5");
    row("signs in exponents", "2 ^ -2", "0.25");
    row("several signs", "3 - - -2", "1");
    row("not twice", "not not [paid]", "True");
    row("38 digits are kept", "99999999999999999999 * 99999999999999999",
        "9999999999999999899900000000000000001");
    row("beyond them it is a real", "99999999999999999999 * 99999999999999999999 > 9.9", "True");
    row("thirds have sixteen digits", "1 / 3", "0.3333333333333333");
    row("a real stands for its shortest decimal", "[weight] = 72.5", "True");
    row("a Boolean counts", "[paid] + 1 = 2 and [paid] = 1", "True");
    row("column names with brackets", "[odd ]] name]", "7");
    row("both quotes", "\"it's \"\"so\"\"\" & '''s'", "it's \"so\"'s");
    row("accents compare without case", "'ÉLAN' = 'élan'", "True");
    row("dates of both kinds compare", "[seen] > Date(2026, 11, 2)", "True");
    row("what follows a decisive operand is not computed", "[visits] = 0 or 1 / 0 = 1 and False",
        "fault: \"/\" divides by zero");
    row("a test against zero protects", "[visits] <> 3 and 1 / ([visits] - 3) > 1", "False");
    row("false decides over null", "[nothing] = 1 and False or [nothing] = 1 or True", "True");
    row("not in with a null in the list is unknown", "(2 not in (1, null)) is null", "True");
    row("in finds before a null", "1 in (1, null)", "True");
    row("not of null is null", "(not [nothing]) is null", "True");
    row("null counts as not held", "Switch([nothing], 'a', not [nothing], 'b')", "");
    row("a whole of zero has no percent", "Percent(1, 0) is null and Percent(1, [nothing]) is null",
        "True");
    row("leap day and a year", "DateAdd('year', 1, Date(2028, 2, 29))", "02/28/2029");
    row("a century without leap day", "DateAdd('day', 1, Date(1900, 2, 28))", "03/01/1900");
    row("days across a leap day", "DateDiff('day', Date(2028, 2, 28), Date(2028, 3, 1))", "2");
    row("weeks end with Saturday", "DateDiff('week', Date(2026, 11, 21), Date(2026, 11, 22))", "1");
    row("hours by their ends", "DateDiff('hour', ToDateTime('2026-11-02 13:59'), [seen])", "1");
    row("quarters back", "DateAdd('quarter', -3, Date(2026, 11, 30))", "02/28/2026");
    row("a quarter's end", "DateDiff('quarter', Date(2026, 9, 30), Date(2026, 10, 1))", "1");
    row("hours give a date its time", "DateAdd('hour', 25, [born])", "03/01/1984 1:00:00 AM");
    row("half a day", "[born] + 0.5", "02/29/1984 12:00:00 PM");
    row("not yet a year older", "Age([born], Date(2026, 2, 28))", "41");
    row("compact dates are year first", "ToDate('20261102') = ToDate('11/2/2026')", "True");
    row("a time in the afternoon", "ToDateTime('11/2/2026 2:30 PM') = [seen]", "True");
    row("halves to the larger side", "Round(0.5) & Round(-0.5) & Round(1.005, 2) & Round(1250, -2)",
        "1-11.011300");
    row("places beyond the text", "Mid('ab', 9) & Left('ab', 9) & Right('ab', 0) & Mid('ab', 2, 1)",
        "abb");
    row("Sum is exact", "Sum([amount], Report)", "100.35");
    row("Avg leaves nulls out", "Avg([amount])", "50.125");
    row("reals lose nothing to large ones", "Sum([weight]) & ' ' & Count([weight], Report)",
        "72.8 4");
    row("distinct texts without case", "DistinctCount([name], Report)", "2");
    row("an expression as argument", "Sum(If([paid], [visits], 0), 'any')", "6");
    row("least and greatest", "Min([amount]) & ' ' & Max([name])", "-20.25 Bo Ek");
    row("rows and values", "Count(Report) & Count() & Count([amount], Report) & RunningCount('g')",
        "4332");
    row("running", "RunningSum([amount])", "100.25");
    row("a share of the report", "Round(PercentOf([visits]) * 100, 1)", "100");
    row("no values, no sum", "Sum([nothing]) is null and Min([nothing]) is null", "True");
}

void tst_expression::evaluates()
{
    QFETCH(QString, expression);
    QTEST(evaluated(expression), "text");
}

void tst_expression::marksWhatCannotBeComputed_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *expression, const char *words) {
        QTest::newRow(expression) << QString::fromUtf8(expression) << QString::fromUtf8(words);
    };
    row("1 / ([visits] - 3)", "\"/\" divides by zero");
    row("5 mod 0", "\"mod\" divides by zero");
    row("0 ^ -1", "\"^\" divides by zero");
    row("[name] * 2",
        "\"*\" needs numbers, not the text \"Ada Reyes\"; Number() turns a text into a number");
    row("[name] + 'x'", "\"+\" needs numbers, not the text \"Ada Reyes\"; use & to join texts");
    row("-[born]", "\"-\" needs numbers, not the date 02/29/1984");
    row("[visits] = '3'",
        "the number 3 cannot be compared with the text \"3\"; Number(), Text() and ToDate() "
        "convert");
    row("not [name]", "a condition is needed, not the text \"Ada Reyes\"");
    row("Year([name])", "Year needs a date as its first argument, not the text \"Ada Reyes\"");
    row("Hour([photo])",
        "Hour needs a time as its first argument, not the bytes of a picture or file");
    row("Date(2027, 2, 29)", "Date needs a day that exists, not year 2027, month 2, day 29");
    row("Time(24, 0)", "Time needs a time within the day");
    row("ToDate('2027-02-29')",
        "ToDate needs a date such as 2026-11-30, not the text \"2027-02-29\"");
    row("Number('12,5')", "Number needs a text that is a number, not the text \"12,5\"");
    row("DateAdd('days', 1, [born])",
        "DateAdd needs a unit such as 'day' as its first argument, not \"days\"; did you mean "
        "day?");
    row("DateAdd('month', 2000000000, [born])",
        "DateAdd needs a smaller number as its second argument, not 2000000000");
    row("[born] - 9999 * 366", "the date is outside the years 1 to 9999");
    row("Mid('abc', 0)", "Mid needs a start of 1 or more, not 0");
    row("Left('abc', 9999999999)",
        "Left needs a smaller number as its second argument, not the number 9999999999");
    row("Round(1, 99)", "Round needs between -30 and 30 digits");
    row("10 ^ 400", "the result is no number or too large");
    row("(-8) ^ 0.5", "the result is no number or too large");
    row("Repeat('abc', 1000000)",
        "the text would have 3000000 letters; at most 1000000 are possible");
    row("Choose([name], 1)",
        "Choose needs a number as its first argument, not the text \"Ada Reyes\"");
    row("Format(1, [name] & 'x')",
        "Format needs a format as its second argument: \"Ada Reyesx\" is no format; letters of its "
        "own must be quoted");
    row("Sum([name])", "Sum needs numbers, not the text \"Ada Reyes\"");
    row("Avg([born])", "Avg needs numbers, not the date 02/29/1984");
    row("[missing]", "no column \"missing\"");
}

void tst_expression::marksWhatCannotBeComputed()
{
    QFETCH(QString, expression);
    QFETCH(QString, words);
    QCOMPARE(evaluated(expression), QString(u"fault: " + words));
}

void tst_expression::refusesWithPlaceAndHelp_data()
{
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *expression, const char *fault) {
        QTest::newRow(expression) << QString::fromUtf8(fault);
    };
    row("Sume([amount])", "0: unknown function \"Sume\"; did you mean Sum?");
    row("1 + Uper('a')", "4: unknown function \"Uper\"; did you mean Upper?");
    row("Xyzzyplugh(1)", "0: unknown function \"Xyzzyplugh\"");
    row("PageNo", "0: unknown word \"PageNo\"; columns stand in [brackets] and texts in 'quotes'");
    row("PageNumbr", "0: unknown word \"PageNumbr\"; did you mean PageNumber?");
    row("Today", "0: Today is a function; write Today(…)");
    row("", "0: a value is expected, not the end");
    row("1 +", "3: a value is expected, not the end");
    row("1 2", "2: an operator or the end is expected, not \"2\"");
    row("(1", "2: \")\" is expected, not the end");
    row("'abc", "0: the text that starts here has no closing '");
    row("1 + [a]]", "4: the column name that starts here has no closing ]");
    row("[ ]", "0: the column name is empty");
    row("12abc", "2: \"a\" cannot follow a number");
    row("1.2.3", "3: \".\" cannot follow a number");
    row("[a] == 1", "4: \"==\" is no operator; write =");
    row("[a] != 1", "4: \"!=\" is no operator; write <>");
    row("5 % 2", "2: \"%\" is no operator; write mod");
    row("1 # 2", "2: \"#\" means nothing here");
    row("1 < 2 < 3", "6: join two comparisons by \"and\" or \"or\"");
    row("[a] is 5", "7: \"is\" is followed by null or not null");
    row("[a] in 5", "7: \"(\" is expected, not \"5\"");
    row("Left('a')", "0: Left takes 2 arguments, not 1");
    row("Round()", "0: Round takes 1 to 2 arguments, not 0");
    row("Coalesce()", "0: Coalesce takes at least 1 argument, not 0");
    row("Today(1)", "0: Today takes no arguments, not 1");
    row("Sum(1 + Max([a]))", "8: Max cannot stand inside Sum");
    row("Sum(PageNumber)", "4: PageNumber cannot stand inside Sum, which is computed from rows");
    row("Sum([a], patient)",
        "9: Page, Report or a group's name in quotes is expected, not \"patient\"");
    row("Format([a], '0.0.0')", "16: one point, with digits behind it, is expected");
}

void tst_expression::refusesWithPlaceAndHelp()
{
    QFETCH(QString, fault);
    QCOMPARE(evaluated(QString::fromUtf8(QTest::currentDataTag())), QString(u"fault at " + fault));
}

void tst_expression::endsOnHostileTexts_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("text");
    const auto many
        = [](const char *text, int times) { return QString::fromUtf8(text).repeated(times); };
    const QString longText = many("x", 1'000'000);
    QTest::newRow("10,000 parentheses")
        << many("(", 10'000) << "fault at 200: more than 200 levels of parentheses";
    QTest::newRow("10,000 signs") << QString(many("-", 10'000) + u'1') << "1";
    QTest::newRow("10,000 negations") << QString(many("not ", 10'001) + u"True") << "False";
    QTest::newRow("10,000 powers")
        << QString(many("1^", 10'000) + u'1') << "fault at 398: more than 200 powers of powers";
    QTest::newRow("10,000 sums") << QString(many("1+", 10'000) + u'1') << "10001";
    QTest::newRow("190 calls within each other")
        << QString(many("Abs(", 190) + u'1' + many(")", 190)) << "1";
    QTest::newRow("a megabyte of text") << QString(
        u'\'' + longText + u'\'') << "fault at 65536: an expression has at most 65536 letters";
    QTest::newRow("a text that grows")
        << "Replace(Repeat('a', 999999), 'a', 'bb')"
        << "fault: the text would have 1999998 letters; at most 1000000 are possible";
    QTest::newRow("texts that add up")
        << QString(many("Repeat('a', 999999) & ", 3) + u"'b'")
        << "fault: the text would have 1999998 letters; at most 1000000 are possible";
    QTest::newRow("half of a pair") << QString(u"Len('" + QString(QChar(0xd800)) + u"')") << "1";
    QTest::newRow("half of a pair as a word")
        << QString(QChar(0xdc00))
        << QString(u"fault at 0: \"" + QString(QChar(0xdc00)) + u"\" means nothing here");
    QTest::newRow("a number of 60,000 digits") << many("9", 60'000) << "fault at 0: the number is too large";
}

void tst_expression::endsOnHostileTexts()
{
    QFETCH(QString, expression);
    QTEST(evaluated(expression), "text");
}

void tst_expression::tellsWhatItNeeds()
{
    const ExpressionPtr mixed = compiled(QStringLiteral(
        "[a] & [B] & [A] & Sum([c] + {low}, 'Patient') & {High} & RunningCount(Page) & Today()"));
    QCOMPARE(mixed->columns(), QStringList({QStringLiteral("a"), QStringLiteral("B")}));
    QCOMPARE(mixed->parameters(), QStringList({QStringLiteral("low"), QStringLiteral("High")}));
    QVERIFY(mixed->uses(ReportVariable::PrintTime));
    QVERIFY(!mixed->uses(ReportVariable::PageCount));
    QVERIFY(!mixed->isPlainColumn());
    QCOMPARE(mixed->aggregates().size(), 2u);
    const Aggregate &sum = mixed->aggregates()[0];
    QCOMPARE(sum.function, AggregateFunction::Sum);
    QCOMPARE(sum.scope, AggregateScope::Group);
    QCOMPARE(sum.group, QStringLiteral("Patient"));
    QCOMPARE(sum.argument->columns(), QStringList(QStringLiteral("c")));
    const Aggregate &rows = mixed->aggregates()[1];
    QVERIFY(rows.isRunning && !rows.argument);
    QCOMPARE(rows.scope, AggregateScope::Page);

    const ExpressionPtr share = compiled(QStringLiteral("PercentOf([a], 'g')"));
    QCOMPARE(share->aggregates()[0].scope, AggregateScope::Section);
    QCOMPARE(share->aggregates()[1].group, QStringLiteral("g"));
    QVERIFY(compiled(QStringLiteral(" ([a]) "))->isPlainColumn());
    test::FixedContext context;
    QCOMPARE(
        Expression::ofColumn(QStringLiteral("odd ] name"))->evaluate(context), Datum::number(7));
}

void tst_expression::findsUnknownNames()
{
    const QStringList names{QStringLiteral("Patient"), QStringLiteral("amount")};
    const ExpressionPtr wrong = compiled(QStringLiteral("1 + Sum([amout], 'pateint')"));
    QCOMPARE(wrong->findUnknownGroup(names)->words,
        QStringLiteral("there is no group \"pateint\"; did you mean Patient?"));
    QCOMPARE(wrong->findUnknownGroup(names)->offset, 17);
    QCOMPARE(wrong->findUnknownColumn(names)->words,
        QStringLiteral("the record source has no column \"amout\"; did you mean amount?"));
    QCOMPARE(wrong->findUnknownColumn(names)->offset, 8);
    const ExpressionPtr right
        = compiled(QStringLiteral("[AMOUNT] & Sum([amount], 'patient') & Count()"));
    QVERIFY(!right->findUnknownGroup(names) && !right->findUnknownColumn(names));
}

void tst_expression::takesTheOrderOfDatesFromTheStyle()
{
    test::FixedContext context;
    context.setDayFirst();
    QCOMPARE(
        evaluated(QStringLiteral("ToDate('2/11/2026')"), context), QStringLiteral("02/11/2026"));
    QCOMPARE(
        evaluated(QStringLiteral("Month(ToDate('2/11/2026'))"), context), QStringLiteral("11"));
    QCOMPARE(evaluated(QStringLiteral("'on ' & [born]"), context), QStringLiteral("on 29/02/1984"));
}

QTEST_GUILESS_MAIN(tst_expression)
#include "tst_expression.moc"
