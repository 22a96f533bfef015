#include "platform/database/odbc/provider.h"

#include "platform/database/error.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>

namespace corvane::odbc {

namespace {

constexpr std::array kServerProviders{
    QLatin1StringView("SQLOLEDB"), QLatin1StringView("SQLNCLI"), QLatin1StringView("MSOLEDBSQL")};

bool isServerProvider(const QString &provider)
{
    return std::ranges::any_of(kServerProviders,
        [&](auto prefix) { return provider.startsWith(prefix, Qt::CaseInsensitive); });
}

QString installedAs(const QString &name, const QStringList &installed)
{
    const auto found = std::ranges::find_if(installed,
        [&](const QString &driver) { return driver.compare(name, Qt::CaseInsensitive) == 0; });
    return found == installed.end() ? QString() : *found;
}

QString serverDriver(const QStringList &installed)
{
    const auto newest = std::ranges::max_element(installed, {}, vendorVersion);
    if (newest != installed.end() && vendorVersion(*newest) >= 0)
        return *newest;
    return installedAs(QStringLiteral("FreeTDS"), installed);
}

} // namespace

int vendorVersion(const QString &driver)
{
    static const QRegularExpression pattern(QStringLiteral("^ODBC Driver (\\d+) for SQL Server$"));
    const auto match = pattern.match(driver);
    return match.hasMatch() ? match.capturedView(1).toInt() : -1;
}

QString driverFor(const QString &provider, const QStringList &installed)
{
    const QString name = provider.trimmed();
    QString driver
        = isServerProvider(name) ? serverDriver(installed) : installedAs(name, installed);
    if (!driver.isEmpty())
        return driver;
    const QString drivers = installed.isEmpty() ? QStringLiteral("none") : installed.join(u", ");
    const QString missing = name.isEmpty()
        ? QStringLiteral("The connection names no provider.")
        : QStringLiteral("There is no database driver for the provider \"%1\".").arg(name);
    throw DatabaseError(kConnectionError, missing % u" Installed drivers: " % drivers % u'.',
        FailureCause::Provider);
}

} // namespace corvane::odbc
