#include "platform/database/odbc/freetds_settings.h"

#include "platform/database/odbc/keywords.h"

#include <QtCore/QFileInfo>

#include <algorithm>

namespace corvane::odbc {

namespace {

constexpr const char *kVariable = "FREETDSCONF";
constexpr int kBrokenOff = 20002;

/// What could end a line or a section of the file.
bool endsItsPlace(QChar c)
{
    return c < u' ' || c == u'[' || c == u']';
}

void restore(const std::optional<QByteArray> &before)
{
    if (before)
        qputenv(kVariable, *before);
    else
        qunsetenv(kVariable);
}

} // namespace

QString freeTdsServer(const ConnectionText &text)
{
    return serverAddress(text.dataSource).host;
}

QByteArray freeTdsSettings(const ConnectionText &text)
{
    const ServerAddress address = serverAddress(text.dataSource);
    const QString host = address.host.section(u'\\', 0, 0);
    const QString instance = address.host.section(u'\\', 1);
    QString settings = u'[' % freeTdsServer(text) % u"]\n";
    const auto add = [&](QStringView key, const QString &value) {
        if (!value.isEmpty())
            settings += key % u" = " % value % u'\n';
    };
    add(u"host", host);
    add(u"port", address.port);
    add(u"instance", instance);
    if (!text.trustServerCertificate) {
        const bool isGiven = !text.serverCertificate.isEmpty();
        add(u"ca file", isGiven ? text.serverCertificate : QStringLiteral("system"));
        add(u"check certificate hostname", QStringLiteral("yes"));
    }
    return settings.toUtf8();
}

FreeTdsSettings::FreeTdsSettings(const ConnectionText &text)
{
    const QString typed = text.dataSource + text.serverCertificate;
    if (std::ranges::any_of(typed, endsItsPlace))
        throw DatabaseError(kConnectionError,
            QStringLiteral("\"%1\" cannot be the name of a server.").arg(text.dataSource),
            FailureCause::Server);
    if (!text.serverCertificate.isEmpty() && !QFileInfo(text.serverCertificate).isReadable())
        throw DatabaseError(kConnectionError,
            QStringLiteral("The certificate %1 cannot be read.").arg(text.serverCertificate),
            FailureCause::Certificate);
    const QByteArray settings = freeTdsSettings(text);
    if (!m_file.open() || m_file.write(settings) != settings.size() || !m_file.flush())
        throw DatabaseError(kConnectionError,
            QStringLiteral("The database driver's settings cannot be written to %1: %2.")
                .arg(m_file.fileTemplate(), m_file.errorString()),
            FailureCause::Provider);
    if (qEnvironmentVariableIsSet(kVariable))
        m_before = qgetenv(kVariable);
    qputenv(kVariable, m_file.fileName().toLocal8Bit());
}

FreeTdsSettings::~FreeTdsSettings()
{
    restore(m_before);
}

bool endsBeforeLogon(const std::vector<Diagnostic> &records)
{
    return std::ranges::find(records, kBrokenOff, &Diagnostic::number) != records.end();
}

ConnectionText uncheckedTrial(const ConnectionText &text)
{
    ConnectionText trial;
    trial.provider = text.provider;
    trial.dataSource = text.dataSource;
    trial.encryption = text.encryption;
    trial.trustServerCertificate = true;
    trial.userId = QStringLiteral("certificate-check");
    trial.password = trial.userId;
    return trial;
}

DatabaseError certificateFailure(const ConnectionText &text)
{
    const QString words
        = QStringLiteral("The certificate of the server \"%1\" was not accepted: it is not trusted "
                         "on this computer, or it was issued for another name.");
    return {kBrokenOff, words.arg(text.dataSource), FailureCause::Certificate};
}

} // namespace corvane::odbc
