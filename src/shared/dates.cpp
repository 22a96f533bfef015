#include "shared/dates.h"

#include <array>

namespace corvane {

namespace {

QString withLongYear(QString format)
{
    return format.contains(u"yyyy") ? format : format.replace(QLatin1StringView("yy"), QLatin1StringView("yyyy"));
}

bool isPlain(const QLocale &locale)
{
    return locale.language() == QLocale::C;
}

QString shortDateFormat(const QLocale &locale)
{
    return isPlain(locale) ? QStringLiteral("MM/dd/yyyy") : withLongYear(locale.dateFormat(QLocale::ShortFormat));
}

int orderOf(const QString &format)
{
    const qsizetype day = format.indexOf(u'd');
    const qsizetype month = format.indexOf(u'M');
    const qsizetype year = format.indexOf(u'y');
    if (year < day && year < month)
        return 2;
    return month < day ? 0 : 1;
}

QString secondsFormat(const QLocale &locale)
{
    QString format = isPlain(locale) ? QStringLiteral("h:mm AP") : locale.timeFormat(QLocale::ShortFormat);
    if (!format.contains(u's'))
        format.replace(QLatin1StringView("mm"), QLatin1StringView("mm:ss"));
    return format;
}

} // namespace

QString getLocaleValue(const QLocale &locale, int item)
{
    switch (item) {
    case ShortDateFormat:
        return shortDateFormat(locale);
    case ShortDateOrder:
        return QString::number(orderOf(shortDateFormat(locale)));
    case TimeFormat:
        return secondsFormat(locale);
    default:
        return {};
    }
}

qint16 getDateOrder(const QLocale &locale)
{
    return qint16(getLocaleValue(locale, ShortDateOrder).toInt());
}

QString fmtDate(QDate date)
{
    return QLocale::c().toString(date, u"yyyy/MM/dd");
}

std::optional<QDate> parseDate(QStringView text, int dateOrder)
{
    std::array<int, 3> numbers {};
    std::array<qsizetype, 3> lengths {};
    size_t count = 0;
    QString plain = text.trimmed().toString();
    plain.replace(u'-', u'/').replace(u'.', u'/');
    for (const QStringView piece : QStringView(plain).split(u'/')) {
        bool ok = false;
        const int number = piece.toInt(&ok);
        if (!ok || number < 0 || count == 3)
            return std::nullopt;
        lengths[count] = piece.size();
        numbers[count++] = number;
    }
    if (count != 3)
        return std::nullopt;
    const bool yearFirst = dateOrder == 2 || lengths[0] == 4;
    if ((yearFirst ? lengths[0] : lengths[2]) != 4)
        return std::nullopt;
    QDate date;
    if (yearFirst)
        date = QDate(numbers[0], numbers[1], numbers[2]);
    else
        date = dateOrder == 1 ? QDate(numbers[2], numbers[1], numbers[0]) : QDate(numbers[2], numbers[0], numbers[1]);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

ValueTextStyle cellStyle(const QLocale &locale)
{
    return {getLocaleValue(locale, ShortDateFormat), getLocaleValue(locale, TimeFormat)};
}

QString dateTimeText(const QDateTime &moment, const QLocale &locale)
{
    const QString time = isPlain(locale) ? QStringLiteral("h:mm AP") : locale.timeFormat(QLocale::ShortFormat);
    return locale.toString(moment.date(), shortDateFormat(locale)) + u' ' + locale.toString(moment.time(), time);
}

QString dateFieldText(QDate date, int dateOrder)
{
    static constexpr std::array kFormats {u"MM/dd/yyyy", u"dd/MM/yyyy", u"yyyy/MM/dd"};
    return QLocale::c().toString(date, QStringView(kFormats[size_t(std::clamp(dateOrder, 0, 2))]));
}

} // namespace corvane
