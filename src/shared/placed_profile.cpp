#include "shared/placed_profile.h"

#include <algorithm>

namespace corvane {

namespace {

TextPlace placeOf(const ProfileLine &line, QStringView part)
{
    return {line.number, int(part.data() - line.text.data()) + 1};
}

} // namespace

bool PlacedLine::isKey(QStringView inSection, QStringView key) const
{
    return kind == ProfileLineKind::Key && sameProfileName(name, key) && sameProfileName(section, inSection);
}

PlacedProfile::PlacedProfile(QStringView text)
    : m_profile(text, this)
{
}

const PlacedLine *PlacedProfile::line(QStringView section, QStringView key) const
{
    const auto found = std::ranges::find_if(
        m_lines, [&](const PlacedLine &line) { return line.isKey(section, key); });
    return found == m_lines.end() ? nullptr : &*found;
}

TextPlace PlacedProfile::sectionPlace(QStringView section) const
{
    const auto found = std::ranges::find_if(m_lines, [&](const PlacedLine &line) {
        return line.kind == ProfileLineKind::Section && sameProfileName(line.section, section);
    });
    return found == m_lines.end() ? TextPlace() : found->place;
}

void PlacedProfile::take(const ProfileLine &line)
{
    const QStringView text = line.text.trimmed();
    if (line.kind == ProfileLineKind::Comment || text.isEmpty())
        return;
    PlacedLine placed;
    placed.kind = line.kind;
    placed.place = placeOf(line, text);
    if (line.kind == ProfileLineKind::Section || line.kind == ProfileLineKind::RepeatedSection) {
        m_section = line.name.trimmed().toString();
    } else if (line.kind == ProfileLineKind::Stray) {
        placed.name = text.toString();
    } else {
        placed.name = line.name.trimmed().toString();
        placed.keyInBlanks = placed.name.size() != line.name.size();
        placed.value = line.value.toString();
        placed.valuePlace = placeOf(line, line.value);
        placed.quoted = line.value.data() != line.rawValue.data();
        placed.cutAway = line.rawValue.size() - line.value.size() - (placed.quoted ? 2 : 0);
    }
    placed.section = m_section;
    m_lines.push_back(std::move(placed));
}

} // namespace corvane
