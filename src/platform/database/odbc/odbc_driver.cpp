#include "platform/database/driver.h"

#include "platform/database/odbc/diagnostics.h"
#include "platform/database/odbc/fetch.h"
#include "platform/database/odbc/freetds_settings.h"
#include "platform/database/odbc/keywords.h"
#include "platform/database/odbc/provider.h"

#include <QtCore/QScopeGuard>

#include <chrono>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>

namespace corvane::odbc {

namespace {

/// How long a driver may take to report its own time-out before it is not waited for any more.
constexpr std::chrono::seconds kGrace(5);
/// How long a server may take to leave a query before its session is given up.
constexpr std::chrono::seconds kCancelled(1);
/// How often somebody who watches is called.
constexpr std::chrono::milliseconds kTurn(20);

/// Opens the session; false when the driver cannot.
bool logOn(
    const Session &session, const QString &driver, const ConnectionText &text, TimeOuts timeOuts)
{
    // A driver without time-outs says so with a warning; there is nothing to be done about it.
    SQLSetConnectAttrW(
        session.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute(SQLULEN(timeOuts.login)), 0);
    std::optional<FreeTdsSettings> settings;
    if (dialectOf(driver) == Dialect::FreeTds)
        settings.emplace(text);
    const QString keywords = logonKeywords(driver, text);
    SQLSMALLINT length = 0;
    return SQL_SUCCEEDED(SQLDriverConnectW(session.get(), nullptr, wide(keywords),
        SQLSMALLINT(keywords.size()), nullptr, 0, &length, SQL_DRIVER_NOPROMPT));
}

/// Whether a failed logon stumbled over the certificate: one that does not check it gets further.
bool refusesCertificate(const Environment &environment, const Session &failed,
    const QString &driver, const ConnectionText &text, TimeOuts timeOuts)
{
    if (dialectOf(driver) != Dialect::FreeTds || text.trustServerCertificate
        || !endsBeforeLogon(diagnostics(Session::kType, failed.get())))
        return false;
    const Session session(environment.get());
    if (logOn(session, driver, uncheckedTrial(text), timeOuts)) {
        SQLDisconnect(session.get());
        return true;
    }
    return failureOf(diagnostics(Session::kType, session.get()), {}, Phase::Connecting).cause()
        == FailureCause::Logon;
}

/// The statement of one query, for whoever wants to stop it from another thread. One of each query:
/// a late request must not reach the next.
class Stoppable
{
public:
    void setStatement(SQLHSTMT handle)
    {
        const std::scoped_lock lock(m_mutex);
        m_statement = handle;
    }
    /// Asks the server to leave the query, if it runs.
    void cancel()
    {
        const std::scoped_lock lock(m_mutex);
        if (m_statement)
            SQLCancel(m_statement);
    }

private:
    std::mutex m_mutex;
    SQLHSTMT m_statement = nullptr; ///< guarded by m_mutex
};

/// An open session and what a query on it needs; closed when nobody uses it any more.
class Link
{
public:
    Link(const QString &driver, const ConnectionText &text, TimeOuts timeOuts);
    ~Link() { SQLDisconnect(m_session.get()); }
    Q_DISABLE_COPY_MOVE(Link)

    RowsetPtr run(const QString &sql, Stoppable &query);

private:
    template <typename AnyHandle> DatabaseError failure(const AnyHandle &handle) const
    {
        constexpr bool kConnects = AnyHandle::kType == SQL_HANDLE_DBC;
        return failureOf(diagnostics(AnyHandle::kType, handle.get()), m_password,
            kConnects ? Phase::Connecting : Phase::Running);
    }

    QString m_password;
    TimeOuts m_timeOuts;
    Environment m_environment;
    Session m_session;
};

Link::Link(const QString &driver, const ConnectionText &text, TimeOuts timeOuts)
    : m_password(text.password)
    , m_timeOuts(timeOuts)
    , m_environment(openEnvironment())
    , m_session(m_environment.get())
{
    if (!m_session)
        throw DatabaseError(kConnectionError,
            QStringLiteral("The ODBC driver manager cannot be started."), FailureCause::Provider);
    if (logOn(m_session, driver, text, timeOuts))
        return;
    if (refusesCertificate(m_environment, m_session, driver, text, timeOuts))
        throw certificateFailure(text);
    throw failure(m_session);
}

RowsetPtr Link::run(const QString &sql, Stoppable &query)
{
    const Statement statement(m_session.get());
    if (!statement)
        throw failure(m_session);
    query.setStatement(statement.get());
    const auto ended = qScopeGuard([&] { query.setStatement(nullptr); });
    if (m_timeOuts.query > 0)
        SQLSetStmtAttrW(
            statement.get(), SQL_ATTR_QUERY_TIMEOUT, attribute(SQLULEN(m_timeOuts.query)), 0);
    // Forward-only and read-only are what a statement starts with: no cursor on the server.
    const SQLRETURN code = SQLExecDirectW(statement.get(), wide(sql), SQLINTEGER(sql.size()));
    if (!SQL_SUCCEEDED(code) && code != SQL_NO_DATA)
        throw failure(statement);
    return fetchResult(m_session, statement, m_password);
}

/// A query on a thread of its own, which is waited for unless it was left alone.
struct AsideQuery
{
    std::shared_ptr<Stoppable> statement = std::make_shared<Stoppable>();
    std::future<RowsetPtr> result;
    std::jthread thread;

    bool endsWithin(std::chrono::milliseconds time) const
    {
        return result.wait_for(time) == std::future_status::ready;
    }
    /// Whether the server left the query in time.
    bool endsCancelled() const;
};

bool AsideQuery::endsCancelled() const
{
    try {
        // Some drivers reach a silent server for this no more than for the query.
        std::thread([stopped = statement] { stopped->cancel(); }).detach();
    } catch (const std::system_error &) {
        return false; // no thread to ask the server from
    }
    return endsWithin(kCancelled);
}

AsideQuery startAside(const std::shared_ptr<Link> &link, const QString &sql)
{
    AsideQuery query;
    std::packaged_task<RowsetPtr()> task(
        [link, sql, statement = query.statement] { return link->run(sql, *statement); });
    query.result = task.get_future();
    try {
        query.thread = std::jthread(std::move(task));
    } catch (const std::system_error &) {
        throw DatabaseError(kConnectionError,
            QStringLiteral("The query was not started, because the system has no thread left for "
                           "it. Close other programs and run the report again."));
    }
    return query;
}

class OdbcDriver final : public Driver
{
public:
    OdbcDriver(const ConnectionText &text, TimeOuts timeOuts)
        : m_timeOuts(timeOuts)
        , m_link(std::make_shared<Link>(
              driverFor(text.provider, installedOdbcDrivers()), text, timeOuts))
    {
    }

    RowsetPtr query(const QString &sql) override;

private:
    RowsetPtr queryAside(const QString &sql);
    void watch(AsideQuery &query);
    void giveUp(AsideQuery &query);

    TimeOuts m_timeOuts;
    std::shared_ptr<Link> m_link; ///< null once it was given up
};

RowsetPtr OdbcDriver::query(const QString &sql)
{
    if (sql.trimmed().isEmpty())
        throw DatabaseError(kConnectionError, QStringLiteral("The query holds no statement."));
    if (!m_link)
        throw DatabaseError(kConnectionError,
            QStringLiteral("The connection was given up because the server did not answer."),
            FailureCause::Lost);
    if (m_timeOuts.query > 0 || m_watch)
        return queryAside(sql);
    Stoppable nobodyStopsIt;
    return m_link->run(sql, nobodyStopsIt);
}

/// Aside, so that somebody can watch, and because some drivers ask the server to mind the time:
/// with one that fell silent the call never ends.
RowsetPtr OdbcDriver::queryAside(const QString &sql)
{
    AsideQuery query = startAside(m_link, sql);
    const auto start = std::chrono::steady_clock::now();
    const auto most = std::chrono::seconds(m_timeOuts.query) + kGrace;
    while (!query.endsWithin(kTurn)) {
        watch(query);
        if (m_timeOuts.query == 0 || std::chrono::steady_clock::now() - start < most)
            continue;
        giveUp(query);
        throw DatabaseError(kConnectionError,
            QStringLiteral(
                "The server did not answer within %1 seconds, nor to the request to stop.")
                .arg(m_timeOuts.query),
            FailureCause::TimeOut);
    }
    query.thread.join(); // what it held of the session is gone with it
    return query.result.get();
}

void OdbcDriver::watch(AsideQuery &query)
{
    if (!m_watch)
        return;
    try {
        m_watch();
    } catch (...) {
        if (!query.endsCancelled())
            giveUp(query);
        throw;
    }
}

/// The thread is left alone with the session.
void OdbcDriver::giveUp(AsideQuery &query)
{
    query.thread.detach();
    m_link.reset();
}

} // namespace

} // namespace corvane::odbc

namespace corvane {

std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &settings)
{
    return std::make_unique<odbc::OdbcDriver>(text, settings.timeOuts);
}

} // namespace corvane
