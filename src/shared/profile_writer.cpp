#include "shared/profile.h"

#include "platform/files/file_hold.h"
#include "platform/files/file_replacement.h"
#include "platform/files/write_failure.h"
#include "platform/messages/system_words.h"
#include "shared/code_page.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace corvane {

namespace {

constexpr int kAttempts = 10;
const QString kChangesAllTheTime = QStringLiteral("Another program changes it all the time. Try again in a moment.");

QByteArray encoded(QStringView text, ProfileEncoding encoding)
{
    if (const QString missing = missingCharacter(text, encoding); !missing.isEmpty())
        throw ProfileWriteError(QStringLiteral("The file's code page has no character %1. Nothing was written.")
                                    .arg(characterName(missing)));
    if (encoding != ProfileEncoding::Windows1252)
        return text.toUtf8();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    std::ranges::transform(text, bytes.begin(), [](QChar c) { return char(*toWindows1252(c)); });
    return bytes;
}

/// Where a value stands in the file's bytes, or where its line or section must be put in.
struct Place {
    qsizetype begin = -1;
    qsizetype end = -1;
    bool sectionFound = false;
    bool keyFound = false;
};

/// Finds a value's place by the reader, so that both always mean the same line, in bytes, because everything that is
/// not replaced must stay as it is.
class PlaceFinder : private ProfileObserver
{
public:
    PlaceFinder(QByteArrayView bytes, ProfileEncoding encoding, QStringView section, QStringView key)
        : m_bytes(untilNul(bytes))
        , m_section(section)
        , m_key(key)
    {
        const Profile profile(decodeProfile(m_bytes, encoding), this);
        if (!m_place.sectionFound)
            m_place.begin = m_place.end = m_bytes.size();
    }

    const Place &place() const { return m_place; }

private:
    void take(const ProfileLine &line) override
    {
        const qsizetype start = m_at;
        const QByteArrayView bytes = nextLine();
        if (line.kind == ProfileLineKind::Section || line.kind == ProfileLineKind::RepeatedSection)
            m_inside = line.kind == ProfileLineKind::Section && sameProfileName(line.name, m_section);
        if (!m_inside || m_place.keyFound || line.kind == ProfileLineKind::Comment)
            return;
        if (line.kind == ProfileLineKind::Key && sameProfileName(line.name, m_key))
            m_place = {start + bytes.indexOf('=') + 1, start + bytes.size(), true, true};
        else if (!line.text.trimmed().isEmpty())
            m_place = {m_at, m_at, true, false}; // a new key goes behind the section's last line
    }

    /// The line without its end; the position moves behind the end. No encoding has a line feed within a letter.
    QByteArrayView nextLine()
    {
        const qsizetype start = m_at;
        const qsizetype feed = m_bytes.indexOf('\n', start);
        const qsizetype end = feed < 0 ? m_bytes.size() : feed;
        m_at = std::min(end + 1, m_bytes.size());
        QByteArrayView line = m_bytes.sliced(start, end - start);
        while (line.endsWith('\r'))
            line.chop(1);
        return line;
    }

    QByteArrayView m_bytes;
    QStringView m_section;
    QStringView m_key;
    Place m_place;
    bool m_inside = false;
    qsizetype m_at = 0;
};

QByteArray quotedWhereNeeded(QByteArray value)
{
    // The reader drops one pair of quotes; a value that has one of its own needs another around it.
    const bool quoted = value.size() >= 2 && value.front() == value.back()
        && (value.front() == '"' || value.front() == '\'');
    return quoted ? '"' + value + '"' : value;
}

QByteArray changed(const QByteArray &old, ProfileEncoding encoding, QStringView section, QStringView key, QStringView value)
{
    const Place place = PlaceFinder(old, encoding, section, key).place();
    const QByteArray newValue = quotedWhereNeeded(encoded(value, encoding));
    QByteArray bytes = old;
    if (place.keyFound)
        return bytes.replace(place.begin, place.end - place.begin, newValue);

    const QByteArray lineEnd = old.contains("\r\n") || !old.contains('\n') ? "\r\n" : "\n";
    const char before = place.begin == 0 ? '\n' : old[place.begin - 1];
    // A lone return at the text's end is half of a line end: a whole one behind it would make it part of the value.
    QByteArray insertion = before == '\n' ? QByteArray() : before == '\r' ? QByteArray("\n") : lineEnd;
    if (!place.sectionFound)
        insertion += '[' + encoded(section, encoding) + ']' + lineEnd;
    insertion += encoded(key, encoding) + '=' + newValue + lineEnd;
    return bytes.insert(place.begin, insertion);
}

/// One attempt to replace a profile. Everything that fails is a ProfileWriteError.
class ProfileReplacement
{
public:
    explicit ProfileReplacement(const QString &file)
        : m_name(file)
        , m_file(QStringLiteral("file"), file, SavePlace::Fixed)
    {
    }

    /// Empty when there is no file.
    QByteArray read() const
    {
        QFile source(m_name);
        if (!source.exists()) {
            checkFolder();
            return {};
        }
        if (!source.open(QIODevice::ReadOnly))
            refuseOrTellLoss(QStringLiteral("%1. Ask for the right to read it.").arg(systemWords(source.errorString())));
        const QByteArray bytes = source.readAll();
        if (source.error() != QFile::NoError)
            refuseOrTellLoss(QStringLiteral("It cannot be read to its end: %1. Have the disk and the connection to it looked at.").arg(systemWords(source.errorString())));
        return bytes;
    }

    QByteArray composed(const QByteArray &base, std::span<const ProfileEntry> entries) const;

    /// Between the comparison and the new file's taking its place lie microseconds, and in them only a program that
    /// does not ask for the hold can come in between: another one of this kind waits or has come before.
    bool replace(const QByteArray &expected, const QByteArray &bytes)
    {
        const FileHold hold(m_name);
        if (!hold.isHeld())
            refuseOrTellLoss(QStringLiteral("Another program is writing it. Try again in a moment."));
        if (bytes == expected)
            return read() == expected;
        if (!m_file.open() || !m_file.write(bytes) || !m_file.complete())
            throw ProfileWriteError(m_file.failure());
        if (read() != expected)
            return false;
        if (!m_file.commit())
            throw ProfileWriteError(m_file.failure());
        return true;
    }

    [[noreturn]] void refuse(const QString &cause) const { throw ProfileWriteError(m_file.failureText(cause)); }

private:
    /// A folder that is gone, or out of reach, looks as if somebody else had changed or taken the file.
    void checkFolder() const
    {
        if (!QFileInfo(QFileInfo(m_name).absolutePath()).isDir())
            refuse(writeFailure(m_name, QFile::NoError, {}, SavePlace::Fixed));
    }

    /// For what a lost folder looks like too: then the loss is told.
    [[noreturn]] void refuseOrTellLoss(const QString &cause) const
    {
        checkFolder();
        refuse(cause);
    }

    QString m_name;
    FileReplacement m_file;
};

QByteArray ProfileReplacement::composed(const QByteArray &base, std::span<const ProfileEntry> entries) const
{
    const ProfileEncoding encoding = profileEncoding(m_name, base);
    QByteArray bytes = base;
    for (const auto &[section, key, value] : entries) {
        if (value.contains(u'\n') || value.contains(u'\r') || value.contains(u'\0'))
            refuse(QStringLiteral("A value must stand on one line."));
        if (value.size() > Profile::kLongestValue)
            refuse(QStringLiteral("\"%1\" of [%2] is longer than %3 characters.").arg(key, section).arg(Profile::kLongestValue));
        bytes = changed(bytes, encoding, section, key, value);
    }
    // A few pairs of Windows-1252 letters are also a letter of UTF-8, and would be read back as that.
    if (decodeProfile(bytes, profileEncoding(m_name, bytes)) != decodeProfile(bytes, encoding))
        refuse(QStringLiteral("Its letters beyond ASCII would be taken for UTF-8. Save the file as UTF-8 in a text editor first."));
    return bytes;
}

} // namespace

QString missingCharacter(QStringView text, ProfileEncoding encoding)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        const bool isPair = c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const bool isMissing = encoding == ProfileEncoding::Windows1252 ? !toWindows1252(c) : c.isSurrogate() && !isPair;
        if (isMissing)
            return text.sliced(at, isPair ? 2 : 1).toString();
        at += isPair ? 1 : 0;
    }
    return {};
}

QString characterName(QStringView character)
{
    return QStringLiteral("\"%1\" (U+%2)").arg(character).arg(character.toUcs4().value(0), 4, 16, QLatin1Char('0'));
}

void WriteINI(const QString &file, QStringView section, QStringView key, const QString &value)
{
    const ProfileEntry entry {section.toString(), key.toString(), value};
    WriteINI(file, {&entry, 1});
}

void WriteINI(const QString &file, std::span<const ProfileEntry> entries)
{
    for (int i = 0; i < kAttempts; ++i) {
        const QByteArray bytes = ProfileReplacement(file).read();
        if (WriteINI(file, entries, {bytes, bytes}))
            return;
    }
    ProfileReplacement(file).refuse(kChangesAllTheTime);
}

bool WriteINI(const QString &file, std::span<const ProfileEntry> entries, const ProfileVersions &versions)
{
    ProfileReplacement replacement(file);
    return replacement.replace(versions.expected, replacement.composed(versions.base, entries));
}

} // namespace corvane
