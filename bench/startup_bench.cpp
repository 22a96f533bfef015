#include "startup_bench.h"

#include "bench_clinic.h"
#include "measured.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

constexpr int kPatienceMs = 30'000;
constexpr int kStartsARound = 3; ///< a start is short beside what else a machine does

/// Milliseconds; nothing when the program failed.
bool keepBestStart(double &best, const QString &program, const QStringList &arguments)
{
    const QTemporaryDir user;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name :
        {QStringLiteral("XDG_CACHE_HOME"), QStringLiteral("XDG_CONFIG_HOME")})
        environment.insert(name, user.path());
    if (!environment.value(QStringLiteral("DISPLAY")).isEmpty()) // as a user starts it
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QProcess process;
    process.setProcessEnvironment(environment);
    QElapsedTimer timer;
    timer.start();
    process.start(QCoreApplication::applicationDirPath() + u'/' + program, arguments);
    const bool ended = process.waitForFinished(kPatienceMs);
    best = std::min(best, double(timer.nsecsElapsed()) / 1e6);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    std::fprintf(stderr, "%s did not show its window: %s\n", qPrintable(program),
        process.readAllStandardError().constData());
    return false;
}

} // namespace

bool measureStartup(int rounds)
{
    const QTemporaryDir clinic;
    makeBenchClinic(clinic.path(), 1);
    double empty = std::numeric_limits<double>::max();
    double text = empty;
    double logon = empty;
    for (int i = 0; i < rounds * kStartsARound; ++i) {
        if (!keepBestStart(empty, QStringLiteral("corvane-empty-window"), {})
            || !keepBestStart(
                text, QStringLiteral("corvane-empty-window"), {QStringLiteral("--text")})
            || !keepBestStart(logon, QStringLiteral("corvane-reporter"),
                {QStringLiteral("--folder"), clinic.path(), QStringLiteral("--quit-when-painted"),
                    QStringLiteral("frmReportrLogon")}))
            return false;
    }
    record("startup", logon / empty);
    record("startup-text", logon / text);
    std::printf("start to logon form: %.2f times an empty window (%.0f ms), %.2f times one that "
                "shows a word\n",
        logon / empty, empty, logon / text);
    return true;
}

} // namespace corvane::bench
