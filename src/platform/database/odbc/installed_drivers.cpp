#include "platform/database/driver.h"

#ifdef Q_OS_WIN
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <memory>

namespace corvane {

namespace {

struct FreeEnvironment
{
    void operator()(void *environment) const { SQLFreeHandle(SQL_HANDLE_ENV, environment); }
};

} // namespace

QStringList installedOdbcDrivers()
{
    SQLHANDLE handle = SQL_NULL_HANDLE;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle)))
        return {};
    const std::unique_ptr<void, FreeEnvironment> environment(handle);
    SQLSetEnvAttr(handle, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);

    QStringList drivers;
    SQLWCHAR name[256];
    SQLWCHAR attributes[1024];
    SQLSMALLINT nameLength = 0;
    SQLSMALLINT attributesLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQL_SUCCEEDED(SQLDriversW(handle, direction, name, SQLSMALLINT(std::size(name)),
        &nameLength, attributes, SQLSMALLINT(std::size(attributes)), &attributesLength))) {
        drivers += QString::fromUtf16(reinterpret_cast<const char16_t *>(name));
        direction = SQL_FETCH_NEXT;
    }
    return drivers;
}

} // namespace corvane
