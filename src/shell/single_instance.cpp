#include "shell/single_instance.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

namespace corvane {

namespace {

QString lockPath(const QString &programFolder)
{
    // Below the user's own data, so that another user's lock is never in the way.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    QDir().mkpath(folder);
    const QByteArray place = QFileInfo(programFolder).canonicalFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex().first(16);
    return QDir(folder).filePath(QStringLiteral("corvane-reporter-%1.lock").arg(QString::fromLatin1(hash)));
}

} // namespace

SingleInstance::SingleInstance(const QString &programFolder)
    : m_lock(lockPath(programFolder))
{
    m_lock.setStaleLockTime(0);
    m_isFirst = m_lock.tryLock(0) || m_lock.error() != QLockFile::LockFailedError;
}

} // namespace corvane
