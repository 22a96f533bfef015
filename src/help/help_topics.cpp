#include "help/help_topics.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtGui/QTextDocument>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::array kTopics{
    HelpTopic{kMainHelpContext, u"help/overview.md", u"frmAbout frmHelp"},
    HelpTopic{230, u"help/first-steps.md", u""},
    HelpTopic{231, u"help/logon.md", u"frmReportrLogon"},
    HelpTopic{232, u"help/main-window.md", u"frmCVRMain"},
    HelpTopic{233, u"help/dates.md", u"frmDefDates"},
    HelpTopic{234, u"help/patient.md", u"frmspatnt"},
    HelpTopic{235, u"help/date-question.md", u"frmRptrDates frmRptrParams"},
    HelpTopic{236, u"help/selection.md", u"frmRptrSelect"},
    HelpTopic{
        237, u"help/saving.md", u"QFileDialog QPrintDialog QPrintPreviewDialog QPageSetupDialog"},
    HelpTopic{238, u"help/properties.md", u"frmCVRProps QFontDialog"},
    HelpTopic{239, u"help/messages.md", u"QMessageBox"},
    HelpTopic{240, u"definition-files.md", u""},
    HelpTopic{241, u"designed-reports.md", u""},
    HelpTopic{242, u"expressions.md", u""},
};

constexpr int kExcerptBefore = 30;
constexpr int kExcerptLength = 110;

QString plainText(const HelpTopic &topic)
{
    QTextDocument document;
    document.setMarkdown(topicMarkdown(topic));
    return document.toPlainText();
}

QStringList wordsOf(QStringView query)
{
    return query.toString().simplified().split(u' ', Qt::SkipEmptyParts);
}

bool hasAll(QStringView text, const QStringList &words)
{
    return std::ranges::all_of(
        words, [text](const QString &word) { return text.contains(word, Qt::CaseInsensitive); });
}

qsizetype countOfAll(const QString &text, const QStringList &words)
{
    qsizetype count = 0;
    for (const QString &word : words)
        count += text.count(word, Qt::CaseInsensitive);
    return count;
}

/// Whole words around a place, with dots where the text goes on.
QString excerptAt(const QString &text, qsizetype place)
{
    const QString flat = QString(text)
                             .replace(QChar::ParagraphSeparator, u' ')
                             .replace(u'\n', u' ')
                             .replace(QChar::ObjectReplacementCharacter, u' ');
    qsizetype begin = std::max<qsizetype>(0, place - kExcerptBefore);
    if (begin > 0)
        begin = std::max(begin, flat.indexOf(u' ', begin) + 1);
    qsizetype end = std::min(flat.size(), begin + kExcerptLength);
    if (end < flat.size())
        end = std::max(flat.lastIndexOf(u' ', end), std::min(place + 1, flat.size()));
    const QString words = flat.sliced(begin, end - begin).simplified();
    return (begin > 0 ? QStringLiteral("\u2026 ") : QString()) + words
        + (end < flat.size() ? QStringLiteral(" \u2026") : QString());
}

} // namespace

std::span<const HelpTopic> helpTopics()
{
    return kTopics;
}

const HelpTopic &topicOfContext(int context)
{
    const auto found = std::ranges::find(kTopics, context, &HelpTopic::context);
    return found == kTopics.end() ? kTopics.front() : *found;
}

const HelpTopic *topicOfForm(QStringView name)
{
    if (name.isEmpty())
        return nullptr;
    const auto found = std::ranges::find_if(
        kTopics, [name](const HelpTopic &topic) { return topic.forms.split(u' ').contains(name); });
    return found == kTopics.end() ? nullptr : &*found;
}

const HelpTopic *topicOfUrl(const QUrl &url)
{
    const QUrl page = url.adjusted(QUrl::RemoveFragment);
    const auto found = std::ranges::find_if(
        kTopics, [&page](const HelpTopic &topic) { return topicUrl(topic) == page; });
    return found == kTopics.end() ? nullptr : &*found;
}

QUrl topicUrl(const HelpTopic &topic)
{
    return QUrl(QStringLiteral("qrc:/docs/") + topic.path.toString());
}

QString topicMarkdown(const HelpTopic &topic)
{
    QFile file(QStringLiteral(":/docs/") + topic.path.toString());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString topicTitle(const HelpTopic &topic)
{
    const QString line = topicMarkdown(topic).section(u'\n', 0, 0);
    return line.startsWith(u"# ") ? line.sliced(2).trimmed() : QString();
}

QString headingAnchor(QStringView heading)
{
    static const QRegularExpression other(
        QStringLiteral("[^\\w\\- ]"), QRegularExpression::UseUnicodePropertiesOption);
    return heading.trimmed().toString().toLower().remove(other).replace(u' ', u'-');
}

std::vector<HelpHit> searchHelp(QStringView query)
{
    const QStringList words = wordsOf(query);
    if (words.isEmpty())
        return {};
    struct Ranked
    {
        HelpHit hit;
        std::pair<bool, qsizetype> rank;
    };
    std::vector<Ranked> ranked;
    for (const HelpTopic &topic : kTopics) {
        const QString text = plainText(topic);
        if (hasAll(text, words))
            ranked.push_back(
                {{&topic, excerptAt(text, text.indexOf(words.front(), 0, Qt::CaseInsensitive))},
                    {hasAll(topicTitle(topic), words), countOfAll(text, words)}});
    }
    std::ranges::stable_sort(ranked, std::greater{}, &Ranked::rank);
    std::vector<HelpHit> hits;
    std::ranges::transform(ranked, std::back_inserter(hits), &Ranked::hit);
    return hits;
}

} // namespace corvane
