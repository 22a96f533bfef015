#include "batch/batch_check.h"
#include "batch/batch_doctor.h"
#include "batch/batch_options.h"
#include "batch/batch_run.h"
#include "platform/composer/shipped_fonts.h"
#include "platform/process/console.h"
#include "platform/process/core_dumps.h"
#include "shared/dates.h"

#include <QtGui/QGuiApplication>

using namespace corvane;

namespace {

/// Standard error belongs to the program's own messages; a library's remarks are of no use to a user.
void keepLibrariesQuiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printError(text);
}

int usage(const UsageFault &fault)
{
    const QString words = batchUsage() + u'\n' + checkUsage();
    if (fault.helpAsked) {
        writeConsole(stdout, words);
        return ExitStatus::Done;
    }
    printError(fault.words);
    writeConsole(stderr, words);
    return ExitStatus::Usage;
}

QString programFolder(const QString &folder)
{
    return folder.isEmpty() ? QCoreApplication::applicationDirPath() : folder;
}

int check(const QStringList &arguments, const QString &variable, const QLocale &locale)
{
    auto parsed = parseCheckOptions(arguments);
    if (const auto *fault = std::get_if<UsageFault>(&parsed))
        return usage(*fault);
    auto &options = std::get<CheckOptions>(parsed);
    options.folder = programFolder(options.folder);
    const QString password = options.passwordFromInput ? readPasswordLine() : variable;
    return runCheck(options, password, QDateTime::currentDateTime(), locale);
}

} // namespace

int main(int argc, char **argv)
{
    switchCoreDumpsOff();
    qInstallMessageHandler(keepLibrariesQuiet);
    const QString variable = takePasswordVariable();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    findSystemFonts();
    QGuiApplication application(argc, argv);
    const QLocale locale = QLocale::system();
    const QStringList arguments = QCoreApplication::arguments();
    if (isCheck(arguments))
        return check(arguments, variable, locale);

    auto parsed = parseBatchOptions(arguments, getDateOrder(locale));
    if (const auto *fault = std::get_if<UsageFault>(&parsed))
        return usage(*fault);
    auto &options = std::get<BatchOptions>(parsed);
    options.folder = programFolder(options.folder);
    if (options.command == BatchCommand::Doctor)
        return runDoctor(options.folder, getDateOrder(locale));
    const QString password = options.passwordFromInput ? readPasswordLine() : variable;
    return runBatch(options, password, QDateTime::currentDateTime(), locale);
}
