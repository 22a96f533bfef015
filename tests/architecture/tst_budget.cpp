#include "budget.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

QByteArray textOf(const char *path)
{
    QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/") + QLatin1String(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_budget : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void theReadmeHasEveryRow_data();
    void theReadmeHasEveryRow();
    void aRowThatLacksItsUnitIsRefused();
};

void tst_budget::theReadmeHasEveryRow_data()
{
    QTest::addColumn<QString>("row");
    for (const bench::Budget &budget : bench::readBudgets(textOf("bench/budget.json")))
        QTest::newRow(qPrintable(budget.name))
            << QStringLiteral("\n| %1 | %2 |").arg(budget.work, budget.text());
}

void tst_budget::theReadmeHasEveryRow()
{
    QFETCH(QString, row);
    QVERIFY2(QString::fromUtf8(textOf("bench/README.md")).contains(row), qPrintable(row));
}

void tst_budget::aRowThatLacksItsUnitIsRefused()
{
    QVERIFY_THROWS_EXCEPTION(
        std::runtime_error, bench::readBudgets(R"([{"name": "a", "work": "b", "budget": 1}])"));
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, bench::readBudgets("[{"));
}

QTEST_GUILESS_MAIN(tst_budget)
#include "tst_budget.moc"
