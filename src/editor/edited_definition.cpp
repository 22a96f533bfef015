#include "editor/edited_definition.h"

#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "shared/report_host.h"
#include "shared/run_time_fault.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

constexpr std::array<QStringView, 3> kSides{u"left", u"center", u"right"};

/// What a value of any key cannot hold; empty when all is well.
QString unwritable(const QString &text, ProfileEncoding encoding)
{
    if (text.contains(u'\n') || text.contains(u'\r') || text.contains(u'\0'))
        return QStringLiteral("holds a line break, and a value must stand on one line. Remove it.");
    if (const QString missing = missingCharacter(text, encoding); !missing.isEmpty())
        return QStringLiteral(
            "holds the character %1, which the file's code page, Windows-1252, lacks. "
            "Use another character, or save the file as UTF-8 in a text editor first.")
            .arg(characterName(missing));
    return {};
}

QString captionFault(const QString &caption, ProfileEncoding encoding)
{
    if (caption.contains(u'|'))
        return QStringLiteral(
            "holds a bar (|), which separates captions in the file. Use another character.");
    if (caption.contains(u';'))
        return QStringLiteral("holds a semicolon (;), which ends the list of captions in the file. "
                              "Use another character.");
    return unwritable(caption, encoding);
}

QString sizeFault(const PrintedColumn &column)
{
    try {
        twipsOf(column);
        return {};
    } catch (const RunTimeFault &) {
        return QStringLiteral(
            "is %1 inches wide. A column can have 22.75 inches at most; give it a smaller size.")
            .arg(column.size.trimmed());
    }
}

std::optional<PropertyFault> textFault(
    PropertyFault::Place place, const std::array<QString, 3> &texts, ProfileEncoding encoding)
{
    const QStringView name = place == PropertyFault::Header ? u"header" : u"footer";
    for (size_t side = 0; side < texts.size(); ++side) {
        if (const QString words = unwritable(texts[side], encoding); !words.isEmpty())
            return PropertyFault{place, int(side),
                QStringLiteral("The %1 %2 text %3").arg(kSides[side], name, words)};
    }
    return std::nullopt;
}

std::optional<PropertyFault> columnFault(
    const PrintedColumn &column, int row, ProfileEncoding encoding)
{
    const auto fault = [&](PropertyFault::Place place, const QString &words) {
        return PropertyFault{place, row,
            QStringLiteral("Column %1, \"%2\", %3").arg(row + 1).arg(column.caption, words)};
    };
    if (const QString words = captionFault(column.caption, encoding); !words.isEmpty())
        return fault(PropertyFault::Caption, words);
    if (const QString words = sizeFault(column); !words.isEmpty())
        return fault(PropertyFault::Size, words);
    return std::nullopt;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<PropertyFault> findFault(const PageProperties &properties, ProfileEncoding encoding)
{
    if (auto fault = textFault(PropertyFault::Header, properties.header, encoding))
        return fault;
    if (auto fault = textFault(PropertyFault::Footer, properties.footer, encoding))
        return fault;
    for (size_t row = 0; row < properties.columns.size(); ++row) {
        if (auto fault = columnFault(properties.columns[row], int(row), encoding))
            return fault;
    }
    return std::nullopt;
}

QString editRefusal(const QString &file)
{
    if (const QString reason = unreadableReason(file); !reason.isEmpty())
        return reason;
    // A designed report may hold anything, even lines that look like a definition's.
    if (listedReportType(file) == TabularReport && getReportType(file) != DesignedReport)
        return {};
    return QStringLiteral(
        "Only tabular reports have properties. \"%1\" is not a tabular report; it stays as it is.")
        .arg(QFileInfo(file).fileName());
}

EditedDefinition::EditedDefinition(const QString &file)
    : m_file(file)
{
}

PageProperties EditedDefinition::load()
{
    // Before the properties are read: a change in between is then noticed when they are saved.
    m_loaded = m_expected = bytesOf(m_file);
    return loadPageProperties(TabularDefinition(m_file));
}

std::optional<PropertyFault> EditedDefinition::fault(const PageProperties &properties) const
{
    return findFault(properties, profileEncoding(m_file, m_loaded));
}

/// Never into what somebody else wrote: columns that were made for one query must not stand beside
/// another.
bool EditedDefinition::save(const PageProperties &properties)
{
    if (WriteINI(m_file, profileEntries(properties), {m_loaded, m_expected}))
        return true;
    m_seen = bytesOf(m_file);
    return false;
}

void EditedDefinition::overruleChange()
{
    m_expected = m_seen;
}

} // namespace corvane
