#include "session/startup.h"

#include "platform/database/error.h"
#include "session/configuration.h"
#include "shared/connection_doctor.h"
#include "shared/profile.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"

namespace corvane {

namespace {

const QString kTitle = QStringLiteral("Corvane");

struct Failure {
    int number = 0;
    QString description;
    FailureCause cause = FailureCause::Unknown;
};

/// Runs the attempt; the failure's number and words when it fails.
template <typename Attempt>
std::optional<Failure> failureOf(Attempt attempt)
{
    try {
        attempt();
        return std::nullopt;
    } catch (const DatabaseError &error) {
        return Failure {error.number(), error.description(), error.cause()};
    } catch (const RunTimeFault &fault) {
        return Failure {fault.number(), fault.description(), FailureCause::Logon};
    }
}

/// A message of its own behind the program's: that one stays as it is known.
void advise(const Reportr &state, MessageBoxes &boxes, const Failure &failure, QStringView section)
{
    const QString advice = connectionAdvice(failure.cause, state.gIniFile, section);
    if (!advice.isEmpty())
        boxes.message(advice, MessageFlags::Information, kTitle);
}

bool openMain(Reportr &state, MessageBoxes &boxes)
{
    const auto failure = failureOf([&] {
        state.gDBName = ReadINI(state.gIniFile, u"SQLServer", u"InitialCatalog");
        state.gConnectString = buildConnectString(state.gIniFile);
        state.openConn(state.gConnectString);
    });
    if (!failure)
        return true;
    boxes.message(QStringLiteral("Error connecting to database! %1, %2").arg(failure->number).arg(failure->description),
        MessageFlags::OkOnly, {});
    advise(state, boxes, *failure, kMainSection);
    state.closeConn();
    return false;
}

} // namespace

StartState connectDatabases(Reportr &state, MessageBoxes &boxes)
{
    const QString iniFile = findFile(state.programFolder, QStringLiteral("corvane.ini"));
    if (iniFile.isEmpty()) {
        boxes.message(QStringLiteral("Corvane initialization file - CORVANE.INI - is missing. Unable to launch Corvane."),
            MessageFlags::Critical, QStringLiteral("Critical Error"));
        return StartState::NoConfiguration;
    }
    state.gIniFile = iniFile;
    state.mainTimeOuts = configuredTimeOuts(iniFile, kMainSection);
    state.hvnTimeOuts = configuredTimeOuts(iniFile, kSecondSection);
    if (ReadINI(iniFile, u"SQLServer", u"DataSource").isEmpty()) {
        boxes.message(QStringLiteral("Setup server location and database logon to connect to Corvane Database. "
                                     "Go to Network Setup from Setup menu."),
            MessageFlags::Information, kTitle);
        return StartState::NoConnection;
    }
    const bool connected = openMain(state, boxes);
    state.gHvnConnectString = getHvnConnect(state, boxes);
    return connected ? StartState::Connected : StartState::NoConnection;
}

QString getHvnConnect(Reportr &state, MessageBoxes &boxes)
{
    state.gHvnDBName = ReadINI(state.gIniFile, u"HALVERN", u"DataSource");
    if (ReadINI(state.gIniFile, u"HALVERN", u"Server").isEmpty())
        return {};
    QString connectString;
    const auto failure = failureOf([&] { connectString = buildHvnConnectString(state.gIniFile); });
    if (failure) {
        boxes.message(QStringLiteral("Error connecting to HVN database. %1[%2]").arg(failure->description).arg(failure->number),
            MessageFlags::OkOnly, {});
        advise(state, boxes, *failure, kSecondSection);
        return {};
    }
    return testConnect(state, boxes, connectString, TestedDatabase::Second) ? connectString : QString();
}

bool testConnect(const Reportr &state, MessageBoxes &boxes, const QString &connectString, TestedDatabase selector)
{
    DriverSettings settings = state.drivers(connectString);
    if (selector == TestedDatabase::Second) // its text is not kept before the test is passed
        settings.timeOuts = state.hvnTimeOuts;
    const auto failure = failureOf([&] { Connection::open(connectString, settings); });
    if (!failure)
        return true;
    const QString name = selector == TestedDatabase::Main ? QStringLiteral("Corvane") : QStringLiteral("HVN");
    boxes.message(QStringLiteral("Error connecting to %1 database. %2[%3]")
                      .arg(name, failure->description)
                      .arg(failure->number),
        MessageFlags::OkOnly, {});
    advise(state, boxes, *failure, selector == TestedDatabase::Main ? kMainSection : kSecondSection);
    return false;
}

} // namespace corvane
