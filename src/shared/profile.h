#pragma once

#include "platform/files/file_stamp.h"

#include <QtCore/QHash>
#include <QtCore/QString>

#include <memory>
#include <span>
#include <stdexcept>

namespace corvane {

/// What the reader makes of a line.
enum class ProfileLineKind {
    Comment,
    Section,
    RepeatedSection, ///< a name that an earlier section has: nothing in it is looked at
    Key,
    RepeatedKey,     ///< a name that an earlier key of the section has
    OverlookedKey,   ///< in a repeated section
    Stray,           ///< blank, without equals sign, or before the first section
};

/// One line as the reader takes it. The views point into the text.
struct ProfileLine {
    ProfileLineKind kind = ProfileLineKind::Stray;
    int number = 0;       ///< from 1
    QStringView text;     ///< without its end
    QStringView name;     ///< of a section or key as written, blanks included
    QStringView rawValue; ///< of a key, quotes included
    QStringView value;    ///< as it is read
};

class ProfileObserver
{
public:
    virtual ~ProfileObserver() = default;
    virtual void take(const ProfileLine &line) = 0;
};

/// Files beyond this, and whatever is no regular file (a pipe or a device may never end), read as empty.
inline constexpr qint64 kLargestProfile = qint64(64) * 1024 * 1024;

/// A profile ("INI") text read once: sections in brackets, key=value lines, ";" comment lines.
/// Names ignore case and blanks around them, values keep theirs; one matching pair of quotes around a
/// whole value is dropped; the first section of a name and the first key in it count; a NUL ends the text.
class Profile
{
public:
    static constexpr qsizetype kLongestValue = 7999;

    Profile() = default;
    /// The observer is shown every line, in the file's order.
    explicit Profile(QStringView text, ProfileObserver *observer = nullptr);

    /// Empty for anything missing; at most kLongestValue characters.
    QString value(QStringView section, QStringView key) const;

private:
    QHash<QString, QHash<QString, QString>> m_sections;
};

/// The part of a file's bytes that is read: a NUL ends it.
QByteArrayView untilNul(QByteArrayView bytes);

/// How a profile's bytes are to be read: UTF-8 when they start with its mark or hold valid multi-byte
/// UTF-8, else Windows-1252. `corvane.ini` is always Windows-1252.
enum class ProfileEncoding { Windows1252, Utf8, Utf8WithMark };
ProfileEncoding profileEncoding(const QString &file, QByteArrayView bytes);
QString decodeProfile(QByteArrayView bytes, ProfileEncoding encoding);
/// A file's bytes as the reader takes them: up to the first NUL, in the file's encoding.
QString profileText(const QString &file, const QByteArray &bytes);

/// Whether the reader takes two names for one: blanks around them and case do not count.
bool sameProfileName(QStringView one, QStringView other);

/// The first character of a text that the encoding lacks, half of a surrogate pair being none; empty when it has them all.
QString missingCharacter(QStringView text, ProfileEncoding encoding);
/// A character as messages name it: "ř" (U+0159).
QString characterName(QStringView character);

/// A profile file kept parsed. With refresh() before each use, or once per record of a report, it answers
/// as if nothing were kept, except that a file which cannot be read any more counts as it was last read.
class ProfileFile
{
public:
    explicit ProfileFile(const QString &file);

    /// Reads the file again when it changed. True when it was read again.
    bool refresh();

    const QString &file() const { return m_file; }
    QString value(QStringView section, QStringView key) const { return m_profile.value(section, key); }

private:
    QString m_file;
    std::unique_ptr<FileWatch> m_watch;
    Profile m_profile;
};

/// The value of a key; empty for a missing file, section or key. Nothing is trimmed.
QString ReadINI(const QString &file, QStringView section, QStringView key);

class ProfileWriteError : public std::runtime_error
{
public:
    explicit ProfileWriteError(const QString &message);
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Sets the value of a key, making section and key when missing. Every other byte, the line ends and
/// the encoding stay; the file is replaced as a whole or not at all.
/// @throws ProfileWriteError when the file cannot be replaced, its encoding lacks a character, or the
/// value could not be read back: it has a line end or is longer than Profile::kLongestValue.
void WriteINI(const QString &file, QStringView section, QStringView key, const QString &value);

struct ProfileEntry {
    QString section;
    QString key;
    QString value;
};
/// The same for several values of one file, in their order: all of them or none.
void WriteINI(const QString &file, std::span<const ProfileEntry> entries);

/// What whoever changes a file has read.
struct ProfileVersions {
    QByteArray base;     ///< the bytes that the values are put into
    QByteArray expected; ///< the bytes that may be replaced
};
/// The same for a file that several people change: false, and nothing written, when it holds other bytes
/// than those expected. Of two programs that write at a time one comes first, and the other is told.
bool WriteINI(const QString &file, std::span<const ProfileEntry> entries, const ProfileVersions &versions);

} // namespace corvane
