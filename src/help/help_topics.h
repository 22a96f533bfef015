#pragma once

#include <QtCore/QString>
#include <QtCore/QStringView>
#include <QtCore/QUrl>

#include <span>
#include <vector>

namespace corvane {

/// A page of the help, kept as Markdown.
struct HelpTopic
{
    int context; ///< its number for the system's help engine and for whoever calls help
    QStringView path; ///< below docs/
    QStringView forms; ///< object or class names of the forms that it explains, blanks between them
};

/// The main topic's context number.
inline constexpr int kMainHelpContext = 229;
/// The help file that the system's engine shows where it stands in the program folder.
inline constexpr QStringView kHelpFile = u"corvaneee.chm";

/// All topics in the order of the contents; the main topic is the first.
std::span<const HelpTopic> helpTopics();
/// The main topic for a number that is none.
const HelpTopic &topicOfContext(int context);
/// By a form's object name or class name; null when no topic explains it.
const HelpTopic *topicOfForm(QStringView name);
/// By the address of its page, whatever the anchor; null for any other address.
const HelpTopic *topicOfUrl(const QUrl &url);

QUrl topicUrl(const HelpTopic &topic);
QString topicMarkdown(const HelpTopic &topic);
/// Its first heading.
QString topicTitle(const HelpTopic &topic);
/// What links inside a page call a heading: lower case, blanks as hyphens, no other signs.
QString headingAnchor(QStringView heading);

struct HelpHit
{
    const HelpTopic *topic;
    QString excerpt; ///< the words around the first place
};
/// Topics that have every word of the query, in any case: those with all in the title first, then
/// by how often they have them. No words, no hits.
std::vector<HelpHit> searchHelp(QStringView query);

} // namespace corvane
