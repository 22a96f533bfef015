#include "platform/database/embedded/exact_numbers.h"
#include "platform/database/embedded/function_values.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <algorithm>

namespace corvane::embedded {

namespace {

constexpr qint64 kLongestText = 100'000'000;

bool startsCharacter(char c)
{
    return (uchar(c) & 0xC0) != 0x80;
}

qint64 characters(QByteArrayView utf8)
{
    return std::ranges::count_if(utf8, startsCharacter);
}

/// The byte where character `index` (from 0) begins; the end when there are fewer.
qsizetype byteOfCharacter(QByteArrayView utf8, qint64 index)
{
    if (index <= 0)
        return 0;
    if (index >= utf8.size())
        return utf8.size();
    qsizetype at = 0;
    while (at < utf8.size() && index-- > 0) {
        ++at;
        while (at < utf8.size() && !startsCharacter(utf8[at]))
            ++at;
    }
    return at;
}

bool isAscii(QByteArrayView text)
{
    return std::ranges::all_of(text, [](char c) { return uchar(c) < 0x80; });
}

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c | 0x20) : c;
}

/// The server counts no blanks at the end.
void len(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    QByteArrayView text = call.text(0);
    while (text.endsWith(' '))
        text.chop(1);
    call.setInteger(characters(text));
}

void upper(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const QByteArrayView text = call.text(0);
    call.setText(
        isAscii(text) ? text.toByteArray().toUpper() : QString::fromUtf8(text).toUpper().toUtf8());
}

void lower(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    const QByteArrayView text = call.text(0);
    call.setText(
        isAscii(text) ? text.toByteArray().toLower() : QString::fromUtf8(text).toLower().toUtf8());
}

QByteArrayView part(QByteArrayView text, qint64 first, qint64 count)
{
    const qsizetype begin = byteOfCharacter(text, first);
    const QByteArrayView rest = text.sliced(begin);
    return rest.first(byteOfCharacter(rest, count));
}

/// Counts from 1; what lies before the text counts towards the length, as on the server.
void substring(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const qint64 start = std::clamp<qint64>(call.integer(1), -kLongestText, kLongestText);
    const qint64 length = std::min(call.integer(2), 2 * kLongestText);
    if (length < 0)
        return call.fail(
            ServerError::kLength, "Invalid length parameter passed to the substring function.");
    const qint64 first = std::max<qint64>(start, 1);
    call.setText(part(call.text(0), first - 1, std::max<qint64>(0, start + length - first)));
}

void left(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    if (call.integer(1) < 0)
        return call.fail(
            ServerError::kLength, "Invalid length parameter passed to the left function.");
    call.setText(part(call.text(0), 0, call.integer(1)));
}

void right(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    if (call.integer(1) < 0)
        return call.fail(
            ServerError::kLength, "Invalid length parameter passed to the right function.");
    const QByteArrayView text = call.text(0);
    const qint64 skipped = std::max<qint64>(0, characters(text) - call.integer(1));
    call.setText(text.sliced(byteOfCharacter(text, skipped)));
}

void replicate(const FunctionCall &call)
{
    if (call.anyNull() || call.integer(1) < 0)
        return call.setNull();
    const QByteArrayView text = call.text(0);
    if (!text.isEmpty() && call.integer(1) > kLongestText / text.size())
        return call.fail(ServerError::kOverflow, "The text that REPLICATE would make is too long.");
    call.setText(text.toByteArray().repeated(call.integer(1)));
}

void concat(const FunctionCall &call)
{
    QByteArray joined;
    for (int i = 0; i < call.count(); ++i)
        joined += call.text(i);
    call.setText(joined);
}

/// Without regard to case in ASCII, like LIKE; counts from 1, 0 when it is not there.
void charindex(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    const QByteArrayView wanted = call.text(0);
    const QByteArrayView text = call.text(1);
    const qint64 start = call.count() > 2 ? std::max<qint64>(1, call.integer(2)) : 1;
    const QByteArrayView rest = text.sliced(byteOfCharacter(text, start - 1));
    const auto found = std::search(rest.begin(), rest.end(), wanted.begin(), wanted.end(),
        [](char a, char b) { return lowered(a) == lowered(b); });
    if (wanted.isEmpty() || found == rest.end())
        return call.setInteger(0);
    call.setInteger(characters(QByteArrayView(text.begin(), found)) + 1);
}

/// Without regard to case in ASCII, as the server's usual collation finds a text.
void replace(const FunctionCall &call)
{
    if (call.anyNull())
        return call.setNull();
    QByteArrayView rest = call.text(0);
    const QByteArrayView wanted = call.text(1);
    QByteArray replaced;
    while (!wanted.isEmpty()) {
        const auto found = std::search(rest.begin(), rest.end(), wanted.begin(), wanted.end(),
            [](char a, char b) { return lowered(a) == lowered(b); });
        if (found == rest.end())
            break;
        replaced.append(rest.data(), found - rest.begin()).append(call.text(2));
        rest = rest.sliced(found - rest.begin() + wanted.size());
    }
    call.setText(replaced.append(rest));
}

/// Replaces `length` characters from `start`, counted from 1; null when there is no such place.
void stuff(const FunctionCall &call)
{
    if (call.isNull(0) || call.isNull(1) || call.isNull(2))
        return call.setNull();
    const QByteArrayView text = call.text(0);
    const qint64 start = call.integer(1);
    const qint64 length = call.integer(2);
    if (start < 1 || length < 0 || start > characters(text))
        return call.setNull();
    const qsizetype begin = byteOfCharacter(text, start - 1);
    const QByteArrayView tail = text.sliced(begin);
    call.setText(
        QByteArray(text.first(begin) + call.text(3) + tail.sliced(byteOfCharacter(tail, length))));
}

void reverse(const FunctionCall &call)
{
    if (call.isNull(0))
        return call.setNull();
    QList<uint> characters = QString::fromUtf8(call.text(0)).toUcs4();
    std::ranges::reverse(characters);
    call.setText(
        QString::fromUcs4(reinterpret_cast<const char32_t *>(characters.data()), characters.size())
            .toUtf8());
}

void space(const FunctionCall &call)
{
    constexpr qint64 kMost = 8000;
    if (call.isNull(0) || call.integer(0) < 0)
        return call.setNull();
    call.setText(QByteArray(std::min(call.integer(0), kMost), ' '));
}

/// A number right-aligned in `length` characters with `decimals` digits; asterisks when it is too
/// wide.
void str(const FunctionCall &call)
{
    constexpr int kMostDecimals = 16;
    if (call.anyNull())
        return call.setNull();
    const auto value = call.number(0);
    if (!value)
        return call.failConversion(0, "float");
    const auto length = call.count() > 1 ? std::clamp<qint64>(call.integer(1), 0, 8000) : 10;
    auto decimals
        = int(call.count() > 2 ? std::clamp<qint64>(call.integer(2), 0, kMostDecimals) : 0);
    QByteArray text = QByteArray::number(roundedTo(*value, decimals), 'f', decimals);
    if (text.size() > length && decimals > 0) {
        const qsizetype whole = text.indexOf('.');
        decimals = int(std::max<qint64>(0, length - whole - 1));
        text = QByteArray::number(roundedTo(*value, decimals), 'f', decimals);
    }
    call.setText(text.size() > length ? QByteArray(length, '*') : text.rightJustified(length, ' '));
}

/// A pattern of the server's LIKE against a text, both whole: "%", "_", "[a-f]", "[^xyz]".
class LikeMatcher
{
public:
    explicit LikeMatcher(QChar escape)
        : m_escape(escape)
    {
    }

    bool matches(QStringView text, QStringView pattern) const
    {
        qsizetype atText = 0;
        qsizetype atPattern = 0;
        qsizetype star = -1;
        qsizetype resume = 0;
        while (atText < text.size()) {
            const qsizetype step = atPattern < pattern.size() && pattern[atPattern] != u'%'
                ? matchOne(text[atText], pattern.sliced(atPattern))
                : 0;
            if (step > 0) {
                ++atText;
                atPattern += step;
            } else if (atPattern < pattern.size() && pattern[atPattern] == u'%') {
                star = atPattern++;
                resume = atText;
            } else if (star >= 0) {
                atPattern = star + 1;
                atText = ++resume;
            } else {
                return false;
            }
        }
        return std::ranges::all_of(pattern.sliced(atPattern), [](QChar c) { return c == u'%'; });
    }

private:
    /// How much of the pattern the character used up; 0 when it does not fit.
    qsizetype matchOne(QChar c, QStringView pattern) const
    {
        if (pattern[0] == m_escape && !m_escape.isNull() && pattern.size() > 1)
            return same(c, pattern[1]) ? 2 : 0;
        if (pattern[0] == u'_')
            return 1;
        const qsizetype close = pattern[0] == u'[' ? pattern.indexOf(u']', 2) : -1;
        if (close < 0)
            return same(c, pattern[0]) ? 1 : 0;
        QStringView set = pattern.sliced(1, close - 1);
        const bool negated = set.startsWith(u'^');
        if (negated)
            set = set.sliced(1);
        return inSet(c, set) != negated ? close + 1 : 0;
    }

    static bool same(QChar a, QChar b) { return a.toCaseFolded() == b.toCaseFolded(); }

    static bool inSet(QChar c, QStringView set)
    {
        const QChar folded = c.toCaseFolded();
        for (qsizetype i = 0; i < set.size(); ++i) {
            const bool range = i + 2 < set.size() && set[i + 1] == u'-';
            const QChar last = set[range ? i + 2 : i].toCaseFolded();
            if (folded >= set[i].toCaseFolded() && folded <= last)
                return true;
            i += range ? 2 : 0;
        }
        return false;
    }

    QChar m_escape;
};

void like(const FunctionCall &call)
{
    if (call.isNull(0) || call.isNull(1))
        return call.setNull();
    const QString escape = QString::fromUtf8(call.text(2));
    const LikeMatcher matcher(escape.isEmpty() ? QChar() : escape.front());
    call.setInteger(
        matcher.matches(QString::fromUtf8(call.text(0)), QString::fromUtf8(call.text(1))));
}

constexpr Function kFunctions[] = {
    {"corvane_len", 1, len},
    {"corvane_upper", 1, upper},
    {"corvane_lower", 1, lower},
    {"corvane_substring", 3, substring},
    {"corvane_left", 2, left},
    {"corvane_right", 2, right},
    {"corvane_replicate", 2, replicate},
    {"corvane_concat", -1, concat},
    {"corvane_charindex", 2, charindex},
    {"corvane_charindex", 3, charindex},
    {"corvane_replace", 3, replace},
    {"corvane_stuff", 4, stuff},
    {"corvane_reverse", 1, reverse},
    {"corvane_space", 1, space},
    {"corvane_str", 1, str},
    {"corvane_str", 2, str},
    {"corvane_str", 3, str},
    {"corvane_like", 3, like},
};

} // namespace

std::span<const Function> textFunctions()
{
    return kFunctions;
}

} // namespace corvane::embedded
