#include "platform/engine/expression/value_format_reader.h"

#include "platform/engine/expression/nearest_name.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr int kMostDigits = 30;
constexpr qsizetype kLongest = 1000;
constexpr QStringView kDigits = u"0#";
constexpr QStringView kPattern = u"0#,.";
constexpr QStringView kDateLetters = u"yMd";
constexpr QStringView kTimeLetters = u"hHmsz";

/// How often a letter of dates and times may stand in a row.
struct MomentLetter
{
    QChar letter;
    QStringView counts;
    QStringView instead;
};

constexpr std::array kMomentLetters{
    MomentLetter{u'y', u"24", u"yy or yyyy"},
    MomentLetter{u'M', u"1234", u"M, MM, MMM or MMMM"},
    MomentLetter{u'd', u"1234", u"d, dd, ddd or dddd"},
    MomentLetter{u'h', u"12", u"h or hh"},
    MomentLetter{u'H', u"12", u"H or HH"},
    MomentLetter{u'm', u"12", u"m or mm"},
    MomentLetter{u's', u"12", u"s or ss"},
    MomentLetter{u'z', u"13", u"z or zzz"},
};

} // namespace

std::variant<ValueFormat, ExpressionFault> ValueFormat::compile(QStringView text)
{
    return ValueFormatReader(text).read();
}

std::variant<ValueFormat, ExpressionFault> ValueFormatReader::read()
{
    if (m_text.isEmpty() || readNamed())
        return m_format;
    if (m_text.size() > kLongest) {
        refuse(kLongest, QStringLiteral("a format has at most %1 letters").arg(kLongest));
        return m_fault;
    }
    const auto hasUnquoted = [this](QStringView characters) {
        return std::ranges::any_of(
            m_pieces, [&](const Piece &piece) { return piece.isAnyOf(characters); });
    };
    const bool isRead = readPieces()
        && (hasUnquoted(kDigits)                                   ? readNumbers()
                : looksLikeMoment()                                ? readMoment()
                : hasUnquoted(u"/")                                ? readChoice()
                : !m_pieces.empty() && m_pieces.front().isLetter() ? refuseLetters()
                                                                   : readNumbers());
    if (!isRead)
        return m_fault;
    return m_format;
}

bool ValueFormatReader::refuse(qsizetype offset, const QString &words)
{
    m_fault = {words, offset};
    return false;
}

bool ValueFormatReader::readNamed()
{
    const QString name = m_text.trimmed().toString().toLower();
    if (name == u"short date") {
        m_format.m_kind = ValueFormat::Kind::StyleDate;
    } else if (name == u"long time") {
        m_format.m_kind = ValueFormat::Kind::StyleTime;
    } else if (name == u"long date" || name == u"short time") {
        m_format.m_kind = ValueFormat::Kind::Moment;
        m_format.m_needsDate = name == u"long date";
        m_format.m_momentFormat = m_format.m_needsDate ? QStringLiteral("dddd, MMMM d, yyyy")
                                                       : QStringLiteral("h:mm AP");
    } else {
        return false;
    }
    return true;
}

bool ValueFormatReader::readPieces()
{
    for (qsizetype at = 0; at < m_text.size();) {
        const QChar c = m_text[at];
        if (c == u'\'' || c == u'"') {
            if (!readQuoted(at))
                return false;
        } else if (c == u'\\' && at + 1 < m_text.size()) {
            m_pieces.push_back({QString(m_text[at + 1]), true, at});
            at += 2;
        } else {
            m_pieces.push_back({QString(c), false, at});
            ++at;
        }
    }
    return true;
}

/// Up to the same quote; written twice it stands for itself.
bool ValueFormatReader::readQuoted(qsizetype &at)
{
    const qsizetype begin = at;
    const QChar quote = m_text[at++];
    QString text;
    for (;;) {
        const qsizetype end = m_text.indexOf(quote, at);
        if (end < 0)
            return refuse(
                begin, QStringLiteral("the text that starts here has no closing %1").arg(quote));
        text += m_text.sliced(at, end - at);
        at = end + 1;
        if (at == m_text.size() || m_text[at] != quote)
            break;
        text += quote;
        ++at;
    }
    if (!text.isEmpty())
        m_pieces.push_back({text, true, begin});
    return true;
}

/// Every letter is one of dates and times.
bool ValueFormatReader::looksLikeMoment() const
{
    bool hasLetter = false;
    for (size_t i = 0; i < m_pieces.size(); ++i) {
        const Piece &piece = m_pieces[i];
        if (!piece.isLetter())
            continue;
        hasLetter = true;
        const auto isPair = [&](size_t first, QChar a, QChar p) {
            return first + 1 < m_pieces.size() && m_pieces[first].is(a)
                && m_pieces[first + 1].is(p);
        };
        if (isPair(i, u'A', u'P') || isPair(i, u'a', u'p'))
            ++i;
        else if (!piece.isAnyOf(kDateLetters) && !piece.isAnyOf(kTimeLetters))
            return false;
    }
    return hasLetter;
}

bool ValueFormatReader::readMoment()
{
    m_format.m_kind = ValueFormat::Kind::Moment;
    bool hasMinutes = false;
    bool hasHoursOrSeconds = false;
    for (const Piece &piece : m_pieces) {
        m_format.m_needsDate |= piece.isAnyOf(kDateLetters);
        hasMinutes |= piece.is(u'm');
        hasHoursOrSeconds |= piece.isAnyOf(u"hHs");
    }
    for (size_t at = 0; at < m_pieces.size();) {
        if (!readMomentLetters(at))
            return false;
    }
    const auto minutes
        = std::ranges::find_if(m_pieces, [](const Piece &piece) { return piece.is(u'm'); });
    if (hasMinutes && !hasHoursOrSeconds)
        return refuse(minutes->offset, QStringLiteral("m means minutes; months are M"));
    return true;
}

bool ValueFormatReader::readMomentLetters(size_t &at)
{
    const Piece &piece = m_pieces[at];
    if (piece.isQuoted) {
        m_format.m_momentFormat
            += u'\'' + QString(piece.text).replace(u'\'', QStringLiteral("''")) + u'\'';
        ++at;
        return true;
    }
    const QChar c = piece.text[0];
    int count = 0;
    for (; at < m_pieces.size() && m_pieces[at].is(c); ++at)
        ++count;
    for (const MomentLetter &letter : kMomentLetters) {
        if (letter.letter == c && !letter.counts.contains(QChar(char16_t(u'0' + count % 10))))
            return refuse(piece.offset, QStringLiteral("write %1").arg(letter.instead));
    }
    m_format.m_momentFormat += QString(count, c);
    return true;
}

bool ValueFormatReader::readChoice()
{
    m_format.m_kind = ValueFormat::Kind::Choice;
    bool isSecond = false;
    for (const Piece &piece : m_pieces) {
        if (!piece.is(u'/')) {
            (isSecond ? m_format.m_whenFalse : m_format.m_whenTrue) += piece.text;
            continue;
        }
        if (isSecond)
            return refuse(piece.offset,
                QStringLiteral(
                    "one / parts the text for yes from the text for no; others must be quoted"));
        isSecond = true;
    }
    return true;
}

bool ValueFormatReader::readNumbers()
{
    m_format.m_kind = ValueFormat::Kind::Number;
    size_t begin = 0;
    for (size_t i = 0; i <= m_pieces.size(); ++i) {
        if (i < m_pieces.size() && !m_pieces[i].is(u';'))
            continue;
        if (m_format.m_sections.size() == 3)
            return refuse(m_pieces[begin - 1].offset,
                QStringLiteral("a format has at most three sections: positive; negative; zero"));
        if (!readSection(begin, i))
            return false;
        begin = i + 1;
    }
    return true;
}

bool ValueFormatReader::readSection(size_t begin, size_t end)
{
    NumberSection section;
    for (size_t at = begin; at < end;) {
        const Piece &piece = m_pieces[at];
        if (!section.hasDigits && piece.isAnyOf(kPattern)) {
            if (!readDigits(at, end, section))
                return false;
            continue;
        }
        if (piece.isAnyOf(kDigits))
            return refuse(
                piece.offset, QStringLiteral("all digits of a section stand side by side"));
        if (piece.isLetter())
            return refuse(
                piece.offset, QStringLiteral("letters in a number format must be quoted"));
        section.isPercent |= piece.is(u'%');
        (section.hasDigits ? section.suffix : section.prefix) += piece.text;
        ++at;
    }
    m_format.m_sections.push_back(section);
    return true;
}

bool ValueFormatReader::readDigits(size_t &at, size_t end, NumberSection &section)
{
    bool isFraction = false;
    for (; at < end && m_pieces[at].isAnyOf(kPattern); ++at) {
        const Piece &piece = m_pieces[at];
        const bool digitFollows = at + 1 < end && m_pieces[at + 1].isAnyOf(kDigits);
        if (piece.is(u',')) {
            if (isFraction || !section.hasDigits || !digitFollows)
                return refuse(
                    piece.offset, QStringLiteral("a comma stands between digits before the point"));
            section.isGrouped = true;
        } else if (piece.is(u'.')) {
            if (isFraction || !digitFollows)
                return refuse(
                    piece.offset, QStringLiteral("one point, with digits behind it, is expected"));
            isFraction = true;
        } else {
            section.hasDigits = true;
            section.mostFraction += isFraction ? 1 : 0;
            if (piece.is(u'0'))
                (isFraction ? section.leastFraction : section.leastWhole) += 1;
        }
        if (section.leastWhole > kMostDigits || section.mostFraction > kMostDigits)
            return refuse(
                piece.offset, QStringLiteral("at most %1 digits are possible").arg(kMostDigits));
    }
    return true;
}

bool ValueFormatReader::refuseLetters()
{
    const QStringList names{QStringLiteral("short date"), QStringLiteral("long date"),
        QStringLiteral("short time"), QStringLiteral("long time")};
    const QString near = didYouMean(m_text, names);
    return refuse(m_pieces.front().offset,
        QStringLiteral("\"%1\" is no format%2")
            .arg(m_text.left(40),
                near.isEmpty() ? QStringLiteral("; letters of its own must be quoted") : near));
}

} // namespace corvane
