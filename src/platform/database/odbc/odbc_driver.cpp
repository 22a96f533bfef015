#include "platform/database/driver.h"

#include "platform/database/odbc/diagnostics.h"
#include "platform/database/odbc/fetch.h"
#include "platform/database/odbc/freetds_settings.h"
#include "platform/database/odbc/keywords.h"
#include "platform/database/odbc/provider.h"

#include <chrono>
#include <future>
#include <thread>

namespace corvane::odbc {

namespace {

/// How long a driver may take to report its own time-out before it is not waited for any more.
constexpr std::chrono::seconds kGrace(5);

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

/// An open session and what a query on it needs; closed when nobody uses it any more.
class Link
{
public:
    Link(const QString &driver, const ConnectionText &text, TimeOuts timeOuts);
    ~Link() { SQLDisconnect(m_session.get()); }
    Q_DISABLE_COPY_MOVE(Link)

    RowsetPtr run(const QString &sql) const;

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

RowsetPtr Link::run(const QString &sql) const
{
    const Statement statement(m_session.get());
    if (!statement)
        throw failure(m_session);
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
    RowsetPtr queryWithin(std::chrono::seconds most, const QString &sql);

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
    if (m_timeOuts.query == 0)
        return m_link->run(sql);
    return queryWithin(std::chrono::seconds(m_timeOuts.query) + kGrace, sql);
}

/// Some drivers ask the server to mind the time: one that fell silent never ends the call. It is
/// made on a thread of its own then, which keeps the session and is left alone when time is up.
RowsetPtr OdbcDriver::queryWithin(std::chrono::seconds most, const QString &sql)
{
    std::packaged_task<RowsetPtr()> task([link = m_link, sql] { return link->run(sql); });
    std::future<RowsetPtr> result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_for(most) == std::future_status::ready)
        return result.get();
    m_link.reset();
    throw DatabaseError(kConnectionError,
        QStringLiteral("The server did not answer within %1 seconds, nor to the request to stop.")
            .arg(m_timeOuts.query),
        FailureCause::TimeOut);
}

} // namespace

} // namespace corvane::odbc

namespace corvane {

std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &settings)
{
    return std::make_unique<odbc::OdbcDriver>(text, settings.timeOuts);
}

} // namespace corvane
