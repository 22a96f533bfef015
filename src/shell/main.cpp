#include "platform/controls/clear_outlines.h"
#include "platform/controls/colours.h"
#include "platform/controls/first_paint.h"
#include "platform/controls/icons.h"
#include "platform/desktop/system_desktop.h"
#include "platform/process/core_dumps.h"
#include "platform/process/screen.h"
#include "platform/process/single_instance.h"
#include "shell/frm_cvr_main.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtWidgets/QApplication>

#include <cstdio>

using namespace corvane;

namespace {

/// The program folder: --folder, else the executable's. "RecSrcTrue" may stand anywhere beside it.
/// --quit-when-painted WINDOW is for benchmarks of the start-up.
QString programFolder(const QStringList &arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("The folder that holds corvane.ini."),
        QStringLiteral("DIR"), QCoreApplication::applicationDirPath());
    QCommandLineOption quit(QStringLiteral("quit-when-painted"), QString(), QStringLiteral("WINDOW"));
    quit.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({folder, quit});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(arguments);
    if (parser.isSet(quit))
        quitOncePainted(parser.value(quit));
    return QDir(parser.value(folder)).absolutePath();
}

/// Help and version need no screen. For anything else the toolkit would end the program by a crash.
int runWithoutScreen(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    programFolder(QCoreApplication::arguments());
    std::fputs("corvane-reporter: There is no screen to show windows on, neither DISPLAY nor WAYLAND_DISPLAY is set. "
               "Start it on a desktop, or use corvane-batch, which needs no screen.\n",
        stderr);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    switchCoreDumpsOff();
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Reporter"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    if (!hasScreen(argc, argv))
        return runWithoutScreen(argc, argv);
    QApplication application(argc, argv);
    showOutlinesOnDark();
    QApplication::setPalette(withReadableSelection(QApplication::palette()));
    QApplication::setWindowIcon(icon(QStringLiteral("app")));

    Reportr state;
    state.programFolder = programFolder(QApplication::arguments());
    state.commandLine = QApplication::arguments().mid(1).join(u' ');
    const SingleInstance instance(state.programFolder);
    SystemDesktop desktop;
    frmCVRMain window(state, desktop, &QDateTime::currentDateTime, QLocale::system());
    desktop.setParentWindow(&window);
    QSettings viewSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Corvane"), QStringLiteral("Reporter"));
    window.keepViewSettings(viewSettings);
    if (!window.Form_Load(instance))
        return 0;
    return QApplication::exec();
}
