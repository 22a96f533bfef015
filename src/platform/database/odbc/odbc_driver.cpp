#include "platform/database/driver.h"

#include "platform/database/odbc/diagnostics.h"
#include "platform/database/odbc/fetch.h"
#include "platform/database/odbc/keywords.h"
#include "platform/database/odbc/provider.h"

namespace corvane::odbc {

namespace {

class OdbcDriver final : public Driver
{
public:
    OdbcDriver(const ConnectionText &text, TimeOuts timeOuts);
    ~OdbcDriver() override;
    Q_DISABLE_COPY_MOVE(OdbcDriver)

    RowsetPtr query(const QString &sql) override;

private:
    template <typename AnyHandle> DatabaseError failure(const AnyHandle &handle) const
    {
        return failureOf(diagnostics(AnyHandle::kType, handle.get()), m_password);
    }

    QString m_password;
    TimeOuts m_timeOuts;
    Environment m_environment;
    Session m_session;
};

OdbcDriver::OdbcDriver(const ConnectionText &text, TimeOuts timeOuts)
    : m_password(text.password)
    , m_timeOuts(timeOuts)
    , m_environment(openEnvironment())
    , m_session(m_environment.get())
{
    const QString driver = driverFor(text.provider, installedOdbcDrivers());
    if (!m_session)
        throw DatabaseError(kConnectionError,
            QStringLiteral("The ODBC driver manager cannot be started."), FailureCause::Provider);
    // A driver without time-outs says so with a warning; there is nothing to be done about it.
    SQLSetConnectAttrW(
        m_session.get(), SQL_ATTR_LOGIN_TIMEOUT, attribute(SQLULEN(timeOuts.login)), 0);
    const QString keywords = logonKeywords(driver, text);
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLDriverConnectW(m_session.get(), nullptr, wide(keywords),
        SQLSMALLINT(keywords.size()), nullptr, 0, &length, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(code))
        throw failure(m_session);
}

OdbcDriver::~OdbcDriver()
{
    SQLDisconnect(m_session.get());
}

RowsetPtr OdbcDriver::query(const QString &sql)
{
    if (sql.trimmed().isEmpty())
        throw DatabaseError(kConnectionError, QStringLiteral("The query holds no statement."));
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

} // namespace

} // namespace corvane::odbc

namespace corvane {

std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &settings)
{
    return std::make_unique<odbc::OdbcDriver>(text, settings.timeOuts);
}

} // namespace corvane
