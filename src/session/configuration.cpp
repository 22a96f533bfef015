#include "session/configuration.h"

#include "shared/profile.h"
#include "shared/scramble.h"

namespace corvane {

namespace {

QString clearPassword(const QString &stored)
{
    return stored.isEmpty() ? QString() : unscramblePW(stored);
}

} // namespace

QString buildConnectString(const QString &iniFile)
{
    const auto key = [&](QStringView name) { return ReadINI(iniFile, u"SQLServer", name); };
    const QString start = u"Provider=" + key(u"Provider") + u";Data Source=" + key(u"DataSource")
        + u";Initial Catalog=" + key(u"InitialCatalog") + u';';
    if (key(u"AuthenticationMode") == u"Windows")
        return start + u"Integrated Security=SSPI;";
    // Deliberate: the last piece alone ends in a semicolon and a blank; other tools compare this text.
    return start + u"User Id=" + key(u"UID") + u";Password=" + clearPassword(key(u"Password")) + u"; ";
}

QString buildHvnConnectString(const QString &iniFile)
{
    // Deliberate: in this section DataSource names the database, not the server.
    const auto key = [&](QStringView name) { return ReadINI(iniFile, u"HALVERN", name); };
    const QString start = u"PROVIDER=SQLOLEDB;SERVER=" + key(u"Server");
    const QString password = clearPassword(key(u"PW"));
    if (key(u"AuthenticationMode") == u"Windows")
        return start + u";Database=" + key(u"DataSource") + u";Integrated Security=SSPI;";
    return start + u";UID=" + key(u"UID") + u";PWD=" + password + u";Database=" + key(u"DataSource");
}

} // namespace corvane
