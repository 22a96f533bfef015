#include "editor/page_properties.h"

#include "definitions/tabular_definition.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/run_time_fault.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace corvane {

namespace {

constexpr float kTwipsPerInch = 1440;
constexpr std::array<QStringView, 3> kParts{u"LText", u"CText", u"RText"};

/// How many of an item's first characters are the composer's alignment marks and blanks between
/// them.
qsizetype marksLength(QStringView item)
{
    const auto end = std::ranges::find_if_not(
        item, [](QChar c) { return QStringView(u"<^> \t").contains(c); });
    return end - item.begin();
}

QString marksOf(QStringView item)
{
    QString marks = item.first(marksLength(item)).toString();
    return marks.remove(u' ').remove(u'\t');
}

/// The items of a list; one that is empty when the text is.
QList<QStringView> itemsOf(QStringView list)
{
    return list.split(u'|');
}

float sizeOf(const PrintedColumn &column)
{
    return float(leadingNumber(column.size));
}

qint32 ordinalOf(QStringView item)
{
    try {
        return toInt32(leadingNumber(item));
    } catch (const RunTimeFault &) {
        throw RunTimeFault(RunTimeFault::Overflow,
            QStringLiteral(
                "\"Fields\" of [Columns] names the result field %1, a number beyond 32 bits")
                .arg(item.left(40)));
    }
}

std::vector<PrintedColumn> loadColumns(const TabularDefinition &definition)
{
    const QString fields = definition.columnFields();
    if (fields.isEmpty())
        return {};
    const QString spacing = replaceEvery(definition.spacing(), u";", u"");
    const QString heading = replaceEvery(definition.heading(), u";", u"");
    const QList<QStringView> widths = itemsOf(spacing);
    const QList<QStringView> captions = itemsOf(heading);
    std::vector<PrintedColumn> columns;
    for (const QStringView ordinal : itemsOf(fields)) {
        const qsizetype n = qsizetype(columns.size());
        const QStringView width = widths.value(n);
        columns.push_back({captions.value(n).toString(),
            columnSizeText(leadingNumber(width.sliced(marksLength(width)))), marksOf(width),
            ordinalOf(ordinal)});
    }
    return columns;
}

} // namespace

PageProperties loadPageProperties(const TabularDefinition &definition)
{
    PageProperties properties;
    for (size_t part = 0; part < kParts.size(); ++part) {
        properties.header[part] = definition.header(kParts[part]);
        properties.footer[part] = definition.footer(kParts[part]);
    }
    properties.recordSource = definition.recordSource1();
    properties.fields = definition.columnFields();
    properties.columns = loadColumns(definition);
    properties.isLandscape = definition.isLandscape();
    properties.breaksPageOnGroup = definition.breaksPageOnGroup();
    return properties;
}

QString columnSizeText(double twips)
{
    constexpr double kLargest = std::numeric_limits<float>::max();
    const auto inches = float(std::clamp(roundTo(twips / kTwipsPerInch, 2), -kLargest, kLargest));
    if (inches == 0)
        return QStringLiteral(" 0");
    std::array<char, 64> digits;
    const auto end
        = std::to_chars(digits.begin(), digits.end(), inches, std::chars_format::fixed).ptr;
    const auto number = QString::fromLatin1(digits.data(), end - digits.data());
    return inches > 0 ? QString(u' ' + number) : number;
}

QString ConvertToTwips(float inches)
{
    return QString::number(toInt16(inches * kTwipsPerInch));
}

QString twipsOf(const PrintedColumn &column)
{
    return ConvertToTwips(sizeOf(column));
}

float totalColumnSize(std::span<const PrintedColumn> columns)
{
    float total = 0;
    for (const PrintedColumn &column : columns)
        total = float(total + leadingNumber(column.size));
    return total;
}

bool columnSizesFit(std::span<const PrintedColumn> columns, bool isLandscape)
{
    return totalColumnSize(columns) <= pageWidth(isLandscape);
}

QString columnSizeSummary(std::span<const PrintedColumn> columns, bool isLandscape)
{
    const auto inches = [](double value) { return QString::number(value, 'f', 2); };
    const float total = totalColumnSize(columns);
    const float limit = pageWidth(isLandscape);
    const QString summary = QStringLiteral("%1 of %2 inches").arg(inches(total), inches(limit));
    return total > limit
        ? QStringLiteral("%1: %2 inches too wide for the page").arg(summary, inches(total - limit))
        : summary;
}

int changeListOrder(std::vector<PrintedColumn> &columns, int row, qint16 direction)
{
    const int other = direction == MoveUp ? row - 1 : row + 1;
    const int count = int(columns.size());
    if (row < 0 || row >= count || other < 0 || other >= count)
        return row;
    std::swap(columns[size_t(row)], columns[size_t(other)]);
    return other;
}

ColumnTexts columnTexts(std::span<const PrintedColumn> columns)
{
    ColumnTexts texts;
    for (const PrintedColumn &column : columns) {
        texts.heading += column.caption + u'|';
        texts.spacing += column.marks + twipsOf(column) + u'|';
        texts.fields += QString::number(column.ordinal) + u'|';
    }
    if (columns.empty())
        return texts;
    texts.heading.back() = u';';
    texts.spacing.back() = u';';
    texts.fields.chop(1);
    return texts;
}

std::vector<ProfileEntry> profileEntries(const PageProperties &properties)
{
    std::vector<ProfileEntry> entries;
    const auto add = [&entries](const char16_t *section, QStringView key, const QString &value) {
        entries.push_back({QString::fromUtf16(section), key.toString(), value});
    };
    for (size_t part = 0; part < kParts.size(); ++part)
        add(u"Header", kParts[part], properties.header[part]);
    for (size_t part = 0; part < kParts.size(); ++part)
        add(u"Footer", kParts[part], properties.footer[part]);
    add(u"Layout", u"Orientation",
        properties.isLandscape ? QStringLiteral("L") : QStringLiteral("P"));
    add(u"Layout", u"PageBreak",
        properties.breaksPageOnGroup ? QStringLiteral("Y") : QStringLiteral("N"));
    if (properties.columns.empty())
        return entries;
    const ColumnTexts texts = columnTexts(properties.columns);
    add(u"Columns", u"Spacing", texts.spacing);
    add(u"Columns", u"Heading", texts.heading);
    add(u"Columns", u"Fields", texts.fields);
    return entries;
}

} // namespace corvane
