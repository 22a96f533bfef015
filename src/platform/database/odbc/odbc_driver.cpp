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
    void watch(const std::future<RowsetPtr> &result, const std::shared_ptr<Stoppable> &query);

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

/// On a thread of its own, so that somebody can watch, and because some drivers ask the server to
/// mind the time: with one that fell silent the call never ends. The thread keeps the session and
/// is left alone then.
RowsetPtr OdbcDriver::queryAside(const QString &sql)
{
    const auto query = std::make_shared<Stoppable>();
    std::packaged_task<RowsetPtr()> task(
        [link = m_link, sql, query] { return link->run(sql, *query); });
    std::future<RowsetPtr> result = task.get_future();
    std::thread(std::move(task)).detach();
    const auto start = std::chrono::steady_clock::now();
    const auto most = std::chrono::seconds(m_timeOuts.query) + kGrace;
    while (result.wait_for(kTurn) != std::future_status::ready) {
        watch(result, query);
        if (m_timeOuts.query == 0 || std::chrono::steady_clock::now() - start < most)
            continue;
        m_link.reset();
        throw DatabaseError(kConnectionError,
            QStringLiteral(
                "The server did not answer within %1 seconds, nor to the request to stop.")
                .arg(m_timeOuts.query),
            FailureCause::TimeOut);
    }
    return result.get();
}

void OdbcDriver::watch(
    const std::future<RowsetPtr> &result, const std::shared_ptr<Stoppable> &query)
{
    if (!m_watch)
        return;
    try {
        m_watch();
    } catch (...) {
        // Some drivers reach a silent server for this no more than for the query.
        std::thread([query] { query->cancel(); }).detach();
        if (result.wait_for(kCancelled) != std::future_status::ready)
            m_link.reset();
        throw;
    }
}

} // namespace

} // namespace corvane::odbc

namespace corvane {

std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &settings)
{
    return std::make_unique<odbc::OdbcDriver>(text, settings.timeOuts);
}

} // namespace corvane
