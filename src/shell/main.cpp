#include "platform/controls/clear_outlines.h"
#include "platform/controls/colours.h"
#include "platform/controls/first_paint.h"
#include "platform/controls/icons.h"
#include "platform/desktop/system_desktop.h"
#include "platform/process/single_instance.h"
#include "shared/core_dumps.h"
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

} // namespace

int main(int argc, char **argv)
{
    switchCoreDumpsOff();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane Reporter"));
    QApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
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
