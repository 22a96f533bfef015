#include "platform/database/driver.h"

#include "platform/database/odbc/keywords.h"
#include "platform/database/odbc/provider.h"

namespace corvane {

namespace {

constexpr int kServerPort = 1433;
constexpr int kPostgresPort = 5432;

int defaultPort(odbc::Dialect dialect)
{
    switch (dialect) {
    case odbc::Dialect::ServerVendor:
    case odbc::Dialect::FreeTds:
        return kServerPort;
    case odbc::Dialect::Postgres:
        return kPostgresPort;
    case odbc::Dialect::Other:
        break;
    }
    return 0;
}

QString certificateCheck(odbc::Dialect dialect, const ConnectionText &text)
{
    if (text.trustServerCertificate)
        return QStringLiteral("not checked: the connection asks to trust any certificate.");
    switch (dialect) {
    case odbc::Dialect::ServerVendor:
    case odbc::Dialect::FreeTds:
        return QStringLiteral(
            "where the connection is encrypted, the driver checks certificate and host name.");
    case odbc::Dialect::Postgres:
        return text.encryption == Encryption::On || text.encryption == Encryption::Strict
            ? QStringLiteral("the driver checks certificate and host name.")
            : QStringLiteral("none is asked for; Encrypt=yes behind the server's name does.");
    case odbc::Dialect::Other:
        break;
    }
    return QStringLiteral("left to the driver.");
}

} // namespace

ServerPlace serverPlace(const ConnectionText &text)
{
    ServerPlace place;
    place.driver = odbc::driverFor(text.provider, installedOdbcDrivers());
    const odbc::Dialect dialect = odbc::dialectOf(place.driver);
    place.certificateCheck = certificateCheck(dialect, text);
    if (dialect == odbc::Dialect::Other)
        return place;
    const odbc::ServerAddress address = odbc::serverAddress(text.dataSource);
    place.host = address.host.section(u'\\', 0, 0);
    if (!address.port.isEmpty())
        place.port = address.port.toInt();
    else if (!address.host.contains(u'\\'))
        place.port = defaultPort(dialect);
    return place;
}

} // namespace corvane
