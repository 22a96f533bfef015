#include "shared/profile.h"

#include "shared/code_page.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QStringDecoder>

namespace corvane {

namespace {

constexpr char kUtf8Mark[] = "\xef\xbb\xbf";

QString folded(QStringView name)
{
    return name.trimmed().toString().toCaseFolded();
}

/// The name inside a section line, or a null view for any other line.
QStringView sectionName(QStringView line)
{
    const QStringView text = line.trimmed();
    if (!text.startsWith(u'['))
        return {};
    const qsizetype end = text.indexOf(u']');
    return end < 0 ? text.sliced(1) : text.sliced(1, end - 1);
}

bool isComment(QStringView line)
{
    return line.trimmed().startsWith(u';');
}

QStringView readValue(QStringView value)
{
    const bool quoted = value.size() >= 2 && value.front() == value.back()
        && (value.front() == u'"' || value.front() == u'\'');
    return (quoted ? value.sliced(1, value.size() - 2) : value).left(Profile::kLongestValue);
}

/// Whatever turned a file's line ends into Windows's may have met some that were so already.
QStringView withoutReturns(QStringView line)
{
    while (line.endsWith(u'\r'))
        line.chop(1);
    return line;
}

/// Nothing when it is not there or cannot be read to its end.
std::optional<QByteArray> readable(const QString &file)
{
    QFile source(file);
    if (!QFileInfo(file).isFile() || !source.open(QIODevice::ReadOnly) || source.size() > kLargestProfile)
        return std::nullopt;
    const QByteArray bytes = source.readAll();
    return source.error() == QFile::NoError ? std::optional(bytes) : std::nullopt;
}

Profile readProfile(const QString &file)
{
    return Profile(profileText(file, readable(file).value_or(QByteArray())));
}

} // namespace

Profile::Profile(QStringView text, ProfileObserver *observer)
{
    const qsizetype nul = text.indexOf(u'\0');
    if (nul >= 0)
        text.truncate(nul);
    QHash<QString, QString> *section = nullptr;
    QHash<QString, QString> overlooked;
    ProfileLine line;
    for (const QStringView rawLine : text.tokenize(u'\n')) {
        line = {ProfileLineKind::Stray, line.number + 1, withoutReturns(rawLine), {}, {}, {}};
        const qsizetype equals = line.text.indexOf(u'=');
        if (isComment(line.text)) {
            line.kind = ProfileLineKind::Comment;
        } else if (line.name = sectionName(line.text); !line.name.isNull()) {
            const QString key = folded(line.name);
            const bool repeated = m_sections.contains(key);
            section = repeated ? &overlooked : &m_sections[key];
            line.kind = repeated ? ProfileLineKind::RepeatedSection : ProfileLineKind::Section;
        } else if (section && equals >= 0) {
            line.name = line.text.first(equals);
            line.rawValue = line.text.sliced(equals + 1);
            line.value = readValue(line.rawValue);
            const QString key = folded(line.name);
            const bool repeated = section->contains(key);
            if (!repeated)
                section->insert(key, line.value.toString());
            line.kind = section == &overlooked ? ProfileLineKind::OverlookedKey
                : repeated                     ? ProfileLineKind::RepeatedKey
                                               : ProfileLineKind::Key;
        }
        if (observer)
            observer->take(line);
    }
}

QString Profile::value(QStringView section, QStringView key) const
{
    const auto found = m_sections.constFind(folded(section));
    return found == m_sections.cend() ? QString() : found->value(folded(key));
}

bool sameProfileName(QStringView one, QStringView other)
{
    if (one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0)
        return true;
    const auto isAscii = [](QStringView name) { return std::ranges::all_of(name, [](QChar c) { return c.unicode() < 0x80; }); };
    return !(isAscii(one) && isAscii(other)) && folded(one) == folded(other); // "ß" folds to two letters
}

QByteArrayView untilNul(QByteArrayView bytes)
{
    const qsizetype nul = bytes.indexOf('\0');
    return nul < 0 ? bytes : bytes.first(nul);
}

ProfileEncoding profileEncoding(const QString &file, QByteArrayView bytes)
{
    bytes = untilNul(bytes); // what is not read says nothing about the rest
    if (QFileInfo(file).fileName().compare(u"corvane.ini", Qt::CaseInsensitive) == 0)
        return ProfileEncoding::Windows1252;
    if (bytes.startsWith(kUtf8Mark))
        return ProfileEncoding::Utf8WithMark;
    const bool ascii = std::ranges::all_of(bytes, [](char c) { return uchar(c) < 0x80; });
    if (ascii)
        return ProfileEncoding::Windows1252;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes);
    return decoder.hasError() || decoded.isEmpty() ? ProfileEncoding::Windows1252 : ProfileEncoding::Utf8;
}

QString decodeProfile(QByteArrayView bytes, ProfileEncoding encoding)
{
    switch (encoding) {
    case ProfileEncoding::Windows1252:
        return fromWindows1252(bytes);
    case ProfileEncoding::Utf8WithMark:
        return QString::fromUtf8(bytes.sliced(3));
    case ProfileEncoding::Utf8:
        break;
    }
    return QString::fromUtf8(bytes);
}

QString profileText(const QString &file, const QByteArray &bytes)
{
    const QByteArrayView text = untilNul(bytes);
    return decodeProfile(text, profileEncoding(file, text));
}

ProfileFile::ProfileFile(const QString &file)
    : m_file(file)
{
    refresh();
}

bool ProfileFile::refresh()
{
    if (m_watch && !m_watch->hasChanged())
        return false;
    // Watched before it is read, so that a change in between is noticed the next time.
    auto watch = std::make_unique<FileWatch>(m_file);
    const auto bytes = readable(m_file);
    // Rows must not lose their columns halfway down a report because a network folder is gone.
    if (!bytes && m_watch)
        return false;
    m_watch = std::move(watch);
    m_profile = Profile(profileText(m_file, bytes.value_or(QByteArray())));
    return true;
}

QString ReadINI(const QString &file, QStringView section, QStringView key)
{
    // Nothing stays open between calls, so the one file that is kept parsed is told by its path's stamp.
    static QString latestFile;
    static FileStamp latestStamp;
    static Profile latest;
    const FileStamp stamp = fileStamp(file);
    if (latestFile != file || latestStamp != stamp) {
        latest = readProfile(file);
        latestFile = file;
        latestStamp = stamp;
    }
    return latest.value(section, key);
}

ProfileWriteError::ProfileWriteError(const QString &message)
    : std::runtime_error(message.toStdString())
    , m_message(message)
{
}

} // namespace corvane
