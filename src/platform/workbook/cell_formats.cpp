#include "platform/workbook/cell_formats.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Identifiers below are the format's own; [MS-XLS] Format.
constexpr quint16 kFirstCustomFormat = 164;
constexpr qsizetype kMaxXfs = 4'000;

struct BuiltIn
{
    quint16 id;
    const char *code;
};
constexpr std::array kBuiltIn{
    BuiltIn{0, "General"}, BuiltIn{1, "0"}, BuiltIn{2, "0.00"}, BuiltIn{49, "@"}};

/// One run of a letter of a pattern, as "MM"; AM or PM counts as one.
QString translated(QChar letter, qsizetype count, bool hasAmPm)
{
    switch (letter.unicode()) {
    case u'd':
        return QString(count, u'd');
    case u'M':
        return QString(count, u'm');
    case u'y':
        return QStringLiteral("yyyy");
    case u'h':
    case u'H':
        return QString(hasAmPm ? std::min<qsizetype>(count, 2) : count, u'h');
    case u'm':
        return QString(count, u'm');
    case u's':
        return QString(count, u's');
    case u'z':
        return QStringLiteral("000");
    case u't':
        return {};
    default:
        return u'"' + QString(count, letter) + u'"';
    }
}

bool isAmPm(QStringView rest)
{
    return rest.startsWith(u'a') || rest.startsWith(u'A');
}

bool hasAmPm(QStringView pattern)
{
    bool isQuoted = false;
    for (const QChar c : pattern) {
        if (c == u'\'')
            isQuoted = !isQuoted;
        else if (!isQuoted && (c == u'a' || c == u'A'))
            return true;
    }
    return false;
}

QString literal(QStringView text)
{
    return text.isEmpty() ? QString() : QString(u'"' + text.toString().remove(u'"') + u'"');
}

/// What stands between the letters; blanks and the usual separators need no escape.
QString separator(QChar c)
{
    static constexpr QStringView kFree = u" /:.,-";
    return kFree.contains(c) ? QString(c) : QString(u'\\' + QString(c));
}

} // namespace

QString numberFormat(QStringView pattern)
{
    const bool withAmPm = hasAmPm(pattern);
    QString code;
    for (qsizetype at = 0; at < pattern.size();) {
        const QChar c = pattern[at];
        if (c == u'\'') {
            const qsizetype close = pattern.indexOf(u'\'', at + 1);
            const qsizetype end = close < 0 ? pattern.size() : close;
            code += literal(pattern.sliced(at + 1, end - at - 1));
            at = end + 1;
        } else if (isAmPm(pattern.sliced(at))) {
            code += QStringLiteral("AM/PM");
            at += at + 1 < pattern.size() && pattern[at + 1].toUpper() == u'P' ? 2 : 1;
        } else if (c.isLetter()) {
            qsizetype count = 1;
            while (at + count < pattern.size() && pattern[at + count] == c)
                ++count;
            code += translated(c, count, withAmPm);
            at += count;
        } else {
            code += separator(c);
            ++at;
        }
    }
    return code.trimmed();
}

quint16 CellFormats::add(const Look &look)
{
    const auto known = std::find(m_looks.begin(), m_looks.end(), look);
    if (known != m_looks.end())
        return quint16(kFirstXf + (known - m_looks.begin()));
    if (qsizetype(m_looks.size()) + kFirstXf >= kMaxXfs)
        return kDefaultXf;
    m_looks.push_back(look);
    m_xfs.push_back({formatId(look.code), look.font, look.hasQuotePrefix});
    return quint16(kFirstXf + m_looks.size() - 1);
}

quint16 CellFormats::formatId(const QString &code)
{
    for (const BuiltIn &builtIn : kBuiltIn) {
        if (code == QLatin1StringView(builtIn.code))
            return builtIn.id;
    }
    for (const CustomFormat &custom : m_customFormats) {
        if (custom.code == code)
            return custom.id;
    }
    m_customFormats.push_back({quint16(kFirstCustomFormat + m_customFormats.size()), code});
    return m_customFormats.back().id;
}

} // namespace corvane
