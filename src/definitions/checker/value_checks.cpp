// Values that are compared exactly, switches, and the texts of page header and footer.

#include "definitions/checker/check_pass.h"

namespace corvane {

namespace {

using enum FindingKind;

struct WordKey
{
    QStringView section;
    QStringView key;
    QStringView on; ///< the one value that does something
    QStringView off; ///< how to say the other; anything else reads the same
    QStringView whenOff; ///< what a misspelt value comes to
};

constexpr WordKey kWordKeys[]{
    {u"Data Source", u"GetDates", u"True", u"False", u"no range of dates is asked for"},
    {u"Data Source", u"GetPatient", u"True", u"False", u"no patient is asked for"},
    {u"Data Source", u"Database", u"A", u"", u"the query runs on the main database"},
    {u"Layout", u"Orientation", u"L", u"P", u"the page stands upright"},
    {u"Layout", u"PageBreak", u"Y", u"N", u"groups follow each other"},
};

void checkWord(CheckPass &pass, const WordKey &word)
{
    const QString value = pass.value(word.section, word.key);
    const QString bare = value.trimmed(); // blanks are a finding of their own
    if (value.isEmpty() || bare == word.on || bare == word.off)
        return;
    const QString other
        = word.off.isEmpty() ? QStringLiteral("leave the value out") : word.off.toString();
    pass.add(MisspeltValue, pass.place(word.section, word.key),
        QStringLiteral("%1 is no value of %2: %3.").arg(quotedValue(value), word.key, word.whenOff),
        QStringLiteral("Write %1 or %2, in exactly this spelling.").arg(word.on, other));
}

struct TotalKey
{
    QStringView key;
    QStringView effect;
};

constexpr TotalKey kTotals[]{{u"SubTotal", u"no \"Total\" is printed"},
    {u"GrandTotal", u"nothing is counted for \"Grand Total\""}};
constexpr int kSwitchedOn = -1;

bool isOn(const CheckPass &pass, QStringView key)
{
    return wholeNumber(pass.value(u"Group", key)) == kSwitchedOn;
}

void checkSwitch(CheckPass &pass, const TotalKey &total)
{
    const QString value = pass.value(u"Group", total.key);
    const QString bare = value.trimmed();
    if (value.isEmpty() || bare == u"-1" || bare == u"0")
        return;
    const TextPlace place = pass.place(u"Group", total.key);
    if (!wholeNumber(value))
        checkWhole(pass, keyName(u"Group", total.key), value, place, kSwitchedOn);
    else
        pass.add(TotalSwitch, place,
            QStringLiteral("%1 is no value of %2: %3.")
                .arg(quotedValue(value), total.key,
                    isOn(pass, total.key) ? QStringView(u"it is read as -1") : total.effect),
            QStringLiteral("Write -1 to switch it on, 0 to switch it off."));
}

void checkFieldZero(CheckPass &pass, QStringView section, QStringView what)
{
    const QString value = pass.value(section, u"Field");
    if (value.trimmed().startsWith(u'0') && wholeNumber(value) == 0)
        pass.add(GroupFieldZero, pass.place(section, u"Field"),
            QStringLiteral("%1 is 0, which means no %2.").arg(keyName(section, u"Field"), what),
            QStringLiteral("Put another field before the one that you want in the query, and write "
                           "its number; without %1 leave the value out.")
                .arg(what));
}

void checkPageText(CheckPass &pass, QStringView section, QStringView key)
{
    const QString text = pass.value(section, key);
    if (section == u"Footer" && key == u"LText") {
        if (!text.isEmpty())
            pass.add(FooterLeftText, pass.place(section, key),
                QStringLiteral("The left footer text %1 is kept but not printed; the database's "
                               "name stands there.")
                    .arg(quotedValue(text)),
                QStringLiteral("Move it to CText or RText."));
        return;
    }
    if (text.contains(u'}') && text != u"{Date}")
        pass.add(FieldWord, pass.place(section, key, text.indexOf(u'}')),
            QStringLiteral(
                "%1 holds a \"}\": date and time are printed in place of the whole text.")
                .arg(keyName(section, key)),
            QStringLiteral("Write {Date} alone, or the text without braces."));
    else if (text.contains(u'|'))
        pass.add(BarInText, pass.place(section, key, text.indexOf(u'|')),
            QStringLiteral("What stands behind the bar in %1 moves to the next part of the line.")
                .arg(keyName(section, key)),
            QStringLiteral("Write the text without a bar."));
}

} // namespace

void checkWords(CheckPass &pass)
{
    for (const WordKey &word : kWordKeys)
        checkWord(pass, word);
}

void checkTotals(CheckPass &pass)
{
    for (const TotalKey &total : kTotals)
        checkSwitch(pass, total);
    checkFieldZero(pass, u"Group", u"groups");
    checkFieldZero(pass, u"SubColumn", u"notes");
    const auto field = wholeNumber(pass.value(u"Group", u"Field"));
    if (field && *field < 1) {
        for (const TotalKey &total : kTotals) {
            if (isOn(pass, total.key))
                pass.add(TotalWithoutGroup, pass.place(u"Group", total.key),
                    QStringLiteral("%1 prints nothing, because there are no groups.")
                        .arg(total.key),
                    QStringLiteral("Name the group field in Field of [Group], 1 or more."));
        }
    } else if (isOn(pass, u"GrandTotal") && !isOn(pass, u"SubTotal")) {
        pass.add(GrandTotalAlone, pass.place(u"Group", u"GrandTotal"),
            QStringLiteral("GrandTotal prints nothing while SubTotal is off."),
            QStringLiteral("Write SubTotal=-1 too."));
    }
}

void checkPageTexts(CheckPass &pass)
{
    for (const QStringView section : {u"Header", u"Footer"}) {
        for (const QStringView key : {u"LText", u"CText", u"RText"})
            checkPageText(pass, section, key);
    }
}

} // namespace corvane
