// What a single line shows: names, repetitions, blanks, lines that are nothing.

#include "definitions/checker/check_pass.h"
#include "definitions/checker/known_keys.h"
#include "definitions/checker/near_word.h"

namespace corvane {

namespace {

using enum FindingKind;

bool isFormatSection(const PlacedLine &line)
{
    return line.section.compare(u"ColumnFormat", Qt::CaseInsensitive) == 0;
}

bool isKnownSection(const PlacedLine &line)
{
    return knownSections().contains(line.section, Qt::CaseInsensitive);
}

/// Blanks are part of a query and of a page text without harm.
bool blanksMatter(const PlacedLine &line)
{
    return !line.quoted && !line.name.startsWith(u"RecordSource", Qt::CaseInsensitive)
        && line.section.compare(u"Header", Qt::CaseInsensitive) != 0
        && line.section.compare(u"Footer", Qt::CaseInsensitive) != 0;
}

void checkSectionName(CheckPass &pass, const PlacedLine &line)
{
    if (isKnownSection(line))
        return;
    const QString near = nearWord(line.section, knownSections());
    pass.add(UnknownSection, line.place,
        QStringLiteral("There is no section [%1]; nothing in it is looked at.")
            .arg(shortened(line.section)),
        near.isEmpty() ? QStringLiteral("The sections are [%1].")
                             .arg(knownSections().join(QStringLiteral("], [")))
                       : QStringLiteral("Did you mean [%1]?").arg(near));
}

QString mendOfKey(const PlacedLine &line)
{
    if (const QStringList homes = sectionsOfKey(line.name); !homes.isEmpty())
        return QStringLiteral("It belongs to [%1].").arg(homes.join(QStringLiteral("] or [")));
    const QStringList keys = keysOfSection(line.section);
    const QString near = nearWord(line.name, keys);
    return near.isEmpty() ? QStringLiteral("The keys of [%1] are %2.")
                                .arg(line.section, keys.join(QStringLiteral(", ")))
                          : QStringLiteral("Did you mean %1?").arg(near);
}

void checkKeyName(CheckPass &pass, const PlacedLine &line)
{
    if (!isKnownSection(line) || isFormatSection(line)
        || keysOfSection(line.section).contains(line.name, Qt::CaseInsensitive))
        return;
    pass.add(UnknownKey, line.place,
        QStringLiteral("[%1] has no key \"%2\"; the line is not looked at.")
            .arg(line.section, shortened(line.name)),
        mendOfKey(line));
}

void checkBlanks(CheckPass &pass, const PlacedLine &line)
{
    const bool inValue = blanksMatter(line) && line.value.trimmed().size() != line.value.size();
    if (inValue) {
        const bool leading = line.value.front().isSpace();
        pass.add(BlanksAround, line.at(leading ? 0 : line.value.size() - 1),
            QStringLiteral("Blanks around the value of %1 belong to the value.")
                .arg(keyName(line.section, line.name)),
            QStringLiteral("Write \"%1=%2\" without them.")
                .arg(shortened(line.name), shortened(line.value.trimmed())));
    } else if (line.keyInBlanks) {
        pass.add(BlanksAround, line.place,
            QStringLiteral("There are blanks around the key %1; they are passed over.")
                .arg(shortened(line.name)),
            QStringLiteral(
                "Write the key at the start of its line, and the equals sign behind it."));
    }
}

void checkLength(CheckPass &pass, const PlacedLine &line)
{
    if (line.cutAway == 0)
        return;
    const bool isFirst = line.name.compare(u"RecordSource1", Qt::CaseInsensitive) == 0;
    pass.add(ValueCut, line.at(Profile::kLongestValue),
        QStringLiteral(
            "The value of %1 has %2 characters; what stands behind character %3 is not read.")
            .arg(keyName(line.section, line.name),
                QString::number(Profile::kLongestValue + line.cutAway),
                QString::number(Profile::kLongestValue)),
        isFirst ? QStringLiteral("Move the rest of the query to RecordSource2.")
                : QStringLiteral("Write a shorter one."));
}

void checkLine(CheckPass &pass, const PlacedLine &line)
{
    switch (line.kind) {
    case ProfileLineKind::Section:
        return checkSectionName(pass, line);
    case ProfileLineKind::RepeatedSection:
        return pass.add(RepeatedSection, line.place,
            QStringLiteral("There is a section [%1] already; nothing in this one is looked at.")
                .arg(shortened(line.section)),
            QStringLiteral("Move its keys to the first one, in line %1.")
                .arg(pass.profile.sectionPlace(line.section).line));
    case ProfileLineKind::RepeatedKey:
        return pass.add(RepeatedKey, line.place,
            QStringLiteral("%1 stands here once more; only the first one counts.")
                .arg(keyName(line.section, line.name)),
            QStringLiteral("Remove this line, or the one in line %1.")
                .arg(pass.place(line.section, line.name).line));
    case ProfileLineKind::Stray:
        return pass.add(StrayLine, line.place,
            QStringLiteral("%1 is neither a section nor a key of one; the line is not looked at.")
                .arg(quotedValue(line.name)),
            QStringLiteral("A key needs an equals sign and a section above it; a comment starts "
                           "with a semicolon."));
    case ProfileLineKind::Key:
        checkKeyName(pass, line);
        checkBlanks(pass, line);
        return checkLength(pass, line);
    case ProfileLineKind::OverlookedKey:
    case ProfileLineKind::Comment:
        return;
    }
}

} // namespace

QString shortened(QStringView text)
{
    constexpr qsizetype kShown = 40;
    return text.size() <= kShown ? text.toString() : QString(text.left(kShown) + u'…');
}

QString keyName(QStringView section, QStringView key)
{
    return QStringLiteral("%1 of [%2]").arg(shortened(key), shortened(section));
}

QString quotedValue(QStringView value)
{
    return u'"' + shortened(value) + u'"';
}

void checkLines(CheckPass &pass)
{
    for (const PlacedLine &line : pass.profile.lines()) {
        if (pass.isFull())
            return;
        checkLine(pass, line);
    }
}

} // namespace corvane
