#include "shared/profile.h"

#include "shared/code_page.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>

#include <algorithm>

namespace corvane {

namespace {

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
        : m_bytes(bytes)
        , m_section(section)
        , m_key(key)
    {
        if (const qsizetype nul = m_bytes.indexOf('\0'); nul >= 0)
            m_bytes.truncate(nul);
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
        const QByteArrayView line = m_bytes.sliced(start, end - start);
        return line.endsWith('\r') ? line.chopped(1) : line;
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
    const auto refuse = [&](const QString &cause) {
        throw ProfileWriteError(QStringLiteral("\"%1\" cannot be written: %2. Nothing was changed.")
                                    .arg(QDir::toNativeSeparators(file), cause));
    };
    QByteArray old;
    QFile source(file);
    if (source.exists()) {
        if (!source.open(QIODevice::ReadOnly))
            refuse(source.errorString());
        old = source.readAll();
        source.close();
    }
    const ProfileEncoding encoding = profileEncoding(file, old);
    QByteArray bytes = old;
    for (const auto &[section, key, value] : entries) {
        if (value.contains(u'\n') || value.contains(u'\r') || value.contains(u'\0'))
            refuse(QStringLiteral("a value must stand on one line"));
        if (value.size() > Profile::kLongestValue)
            refuse(QStringLiteral("\"%1\" of [%2] is longer than %3 characters").arg(key, section).arg(Profile::kLongestValue));
        bytes = changed(bytes, encoding, section, key, value);
    }
    if (bytes == old)
        return;
    // A few pairs of Windows-1252 letters are also a letter of UTF-8, and would be read back as that.
    if (decodeProfile(bytes, profileEncoding(file, bytes)) != decodeProfile(bytes, encoding))
        refuse(QStringLiteral("its letters beyond ASCII would be taken for UTF-8; save the file as UTF-8 in a text editor first"));
    // Unbuffered: commit() does not notice when what was left in a buffer found no room on the disk.
    QSaveFile target(file);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        refuse(target.errorString());
    const qint64 written = target.write(bytes);
    if (written >= 0 && written < bytes.size())
        refuse(QStringLiteral("there is no room left on the disk"));
    if (written < 0 || !target.commit())
        refuse(target.errorString());
}

} // namespace corvane
