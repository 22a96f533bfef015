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

/// NN of "ODBC Driver NN for SQL Server"; -1 for any other driver.
int vendorVersion(const QString &driver)
{
    static const QRegularExpression pattern(QStringLiteral("^ODBC Driver (\\d+) for SQL Server$"));
    const auto match = pattern.match(driver);
    return match.hasMatch() ? match.capturedView(1).toInt() : -1;
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

QString serverKeywords(const QString &driver, const ConnectionText &text)
{
    QString result = u"Driver={" % driver % u'}';
    const auto add = [&](QStringView keyword, const QString &value) {
        if (!value.isEmpty())
            result += u';' % keyword % u'=' % keywordValue(value);
    };
    add(u"Server", text.dataSource);
    add(u"Database", text.catalogue);
    if (text.integratedSecurity)
        add(u"Trusted_Connection", QStringLiteral("Yes"));
    return result;
}

/// Plain values stay plain: not every driver reads braces.
QString keywordValue(const QString &value)
{
    static const QRegularExpression special(
        QStringLiteral("[\\[\\]{}();?*=!@\\x00-\\x1f]|^\\s|\\s$"));
    if (!special.match(value).hasMatch())
        return value;
    return u'{' % QString(value).replace(u'}', QStringLiteral("}}")) % u'}';
}

QString withoutPassword(QString message, const QString &password)
{
    constexpr qsizetype kTellingLength = 3; // anything shorter stands in many an innocent word
    static const QRegularExpression keyword(
        QStringLiteral("\\b(pwd|password)\\s*=\\s*(\\{(?:[^}]|\\}\\})*\\}|[^;]*)"),
        QRegularExpression::CaseInsensitiveOption);
    message.replace(keyword, QStringLiteral("\\1=***"));
    if (password.size() >= kTellingLength)
        message.replace(password, QStringLiteral("***"));
    return message;
}

} // namespace corvane::odbc
