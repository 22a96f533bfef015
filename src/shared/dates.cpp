#include "shared/dates.h"

#include "platform/dates/computer_date_order.h"

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

QString dateOrder(const QLocale &locale)
{
    if (locale == QLocale::system()) {
        if (const auto order = computerDateOrder())
            return QString::number(int(*order));
    }
    return QString::number(orderOf(shortDateFormat(locale)));
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
        return dateOrder(locale);
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

ValueTextStyle cellStyle(const QLocale &locale)
{
    return {getLocaleValue(locale, ShortDateFormat), getLocaleValue(locale, TimeFormat)};
}

QString dateTimeText(const QDateTime &moment, const QLocale &locale)
{
    const QString time = isPlain(locale) ? QStringLiteral("h:mm AP") : locale.timeFormat(QLocale::ShortFormat);
    return locale.toString(moment.date(), shortDateFormat(locale)) + u' ' + locale.toString(moment.time(), time);
}

} // namespace corvane
