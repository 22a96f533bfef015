#include "platform/files/file_replacement.h"

#include "platform/files/file_hold.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>

#include <cerrno>
#include <filesystem>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {

namespace {

const QString kPrefix = QStringLiteral(".corvane-saving-");
const QString kVarying = QStringLiteral("XXXXXX");
const QString kSuffix = QStringLiteral(".tmp");
constexpr int kAttempts = 100;
constexpr int kMostLinks = 40;

/// Where the file is to stand in the end: a link stays a link.
QString followed(const QString &fileName)
{
    QString target = QFileInfo(fileName).absoluteFilePath();
    for (int i = 0; i < kMostLinks && QFileInfo(target).isSymbolicLink(); ++i)
        target = QFileInfo(target).symLinkTarget();
    return target;
}

std::filesystem::path pathOf(const QString &name)
{
    return QFile(name).filesystemFileName();
}

#ifdef Q_OS_WIN

bool syncFile(QFile &file)
{
    return ::_commit(file.handle()) == 0;
}

void syncFolder(const QString &) { }

/// The system refuses to delete what is open.
void removeIfAbandoned(const QString &name)
{
    QFile::remove(name);
}

#else

/// A network disk may tell only now that it is full. Some file systems cannot be asked at all.
bool syncFile(QFile &file)
{
    return ::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

/// So that the new name, too, outlives a power cut. Without it the old file might be back, whole.
void syncFolder(const QString &folder)
{
    const int descriptor
        = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

/// Whoever still writes a file holds it; a program that was killed holds nothing any more.
void removeIfAbandoned(const QString &name)
{
    const QByteArray path = QFile::encodeName(name);
    constexpr int kCarefully = O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
    int descriptor = ::open(path.constData(), O_RDWR | kCarefully);
    if (descriptor < 0)
        descriptor = ::open(path.constData(), O_RDONLY | kCarefully);
    if (descriptor < 0)
        return;
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && holdOpenFile(descriptor) == HoldResult::Held)
        ::unlink(path.constData());
    ::close(descriptor);
}

#endif

QString temporaryName(const QString &folder)
{
    static constexpr QStringView kLetters = u"abcdefghijklmnopqrstuvwxyz0123456789";
    QString varying;
    while (varying.size() < kVarying.size())
        varying += kLetters[QRandomGenerator::global()->bounded(int(kLetters.size()))];
    return QDir(folder).filePath(QString(kPrefix + varying + kSuffix));
}

} // namespace

QString temporaryTemplate(const QString &folder)
{
    return QDir(folder).filePath(QString(kPrefix + kVarying + kSuffix));
}

void removeAbandonedFiles(const QString &folder)
{
    QDirIterator found(folder, {QString(kPrefix + QString(kVarying.size(), u'?') + kSuffix)},
        QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (found.hasNext())
        removeIfAbandoned(found.next());
}

FileReplacement::FileReplacement(const QString &kind, const QString &fileName, SavePlace place)
    : m_kind(kind)
    , m_fileName(fileName)
    , m_target(followed(fileName))
    , m_place(place)
{
}

FileReplacement::~FileReplacement()
{
    if (m_file.isOpen() && !m_isPlaced)
        m_file.remove();
    if (!m_old.isEmpty())
        QFile::remove(m_old);
}

bool FileReplacement::open()
{
    const QFileInfo target(m_target);
    if (target.isDir() || (target.exists() && (!target.isFile() || !target.isWritable())))
        return fail(QStringLiteral("The file is not writable"), QFileDevice::WriteError);
    removeAbandonedFiles(target.absolutePath());
    if (!createBeside())
        return fail(m_file.errorString(), m_file.error());
    if (target.exists())
        takeOverRights();
    return true;
}

bool FileReplacement::createBeside()
{
    const QString folder = QFileInfo(m_target).absolutePath();
    for (int i = 0; i < kAttempts; ++i) {
        const QString name = temporaryName(folder);
        if (createNamed(name))
            return true;
        if (!m_file.isOpen() && !QFile::exists(name))
            return false;
        m_file.close();
    }
    return false;
}

/// False, and the file open, when somebody who cleans up was quicker than the hold on it.
bool FileReplacement::createNamed(const QString &name)
{
    constexpr auto kMode = QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered;
    m_file.setFileName(name);
    // What replaces a file that not everybody may read is its owner's alone until it has the same
    // rights.
    const bool isOpen = QFile::exists(m_target)
        ? m_file.open(kMode, QFile::ReadOwner | QFile::WriteOwner)
        : m_file.open(kMode);
    return isOpen && holdOpenFile(m_file.handle()) != HoldResult::HeldByAnother
        && QFile::exists(name);
}

/// The older file's owner, as far as this user may give files away, and its rights.
void FileReplacement::takeOverRights()
{
#ifndef Q_OS_WIN
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(m_target).constData(), &status) == 0
        && ::fchown(m_file.handle(), status.st_uid, status.st_gid) != 0) {
        [[maybe_unused]] const int groupToo = ::fchown(m_file.handle(), uid_t(-1), status.st_gid);
    }
#endif
    m_file.setPermissions(QFile::permissions(m_target));
}

bool FileReplacement::write(QByteArrayView bytes)
{
    qsizetype done = 0;
    while (m_cause.isEmpty() && done < bytes.size()) {
        const qint64 written = m_file.write(bytes.data() + done, bytes.size() - done);
        if (written <= 0)
            return fail(m_file.errorString(), m_file.error());
        done += written; // less than asked for when the disk fills up; the next attempt says so
    }
    return m_cause.isEmpty();
}

bool FileReplacement::complete()
{
    if (m_isComplete || !m_cause.isEmpty())
        return m_cause.isEmpty();
    if (!m_file.flush())
        return fail(m_file.errorString(), m_file.error());
    if (!syncFile(m_file))
        return fail(qt_error_string(errno),
            errno == ENOSPC ? QFileDevice::ResourceError : QFileDevice::WriteError);
    m_isComplete = true;
    return true;
}

bool FileReplacement::commit()
{
    return complete() && place();
}

bool FileReplacement::place()
{
#ifdef Q_OS_WIN
    m_file.close(); // what is open cannot be renamed there
#endif
    std::error_code error;
    std::filesystem::rename(pathOf(m_file.fileName()), pathOf(m_target), error);
    if (error) {
        fail(qt_error_string(error.value()), QFileDevice::RenameError);
        m_file.remove();
        return false;
    }
    m_isPlaced = true;
    m_file.close();
    syncFolder(QFileInfo(m_target).absolutePath());
    return true;
}

/// Gives the older file a second name, so that it can come back.
bool FileReplacement::keepOld()
{
    if (!QFile::exists(m_target))
        return true;
    m_old = temporaryName(QFileInfo(m_target).absolutePath());
    std::error_code error;
    std::filesystem::create_hard_link(pathOf(m_target), pathOf(m_old), error);
    if (error)
        std::filesystem::copy_file(pathOf(m_target), pathOf(m_old), error);
    return !error || fail(qt_error_string(error.value()), QFileDevice::CopyError);
}

void FileReplacement::takeBack()
{
    if (!m_isPlaced)
        return;
    std::error_code ignored;
    if (m_old.isEmpty())
        std::filesystem::remove(pathOf(m_target), ignored);
    else
        std::filesystem::rename(pathOf(m_old), pathOf(m_target), ignored);
}

bool FileReplacement::fail(const QString &systemText, QFileDevice::FileError error)
{
    if (m_cause.isEmpty())
        m_cause = writeFailure(m_fileName, error, systemText, m_place);
    return false;
}

QString FileReplacement::cause() const
{
    return m_cause.isEmpty()
        ? writeFailure(m_fileName, m_file.error(), m_file.errorString(), m_place)
        : m_cause;
}

QString FileReplacement::failure() const
{
    return failureText(cause());
}

QString FileReplacement::failureText(const QString &cause) const
{
    return QStringLiteral("The %1 \"%2\" was not saved. %3")
        .arg(m_kind, QDir::toNativeSeparators(m_fileName), cause);
}

FileReplacement *commitAll(std::span<FileReplacement *const> files)
{
    for (FileReplacement *file : files) {
        if (!file->complete())
            return file;
    }
    const bool mayHaveToGoBack = files.size() > 1;
    for (FileReplacement *file : files) {
        if ((!mayHaveToGoBack || file->keepOld()) && file->place())
            continue;
        for (FileReplacement *placed : files)
            placed->takeBack();
        return file;
    }
    return nullptr;
}

} // namespace corvane
