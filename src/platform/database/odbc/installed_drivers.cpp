#include "platform/database/driver.h"

#include "platform/database/odbc/handles.h"

namespace corvane {

QStringList installedOdbcDrivers()
{
    const odbc::Environment environment = odbc::openEnvironment();
    if (!environment)
        return {};
    QStringList drivers;
    SQLWCHAR name[256];
    SQLWCHAR attributes[1024];
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT attributesLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (
        SQL_SUCCEEDED(SQLDriversW(environment.get(), direction, name, SQLSMALLINT(std::size(name)),
            &nameLength, attributes, SQLSMALLINT(std::size(attributes)), &attributesLength))) {
        drivers += QString::fromUtf16(reinterpret_cast<const char16_t *>(name));
        direction = SQL_FETCH_NEXT;
    }
    return drivers;
}

} // namespace corvane
