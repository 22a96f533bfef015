#include "platform/engine/expression/functions.h"

#include "platform/engine/expression/operators.h"

namespace corvane {

namespace {

/// A number of letters; a negative one counts as none.
qsizetype letters(const Arguments &arguments, int index)
{
    return std::max(0, arguments.whole(index));
}

Datum left(const Arguments &arguments)
{
    return arguments.text(0).left(letters(arguments, 1));
}

Datum right(const Arguments &arguments)
{
    return arguments.text(0).right(letters(arguments, 1));
}

/// A start from 1 on.
qsizetype startOf(const Arguments &arguments, int index)
{
    const int start = arguments.whole(index);
    if (start < 1)
        arguments.refuse(QStringLiteral("a start of 1 or more, not %1").arg(start));
    return start - 1;
}

Datum mid(const Arguments &arguments)
{
    return arguments.text(0).mid(
        startOf(arguments, 1), arguments.has(2) ? letters(arguments, 2) : -1);
}

Datum length(const Arguments &arguments)
{
    return Datum::number(arguments.text(0).size());
}

Datum upper(const Arguments &arguments)
{
    return arguments.text(0).toUpper();
}

Datum lower(const Arguments &arguments)
{
    return arguments.text(0).toLower();
}

Datum trim(const Arguments &arguments)
{
    return arguments.text(0).trimmed();
}

Datum replace(const Arguments &arguments)
{
    const QString text = arguments.text(0);
    const QString what = arguments.text(1);
    const QString with = arguments.text(2);
    if (what.isEmpty())
        return text;
    const qsizetype hits = text.count(what, Qt::CaseInsensitive);
    checkLength(text.size() + hits * (with.size() - what.size()));
    return QString(text).replace(what, with, Qt::CaseInsensitive);
}

/// From 1; 0 where the text does not hold the part.
Datum position(const Arguments &arguments)
{
    const qsizetype from = arguments.has(2) ? startOf(arguments, 2) : 0;
    return Datum::number(
        arguments.text(0).indexOf(arguments.text(1), from, Qt::CaseInsensitive) + 1);
}

Datum repeat(const Arguments &arguments)
{
    const QString text = arguments.text(0);
    const qsizetype times = letters(arguments, 1);
    checkLength(text.size() * times);
    return text.repeated(times);
}

/// A capital at the start of each word, small letters within it.
Datum proper(const Arguments &arguments)
{
    QString text = arguments.text(0).toLower();
    bool startsWord = true;
    for (QChar &c : text) {
        if (startsWord)
            c = c.toUpper();
        startsWord = !c.isLetterOrNumber() && c != u'\'';
    }
    return text;
}

Datum newLine(const Arguments &)
{
    return QStringLiteral("\n");
}

constexpr std::array kFunctions{
    Function{u"Left", 2, 2, left},
    Function{u"Right", 2, 2, right},
    Function{u"Mid", 2, 3, mid},
    Function{u"Len", 1, 1, length},
    Function{u"Upper", 1, 1, upper},
    Function{u"Lower", 1, 1, lower},
    Function{u"Proper", 1, 1, proper},
    Function{u"Trim", 1, 1, trim},
    Function{u"Replace", 3, 3, replace},
    Function{u"InStr", 2, 3, position},
    Function{u"Repeat", 2, 2, repeat},
    Function{u"NewLine", 0, 0, newLine},
};

} // namespace

std::span<const Function> textFunctions()
{
    return kFunctions;
}

} // namespace corvane
