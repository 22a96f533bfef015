#include "platform/database/connection.h"

#include "platform/database/error.h"

#include <QtCore/QScopeGuard>

namespace corvane {

std::unique_ptr<Connection> Connection::open(const QString &connectionText, const DriverSettings &settings)
{
    const ConnectionText text = parseConnectionText(connectionText);
    const bool embedded = text.dataSource.startsWith(u"sqlite:", Qt::CaseInsensitive);
    return std::make_unique<Connection>(
        connectionText, embedded ? openEmbedded(text, settings) : openOdbc(text, settings));
}

Connection::Connection(QString connectionText, std::unique_ptr<Driver> driver)
    : m_connectionText(std::move(connectionText))
    , m_driver(std::move(driver))
{
}

RowsetPtr Connection::openRowset(const QString &sql, const QueryWatch &watch)
{
    if (sql.trimmed().isEmpty())
        throw DatabaseError(3709, QStringLiteral("The query is empty."));
    if (!m_latest || m_latestSql != sql) {
        forgetResult();
        m_driver->setWatch(watch);
        const auto unwatched = qScopeGuard([this] { m_driver->setWatch({}); });
        m_latest = m_driver->query(sql);
        m_latestSql = sql;
    }
    return m_latest;
}

void Connection::forgetResult()
{
    m_latest.reset();
    m_latestSql.clear();
}

} // namespace corvane
