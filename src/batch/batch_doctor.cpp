#include "batch/batch_doctor.h"

#include "batch/batch_run.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "platform/process/console.h"
#include "session/configuration.h"
#include "shared/connection_doctor.h"
#include "shared/profile.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"

#include <QtCore/QDir>
#include <QtNetwork/QHostInfo>
#include <QtNetwork/QTcpSocket>

namespace corvane {

namespace {

constexpr int kMsPerSecond = 1'000;

void say(const QString &line)
{
    writeConsole(stdout, line + u'\n');
}

/// Where the examination ends: the step has been printed.
struct StepFailed
{
};

/// One database, examined from the driver to its tables.
class Examination
{
public:
    Examination(const QString &iniFile, QStringView section, const DriverSettings &settings)
        : m_iniFile(iniFile)
        , m_section(section)
        , m_settings(settings)
    {
        m_settings.timeOuts = configuredTimeOuts(iniFile, section);
    }

    bool passes()
    {
        say(u'[' % m_section % u']');
        try {
            examine();
            return true;
        } catch (const StepFailed &) {
            return false;
        }
    }

private:
    static void passed(QStringView step, const QString &words)
    {
        say(u"  " % step.toString().leftJustified(kStepWidth) % u"ok      " % words);
    }
    static void noted(QStringView step, const QString &words)
    {
        say(u"  " % step.toString().leftJustified(kStepWidth) % u"        " % words);
    }
    [[noreturn]] void failed(QStringView step, const QString &words, FailureCause cause) const
    {
        say(u"  " % step.toString().leftJustified(kStepWidth) % u"FAILED  " % words);
        if (const QString advice = connectionAdvice(cause, m_iniFile, m_section); !advice.isEmpty())
            say(u"    " % advice);
        throw StepFailed();
    }

    void examine()
    {
        const QString text = connectionText();
        const ConnectionText pieces = parseConnectionText(text);
        if (!isFolder(text))
            examineWay(pieces);
        else
            passed(u"driver", QStringLiteral("the embedded one, for files"));
        examineDatabase(text);
    }

    static bool isFolder(const QString &text)
    {
        return parseConnectionText(text).dataSource.startsWith(u"sqlite:", Qt::CaseInsensitive);
    }

    QString connectionText() const
    {
        try {
            return m_section == kMainSection ? buildConnectString(m_iniFile)
                                             : buildHvnConnectString(m_iniFile);
        } catch (const RunTimeFault &fault) {
            failed(u"logon",
                QStringLiteral("The stored password is not readable: %1").arg(fault.description()),
                FailureCause::Logon);
        }
    }

    void examineWay(const ConnectionText &pieces) const
    {
        const ServerPlace place = foundPlace(pieces);
        passed(u"driver", place.driver);
        if (!place.host.isEmpty()) {
            resolve(place.host);
            reach(place);
        }
        noted(u"certificate", place.certificateCheck);
    }

    ServerPlace foundPlace(const ConnectionText &pieces) const
    {
        try {
            return serverPlace(pieces);
        } catch (const DatabaseError &error) {
            failed(u"driver", error.description(), error.cause());
        }
    }

    void resolve(const QString &host) const
    {
        const QHostInfo info = QHostInfo::fromName(host);
        if (info.addresses().isEmpty())
            failed(u"server name", QStringLiteral("\"%1\": %2.").arg(host, info.errorString()),
                FailureCause::Server);
        passed(u"server name",
            info.addresses().first().toString() == host
                ? host
                : QString(host % u" is " % info.addresses().first().toString()));
    }

    void reach(const ServerPlace &place) const
    {
        if (place.port == 0)
            return noted(
                u"port", QStringLiteral("the server is asked for the one of its instance."));
        QTcpSocket socket;
        socket.connectToHost(place.host, quint16(place.port));
        const int seconds = m_settings.timeOuts.login;
        if (socket.waitForConnected(seconds == 0 ? -1 : seconds * kMsPerSecond))
            return passed(u"port", QString::number(place.port));
        const bool refused = socket.error() == QAbstractSocket::ConnectionRefusedError;
        failed(u"port",
            QStringLiteral("%1: %2.").arg(QString::number(place.port), socket.errorString()),
            refused ? FailureCause::Port : FailureCause::TimeOut);
    }

    void examineDatabase(const QString &text) const
    {
        const auto connection = opened(text);
        passed(u"logon",
            isFolder(text) ? QStringLiteral("none is needed") : QStringLiteral("accepted"));
        passed(u"database", databaseName());
        if (m_section != kMainSection)
            return;
        try {
            connection->openRowset(QStringLiteral("SELECT COUNT(*) FROM passwords"));
            passed(u"tables", QStringLiteral("the users' table is there"));
        } catch (const DatabaseError &error) {
            failed(u"tables", error.description(), error.cause());
        }
    }

    std::unique_ptr<Connection> opened(const QString &text) const
    {
        try {
            return Connection::open(text, m_settings);
        } catch (const DatabaseError &error) {
            failed(stepOf(error.cause()),
                QStringLiteral("%1 (%2)").arg(error.description()).arg(error.number()),
                error.cause());
        }
    }

    static QStringView stepOf(FailureCause cause)
    {
        switch (cause) {
        case FailureCause::Provider:
            return u"driver";
        case FailureCause::Server:
            return u"server name";
        case FailureCause::Port:
            return u"port";
        case FailureCause::Certificate:
            return u"certificate";
        case FailureCause::Logon:
            return u"logon";
        case FailureCause::Catalogue:
            return u"database";
        case FailureCause::TimeOut:
            return u"time-out";
        default:
            return u"connection";
        }
    }

    QString databaseName() const
    {
        return ReadINI(
            m_iniFile, m_section, m_section == kMainSection ? u"InitialCatalog" : u"DataSource");
    }

    static constexpr int kStepWidth = 13;
    const QString &m_iniFile;
    QStringView m_section;
    DriverSettings m_settings;
};

} // namespace

int runDoctor(const QString &folder, int dateOrder)
{
    const QString iniFile = findFile(folder, QStringLiteral("corvane.ini"));
    if (iniFile.isEmpty()) {
        say(QStringLiteral(
            "There is no corvane.ini in \"%1\". Name the program folder with --folder.")
                .arg(QDir::toNativeSeparators(folder)));
        return ExitStatus::NoConnection;
    }
    say(QDir::toNativeSeparators(iniFile));
    DriverSettings settings;
    settings.programFolder = folder;
    settings.dateOrder = dateOrder;
    if (ReadINI(iniFile, kMainSection, u"DataSource").isEmpty()) {
        say(QStringLiteral(
            "[SQLServer]\n  Key DataSource is empty: write the server's name there."));
        return ExitStatus::NoConnection;
    }
    const bool main = Examination(iniFile, kMainSection, settings).passes();
    const bool hasSecond = !ReadINI(iniFile, kSecondSection, u"Server").isEmpty();
    if (!hasSecond)
        say(QStringLiteral("[HALVERN]\n  no second database: key Server is empty"));
    const bool second = !hasSecond || Examination(iniFile, kSecondSection, settings).passes();
    if (!main)
        return ExitStatus::NoConnection;
    return second ? ExitStatus::Done : ExitStatus::ReportFailed;
}

} // namespace corvane
