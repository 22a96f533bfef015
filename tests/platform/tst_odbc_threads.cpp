// Queries for which the system has no thread to give.

#include "database_files.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/failures.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <pthread.h>

using namespace corvane;

namespace {

/// As long as it lives the system has no thread to give: none of that size has room in memory.
class NoThreads
{
public:
    NoThreads()
    {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge = m_before;
        pthread_attr_setstacksize(&huge, size_t(1) << 50);
        pthread_setattr_default_np(&huge);
    }
    ~NoThreads() { pthread_setattr_default_np(&m_before); }
    Q_DISABLE_COPY_MOVE(NoThreads)

private:
    pthread_attr_t m_before;
};

/// Of this process.
qsizetype threadCount()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

class tst_odbc_threads : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void withoutAThreadAQueryIsRefused();
    void withoutAThreadAStoppedQueryIsLeftAlone();

private:
    std::unique_ptr<Connection> open(TimeOuts timeOuts = {}) const;

    QTemporaryDir m_folder;
};

std::unique_ptr<Connection> tst_odbc_threads::open(TimeOuts timeOuts) const
{
    return Connection::open(u"Provider=SQLite3;Data Source=anything;Initial Catalog=" + m_folder.filePath(QStringLiteral("odbc.db")),
        {{}, 0, timeOuts});
}

void tst_odbc_threads::initTestCase()
{
    test::writeDatabase(m_folder.filePath(QStringLiteral("odbc.db")),
        "CREATE TABLE counts(n int); INSERT INTO counts VALUES(1),(2),(3),(4);");
}

void tst_odbc_threads::withoutAThreadAQueryIsRefused()
{
    const auto connection = open({.query = 5});
    const QString sql = QStringLiteral("SELECT n FROM counts");
    {
        const NoThreads none;
        const auto failure = test::databaseFailure([&] { connection->openRowset(sql); });
        QVERIFY(failure);
        QVERIFY2(
            failure->description().contains(u"no thread left"), qPrintable(failure->description()));
    }
    QCOMPARE(connection->openRowset(sql)->rowCount(), 4);
}

void tst_odbc_threads::withoutAThreadAStoppedQueryIsLeftAlone()
{
    struct Stopped
    {
    };
    const QString slow
        = QStringLiteral("WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM s "
                         "WHERE i < 3000000) SELECT COUNT(*) FROM s");
    const auto connection = open();
    const qsizetype threads = threadCount();
    std::optional<NoThreads> none;
    QVERIFY_THROWS_EXCEPTION(Stopped, connection->openRowset(slow, [&none] {
        none.emplace();
        throw Stopped();
    }));
    none.reset();
    const auto next = test::databaseFailure([&] { connection->openRowset(slow); });
    QVERIFY(next);
    QCOMPARE(next->cause(), FailureCause::Lost);
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), threads, 60'000);
}

QTEST_GUILESS_MAIN(tst_odbc_threads)
#include "tst_odbc_threads.moc"
