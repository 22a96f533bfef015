#include "definitions/date_token.h"
#include "fuzz/promise.h"
#include "shared/run_time_fault.h"

using namespace corvane;
using test::promise;

namespace {

constexpr QStringView kStart = u"{DATE*1|";
constexpr QStringView kShort[]{u"{DATE*1}", u"{DATE*2}"};

bool holdsShortToken(QStringView text)
{
    return std::ranges::any_of(kShort, [&](QStringView token) { return text.contains(token); });
}

void lies(const DateToken &token, const QString &sql)
{
    promise(
        token.tokenStart >= 1 && token.tokenEnd > token.tokenStart && token.tokenEnd <= sql.size(),
        "a token lies within its text");
    promise(sql.sliced(token.tokenStart - 1).startsWith(kStart) && sql[token.tokenEnd - 1] == u'}',
        "a token lies between its braces");
}

void isReplaced(const DateToken &token, const QString &sql, DateOrder order)
{
    const DateAnswers answers = defaultAnswers(token, order, QDate(2026, 11, 22));
    for (const QString &field : token.defaults) {
        const QString shown = getDefaultSetting(field, order, QDate(2026, 11, 22));
        promise(shown.isEmpty() || readDate(shown, order), "a default is a date or nothing");
    }
    if (isAnswered(token, answers) && orderFault(token, answers))
        promise(
            token.asksForTwo() && answers.first && answers.second.value_or(QDate()) < answers.first,
            "only dates in the wrong order are told");
    const QString result = applyDates(sql, answers, order);
    promise(!holdsShortToken(result), "every short token is replaced");
    const QStringView before = QStringView(sql).first(token.tokenStart - 1);
    const QStringView behind = QStringView(sql).sliced(token.tokenEnd);
    if (!holdsShortToken(before))
        promise(result.startsWith(before), "what stands before a token stays");
    if (!holdsShortToken(behind))
        promise(result.endsWith(behind), "what stands behind a token stays");
    for (const std::optional<QDate> &date : {answers.first, answers.second})
        promise(!date || readDate(dateText(*date, order), order) == date,
            "a date is read as it is written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString sql = test::inputText(QByteArrayView(data, qsizetype(size)));
    try {
        const DateToken token = DateToken::parseRequest(sql);
        lies(token, sql);
        for (const DateOrder order :
            {DateOrder::MonthDayYear, DateOrder::DayMonthYear, DateOrder::YearMonthDay})
            isReplaced(token, sql, order);
    } catch (const RunTimeFault &fault) {
        promise(fault.description().contains(u"token"), "a refusal names the token");
    }
    return 0;
}
