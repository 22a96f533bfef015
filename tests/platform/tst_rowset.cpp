#include "platform/database/connection_text.h"
#include "platform/database/error.h"
#include "platform/database/rowset.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_rowset : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void valuesHaveOneTextForm_data();
    void valuesHaveOneTextForm();
    void cellsSurviveBlockBoundaries();
    void fieldsByOrdinalAndName();
    void connectionTexts_data();
    void connectionTexts();
};

Q_DECLARE_METATYPE(corvane::Value)
Q_DECLARE_METATYPE(corvane::ConnectionText)

void tst_rowset::valuesHaveOneTextForm_data()
{
    QTest::addColumn<Value>("value");
    QTest::addColumn<QString>("text");

    const auto digits = [](const char *s) { return Value::decimal(s, quint32(strlen(s))); };
    QTest::newRow("null is empty") << Value() << QString();
    QTest::newRow("whole number") << Value::integer(-42) << QStringLiteral("-42");
    QTest::newRow("real without noise") << Value::real(0.1 + 0.2) << QStringLiteral("0.3");
    QTest::newRow("decimal drops trailing zeros") << digits("12.3400") << QStringLiteral("12.34");
    QTest::newRow("decimal drops a bare point") << digits("12.000") << QStringLiteral("12");
    QTest::newRow("whole decimal keeps its zeros") << digits("1200") << QStringLiteral("1200");
    QTest::newRow("no negative zero") << digits("-0.00") << QStringLiteral("0");
    QTest::newRow("true") << Value::boolean(true) << QStringLiteral("True");
    QTest::newRow("date") << Value::date(20'000) << QStringLiteral("10/04/2024");
    QTest::newRow("date before the epoch") << Value::date(-1) << QStringLiteral("12/31/1969");
    QTest::newRow("midnight shows no time") << Value::dateTime(0) << QStringLiteral("01/01/1970");
    QTest::newRow("time of day shows") << Value::dateTime(-60'000) << QStringLiteral("12/31/1969 11:59:00 PM");
    QTest::newRow("time alone") << Value::time(45'000'000) << QStringLiteral("12:30:00 PM");
    QTest::newRow("text beyond ASCII") << Value::text("Zo\xc3\xab", 4) << QString::fromUtf8("Zo\xc3\xab");
}

void tst_rowset::valuesHaveOneTextForm()
{
    QFETCH(Value, value);
    QFETCH(QString, text);
    QCOMPARE(valueText(value, {}), text);
}

void tst_rowset::cellsSurviveBlockBoundaries()
{
    constexpr int kRows = 30'000; // 90,000 cells: beyond one block
    RowsetBuilder builder({QStringLiteral("n"), QStringLiteral("text"), QStringLiteral("none")});
    const QByteArray big(1 << 20, 'x');
    for (int i = 0; i < kRows; ++i) {
        builder.add(Value::integer(i));
        builder.addText(i == 7 ? big : QByteArray::number(i * 3));
        builder.add(Value());
    }
    builder.add(Value::integer(1)); // a row cut short does not count
    const RowsetPtr rowset = builder.finish();
    QCOMPARE(rowset->rowCount(), kRows);
    for (int i = 0; i < kRows; ++i) {
        QCOMPARE(rowset->value(i, 0).number(), i);
        QCOMPARE(rowset->value(i, 1).data(), QByteArrayView(i == 7 ? big : QByteArray::number(i * 3)));
        QVERIFY(rowset->value(i, 2).isNull());
    }
}

void tst_rowset::fieldsByOrdinalAndName()
{
    RowsetBuilder builder({QStringLiteral("Name"), QStringLiteral("name"), QStringLiteral("Id")});
    for (int i = 0; i < 3; ++i)
        builder.add(Value::integer(i));
    const RowsetPtr rowset = builder.finish();
    QCOMPARE(rowset->fieldIndex(u"NAME"), 0);
    QCOMPARE(rowset->fieldIndex(u"absent"), -1);
    for (const int field : {-1, 3}) {
        try {
            rowset->value(0, field);
            QFAIL("no such field must throw");
        } catch (const DatabaseError &error) {
            QCOMPARE(error.number(), 3265);
        }
    }
}

void tst_rowset::connectionTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ConnectionText>("expected");

    ConnectionText sql {QStringLiteral("SQLOLEDB"), QStringLiteral("HOST\\ONE"), QStringLiteral("Clinic"),
        QStringLiteral("sa"), QStringLiteral("a=b "), false};
    QTest::newRow("server logon") << QStringLiteral(
        "Provider=SQLOLEDB;Data Source=HOST\\ONE;Initial Catalog=Clinic;User Id=sa;Password=a=b ; ") << sql;
    ConnectionText trusted {QStringLiteral("SQLOLEDB"), QStringLiteral("HOST"), QStringLiteral("Second"), {}, {}, true};
    QTest::newRow("synonyms in capitals")
        << QStringLiteral("PROVIDER=SQLOLEDB;SERVER=HOST;Database=Second;Integrated Security=SSPI;") << trusted;
    QTest::newRow("the first of a meaning wins")
        << QStringLiteral("provider=SQLOLEDB;Address=HOST;Server=OTHER;DATABASE=Second;Trusted_Connection=Yes") << trusted;
    QTest::newRow("nonsense is passed over") << QStringLiteral(";;=;What=ever;no equals") << ConnectionText();
}

void tst_rowset::connectionTexts()
{
    QFETCH(QString, text);
    QFETCH(ConnectionText, expected);
    QCOMPARE(parseConnectionText(text), expected);
}

QTEST_MAIN(tst_rowset)
#include "tst_rowset.moc"
