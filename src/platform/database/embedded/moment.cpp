#include "platform/database/embedded/moment.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace corvane::embedded {

namespace {

using std::chrono::day;
using std::chrono::days;
using std::chrono::last;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr std::array kMonths{"january", "february", "march", "april", "may", "june", "july",
    "august", "september", "october", "november", "december"};

/// Digits at fixed places, as the stored forms have them; -1 when there is another character.
int digitsAt(QByteArrayView text, qsizetype at, int count)
{
    int value = 0;
    for (qsizetype i = at; i < at + count; ++i) {
        const unsigned digit = uchar(text[i]) - unsigned('0');
        if (digit > 9)
            return -1;
        value = value * 10 + int(digit);
    }
    return value;
}

/// The reading head over a written date.
class Scanner
{
public:
    explicit Scanner(QByteArrayView text)
        : m_text(text)
    {
    }

    bool atEnd() const { return m_at >= m_text.size(); }
    char peek() const { return atEnd() ? '\0' : m_text[m_at]; }
    qsizetype position() const { return m_at; }
    void seek(qsizetype at) { m_at = at; }
    bool take(char c)
    {
        const bool found = !atEnd() && m_text[m_at] == c;
        m_at += found;
        return found;
    }
    void skipBlanks()
    {
        while (take(' ')) { }
    }

    struct Number
    {
        int value = 0;
        int digits = 0;
    };

    /// At most nine digits, so that the value stays an int.
    Number number()
    {
        Number result;
        while (peek() >= '0' && peek() <= '9' && result.digits < 9) {
            result.value = result.value * 10 + (m_text[m_at++] - '0');
            ++result.digits;
        }
        return result;
    }

    QByteArray word()
    {
        const qsizetype start = m_at;
        while ((peek() | 0x20) >= 'a' && (peek() | 0x20) <= 'z')
            ++m_at;
        return m_text.sliced(start, m_at - start).toByteArray().toLower();
    }

private:
    QByteArrayView m_text;
    qsizetype m_at = 0;
};

int fullYear(Scanner::Number year)
{
    if (year.digits > 2)
        return year.value;
    return year.value < 50 ? 2000 + year.value : 1900 + year.value;
}

/// 0 when the word is no month.
int monthOf(const QByteArray &word)
{
    if (word.size() < 3)
        return 0;
    const auto found = std::ranges::find_if(
        kMonths, [&](const char *name) { return word == name || word == QByteArrayView(name, 3); });
    return found == kMonths.end() ? 0 : int(found - kMonths.begin()) + 1;
}

std::optional<CivilDate> ordered(std::array<Scanner::Number, 3> n, DateOrder order)
{
    if (n[0].digits == 4)
        return CivilDate{n[0].value, n[1].value, n[2].value};
    if (order == DateOrder::YearMonthDay && n[2].digits != 4)
        return CivilDate{fullYear(n[0]), n[1].value, n[2].value};
    if (n[2].digits != 4 && n[2].digits != 2)
        return std::nullopt;
    if (order == DateOrder::DayMonthYear)
        return CivilDate{fullYear(n[2]), n[1].value, n[0].value};
    return CivilDate{fullYear(n[2]), n[0].value, n[1].value};
}

std::optional<CivilDate> numericDate(Scanner &in, DateOrder order)
{
    std::array<Scanner::Number, 3> n;
    n[0] = in.number();
    if (n[0].digits == 8)
        return CivilDate{n[0].value / 10'000, n[0].value / 100 % 100, n[0].value % 100};
    const char separator = in.peek();
    if (separator != '/' && separator != '-' && separator != '.')
        return std::nullopt;
    for (int i = 1; i < 3; ++i) {
        if (!in.take(separator))
            return std::nullopt;
        n[size_t(i)] = in.number();
    }
    const bool sizes = n[0].digits >= 1 && n[1].digits >= 1 && n[1].digits <= 2 && n[2].digits >= 1
        && (n[0].digits <= 2 || n[0].digits == 4);
    return sizes ? ordered(n, order) : std::nullopt;
}

/// "Nov 1, 2026", "November 1 2026" and "1 Nov 2026".
std::optional<CivilDate> namedDate(Scanner &in)
{
    Scanner::Number day = in.number();
    in.skipBlanks();
    const int month = monthOf(in.word());
    if (month == 0)
        return std::nullopt;
    in.skipBlanks();
    if (day.digits == 0)
        day = in.number();
    in.take(',');
    in.skipBlanks();
    const Scanner::Number year = in.number();
    if (day.digits == 0 || (year.digits != 2 && year.digits != 4))
        return std::nullopt;
    return CivilDate{fullYear(year), month, day.value};
}

int milliseconds(Scanner::Number fraction)
{
    if (fraction.digits == 0)
        return -1;
    int value = fraction.value;
    for (int digits = fraction.digits; digits < 3; ++digits)
        value *= 10;
    for (int digits = fraction.digits; digits > 3; --digits)
        value /= 10;
    return value;
}

/// "h:mm", "h:mm:ss", "h:mm:ss.fff", with or without AM or PM, or "h PM"; milliseconds after
/// midnight.
std::optional<qint64> writtenTime(Scanner &in)
{
    const Scanner::Number hour = in.number();
    Scanner::Number minute;
    Scanner::Number second;
    int ms = 0;
    const bool clock = in.take(':');
    if (clock) {
        minute = in.number();
        if (minute.digits == 0)
            return std::nullopt;
        if (in.take(':'))
            second = in.number();
        if (in.take('.') || in.take(':'))
            ms = milliseconds(in.number());
    }
    in.skipBlanks();
    const QByteArray half = in.word();
    const bool halved = half == "am" || half == "pm";
    if (hour.digits == 0 || hour.digits > 2 || !in.atEnd() || ms < 0 || (!half.isEmpty() && !halved)
        || (!clock && !halved) || minute.value > 59 || second.value > 59
        || hour.value > (halved ? 12 : 23))
        return std::nullopt;
    const int hours = halved ? hour.value % 12 + (half == "pm" ? 12 : 0) : hour.value;
    return ((hours * 60LL + minute.value) * 60 + second.value) * 1000 + ms;
}

} // namespace

qint64 Moment::day() const
{
    return std::chrono::floor<days>(std::chrono::milliseconds(ms)).count();
}

CivilDate civilDate(qint64 epochDay)
{
    const year_month_day date{sys_days(days(epochDay))};
    return {int(date.year()), int(unsigned(date.month())), int(unsigned(date.day()))};
}

std::optional<qint64> epochDay(const CivilDate &date)
{
    const year_month_day ymd{year(date.year), month(unsigned(date.month)), day(unsigned(date.day))};
    if (date.year < 1 || date.year > 9999 || date.month < 1 || date.day < 1 || !ymd.ok())
        return std::nullopt;
    return sys_days(ymd).time_since_epoch().count();
}

int daysInMonth(int ofYear, int ofMonth)
{
    return int(unsigned((year(ofYear) / month(unsigned(ofMonth)) / last).day()));
}

std::optional<qint64> storedDate(QByteArrayView text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const CivilDate date{digitsAt(text, 0, 4), digitsAt(text, 5, 2), digitsAt(text, 8, 2)};
    return epochDay(date);
}

std::optional<Moment> storedMoment(QByteArrayView text)
{
    if (text.size() < 10)
        return std::nullopt;
    const auto day = storedDate(text.first(10));
    if (!day || text.size() == 10)
        return day ? std::optional(Moment{*day * kMsPerDay}) : std::nullopt;
    if (text[10] != ' ' && text[10] != 'T')
        return std::nullopt;
    const auto time = storedTime(text.sliced(11));
    return time ? std::optional(Moment{*day * kMsPerDay + *time}) : std::nullopt;
}

std::optional<qint64> storedTime(QByteArrayView text)
{
    const bool seconds = text.size() >= 8;
    if ((!seconds && text.size() != 5) || text[2] != ':' || (seconds && text[5] != ':'))
        return std::nullopt;
    const int hour = digitsAt(text, 0, 2);
    const int minute = digitsAt(text, 3, 2);
    const int second = seconds ? digitsAt(text, 6, 2) : 0;
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;
    int ms = 0;
    if (text.size() > 8) {
        Scanner in(text.sliced(8));
        ms = in.take('.') ? milliseconds(in.number()) : -1;
        if (ms < 0 || !in.atEnd())
            return std::nullopt;
    }
    return ((hour * 60LL + minute) * 60 + second) * 1000 + ms;
}

std::optional<Moment> writtenMoment(QByteArrayView written, DateOrder order)
{
    const QByteArrayView text = written.trimmed();
    if (const auto stored = storedMoment(text))
        return stored;
    if (text.isEmpty())
        return Moment{kServerDayZero * kMsPerDay};
    Scanner in(text);
    if (const auto time = writtenTime(in))
        return Moment{kServerDayZero * kMsPerDay + *time};
    in.seek(0);
    auto date = numericDate(in, order);
    if (!date) {
        in.seek(0);
        date = namedDate(in);
    }
    const auto day = date ? epochDay(*date) : std::nullopt;
    if (!day || in.atEnd())
        return day ? std::optional(Moment{*day * kMsPerDay}) : std::nullopt;
    if (!in.take(' ') && !in.take('T'))
        return std::nullopt;
    in.skipBlanks();
    const auto time = writtenTime(in);
    return time ? std::optional(Moment{*day * kMsPerDay + *time}) : std::nullopt;
}

bool looksLikeDate(QByteArrayView text)
{
    Scanner in(text);
    const Scanner::Number first = in.number();
    const char separator = in.peek();
    in.take(separator);
    const Scanner::Number second = in.number();
    if (second.digits < 1 || second.digits > 2 || !in.take(separator))
        return false;
    const Scanner::Number third = in.number();
    const bool yearFirst = first.digits == 4 && (third.digits == 1 || third.digits == 2);
    const bool yearLast = (first.digits == 1 || first.digits == 2) && third.digits == 4;
    const bool whole = in.atEnd() || in.peek() == ' ' || in.peek() == 'T';
    return whole
        && ((separator == '/' && (yearFirst || yearLast)) || (separator == '-' && yearFirst));
}

char *putDigits(char *out, int number, int digits)
{
    for (int i = digits - 1; i >= 0; --i, number /= 10)
        out[i] = char('0' + number % 10);
    return out + digits;
}

QByteArray dateText(qint64 epochDay)
{
    const CivilDate date = civilDate(epochDay);
    char buffer[10];
    char *at = putDigits(buffer, date.year, 4);
    *at++ = '-';
    at = putDigits(at, date.month, 2);
    *at++ = '-';
    putDigits(at, date.day, 2);
    return QByteArray(buffer, sizeof buffer);
}

QByteArray momentText(Moment moment)
{
    const QByteArray date = dateText(moment.day());
    return moment.timeOfDay() == 0 ? date : date + ' ' + timeText(moment.timeOfDay());
}

QByteArray timeText(qint64 timeOfDay)
{
    const int ms = int(timeOfDay);
    char buffer[12];
    char *at = putDigits(buffer, ms / 3'600'000, 2);
    *at++ = ':';
    at = putDigits(at, ms / 60'000 % 60, 2);
    *at++ = ':';
    at = putDigits(at, ms / 1000 % 60, 2);
    if (ms % 1000 != 0) {
        *at++ = '.';
        at = putDigits(at, ms % 1000, 3);
    }
    return QByteArray(buffer, at - buffer);
}

} // namespace corvane::embedded
