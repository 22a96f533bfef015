#include "platform/desktop/document_opener.h"

#include "platform/desktop/desktop.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#ifdef Q_OS_WIN
#include <qt_windows.h>
#include <shellapi.h>
#else
#include <QtCore/QMimeDatabase>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#endif

namespace corvane {

namespace {

#ifdef Q_OS_WIN

int start(const QString &path)
{
    const std::wstring native = QDir::toNativeSeparators(path).toStdWString();
    const auto code = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, nullptr, native.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    return code > 32 ? OpenCodes::Started : int(code);
}

#else

constexpr int kLookUpMilliseconds = 1000;

/// Whether the desktop names a program for this kind of file. True also when that cannot be found out,
/// because the opener then has ways of its own.
bool hasHandler(const QString &path)
{
    const QString lookUp = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    if (lookUp.isEmpty())
        return true;
    const QString kind = QMimeDatabase().mimeTypeForFile(path).name();
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(lookUp, {QStringLiteral("query"), QStringLiteral("default"), kind});
    if (!process.waitForFinished(kLookUpMilliseconds)) {
        process.kill();
        process.waitForFinished(kLookUpMilliseconds);
        return true;
    }
    return process.exitCode() != 0 || !process.readAllStandardOutput().trimmed().isEmpty();
}

int start(const QString &path)
{
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty() || !hasHandler(path))
        return OpenCodes::NoHandler;
    // Its own streams and folder: the viewer outlives this program and must hold nothing of it.
    QProcess process;
    process.setProgram(opener);
    process.setArguments({path});
    process.setWorkingDirectory(QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached() ? OpenCodes::Started : OpenCodes::Failed;
}

#endif

} // namespace

int openWithItsProgram(const QString &path)
{
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return OpenCodes::FileNotFound;
    return start(file.absoluteFilePath());
}

} // namespace corvane
