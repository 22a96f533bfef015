#include "platform/engine/report_source.h"

#include "platform/engine/report_control.h"
#include "platform/messages/system_words.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringDecoder>

#include <algorithm>

namespace corvane {

namespace {

constexpr qint64 kMaxBytes = qint64(16) * 1024 * 1024;
constexpr qsizetype kMarkerBytes = 60;

QString shownName(const QString &fileName)
{
    return QString(u'"' + QFileInfo(fileName).fileName() + u'"');
}

/// Why the reports' list would not take these bytes for a designed report; empty when it does.
QString startFault(const QByteArray &bytes)
{
    if (bytes.startsWith("\xef\xbb\xbf")) {
        return QStringLiteral(
            "The file starts with a byte order mark, which hides what kind of report it is. "
            "Save it as UTF-8 without that mark.");
    }
    if (!bytes.startsWith("<?xml")) {
        return QStringLiteral("This is neither kind of report: it has no \"PageColumns\" in a "
                              "section [Columns], as a "
                              "tabular report has, and does not start with <?xml version=\"1.0\"?> "
                              "and <Reports>, as a "
                              "designed report does.");
    }
    if (bytes.first(std::min(kMarkerBytes, bytes.size())).contains("<Reports>"))
        return {};
    return QStringLiteral(
        "The root <Reports>, without attributes, must follow the XML declaration at once, within "
        "the "
        "first 60 bytes and with no comment before it; else the file is not taken for a report.");
}

/// The encoding that the XML declaration names; empty: none.
QString declaredEncoding(const QString &text)
{
    static const QRegularExpression declared(
        QStringLiteral("^<\\?xml[^>]*\\sencoding\\s*=\\s*[\"']([^\"']*)"));
    return declared.match(text.left(200)).captured(1);
}

} // namespace

ReportSource ReportSource::read(const QString &fileName)
{
    const ReportSource nothing(fileName, {});
    if (QFileInfo(fileName).isDir())
        nothing.fail(QStringLiteral("This is a folder, not a report."));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        nothing.fail(QStringLiteral("The file cannot be read: %1.").arg(systemWords(file.errorString())));
    const QByteArray bytes = file.read(kMaxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        nothing.fail(QStringLiteral("The file cannot be read: %1.").arg(systemWords(file.errorString())));
    return fromBytes(fileName, bytes);
}

ReportSource ReportSource::fromBytes(const QString &fileName, const QByteArray &bytes)
{
    const ReportSource nothing(fileName, {});
    if (bytes.size() > kMaxBytes) {
        nothing.fail(QStringLiteral(
            "The file is larger than 16 MiB. Keep its pictures as files beside it."));
    }
    if (const QString fault = startFault(bytes); !fault.isEmpty())
        nothing.fail(fault);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    ReportSource source(fileName, utf8(bytes));
    const QString encoding = declaredEncoding(source.m_text);
    if (!encoding.isEmpty() && encoding.compare(u"utf-8", Qt::CaseInsensitive) != 0) {
        source.fail(0,
            QStringLiteral("The file says that its encoding is \"%1\". Save it as UTF-8 and write "
                           "encoding=\"UTF-8\".")
                .arg(encoding));
    }
    if (utf8.hasError()) {
        source.fail(std::max<qsizetype>(0, source.m_text.indexOf(QChar::ReplacementCharacter)),
            QStringLiteral("Here stands a byte that is no UTF-8. Save the file as UTF-8."));
    }
    return source;
}

QString ReportSource::folder() const
{
    return QFileInfo(m_fileName).absolutePath();
}

FilePlace ReportSource::placeOf(qsizetype offset) const
{
    const auto next = std::ranges::upper_bound(m_lineStarts, offset);
    return {int(next - m_lineStarts.begin()), int(offset - *std::prev(next)) + 1};
}

void ReportSource::fail(qsizetype offset, const QString &sentence) const
{
    const FilePlace place = placeOf(std::clamp<qsizetype>(offset, 0, m_text.size()));
    throw ReportError(QString(shownName(m_fileName) % QStringLiteral(", line %1, column %2: ").arg(place.line).arg(place.column)),
        place, sentence);
}

void ReportSource::fail(const QString &sentence) const
{
    throw ReportError(QString(shownName(m_fileName) % u": "), {}, sentence);
}

ReportSource::ReportSource(const QString &fileName, QString text)
    : m_fileName(fileName)
    , m_text(std::move(text))
    , m_lineStarts{0}
{
    for (qsizetype at = m_text.indexOf(u'\n'); at >= 0; at = m_text.indexOf(u'\n', at + 1))
        m_lineStarts.push_back(at + 1);
}

} // namespace corvane
