#include "batch/batch_doctor.h"
#include "batch/batch_options.h"
#include "batch/batch_run.h"
#include "batch/console_host.h"
#include "shared/dates.h"

#include <QtGui/QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

using namespace corvane;

namespace {

void switchCoreDumpsOff()
{
#ifndef Q_OS_WIN
    const rlimit none {0, 0};
    setrlimit(RLIMIT_CORE, &none);
#endif
}

/// Standard error belongs to the program's own messages; a library's remarks are of no use to a user.
void keepLibrariesQuiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printError(text);
}

/// Reads the variable once and wipes it, so that neither children nor the process list show it.
QString takePasswordVariable()
{
    char *value = std::getenv("CORVANE_PASSWORD");
    if (!value)
        return {};
    const QString password = QString::fromLocal8Bit(value);
    std::memset(value, 0, std::strlen(value));
    qunsetenv("CORVANE_PASSWORD");
    return password;
}

QString readPasswordLine()
{
    std::string line;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar())
        line += char(c);
    if (line.ends_with('\r'))
        line.pop_back();
    return QString::fromLocal8Bit(line.data(), qsizetype(line.size()));
}

int usage(const UsageFault &fault)
{
    if (fault.helpAsked) {
        std::fputs(batchUsage().toLocal8Bit().constData(), stdout);
        return ExitStatus::Done;
    }
    printError(fault.words);
    std::fputs(batchUsage().toLocal8Bit().constData(), stderr);
    return ExitStatus::Usage;
}

} // namespace

int main(int argc, char **argv)
{
    switchCoreDumpsOff();
    qInstallMessageHandler(keepLibrariesQuiet);
    const QString variable = takePasswordVariable();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QLocale locale = QLocale::system();

    auto parsed = parseBatchOptions(QCoreApplication::arguments(), getDateOrder(locale));
    if (const auto *fault = std::get_if<UsageFault>(&parsed))
        return usage(*fault);
    auto &options = std::get<BatchOptions>(parsed);
    if (options.folder.isEmpty())
        options.folder = QCoreApplication::applicationDirPath();
    if (options.command == BatchCommand::Doctor)
        return runDoctor(options.folder, getDateOrder(locale));
    const QString password = options.passwordFromInput ? readPasswordLine() : variable;
    return runBatch(options, password, QDateTime::currentDateTime(), locale);
}
