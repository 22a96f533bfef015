#include "shared/connection_doctor.h"

#include "shared/profile.h"

#include <array>

namespace corvane {

namespace {

constexpr int kLongestTimeOut = 3'600;

int seconds(const QString &iniFile, QStringView section, QStringView key, int absent)
{
    bool isNumber = false;
    const int number = ReadINI(iniFile, section, key).trimmed().toInt(&isNumber);
    return isNumber && number >= 0 && number <= kLongestTimeOut ? number : absent;
}

/// The names of a section's keys: the two sections call the same things differently.
struct Keys
{
    QStringView server;
    QStringView database;
    QStringView user;
    QStringView password;
};

Keys keysOf(QStringView section)
{
    if (section == kSecondSection)
        return {u"Server", u"DataSource", u"UID", u"PW"};
    return {u"DataSource", u"InitialCatalog", u"UID", u"Password"};
}

class Advice
{
public:
    Advice(const QString &iniFile, QStringView section)
        : m_iniFile(iniFile)
        , m_section(section)
        , m_keys(keysOf(section))
    {
    }

    QString words(FailureCause cause) const
    {
        switch (cause) {
        case FailureCause::Provider:
            return driver();
        case FailureCause::Server:
            return QStringLiteral("It is the server name: no such place answers. %1 Check the "
                                  "spelling, and that this "
                                  "computer reaches it.")
                .arg(now(m_keys.server));
        case FailureCause::Port:
            return QStringLiteral(
                "It is the port: the computer is there, but no database server answers. %1 Check "
                "that the "
                "server runs and takes TCP/IP connections; another port is written HOST,1433.")
                .arg(now(m_keys.server));
        case FailureCause::Certificate:
            return QStringLiteral("It is the encryption: the server's certificate was not "
                                  "accepted, or it offers none. %1 Write "
                                  "the name that the certificate is made out to, and let this "
                                  "computer trust who issued it.")
                .arg(now(m_keys.server));
        case FailureCause::Logon:
            return logon();
        case FailureCause::Catalogue:
            return QStringLiteral("It is the database: the server has none of that name, or this "
                                  "logon may not use it. %1")
                .arg(now(m_keys.database));
        case FailureCause::TimeOut:
            return timeOut();
        case FailureCause::Lost:
            return QStringLiteral("The connection broke while it was in use. Run the report again: "
                                  "the connection is opened anew. "
                                  "If that fails, too, check the network and the server. %1")
                .arg(now(m_keys.server));
        case FailureCause::Unknown:
            break;
        }
        return {};
    }

private:
    QString value(QStringView key) const { return ReadINI(m_iniFile, m_section, key); }
    QString place(QStringView key) const
    {
        return QStringLiteral("Key %1 in section [%2] of corvane.ini").arg(key, m_section);
    }
    QString now(QStringView key) const
    {
        const QString text = value(key);
        return text.isEmpty() ? QString(place(key) % u" is empty.")
                              : QString(place(key) % u" says \"" % text % u"\".");
    }

    QString driver() const
    {
        if (m_section == kSecondSection)
            return QStringLiteral("It is the driver: this computer has no ODBC driver for SQL "
                                  "Server, which section [HALVERN] of "
                                  "corvane.ini always takes. Install one.");
        return QStringLiteral("It is the driver. %1 Write SQLOLEDB for SQL Server, or the name of "
                              "an installed ODBC driver.")
            .arg(now(u"Provider"));
    }

    QString logon() const
    {
        if (value(u"AuthenticationMode") == u"Windows")
            return QStringLiteral("It is the logon. %1 So the account that runs this program must "
                                  "be let in by the server, and a "
                                  "valid ticket be at hand.")
                .arg(now(u"AuthenticationMode"));
        return QStringLiteral("It is the logon. %1 The password stands scrambled in key %2. Check "
                              "both with the server's administrator.")
            .arg(now(m_keys.user), m_keys.password);
    }

    QString timeOut() const
    {
        const TimeOuts times = configuredTimeOuts(m_iniFile, m_section);
        const QString query = times.query == 0 ? QStringLiteral("without end")
                                               : QStringLiteral("%1 seconds").arg(times.query);
        return QStringLiteral("It is the time: the server did not answer in time. Keys "
                              "LoginTimeout and QueryTimeout in section [%1] of "
                              "corvane.ini hold how long is waited, now %2 seconds for a "
                              "connection and %3 for a query. %4")
            .arg(m_section, QString::number(times.login), query, now(m_keys.server));
    }

    const QString &m_iniFile;
    QStringView m_section;
    Keys m_keys;
};

} // namespace

TimeOuts configuredTimeOuts(const QString &iniFile, QStringView section)
{
    const TimeOuts absent;
    return {seconds(iniFile, section, u"LoginTimeout", absent.login),
        seconds(iniFile, section, u"QueryTimeout", absent.query)};
}

QString connectionAdvice(FailureCause cause, const QString &iniFile, QStringView section)
{
    return Advice(iniFile, section).words(cause);
}

} // namespace corvane
