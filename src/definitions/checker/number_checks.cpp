// Numbers by the leading-number rule: what is read may be other than what is written.

#include "definitions/checker/check_pass.h"
#include "platform/composer/page_composer.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/run_time_fault.h"

#include <QtCore/QRegularExpression>

namespace corvane {

namespace {

using enum FindingKind;

struct WholeKey
{
    QStringView section;
    QStringView key;
    int least;
};

/// Field numbers of 0 have findings of their own.
constexpr WholeKey kWholeKeys[]{
    {u"Data Source", u"Fields", 1},
    {u"Columns", u"PageColumns", 1},
    {u"Group", u"Field", 0},
    {u"SubColumn", u"Field", 0},
};

/// A number with nothing around it but blanks, of which checkLines tells.
bool isNumber(QStringView text)
{
    static const QRegularExpression number(QStringLiteral("^\\s*[+-]?\\d+(\\.\\d*)?\\s*$"));
    return number.match(text.toString()).hasMatch();
}

QString numberText(double number)
{
    return QString::number(number, 'g', 10);
}

bool checkIsNumber(CheckPass &pass, const QString &what, QStringView text, TextPlace place)
{
    if (isNumber(text))
        return true;
    static const QRegularExpression start(QStringLiteral("^[ \\t]*[+-]?\\d"));
    const bool startsAsNumber = start.match(text.toString()).hasMatch();
    pass.add(startsAsNumber ? NumberWithMore : NoNumber, place,
        QStringLiteral("%1 is %2, which is read as %3.")
            .arg(what, text.isEmpty() ? QStringLiteral("empty") : quotedValue(text),
                numberText(leadingNumber(text))),
        QStringLiteral("Write digits alone."));
    return false;
}

void checkFontSize(CheckPass &pass, const QString &what, QStringView text, TextPlace place)
{
    if (text.isEmpty())
        return;
    const double size = leadingNumber(text);
    if (size == 0 || (size >= kSmallestFont && size <= kLargestFont))
        checkIsNumber(pass, what, text, place);
    else
        pass.add(FontSize, place,
            QStringLiteral("%1 is %2 points, and the report stops.").arg(what, numberText(size)),
            QStringLiteral("Write a size between %1 and %2.").arg(kSmallestFont).arg(kLargestFont));
}

void checkFonts(CheckPass &pass)
{
    checkFontSize(pass, keyName(u"Columns", u"Fontsize"), pass.value(u"Columns", u"Fontsize"),
        pass.place(u"Columns", u"Fontsize"));
    QString font = pass.value(u"Columns", u"Font");
    font.replace(u';', u'|');
    const qsizetype bar = font.indexOf(u'|');
    if (bar >= 0)
        checkFontSize(pass, QStringLiteral("The size in %1").arg(keyName(u"Columns", u"Font")),
            getPiece(font, 2), pass.place(u"Columns", u"Font", bar + 1));
}

} // namespace

std::optional<qint16> wholeNumber(QStringView text)
{
    try {
        return toInt16(leadingNumber(text));
    } catch (const RunTimeFault &) {
        return std::nullopt;
    }
}

bool checkWhole(CheckPass &pass, const QString &what, QStringView text, TextPlace place, int least)
{
    // Whatever stands around a number that is too large, the report stops at it.
    const auto number = wholeNumber(text);
    if (number && !checkIsNumber(pass, what, text, place))
        return false;
    if (!number) {
        pass.add(NumberTooLarge, place,
            QStringLiteral("%1 is %2, and the report stops with \"Overflow\".")
                .arg(what, quotedValue(text)),
            QStringLiteral("Write a number between -32768 and 32767."));
    } else if (*number < least) {
        pass.add(NumberTooSmall, place, QStringLiteral("%1 is %2.").arg(what).arg(*number),
            QStringLiteral("Write a number of %1 or more.").arg(least));
    } else if (double(*number) != leadingNumber(text)) {
        pass.add(NumberWithMore, place,
            QStringLiteral("%1 is %2, which is read as %3.")
                .arg(what, quotedValue(text), QString::number(*number)),
            QStringLiteral("Write a whole number."));
    } else {
        return true;
    }
    return false;
}

void checkNumbers(CheckPass &pass)
{
    for (const WholeKey &known : kWholeKeys) {
        const QString text = pass.value(known.section, known.key);
        if (!text.isEmpty())
            checkWhole(pass, keyName(known.section, known.key), text,
                pass.place(known.section, known.key), known.least);
    }
    const QString indent = pass.value(u"SubColumn", u"Indent");
    const QString name = keyName(u"SubColumn", u"Indent");
    if (!indent.isEmpty() && checkIsNumber(pass, name, indent, pass.place(u"SubColumn", u"Indent"))
        && leadingNumber(indent) < 0)
        pass.add(NumberTooSmall, pass.place(u"SubColumn", u"Indent"),
            QStringLiteral("%1 is %2 and is taken for 0.")
                .arg(name, numberText(leadingNumber(indent))),
            QStringLiteral("Write a number of 0 or more."));
    checkFonts(pass);
}

} // namespace corvane
