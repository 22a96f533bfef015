#include "definitions/selection_token_list.h"
#include "fuzz/promise.h"
#include "platform/database/embedded/tokens.h"
#include "shared/run_time_fault.h"

using namespace corvane;
using test::promise;

namespace {

/// Chosen values stand in the query as quoted texts and nothing else, whatever they hold.
void staysQuoted(const QStringList &values, int mode)
{
    const QString request = QStringLiteral("{*SQL01*}name|id|p|||%1|1|{*/SQL*}").arg(mode);
    const SelectionToken token = SelectionToken::parseRequest(request);
    const QString sql = applySelection(request, token, {token.marker(), values, false}).sql;
    QStringList found;
    for (const embedded::Token &part : embedded::tokenize(sql)) {
        if (part.kind == embedded::Token::Kind::Text)
            found += embedded::unquoted(part);
        else
            promise(
                part.kind == embedded::Token::Kind::End || QStringView(u"(,)").contains(part.text),
                "a value stays within its quotes");
    }
    promise(found == (mode == 0 ? values.first(1) : values), "every value is there as it is");
}

void replaces(const QString &request, const QStringList &values)
{
    const SelectionToken token = SelectionToken::parseRequest(request);
    promise(token.start >= 1 && token.end > token.start && token.end <= request.size(),
        "a token lies within its text");
    promise(token.fields.size() >= 7, "a token has its fields");
    selectionListQuery(token);
    for (const bool all : {false, true}) {
        const SelectionAnswers answers{token.marker(), values, all};
        const SelectionResult result = applySelection(request, answers);
        promise(result.table.size() == 2 && result.table[1][0] == token.marker(),
            "the marker stands in row 1");
        const QString before = request.first(token.start - 1);
        if (!before.contains(u"**INS"))
            promise(result.sql.startsWith(before), "what stands before a token stays");
    }
}

} // namespace

/// Chosen values in the first line, parted by bars, and the query text behind it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const test::InputParts parts(QByteArrayView(data, qsizetype(size)));
    const QStringList values = test::inputText(parts.line).remove(u'\0').split(u'|');
    for (const int mode : {0, 1})
        staysQuoted(values, mode);
    try {
        replaces(test::inputText(parts.rest), values);
    } catch (const RunTimeFault &fault) {
        promise(fault.description().contains(u"selection token"), "a refusal names the token");
    }
    return 0;
}
