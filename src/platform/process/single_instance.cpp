#include "platform/process/single_instance.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <QtCore/QStandardPaths>
#endif

namespace corvane {

namespace {

/// The same for every way to write the folder's name.
QString placeOf(const QString &programFolder)
{
    QString place = QFileInfo(programFolder).canonicalFilePath();
#ifdef Q_OS_WIN
    place = place.toCaseFolded();
#endif
    return QString::fromLatin1(QCryptographicHash::hash(place.toUtf8(), QCryptographicHash::Sha256).toHex().first(16));
}

#ifndef Q_OS_WIN

QString lockPath(const QString &programFolder)
{
    // Below the user's own data, so that another user's lock is never in the way.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    QDir().mkpath(folder);
    return QDir(folder).filePath(QStringLiteral("corvane-reporter-%1.lock").arg(placeOf(programFolder)));
}

#endif

} // namespace

#ifdef Q_OS_WIN

SingleInstance::SingleInstance(const QString &programFolder)
{
    // "Local" is the session: two users of one computer, or one at a terminal server, have one each.
    const QString name = QStringLiteral("Local\\Corvane Reporter %1").arg(placeOf(programFolder));
    m_mutex = CreateMutexW(nullptr, FALSE, reinterpret_cast<const wchar_t *>(name.utf16()));
    m_isFirst = !m_mutex || GetLastError() != ERROR_ALREADY_EXISTS;
}

SingleInstance::~SingleInstance()
{
    if (m_mutex)
        CloseHandle(m_mutex);
}

#else

SingleInstance::SingleInstance(const QString &programFolder)
    : m_lock(lockPath(programFolder))
{
    m_lock.setStaleLockTime(0);
    m_isFirst = m_lock.tryLock(0) || m_lock.error() != QLockFile::LockFailedError;
}

SingleInstance::~SingleInstance() = default;

#endif

} // namespace corvane
