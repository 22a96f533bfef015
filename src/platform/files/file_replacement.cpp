#include "platform/files/file_replacement.h"

#include "platform/files/file_hold.h"
#include "platform/files/placing.h"
#include "platform/files/temporary_name.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

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

} // namespace

void removeAbandonedFiles(const QString &folder)
{
    QDirIterator found(
        folder, {temporaryPattern()}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
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
        discard();
    if (!m_old.isEmpty())
        QFile::remove(m_old);
}

bool FileReplacement::open()
{
    const QFileInfo target(m_target);
    if (target.isDir() || (target.exists() && (!target.isFile() || !target.isWritable())))
        return fail({QFileDevice::WriteError, QStringLiteral("The file is not writable")});
    if (isOpenElsewhere(m_target, OpenUse::Exclusive))
        return fail({QFileDevice::RenameError, QStringLiteral("The file is in use")});
    removeAbandonedFiles(target.absolutePath());
    if (const SystemFault fault = createBeside())
        return fail(fault);
    if (target.exists())
        takeOverRights(m_file, m_target);
    return true;
}

SystemFault FileReplacement::createBeside()
{
    const QString folder = QFileInfo(m_target).absolutePath();
    SystemFault fault;
    for (int i = 0; i < kAttempts; ++i) {
        m_name = randomTemporaryName(folder);
        fault = createFor(m_target, m_name, m_file);
        // Somebody who cleans up may be quicker than the hold on it.
        if (!fault && holdOpenFile(m_file.handle()) != HoldResult::HeldByAnother
            && QFile::exists(m_name))
            return {};
        if (fault && !QFile::exists(m_name))
            return fault;
        m_file.close();
    }
    return fault ? fault
                 : SystemFault{QFileDevice::OpenError,
                     QStringLiteral("Another program removes what is written there")};
}

bool FileReplacement::write(QByteArrayView bytes)
{
    qsizetype done = 0;
    while (m_cause.isEmpty() && done < bytes.size()) {
        const qint64 written = m_file.write(bytes.data() + done, bytes.size() - done);
        if (written <= 0)
            return fail({m_file.error(), m_file.errorString()});
        done += written; // less than asked for when the disk fills up; the next attempt says so
    }
    return m_cause.isEmpty();
}

bool FileReplacement::complete()
{
    if (m_isComplete || !m_cause.isEmpty())
        return m_cause.isEmpty();
    if (!m_file.flush())
        return fail({m_file.error(), m_file.errorString()});
    if (const SystemFault fault = flushToDisk(m_file))
        return fail(fault);
    m_isComplete = true;
    return true;
}

bool FileReplacement::commit()
{
    return complete() && place();
}

bool FileReplacement::place()
{
    if (const SystemFault fault = moveOnto(m_name, m_target)) {
        discard();
        return fail(fault);
    }
    m_isPlaced = true;
    m_file.close();
    return true;
}

void FileReplacement::discard()
{
    m_file.close();
    QFile::remove(m_name);
}

/// Gives the older file a second name, so that it can come back.
bool FileReplacement::keepOld()
{
    if (!QFile::exists(m_target))
        return true;
    m_old = randomTemporaryName(QFileInfo(m_target).absolutePath());
    const SystemFault fault = keepUnder(m_old, m_target);
    return !fault || fail(fault);
}

void FileReplacement::takeBack()
{
    if (!m_isPlaced)
        return;
    if (m_old.isEmpty())
        QFile::remove(m_target);
    else
        moveOnto(m_old, m_target);
}

bool FileReplacement::fail(const SystemFault &fault)
{
    if (m_cause.isEmpty())
        m_cause = writeFailure(m_fileName, fault.error, fault.text, m_place);
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
