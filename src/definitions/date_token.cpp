#include "definitions/date_token.h"

#include "shared/date_range.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/run_time_fault.h"

namespace corvane {

namespace {

constexpr auto kLongToken = QLatin1StringView("{DATE*1|");
constexpr auto kFirstDate = QLatin1StringView("{DATE*1}");
constexpr auto kSecondDate = QLatin1StringView("{DATE*2}");
constexpr auto kToday = QLatin1StringView("Now()");
constexpr int kFirstRealDay = 2; // a day number below it means that no date is entered

enum Field { Count = 1, Check, Label, Caption1, Caption2, Default1, Default2, FieldCount };

/// "the date token "{DATE*1|2|1|Visits…" at character 35", for messages.
QString tokenAt(const QString &sql, qsizetype at, qsizetype size)
{
    constexpr qsizetype kShown = 40;
    const QString token = sql.mid(at, size);
    const QString shown = token.size() > kShown ? QString(token.first(kShown) + u'…') : token;
    return QStringLiteral("the date token \"%1\" at character %2")
        .arg(shown.simplified(), QString::number(at + 1));
}

[[noreturn]] void refuseMissingToken(const QString &sql)
{
    const qsizetype other = sql.indexOf(kLongToken, 0, Qt::CaseInsensitive);
    if (other >= 0)
        throw RunTimeFault(RunTimeFault::InvalidArgument,
            tokenAt(sql, other, kLongToken.size()) + u" must be written in capitals: \""
                + kLongToken + u'"');
    const qsizetype cut = sql.indexOf(kLongToken.chopped(1), 0, Qt::CaseInsensitive);
    if (cut >= 0)
        throw RunTimeFault(RunTimeFault::InvalidArgument,
            tokenAt(sql, cut, kFirstDate.size()) + u" is not followed by its fields: \""
                + kLongToken + u"\" is expected");
    throw RunTimeFault(RunTimeFault::InvalidArgument,
        QStringLiteral(
            "the date token \"%1\" does not stand anywhere in the %2 characters of the query")
            .arg(kLongToken, QString::number(sql.size())));
}

/// The fields of one token, which know where they stand.
class TokenFields
{
public:
    TokenFields(const QString &sql, qsizetype begin, qsizetype end)
        : m_where(tokenAt(sql, begin, end + 1 - begin))
        , m_fields(splitText(QStringView(sql).sliced(begin + 1, end - begin - 1), u"|")
                       .value_or(QStringList()))
    {
    }

    QString text(Field field) const
    {
        if (field >= m_fields.size())
            throw RunTimeFault(RunTimeFault::IndexOutOfRange,
                QStringLiteral("%1 has %2 of %3 fields")
                    .arg(m_where, QString::number(m_fields.size()), QString::number(FieldCount)));
        return m_fields[field].trimmed();
    }

    qint32 whole(Field field, const QString &name) const
    {
        const QString number = text(field);
        try {
            return toInt32(strictNumber(number));
        } catch (const RunTimeFault &fault) {
            // Thrown again, because a number does not know which token it stands in.
            const auto kind = RunTimeFault::Number(fault.number());
            const QString what = kind == RunTimeFault::Overflow ? QStringLiteral("too large")
                                                                : QStringLiteral("no number");
            throw RunTimeFault(kind,
                QStringLiteral("%1 has the %2 \"%3\", which is %4")
                    .arg(m_where, name, number.left(40), what));
        }
    }

private:
    QString m_where;
    QStringList m_fields;
};

int dayOf(const std::optional<QDate> &date)
{
    return dayNumber(date.value_or(QDate()));
}

QString textOf(const std::optional<QDate> &date, DateOrder order)
{
    return date ? dateText(*date, order) : QString();
}

} // namespace

DateToken DateToken::parseRequest(const QString &sql)
{
    const qsizetype begin = sql.indexOf(kLongToken);
    if (begin < 0)
        refuseMissingToken(sql);
    // Deliberate: the first brace closes the token, be it one in a caption or that of a later
    // token; what lies between is replaced with it, and fields are counted in it.
    const qsizetype end = sql.indexOf(u'}', begin);
    if (end < 0)
        throw RunTimeFault(RunTimeFault::InvalidArgument,
            tokenAt(sql, begin, sql.size()) + u" has no closing brace");
    const TokenFields fields(sql, begin, end);
    DateToken token;
    token.tokenStart = qint32(begin + 1);
    token.tokenEnd = qint32(end + 1);
    token.dateCount = fields.whole(Count, QStringLiteral("count"));
    token.checkOrder = fields.whole(Check, QStringLiteral("check"));
    token.label = fields.text(Label);
    token.captions = {fields.text(Caption1), fields.text(Caption2)};
    token.defaults = {fields.text(Default1), fields.text(Default2)};
    return token;
}

QString getDefaultSetting(const QString &field, DateOrder order, QDate today)
{
    if (readDate(field, order))
        return field;
    return field == kToday ? dateText(today, order) : QString();
}

DateAnswers defaultAnswers(const DateToken &token, DateOrder order, QDate today)
{
    const auto dateOf = [&](const QString &field) {
        return readDate(getDefaultSetting(field, order, today), order);
    };
    return {dateOf(token.defaults[0]), dateOf(token.defaults[1])};
}

bool isAnswered(const DateToken &token, const DateAnswers &answers)
{
    return dayOf(answers.first) >= kFirstRealDay
        && (!token.asksForTwo() || dayOf(answers.second) >= kFirstRealDay);
}

std::optional<QString> orderFault(const DateToken &token, const DateAnswers &answers)
{
    if (token.checkOrder == 0 || !token.asksForTwo()
        || isInOrder(dayOf(answers.first), dayOf(answers.second)))
        return std::nullopt;
    // Deliberate: the second caption closes a bracket that it does not open. The sentence is known
    // that way.
    return QString(
        u'[' + token.captions[0] + u"] must be earlier than " + token.captions[1] + u"].");
}

QString applyDates(const QString &sql, const DateAnswers &answers, DateOrder order)
{
    const DateToken token = DateToken::parseRequest(sql);
    const QString first = u'\'' + textOf(answers.first, order) + u'\'';
    // Deliberate: "{DATE*2}" is replaced for a single date too, by the default of the date not
    // asked for or ''.
    const QString second = u'\'' + textOf(answers.second, order) + u'\'';
    const QString text = sql.first(token.tokenStart - 1) + first + sql.sliced(token.tokenEnd);
    return replaceEvery(
        replaceEvery(text, QString(kFirstDate), first), QString(kSecondDate), second);
}

DateParamTable dateParamTable(const DateAnswers &answers, DateOrder order)
{
    DateParamTable table;
    table[0] = {kFirstDate, textOf(answers.first, order), {}};
    table[1] = {kSecondDate, textOf(answers.second, order), {}};
    return table;
}

} // namespace corvane
