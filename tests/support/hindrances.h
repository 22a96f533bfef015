#pragma once

#include <QtCore/QStringList>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace corvane::test {

/// No file of this process grows beyond so many bytes while this lives: to a writer the same as a disk that fills up.
/// Windows has no such limit; the cases that need one are left out there (tests/windows/left-out.txt).
class FullDisk
{
public:
    explicit FullDisk(qint64 bytes);
    ~FullDisk();
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
#ifndef Q_OS_WIN
    void (*m_handler)(int) = nullptr;
    rlimit m_before{};
#endif
};

/// Root may read and write everything; while this lives, the process is a user who may not. Does nothing for a process
/// that is none of root's, and on Windows, where a file that is read-only is so for everybody.
class Unprivileged
{
public:
    Unprivileged();
    ~Unprivileged();
    Q_DISABLE_COPY_MOVE(Unprivileged)

private:
    bool m_became = false;
};

/// The command that runs another one as a user who is not root; the same command where nobody is.
QStringList asUnprivileged(const QStringList &command);

/// Whether a pipe with that name was made. Windows has none in its folders.
bool makePipe(const QString &fileName);

} // namespace corvane::test
