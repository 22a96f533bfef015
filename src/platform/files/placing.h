#pragma once

#include <QtCore/QFile>

namespace corvane {

// What a file that is replaced asks of the system; a source for each system. Names are absolute.

/// Why the system refused.
struct SystemFault
{
    QFileDevice::FileError error = QFileDevice::NoError;
    QString text;

    explicit operator bool() const { return error != QFileDevice::NoError; }
};

/// Makes a file, which nobody may have, and opens it for reading and writing. Nobody may read it
/// who may not read the file that it is to replace, if there is one.
SystemFault createFor(const QString &target, const QString &name, QFile &file);
/// Gives it the owner and the rights of the file that it is to replace, as far as this user may.
void takeOverRights(QFile &file, const QString &target);
/// What was written is on the disk afterwards, not on its way.
SystemFault flushToDisk(QFile &file);

/// Puts a file, which this program may have open, into another one's place, in one step and for good.
SystemFault moveOnto(const QString &name, const QString &target);
/// Gives a file a second name, or makes a copy of it where files have but one.
SystemFault keepUnder(const QString &second, const QString &name);

/// Deletes a file of removeAbandonedFiles() that nobody holds.
void removeIfAbandoned(const QString &name);

/// Whether another program has the file open in a way that keeps it from being replaced or, for
/// `Any`, has it open at all. Never so where the system lets open files be replaced.
enum class OpenUse { Exclusive, Any };
bool isOpenElsewhere(const QString &name, OpenUse use);

} // namespace corvane
