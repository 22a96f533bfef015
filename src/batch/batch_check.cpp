#include "batch/batch_check.h"

#include "batch/batch_run.h"
#include "batch/console_host.h"
#include "batch/report_name.h"
#include "definitions/checker/definition_check.h"
#include "platform/process/console.h"
#include "session/logon.h"
#include "session/report_list.h"
#include "session/startup.h"
#include "shared/dates.h"
#include "shared/profile.h"
#include "shared/reportr.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

const QString kCheck = QStringLiteral("check");
const QString kFolder = QStringLiteral("folder");
const QString kUser = QStringLiteral("user");
const QString kPasswordInput = QStringLiteral("password-stdin");
const QString kHelp = QStringLiteral("help");

/// The second database as corvane.ini of the program folder has it; empty without that file.
std::optional<SecondDatabase> configuredSecond(const QString &programFolder)
{
    const QString file = findFile(programFolder, QStringLiteral("corvane.ini"));
    if (file.isEmpty())
        return std::nullopt;
    return SecondDatabase{
        ReadINI(file, u"HALVERN", u"DataSource"), !ReadINI(file, u"HALVERN", u"Server").isEmpty()};
}

class CheckJob
{
public:
    CheckJob(const CheckOptions &options, const QDateTime &now, const QLocale &locale)
        : m_options(options)
        , m_host(now, getDateOrder(locale))
    {
        m_state.programFolder = options.folder;
        m_state.gDateOrder = getDateOrder(locale);
    }

    int run(const QString &password)
    {
        if (!m_options.user.isEmpty()) {
            if (connectDatabases(m_state, m_host) != StartState::Connected)
                return ExitStatus::NoConnection;
            if (!logOn(m_state, m_host, m_options.user, password))
                return ExitStatus::Refused;
        }
        bool sound = true;
        for (const QString &name : m_options.reports) {
            for (const QString &report : expandedName(name))
                sound = check(report) && sound;
        }
        return sound ? ExitStatus::Done : ExitStatus::ReportFailed;
    }

private:
    /// A name of the list before a file of the working folder, which a shell's "*.rpt" names.
    QString pathOf(const QString &report) const
    {
        const QString listed
            = hasFolder(report) ? QString() : listedReport(reportFolder(m_options.folder), report);
        return listed.isEmpty() ? report : listed;
    }

    bool check(const QString &report) const
    {
        const QString path = pathOf(report);
        const std::vector<Finding> findings = m_state.loggedOn
            ? checkDefinition(path, m_state, m_host.dateFrom().text)
            : checkDefinition(path, configuredSecond(m_options.folder));
        for (const Finding &finding : findings)
            writeConsole(stdout, findingLine(QDir::toNativeSeparators(path), finding) + u'\n');
        return !hasErrors(findings);
    }

    const CheckOptions &m_options;
    Reportr m_state;
    ConsoleHost m_host;
};

} // namespace

bool isCheck(const QStringList &arguments)
{
    return arguments.value(1) == kCheck;
}

std::variant<CheckOptions, UsageFault> parseCheckOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    for (const QString &name : {kFolder, kUser})
        parser.addOption(QCommandLineOption(name, {}, QStringLiteral("VALUE")));
    for (const QString &name : {kPasswordInput, kHelp})
        parser.addOption(QCommandLineOption(name));
    if (!parser.parse(arguments))
        return UsageFault{parser.errorText() + u'.'};
    if (parser.isSet(kHelp))
        return UsageFault{{}, true};
    CheckOptions options{parser.positionalArguments().mid(1), parser.value(kFolder),
        parser.value(kUser), parser.isSet(kPasswordInput)};
    if (options.reports.isEmpty())
        return UsageFault{QStringLiteral("Name the reports to check.")};
    if (options.user.isEmpty() && (parser.isSet(kUser) || options.passwordFromInput))
        return UsageFault{QStringLiteral("--user ID is missing.")};
    return options;
}

QString checkUsage()
{
    return QStringLiteral(
        "corvane-batch check REPORT... [--folder DIR] [--user ID [--password-stdin]]\n"
        "\n"
        "Tells what is wrong with report definitions, one line each on standard output:\n"
        "file:line:column: error or warning: what is wrong and what would be right.\n"
        "With --user the queries are tried too, with today's date for {DATE1} and {DATE2}\n"
        "and 0 for <PID>, and field numbers are held against the result.\n"
        "\n"
        "Exit status: 0 nothing or warnings alone, 1 errors, 2 usage, 3 logon refused,\n"
        "4 no corvane.ini or no connection.\n");
}

int runCheck(const CheckOptions &options, const QString &password, const QDateTime &now,
    const QLocale &locale)
{
    return CheckJob(options, now, locale).run(password);
}

} // namespace corvane
