#include "definitions/checker/known_keys.h"

namespace corvane {

namespace {

constexpr KnownKey kKeys[]{
    {u"Data Source", u"RecordSource1"},
    {u"Data Source", u"RecordSource2"},
    {u"Data Source", u"GetDates"},
    {u"Data Source", u"GetPatient"},
    {u"Data Source", u"Fields"},
    {u"Data Source", u"Database"},
    {u"Columns", u"Fields"},
    {u"Columns", u"Heading"},
    {u"Columns", u"Spacing"},
    {u"Columns", u"PageColumns"},
    {u"Columns", u"Font"},
    {u"Columns", u"Fontsize"},
    {u"Group", u"Field"},
    {u"Group", u"SubTotal"},
    {u"Group", u"GrandTotal"},
    {u"SubColumn", u"Field"},
    {u"SubColumn", u"Indent"},
    {u"Layout", u"Orientation"},
    {u"Layout", u"PageBreak"},
    {u"Header", u"LText"},
    {u"Header", u"CText"},
    {u"Header", u"RText"},
    {u"Footer", u"LText"},
    {u"Footer", u"CText"},
    {u"Footer", u"RText"},
};

bool sameName(QStringView one, QStringView other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

std::span<const KnownKey> knownKeys()
{
    return kKeys;
}

const QStringList &knownSections()
{
    static const QStringList sections = [] {
        QStringList names{QStringLiteral("ColumnFormat")};
        for (const KnownKey &known : kKeys) {
            if (!names.contains(known.section))
                names += known.section.toString();
        }
        return names;
    }();
    return sections;
}

QStringList keysOfSection(QStringView section)
{
    QStringList keys;
    for (const KnownKey &known : kKeys) {
        if (sameName(known.section, section))
            keys += known.key.toString();
    }
    return keys;
}

QStringList sectionsOfKey(QStringView key)
{
    QStringList sections;
    for (const KnownKey &known : kKeys) {
        if (sameName(known.key, key))
            sections += known.section.toString();
    }
    return sections;
}

} // namespace corvane
