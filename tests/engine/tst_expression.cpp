#include "fixed_context.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_expression : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void evaluates_data();
    void evaluates();
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
    row("a sum of decimals is exact", "Sum([amount], Report)", "100.35");
    row("texts are joined", "[name] & ': ' & [amount]", "Ada Reyes: 120.5");
}

void tst_expression::evaluates()
{
    QFETCH(QString, expression);
    QTEST(test::evaluated(expression), "text");
}

QTEST_GUILESS_MAIN(tst_expression)
#include "tst_expression.moc"
