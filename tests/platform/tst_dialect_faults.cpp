#include "database_files.h"
#include "platform/database/embedded/embedded_driver.h"
#include "platform/database/embedded/tokens.h"
#include "platform/database/error.h"
#include "support/suite.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <random>

using namespace corvane;

/// What goes wrong while a statement runs, what is too much, and statements that nobody would
/// write.
class tst_dialect_faults : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void runTimeFailures_data();
    void runTimeFailures();
    void guardedDivisions_data();
    void guardedDivisions();
    void longSums_data();
    void longSums();
    void manyAmountsSumUpToTheLastCent();
    void endlessRecursionEnds();
    void tooDeepForSQLite();
    void randomTokens();
    void damagedStatements();

private:
    QString run(const QString &sql);
    QString complaint(const QString &sql);
    /// Failures begin with their number.
    static bool isRowset(const QString &words)
    {
        return words.isEmpty() || words.front().isLetter();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Driver> m_driver;
    int m_ran = 0; ///< statements that gave a rowset
};

void tst_dialect_faults::initTestCase()
{
    test::writeDatabase(m_folder.filePath(QStringLiteral("Clinic.db")),
        "CREATE TABLE t(id int, name varchar(10), d date, at datetime, price decimal(10,2), ok bit,"
        " fee money, loose);"
        "INSERT INTO t VALUES(1,'a','2026-11-01','2026-11-01 08:00:00',2.5,1,3,'x'),"
        "(0,NULL,NULL,NULL,NULL,NULL,NULL,NULL);"
        "CREATE TABLE amounts(n decimal(12,2));"
        "WITH r(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM r WHERE i < 100000)"
        " INSERT INTO amounts SELECT (i % 997) + 0.07 FROM r;");
    ConnectionText text;
    text.dataSource = QStringLiteral("sqlite:.");
    text.catalogue = QStringLiteral("Clinic");
    m_driver = openEmbedded(text, {m_folder.path()});
}

QString tst_dialect_faults::run(const QString &sql)
{
    try {
        return test::described(*m_driver->query(sql));
    } catch (const DatabaseError &error) {
        return QStringLiteral("%1: %2").arg(error.number()).arg(error.description());
    }
}

void tst_dialect_faults::runTimeFailures_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("start");
    const auto add = [](const char *sql, const char *start) {
        QTest::newRow(sql) << QString::fromLatin1(sql) << QString::fromLatin1(start);
    };
    add("SELECT 1 / id FROM t", "8134: Divide by zero error encountered.");
    add("SELECT 7 % id FROM t", "8134: ");
    add("SELECT price / id FROM t WHERE id = 1 UNION ALL SELECT 1.5 / 0", "8134: ");
    add("SELECT 5.5 % 0", "8134: ");
    add("SELECT CAST('12.5' AS int)", "245: ");
    add("SELECT id FROM t WHERE id = 'abc'", "245: ");
    add("SELECT CASE WHEN id = 1 THEN name ELSE 0 END FROM t", "245: ");
    add("SELECT ISNULL(id, 'none') FROM t WHERE id IS NULL UNION SELECT ISNULL(NULLIF(id, 0), "
        "'none') FROM t",
        "245: ");
    add("SELECT name * 2 FROM t", "245: ");
    add("SELECT CAST('' AS decimal(5, 1))", "8114: ");
    add("SELECT CAST('x' AS float)", "8114: ");
    add("SELECT CAST(3000000000 AS int)", "8115: ");
    add("SELECT CAST(256 AS tinyint)", "8115: ");
    add("SELECT CAST(12345 AS decimal(4, 1))", "8115: ");
    add("SELECT CAST(123.45 AS varchar(4))", "8115: ");
    add("SELECT CONVERT(varchar, at, 999) FROM t", "281: 999 is not a valid style");
    add("SELECT DATEADD(year, 9999, d) FROM t", "517: ");
    add("SELECT DATEADD(day, 1, name) FROM t", "241: ");
    add("SELECT 'due ' + d FROM t", "241: ");
    add("SELECT name + 'x' + 5 FROM t",
        "245: Conversion failed when converting the text value 'ax'");
    add("SELECT LEFT(name, -1) FROM t", "537: ");
}

void tst_dialect_faults::runTimeFailures()
{
    QFETCH(QString, sql);
    QFETCH(QString, start);
    const QString words = run(sql);
    QVERIFY2(words.startsWith(start), qPrintable(words));
    QCOMPARE(run(QStringLiteral("SELECT 1")), QStringLiteral("Integer 1"));
}

void tst_dialect_faults::guardedDivisions_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("result");
    const auto add = [](const char *name, const char *sql, const char *result) {
        QTest::newRow(name) << QString::fromLatin1(sql) << QString::fromLatin1(result);
    };
    add("by CASE", "SELECT CASE WHEN id = 0 THEN 0 ELSE 10 / id END FROM t",
        "Integer 10 / Integer 0");
    add("by CASE, constant", "SELECT CASE WHEN id = 5 THEN 1 / 0 ELSE 2 END FROM t WHERE id = 1",
        "Integer 2");
    add("by NULLIF", "SELECT 10 / NULLIF(id, 0) FROM t", "Integer 10 / Null");
    add("of null", "SELECT price / fee, price / id, NULL / id, NULL % 0 FROM t WHERE id = 0",
        "Null | Null | Null | Null");
    add("of the least number",
        "SELECT (-999999999999999999 * 9 - 223372036854775817) / -id FROM t WHERE id = 1",
        "Real 9.22337203685478e+18");
}

void tst_dialect_faults::guardedDivisions()
{
    QFETCH(QString, sql);
    QFETCH(QString, result);
    QCOMPARE(run(sql), result);
}

void tst_dialect_faults::longSums_data()
{
    QTest::addColumn<QString>("summand");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("result");
    QTest::newRow("texts") << QStringLiteral("name") << 2000
                           << QString(u"Text " % QString(2000, u'a'));
    QTest::newRow("undeclared texts")
        << QStringLiteral("loose") << 2000 << QString(u"Text " % QString(2000, u'x'));
    QTest::newRow("numbers") << QStringLiteral("id") << 5000 << QStringLiteral("Integer 5000");
    QTest::newRow("texts and numbers made text") << QStringLiteral("CAST(id AS varchar(1))") << 500
                                                 << QString(u"Text " % QString(500, u'1'));
}

void tst_dialect_faults::longSums()
{
    QFETCH(QString, summand);
    QFETCH(int, count);
    QFETCH(QString, result);
    const QString sum = QStringList(count, summand).join(u" + ");
    QCOMPARE(run(u"SELECT " % sum % u" FROM t WHERE id = 1"), result);
}

/// A running sum of doubles is off in the seventh decimal here.
void tst_dialect_faults::manyAmountsSumUpToTheLastCent()
{
    qint64 cents = 0;
    for (int i = 1; i <= 100'000; ++i)
        cents += (i % 997) * 100 + 7;
    QCOMPARE(run(QStringLiteral("SELECT SUM(n) FROM amounts")),
        QStringLiteral("Decimal %1").arg(cents / 100));
    QCOMPARE(
        run(QStringLiteral("SELECT COUNT(*) FROM amounts HAVING SUM(n) = %1").arg(cents / 100)),
        QStringLiteral("Integer 100000"));
}

void tst_dialect_faults::endlessRecursionEnds()
{
    const QString words = run(
        QStringLiteral("WITH r(n) AS (SELECT 1 UNION ALL SELECT n FROM r) SELECT COUNT(*) FROM r"));
    QVERIFY2(words.startsWith(u"530: The statement terminated."), qPrintable(words));
}

void tst_dialect_faults::tooDeepForSQLite()
{
    const QString sql = u"SELECT " % QStringLiteral("LEN(").repeated(60) % u'1' % QString(60, u')');
    QVERIFY2(run(sql).contains(u"nested too deeply"), qPrintable(run(sql)));
}

/// Empty when the statement runs or is refused in the dialect's own words. SQLite's complaints
/// about its syntax would mean that the translation let something through.
QString tst_dialect_faults::complaint(const QString &sql)
{
    QElapsedTimer timer;
    timer.start();
    const QString words = run(sql);
    m_ran += isRowset(words) ? 1 : 0;
    constexpr int kPatience = 5000;
    if (timer.elapsed() > kPatience)
        return u"took too long: " % sql;
    const bool leaked = words.contains(u"syntax error") || words.contains(u"unrecognized token")
        || words.contains(u"incomplete input");
    return leaked ? QString(words % u" for: " % sql) : QString();
}

void tst_dialect_faults::randomTokens()
{
    const QStringList pieces = QStringLiteral(
        "SELECT FROM WHERE AND OR NOT IN LIKE BETWEEN IS NULL CASE WHEN THEN ELSE END AS ON JOIN "
        "LEFT INNER CROSS APPLY UNION ALL ORDER GROUP BY HAVING TOP DISTINCT WITH OVER EXISTS CAST "
        "CONVERT ISNULL DATEADD DATEDIFF LEN STR day varchar datetime t id name [at] \"d\" price "
        "dbo "
        "Clinic 'x' N'' '11/01/2026' '' 0 1 2.5 1e9 0xAB .5 99999999999999999999 @v #t ( ) ( ) , , "
        ". + - * / % = <> < >= !< | & || ; -- /* */ ' [ ] \" $ \x1 \xe9 \n")
                                   .split(u' ');
    std::mt19937 random(20'261'101);
    for (int round = 0; round < 20'000; ++round) {
        QString sql = random() % 2 == 0 ? QStringLiteral("SELECT ") : QString();
        for (auto left = random() % 25; left > 0; --left)
            sql += pieces[qsizetype(random() % size_t(pieces.size()))] % u' ';
        const QString fault = complaint(sql);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
}

/// Whole statements with tokens lost, doubled, swapped or taken from each other.
void tst_dialect_faults::damagedStatements()
{
    const QStringList statements{
        QStringLiteral("SELECT DISTINCT TOP 5 a.id, ISNULL(a.name, 'none') + ', ' + b.name AS both "
                       "FROM Clinic.dbo.t a LEFT OUTER JOIN t b ON a.id = b.id WHERE a.d BETWEEN "
                       "'11/01/2026' AND '11/30/2026' AND NOT a.id IN (1, 2, 3) ORDER BY a.d DESC"),
        QStringLiteral("WITH r (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r WHERE n < 10) SELECT "
                       "n, CASE WHEN n % 2 = 0 THEN 'even' ELSE 'odd' END FROM r"),
        QStringLiteral("SELECT CONVERT(varchar(10), DATEADD(day, -1, a.at), 101), SUM(a.price / 2) "
                       "FROM (SELECT * FROM t WHERE name LIKE '[a-f]%' ESCAPE '!') a GROUP BY a.at "
                       "HAVING COUNT(*) > 0 UNION SELECT CAST(GETDATE() AS varchar), NULL"),
        QStringLiteral(
            "SELECT ROW_NUMBER() OVER (PARTITION BY name ORDER BY d) AS k, -(fee - 1.5), "
            "STR(price, 8, 2) FROM t WITH (NOLOCK) WHERE EXISTS (SELECT 1 FROM t x WHERE "
            "x.id = t.id OR x.name IS NOT NULL)")};
    using Tokens = std::vector<embedded::Token>;
    std::vector<Tokens> whole;
    for (const QString &statement : statements) {
        QVERIFY2(isRowset(run(statement)), qPrintable(run(statement)));
        whole.push_back(embedded::tokenize(statement));
    }
    std::mt19937 random(20'261'102);
    const auto anyOf = [&random](Tokens &tokens) -> embedded::Token & {
        return tokens[random() % tokens.size()];
    };
    m_ran = 0;
    for (int round = 0; round < 20'000; ++round) {
        Tokens damaged = whole[random() % whole.size()];
        for (auto left = random() % 3 + 1; left > 0; --left) {
            embedded::Token &target = anyOf(damaged);
            const embedded::Token donor = anyOf(whole[random() % whole.size()]);
            switch (random() % 8) {
            case 0:
                target.text = {};
                break;
            case 1:
                damaged.insert(damaged.begin() + (&target - damaged.data()), donor);
                break;
            case 2:
                std::swap(target, anyOf(damaged));
                break;
            case 3:
                target = donor;
                break;
            default: // often still a statement
                if (donor.kind == target.kind)
                    target = donor;
            }
        }
        QString sql;
        for (const embedded::Token &token : damaged)
            sql += token.text % u' ';
        const QString fault = complaint(sql);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
    QVERIFY2(m_ran > 1000, qPrintable(QString::number(m_ran)));
}

QTEST_GUILESS_MAIN(tst_dialect_faults)
#include "tst_dialect_faults.moc"
