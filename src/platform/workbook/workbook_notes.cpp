#include "platform/workbook/workbook_writer.h"

#include <QtCore/QLocale>

namespace corvane {

namespace {

struct Wording
{
    const WorkbookNote *note;
    const char *one;
    const char *many;
};

QString sentence(const Wording &wording)
{
    const WorkbookNote &note = *wording.note;
    if (note.count == 1)
        return QString::fromUtf8(wording.one).arg(note.firstCell);
    return QString::fromUtf8(wording.many).arg(QLocale::c().toString(note.count), note.firstCell);
}

} // namespace

QStringList WorkbookNotes::sentences() const
{
    const Wording wordings[] = {
        {&cutCells, "The text in %1 was cut after 32,767 characters, the most that a cell holds.",
            "%1 texts were cut after 32,767 characters, the most that a cell holds; the first is "
            "in %2."},
        {&replacedCharacters, "Control characters in %1 were replaced by \"\uFFFD\".",
            "Control characters in %1 cells were replaced by \"\uFFFD\"; the first is %2."},
        {&textNumbers,
            "The number in %1 is stored as text, because a cell keeps only 15 digits of a number.",
            "%1 numbers are stored as text, because a cell keeps only 15 digits of a number; the "
            "first is in %2."},
        {&textDates,
            "The date in %1 is stored as text, because a workbook's dates begin in March 1900 and "
            "end with 9999.",
            "%1 dates are stored as text, because a workbook's dates begin in March 1900 and end "
            "with 9999; the first is in %2."},
        {&hexCells, "The binary data in %1 is stored as hexadecimal text.",
            "The binary data of %1 cells is stored as hexadecimal text; the first is in %2."},
    };
    QStringList all;
    for (const Wording &wording : wordings) {
        if (wording.note->count > 0)
            all += sentence(wording);
    }
    return all;
}

} // namespace corvane
