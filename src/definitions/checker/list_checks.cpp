// The lists of [Columns] against each other and against the page, and [ColumnFormat].

#include "definitions/checker/check_pass.h"
#include "definitions/checker/near_word.h"
#include "platform/composer/page_composer.h"
#include "platform/composer/table_format.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

using enum FindingKind;

/// A list's items with their offsets in the value; the end mark at the very end is no part of the
/// last.
struct ListItem
{
    QStringView text;
    qsizetype offset = 0;
};

std::vector<ListItem> itemsOf(QStringView list)
{
    std::vector<ListItem> items;
    const qsizetype end = list.trimmed().endsWith(u';') ? list.lastIndexOf(u';') : list.size();
    for (const QStringView item : list.first(end).split(u'|'))
        items.push_back({item, item.data() - list.data()});
    return items;
}

struct ListCount
{
    QStringView key;
    size_t items = 0;
};

QString itemCount(size_t items)
{
    return items == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(items);
}

void checkLength(CheckPass &pass, const ListCount &list, qint16 wanted)
{
    const QString effect = list.items > size_t(wanted) ? QStringLiteral("the surplus has no column")
        : list.key == u"Fields" ? QStringLiteral("the missing ones show field 0")
                                : QStringLiteral("columns are left without one");
    pass.add(ListLengths, pass.place(u"Columns", list.key),
        QStringLiteral("%1 has %2, but Fields of [Data Source] is %3: %4.")
            .arg(keyName(u"Columns", list.key), itemCount(list.items), QString::number(wanted),
                effect),
        QStringLiteral("Write as many items as there are columns."));
}

void checkLengths(CheckPass &pass, const std::vector<ListCount> &lists, qint16 wanted)
{
    const auto sameAsFirst
        = [&](const ListCount &list) { return list.items == lists.front().items; };
    if (lists.size() == 3 && lists.front().items != size_t(wanted)
        && std::ranges::all_of(lists, sameAsFirst)) {
        pass.add(ListLengths, pass.place(u"Data Source", u"Fields"),
            QStringLiteral("Fields of [Data Source] is %1, but each list of [Columns] has %2.")
                .arg(QString::number(wanted), itemCount(lists.front().items)),
            QStringLiteral("Write Fields=%1.").arg(lists.front().items));
        return;
    }
    for (const ListCount &list : lists) {
        if (list.items != size_t(wanted))
            checkLength(pass, list, wanted);
    }
}

void checkEndMark(CheckPass &pass, QStringView key, QStringView value)
{
    const bool wanted = key != u"Fields";
    const qsizetype first = value.indexOf(u';');
    const qsizetype last = value.lastIndexOf(u';');
    const QString name = keyName(u"Columns", key);
    if (!wanted && first >= 0)
        pass.add(EndMark, pass.place(u"Columns", key, first),
            QStringLiteral("%1 holds a semicolon, which has no place there.").arg(name),
            QStringLiteral(
                "Write the field numbers with bars between them and nothing behind the last."));
    else if (wanted && (last < 0 || !value.sliced(last + 1).trimmed().isEmpty()))
        pass.add(EndMark, pass.place(u"Columns", key, value.size()),
            QStringLiteral("%1 does not end in a semicolon.").arg(name),
            QStringLiteral("Put one \";\" at its very end."));
    else if (wanted && first != last)
        pass.add(EndMark, pass.place(u"Columns", key, first),
            QStringLiteral("%1 holds a semicolon before its end.").arg(name),
            QStringLiteral("Only the one at the very end may stand there."));
}

void checkOrdinals(CheckPass &pass, std::span<const ListItem> items)
{
    for (const ListItem &item : items) {
        // A semicolon is told by checkEndMark, but the report stops at what is too large before it.
        if (!item.text.contains(u';') || !wholeNumber(item.text))
            checkWhole(pass,
                QStringLiteral("A field number in %1").arg(keyName(u"Columns", u"Fields")),
                item.text, pass.place(u"Columns", u"Fields", item.offset), 0);
    }
}

void checkPageWidth(CheckPass &pass, QStringView spacing)
{
    const bool landscape = pass.value(u"Layout", u"Orientation") == u"L";
    const Twips page
        = PageComposer::widestContent(landscape ? Orientation::Landscape : Orientation::Portrait);
    const Twips width = formatWidth(spacing).value_or(Twips());
    const int columns
        = std::max<int>(wholeNumber(pass.value(u"Columns", u"PageColumns")).value_or(1), 1);
    const QString limit
        = QStringLiteral("%1 twips (%2 inches)").arg(page.count()).arg(page.count() / 1440.0);
    const TextPlace place = pass.place(u"Columns", u"Spacing");
    if (width > page)
        pass.add(PageWidth, place,
            QStringLiteral("The columns take %1 twips, more than the page's %2, and are narrowed.")
                .arg(width.count())
                .arg(limit),
            landscape ? QStringLiteral("Write smaller widths.")
                      : QStringLiteral("Write smaller widths, or Orientation=L."));
    else if (const Twips all = PageComposer::widthOfColumns(width, columns); all > page)
        pass.add(PageWidth, place,
            QStringLiteral(
                "%1 newspaper columns take %2 twips, more than the page's %3, and are left out.")
                .arg(columns)
                .arg(all.count())
                .arg(limit),
            QStringLiteral("Write smaller widths or fewer PageColumns."));
}

void checkWidths(CheckPass &pass, QStringView spacing, std::span<const ListItem> items)
{
    bool sound = true;
    for (const ListItem &item : items) {
        const bool isLast = &item == &items.back();
        if (isLast && item.text.trimmed().isEmpty())
            continue;
        // One item is a format of its own, so every one that is wrong is told, in the composer's
        // words. The bar keeps a semicolon within the list from being read as its end.
        const auto parsed = parseColumnFormat(QString(item.text + u'|'));
        const auto *fault = std::get_if<FormatFault>(&parsed);
        const bool isEmpty = item.text.trimmed().isEmpty();
        if (!fault && !isEmpty)
            continue;
        const QString words = isEmpty ? QStringLiteral("an item is empty") : fault->words;
        sound = false;
        pass.add(ColumnWidth, pass.place(u"Columns", u"Spacing", item.offset),
            QStringLiteral("In %1 %2, and the report stops.")
                .arg(keyName(u"Columns", u"Spacing"), words),
            QStringLiteral("Write a width in twips, 1440 to the inch, from 1 to %1; \">\" before "
                           "it aligns to the right.")
                .arg(kWidestColumn.count()));
    }
    if (sound)
        checkPageWidth(pass, spacing);
}

std::optional<ListCount> checkList(CheckPass &pass, QStringView key)
{
    const QString value = pass.value(u"Columns", key);
    if (value.isEmpty()) {
        pass.add(MissingKey, pass.place(u"Columns", key),
            QStringLiteral("%1 is missing.").arg(keyName(u"Columns", key)),
            QStringLiteral("Write one item for each printed column."));
        return std::nullopt;
    }
    std::vector<ListItem> items = itemsOf(value);
    checkEndMark(pass, key, value);
    if (key == u"Fields")
        checkOrdinals(pass, items);
    if (key == u"Spacing")
        checkWidths(pass, value, items);
    // The composer passes over an empty last width.
    if (key == u"Spacing" && items.back().text.trimmed().isEmpty())
        items.pop_back();
    return ListCount{key, items.size()};
}

const std::array<QString, 2> &formatWords()
{
    static const std::array<QString, 2> words{
        QStringLiteral("MinToTime"), QStringLiteral("ColorToStatus")};
    return words;
}

bool isPrinted(const CheckPass &pass, int ordinal)
{
    const QString fields = pass.value(u"Columns", u"Fields");
    return std::ranges::any_of(
        itemsOf(fields), [&](const ListItem &item) { return wholeNumber(item.text) == ordinal; });
}

void checkFormatWord(CheckPass &pass, const PlacedLine &line)
{
    const QString word = line.value.trimmed();
    if (word.isEmpty() || std::ranges::find(formatWords(), word) != formatWords().end())
        return;
    const QString near = nearWord(word, formatWords());
    pass.add(FormatWord, line.valuePlace,
        QStringLiteral("There is no format %1; field %2 is shown as text.")
            .arg(quotedValue(word), line.name),
        near.isEmpty() ? QStringLiteral("Write MinToTime or ColorToStatus, or remove the line.")
                       : QStringLiteral("Did you mean %1?").arg(near));
}

void checkFormat(CheckPass &pass, const PlacedLine &line)
{
    static const QRegularExpression digits(QStringLiteral("^\\d+$"));
    const auto ordinal = wholeNumber(line.name);
    if (!digits.match(line.name).hasMatch() || !ordinal) {
        pass.add(FormatKey, line.place,
            QStringLiteral("%1 is no field number; the line is not looked at.")
                .arg(quotedValue(line.name)),
            QStringLiteral("The keys of [ColumnFormat] are the numbers in Fields of [Columns]."));
        return;
    }
    if (line.name != QString::number(*ordinal))
        pass.add(FormatKey, line.place,
            QStringLiteral("The key %1 is not looked at, because of the zero before the number.")
                .arg(line.name),
            QStringLiteral("Write %1.").arg(*ordinal));
    else if (!isPrinted(pass, *ordinal))
        pass.add(FormatUnused, line.place,
            QStringLiteral("Field %1 has a format but is not printed.").arg(*ordinal),
            QStringLiteral("Name it in Fields of [Columns], or remove the line."));
    checkFormatWord(pass, line);
}

} // namespace

void checkLists(CheckPass &pass)
{
    const QString count = pass.value(u"Data Source", u"Fields");
    if (count.isEmpty())
        pass.add(MissingKey, pass.place(u"Data Source", u"Fields"),
            QStringLiteral("Fields of [Data Source] is missing, so rows have no cells."),
            QStringLiteral("Write the number of printed columns."));
    std::vector<ListCount> lists;
    for (const QStringView key : {u"Fields", u"Heading", u"Spacing"}) {
        if (const auto list = checkList(pass, key))
            lists.push_back(*list);
    }
    if (const auto wanted = wholeNumber(count); wanted && *wanted > 0)
        checkLengths(pass, lists, *wanted);
}

void checkColumnFormats(CheckPass &pass)
{
    for (const PlacedLine &line : pass.profile.lines()) {
        if (!pass.isFull() && line.kind == ProfileLineKind::Key
            && line.section.compare(u"ColumnFormat", Qt::CaseInsensitive) == 0)
            checkFormat(pass, line);
    }
}

} // namespace corvane
