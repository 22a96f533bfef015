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

QString withoutQuotes(QStringView value)
{
    const bool quoted = value.size() >= 2 && value.front() == value.back()
        && (value.front() == u'"' || value.front() == u'\'');
    return (quoted ? value.sliced(1, value.size() - 2) : value).left(Profile::kLongestValue).toString();
}

QStringView withoutReturn(QStringView line)
{
    return line.endsWith(u'\r') ? line.chopped(1) : line;
}

QByteArray readAll(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

QByteArray untilNul(const QByteArray &bytes)
{
    const qsizetype nul = bytes.indexOf('\0');
    return nul < 0 ? bytes : bytes.first(nul);
}

Profile readProfile(const QString &file)
{
    const QByteArray bytes = untilNul(readAll(file));
    return Profile(decodeProfile(bytes, profileEncoding(file, bytes)));
}

} // namespace

Profile::Profile(QStringView text)
{
    const qsizetype nul = text.indexOf(u'\0');
    if (nul >= 0)
        text.truncate(nul);
    QHash<QString, QString> *section = nullptr;
    QHash<QString, QString> ignored;
    for (const QStringView rawLine : text.tokenize(u'\n')) {
        const QStringView line = withoutReturn(rawLine);
        if (isComment(line))
            continue;
        if (const QStringView name = sectionName(line); !name.isNull()) {
            const QString key = folded(name);
            const bool repeated = m_sections.contains(key);
            section = repeated ? &ignored : &m_sections[key];
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!section || equals < 0)
            continue;
        const QString key = folded(line.first(equals));
        if (!section->contains(key))
            section->insert(key, withoutQuotes(line.sliced(equals + 1)));
    }
}

QString Profile::value(QStringView section, QStringView key) const
{
    const auto found = m_sections.constFind(folded(section));
    return found == m_sections.cend() ? QString() : found->value(folded(key));
}

ProfileEncoding profileEncoding(const QString &file, QByteArrayView bytes)
{
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
    m_watch = std::make_unique<FileWatch>(QFile::encodeName(m_file));
    m_profile = readProfile(m_file);
    return true;
}

QString ReadINI(const QString &file, QStringView section, QStringView key)
{
    // Nothing stays open between calls, so the one file that is kept parsed is told by its path's stamp.
    static QString latestFile;
    static FileStamp latestStamp;
    static Profile latest;
    const FileStamp stamp = fileStamp(QFile::encodeName(file));
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
