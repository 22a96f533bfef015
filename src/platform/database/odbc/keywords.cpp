#include "platform/database/odbc/keywords.h"

#include "platform/database/odbc/freetds_settings.h"
#include "platform/database/odbc/provider.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>

namespace corvane::odbc {

namespace {

class Keywords
{
public:
    explicit Keywords(const QString &driver)
        : m_text(u"Driver={" % driver % u'}')
    {
    }

    void add(QStringView keyword, const QString &value)
    {
        if (!value.isEmpty())
            m_text += u';' % keyword % u'=' % keywordValue(value);
    }
    void add(QStringView keyword, QLatin1StringView value) { add(keyword, QString(value)); }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

/// The vendor's driver checks the certificate unless it is told to trust. It is told so only by the
/// connection text, and told the contrary otherwise, whatever the machine's own settings say.
void addVendorEncryption(Keywords &keywords, const ConnectionText &text)
{
    constexpr std::array kWords{QLatin1StringView(), QLatin1StringView("no"),
        QLatin1StringView("yes"), QLatin1StringView("strict")};
    keywords.add(u"Encrypt", kWords[size_t(text.encryption)]);
    keywords.add(u"TrustServerCertificate",
        text.trustServerCertificate ? QLatin1StringView("yes") : QLatin1StringView("no"));
    keywords.add(u"ServerCertificate", text.serverCertificate);
}

/// What is checked of the certificate stands in the settings file, as does the server's address.
void addFreeTdsEncryption(Keywords &keywords, const ConnectionText &text)
{
    constexpr std::array kWords{QLatin1StringView(), QLatin1StringView("off"),
        QLatin1StringView("require"), QLatin1StringView("strict")};
    keywords.add(u"Encryption", kWords[size_t(text.encryption)]);
}

void addPostgresEncryption(Keywords &keywords, const ConnectionText &text)
{
    if (text.encryption == Encryption::Off)
        keywords.add(u"SSLmode", QLatin1StringView("disable"));
    else if (text.encryption != Encryption::DriverDefault)
        keywords.add(u"SSLmode",
            text.trustServerCertificate ? QLatin1StringView("require")
                                        : QLatin1StringView("verify-full"));
}

void addAddress(Keywords &keywords, Dialect dialect, const QString &dataSource)
{
    const ServerAddress address = serverAddress(dataSource);
    if (dialect != Dialect::Postgres) {
        keywords.add(u"Server", dataSource);
        return;
    }
    keywords.add(u"Server", address.host);
    keywords.add(u"Port", address.port);
}

void addDialect(Keywords &keywords, Dialect dialect, const ConnectionText &text)
{
    switch (dialect) {
    case Dialect::ServerVendor:
        return addVendorEncryption(keywords, text);
    case Dialect::FreeTds:
        // Left to find the version, it begins anew after each time-out and waits for ever.
        keywords.add(u"TDS_Version", QLatin1StringView("7.4"));
        return addFreeTdsEncryption(keywords, text);
    case Dialect::Postgres:
        addPostgresEncryption(keywords, text);
        // Booleans as such, line ends as they are, whole results without a cursor on the server.
        keywords.add(u"BoolsAsChar", QLatin1StringView("0"));
        keywords.add(u"LFConversion", QLatin1StringView("0"));
        keywords.add(u"UseDeclareFetch", QLatin1StringView("0"));
        return;
    case Dialect::Other:
        return;
    }
}

Keywords withoutLogon(const QString &driver, const ConnectionText &text)
{
    const Dialect dialect = dialectOf(driver);
    Keywords keywords(driver);
    if (dialect == Dialect::FreeTds) {
        keywords.add(u"Servername", freeTdsServer(text));
        keywords.add(u"Port", serverAddress(text.dataSource).port);
    } else {
        addAddress(keywords, dialect, text.dataSource);
    }
    keywords.add(u"Database", text.catalogue);
    if (text.integratedSecurity)
        keywords.add(u"Trusted_Connection", QLatin1StringView("Yes"));
    addDialect(keywords, dialect, text);
    return keywords;
}

} // namespace

Dialect dialectOf(const QString &driver)
{
    if (vendorVersion(driver) >= 0)
        return Dialect::ServerVendor;
    if (driver.compare(u"FreeTDS", Qt::CaseInsensitive) == 0)
        return Dialect::FreeTds;
    return driver.startsWith(u"PostgreSQL", Qt::CaseInsensitive) ? Dialect::Postgres
                                                                 : Dialect::Other;
}

ServerAddress serverAddress(const QString &dataSource)
{
    QString place = dataSource.trimmed();
    if (place.startsWith(u"tcp:", Qt::CaseInsensitive))
        place.remove(0, 4);
    ServerAddress address;
    if (const qsizetype comma = place.lastIndexOf(u','); comma >= 0) {
        address.port = place.sliced(comma + 1).trimmed();
        place.truncate(comma);
    }
    address.host = place.trimmed();
    static const QRegularExpression here(
        QStringLiteral("^(\\(local\\)|\\.)(?=\\\\|$)"), QRegularExpression::CaseInsensitiveOption);
    address.host.replace(here, QStringLiteral("localhost"));
    // A port says more than an instance: nobody has to be asked for it.
    if (const qsizetype instance = address.host.indexOf(u'\\');
        instance >= 0 && !address.port.isEmpty())
        address.host.truncate(instance);
    return address;
}

QString serverKeywords(const QString &driver, const ConnectionText &text)
{
    return withoutLogon(driver, text).text();
}

QString logonKeywords(const QString &driver, const ConnectionText &text)
{
    Keywords keywords = withoutLogon(driver, text);
    keywords.add(u"UID", text.userId);
    keywords.add(u"PWD", text.password);
    return keywords.text();
}

/// Plain values stay plain: not every driver reads braces.
QString keywordValue(const QString &value)
{
    // Letter by letter: a pattern matches nothing in a text with half of a surrogate pair.
    const bool isPlain = value == value.trimmed() && std::ranges::none_of(value, [](QChar c) {
        return c < u' ' || QStringView(u"[]{}();?*=!@").contains(c);
    });
    if (isPlain)
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
