#pragma once

#include "shared/profile.h"

#include <vector>

namespace corvane {

/// A place in a text: line and column from 1; a column counts UTF-16 units.
struct TextPlace
{
    int line = 1;
    int column = 1;

    auto operator<=>(const TextPlace &) const = default;
};

/// A line that is neither blank nor a comment, with its places.
struct PlacedLine
{
    ProfileLineKind kind = ProfileLineKind::Stray;
    QString section; ///< the name of the section that it stands in, or that it opens
    QString name; ///< of a key, without blanks around it; the text of a stray line
    QString value; ///< as the reader gives it
    TextPlace place; ///< of the name
    TextPlace valuePlace;
    bool quoted = false; ///< a pair of quotes around the value was dropped
    bool keyInBlanks = false;
    qsizetype cutAway = 0; ///< how many characters of the value are beyond what is read

    bool isKey(QStringView inSection, QStringView key) const;
    TextPlace at(qsizetype offset) const
    {
        return {valuePlace.line, valuePlace.column + int(offset)};
    }
};

/// A profile read as Profile reads it, by the same reader, that knows where everything stands.
class PlacedProfile : private ProfileObserver
{
public:
    explicit PlacedProfile(QStringView text);

    const std::vector<PlacedLine> &lines() const { return m_lines; }
    QString value(QStringView section, QStringView key) const
    {
        return m_profile.value(section, key);
    }
    /// The line that the value comes from; null for a key that is not there.
    const PlacedLine *line(QStringView section, QStringView key) const;
    /// Where a section starts; the start of the text for one that is not there.
    TextPlace sectionPlace(QStringView section) const;

private:
    void take(const ProfileLine &line) override;

    std::vector<PlacedLine> m_lines;
    QString m_section;
    Profile m_profile;
};

} // namespace corvane
