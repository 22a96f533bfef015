#pragma once

#include "platform/files/temporary_name.h"
#include "platform/files/write_failure.h"

#include <QtCore/QFile>

#include <span>

namespace corvane {

struct SystemFault;

/// A file on its way to the disk: written beside its target under a name of its own, put into place
/// when it is complete, gone when it is not. At any moment, also when the program is killed, the
/// target is the old file or the new one. What killed programs left in a folder goes with the next
/// file that is saved there.
class FileReplacement
{
public:
    /// `kind` as messages name it: "PDF file".
    FileReplacement(
        const QString &kind, const QString &fileName, SavePlace place = SavePlace::Choosable);
    ~FileReplacement();
    Q_DISABLE_COPY_MOVE(FileReplacement)

    const QString &fileName() const { return m_fileName; }

    // Each is false when it failed; cause() then says why, and what comes after it fails too.
    bool open();
    bool write(QByteArrayView bytes);
    /// Everything is on the disk; nothing more is written.
    bool complete();
    /// Takes the target's place, at once and for good.
    bool commit();

    /// What is written to, unbuffered: a full disk is noticed by the write that finds no room.
    QIODevice &device() { return m_file; }
    /// Why and what to do, for the first failure or else the device's latest.
    QString cause() const;
    /// The same behind what happened to which file.
    QString failure() const;
    /// What happened to which file, with a cause of another kind.
    QString failureText(const QString &cause) const;

private:
    friend FileReplacement *commitAll(std::span<FileReplacement *const> files);

    SystemFault createBeside();
    bool place();
    void discard();
    bool keepOld();
    void takeBack();
    bool fail(const SystemFault &fault);

    QString m_kind;
    QString m_fileName;
    QString m_target; ///< what the name leads to, links followed
    SavePlace m_place;
    QString m_name; ///< until it is in its place; an open file does not tell it everywhere
    QFile m_file;
    QString m_old; ///< the older file's second name while it may have to come back
    bool m_isComplete = false;
    bool m_isPlaced = false;
    QString m_cause;
};

/// Puts several files into place, all or none: when one fails, those before it are as they were.
/// @return the one that failed, which says why; null when all are in place
FileReplacement *commitAll(std::span<FileReplacement *const> files);

/// Removes what programs that were killed while they saved left in a folder; what a living one
/// writes stays.
void removeAbandonedFiles(const QString &folder);

} // namespace corvane
