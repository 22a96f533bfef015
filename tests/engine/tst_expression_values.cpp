#include "platform/engine/expression/accumulator.h"
#include "platform/engine/expression/value_format.h"
#include "support/suite.h"

#include <QtTest/QtTest>

#include <cmath>

using namespace corvane;

namespace {

Datum exact(const char *digits)
{
    return *Decimal::parse(digits);
}

Value decimalValue(QByteArrayView digits)
{
    return Value::decimal(digits.data(), quint32(digits.size()));
}

} // namespace

/// Values, their sums and their formats, without an expression around them.
class tst_expression_values : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showTheTextOfTheirCell_data();
    void showTheTextOfTheirCell();
    void keepEveryKindOfCell();
    void standInOneOrder();
    void equalOnesHashAlike();
    void centsAddUp();
    void startAnew();
    void sumsBeyondTheExactOnesGoOn();
    void formats_data();
    void formats();
    void refusesFormats_data();
    void refusesFormats();
};

void tst_expression_values::showTheTextOfTheirCell_data()
{
    QTest::addColumn<QByteArray>("digits");
    for (const char *digits : {"12.3400", "-0.50", "0.00", "-0.00", "100", "-7",
             "12345678901234567890123456789012345678", "0.00000000000000000000000000000000000001"})
        QTest::newRow(digits) << QByteArray(digits);
}

void tst_expression_values::showTheTextOfTheirCell()
{
    QFETCH(QByteArray, digits);
    const Value value = decimalValue(digits);
    QCOMPARE(Datum(value).toText({}), valueText(value, {}));
}

void tst_expression_values::keepEveryKindOfCell()
{
    const ValueTextStyle style{QStringLiteral("yyyy-MM-dd"), QStringLiteral("HH:mm")};
    for (const Value &value :
        {Value(), Value::integer(-5), Value::real(2.5e-7), Value::boolean(true), Value::date(-1),
            Value::dateTime(-1), Value::dateTime(86'400'000), Value::time(60'000),
            Value::text("\xc3\xa9t\xc3\xa9", 5), Value::bytes("ab", 2), decimalValue("7.125")})
        QCOMPARE(Datum(value).toText(style), valueText(value, style));
}

void tst_expression_values::standInOneOrder()
{
    const std::vector<Datum> ascending{Datum(), Datum::boolean(false), Datum::boolean(true),
        Datum::real(-1e300), exact("-2"), Datum::real(-1.5), exact("0.1"), Datum::real(0.1000001),
        exact("2"), exact("99999999999999999999999999999999999999"), Datum::real(1e300),
        QStringLiteral(""), QStringLiteral("a"), QStringLiteral("B"), QStringLiteral("c"),
        Datum::date(QDate(1969, 12, 31)),
        Datum::dateTime(QDateTime(QDate(1969, 12, 31), QTime(0, 1), Qt::UTC)),
        Datum::date(QDate(2026, 11, 1)), Datum::time(QTime(0, 0)), Datum::time(QTime(23, 59)),
        Datum::bytes("a"), Datum::bytes("b")};
    for (size_t i = 0; i < ascending.size(); ++i) {
        for (size_t j = 0; j < ascending.size(); ++j) {
            const QString pair
                = QStringLiteral("%1 and %2").arg(ascending[i].toText({}), ascending[j].toText({}));
            QVERIFY2(compare(ascending[i], ascending[j]) == (i <=> j), qPrintable(pair));
        }
    }
}

void tst_expression_values::equalOnesHashAlike()
{
    const std::vector<std::pair<Datum, Datum>> pairs{{exact("0.1"), Datum::real(0.1)},
        {QStringLiteral("Älter "), QStringLiteral("ÄLTER")},
        {Datum::date(QDate(2026, 11, 1)),
            Datum::dateTime(QDateTime(QDate(2026, 11, 1), QTime(0, 0), Qt::UTC))},
        {Datum(), Datum::real(std::nan(""))}, {Datum::bytes("x"), Datum::bytes("x")}};
    for (const auto &[a, b] : pairs) {
        QVERIFY(a == b);
        QCOMPARE(qHash(a), qHash(b));
    }
}

void tst_expression_values::centsAddUp()
{
    Accumulator sum(AggregateFunction::Sum);
    Accumulator average(AggregateFunction::Average);
    const Datum cent = exact("0.01");
    for (int i = 0; i < 10'000'000; ++i)
        sum.add(cent);
    QCOMPARE(sum.value().toText({}), QStringLiteral("100000"));
    for (const char *amount : {"0.10", "0.20", "-0.05"})
        average.add(exact(amount));
    average.add(Datum());
    QCOMPARE(average.value().toText({}), QStringLiteral("0.0833333333333333"));
}

void tst_expression_values::startAnew()
{
    for (const auto function : {AggregateFunction::Sum, AggregateFunction::Count,
             AggregateFunction::DistinctCount, AggregateFunction::Maximum}) {
        Accumulator accumulator(function);
        accumulator.add(exact("7"));
        accumulator.reset();
        accumulator.add(exact("1"));
        QCOMPARE(accumulator.value(), Datum::number(1));
    }
}

void tst_expression_values::sumsBeyondTheExactOnesGoOn()
{
    Accumulator sum(AggregateFunction::Sum);
    for (int i = 0; i < 3; ++i)
        sum.add(exact("99999999999999999999999999999999999999"));
    QCOMPARE(sum.value().kind(), DatumKind::Real);
    QCOMPARE(sum.value().toReal(), 3e38);
    sum.add(Datum::real(1e308));
    sum.add(Datum::real(1e308));
    QVERIFY_THROWS_EXCEPTION(EvaluationFault, sum.value());
}

void tst_expression_values::formats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<Datum>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *format, const Datum &value, const char *text) {
        QTest::addRow("%s of %s", format, qPrintable(value.toText({})))
            << QString::fromUtf8(format) << value << QString::fromUtf8(text);
    };
    row("", exact("-1234.5"), "-1234.5");
    row("0.00", Datum(), "");
    row("0.00", QStringLiteral("n/a"), "n/a");
    row("0.00", Datum::boolean(true), "True");
    row("0.00", exact("1.005"), "1.01");
    row("0.00", Datum::real(1.005), "1.01");
    row("0.00", exact("-0.004"), "0.00");
    row("0.00;(0.00);-", exact("-0.004"), "-");
    row("0.00;(0.00)", exact("-0.004"), "0.00");
    row("0;;", exact("-5"), "");
    row("#,##0", exact("999"), "999");
    row("#,##0", exact("999999.5"), "1,000,000");
    row("#,##0.0##", Datum::real(-1234.25), "-1,234.25");
    row("#.##", exact("0.5"), ".5");
    row("#", exact("0"), "");
    row("0,000", exact("7"), "0,007");
    row("$ 0.00", exact("-3"), "-$ 3.00");
    row("0%", exact("0.005"), "1%");
    row("\\#0", exact("7"), "#7");
    row("0 'it''s'", exact("7"), "7 it's");
    row("0.0", Datum::real(1e40), "10000000000000000303786028427003666890752.0");
    row("0.0", Datum::real(1e-60), "0.0");
    row("\"paid\"", exact("7"), "paid");
    row("dd.MM.yy", Datum::date(QDate(2026, 1, 2)), "02.01.26");
    row("ddd d 'o''clock' H:mm:ss",
        Datum::dateTime(QDateTime(QDate(2026, 1, 2), QTime(15, 4, 5), Qt::UTC)),
        "Fri 2 o'clock 15:04:05");
    row("hh:mm ap", Datum::time(QTime(0, 5)), "12:05 am");
    row("yyyy-MM-dd", Datum::time(QTime(9, 5)), "9:05:00 AM");
    row("yyyy-MM-dd", exact("7"), "7");
    row("long time", Datum::time(QTime(9, 5)), "9:05:00 AM");
    row("short date", QStringLiteral("soon"), "soon");
    row("Y/N", Datum::boolean(false), "N");
    row("✓/", Datum::number(1), "✓");
    row("yes/no", QStringLiteral("maybe"), "maybe");
}

void tst_expression_values::formats()
{
    QFETCH(QString, format);
    QFETCH(Datum, value);
    const auto compiled = ValueFormat::compile(format);
    QVERIFY(std::holds_alternative<ValueFormat>(compiled));
    QTEST(std::get<ValueFormat>(compiled).apply(value, {}), "text");
}

void tst_expression_values::refusesFormats_data()
{
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *format, const char *fault) {
        QTest::newRow(format) << QString::fromUtf8(fault);
    };
    row("0.00 USD", "5: letters in a number format must be quoted");
    row("0 0", "2: all digits of a section stand side by side");
    row("0,", "1: a comma stands between digits before the point");
    row("0.0,0", "3: a comma stands between digits before the point");
    row("0.", "1: one point, with digits behind it, is expected");
    row("0;0;0;0", "5: a format has at most three sections: positive; negative; zero");
    row("0 'abc", "2: the text that starts here has no closing '");
    row("0.0000000000000000000000000000000", "32: at most 30 digits are possible");
    row("mm-dd-yyyy", "0: m means minutes; months are M");
    row("yyy", "0: write yy or yyyy");
    row("d.M.y", "4: write yy or yyyy");
    row("shrt date", "0: \"shrt date\" is no format; did you mean short date?");
    row("currency", "0: \"currency\" is no format; letters of its own must be quoted");
    row("yes/no/maybe",
        "6: one / parts the text for yes from the text for no; others must be quoted");
}

void tst_expression_values::refusesFormats()
{
    const auto compiled = ValueFormat::compile(QString::fromUtf8(QTest::currentDataTag()));
    const auto *fault = std::get_if<ExpressionFault>(&compiled);
    QVERIFY(fault);
    QTEST(QString(QString::number(fault->offset) + u": " + fault->words), "fault");
}

QTEST_GUILESS_MAIN(tst_expression_values)
#include "tst_expression_values.moc"
