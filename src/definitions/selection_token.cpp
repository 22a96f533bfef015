#include "definitions/selection_token.h"

#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/run_time_fault.h"

namespace corvane {

namespace {

constexpr auto kOpening = QLatin1StringView("{*SQL");
constexpr auto kClosing = QLatin1StringView("{*/SQL*}");
constexpr qint32 kOpeningLength = 9; // "{*SQL" and four characters that nobody looks at
constexpr qint32 kNameLength = 5;
constexpr int kFieldCount = 7;
constexpr int kModeField = 5;
constexpr int kQuoteField = 6;

/// Both texts of a selection; they differ only where values are joined.
struct SelectionText {
    QString inToken;
    QString atMarkers;
};

/// Counted from 1; 0 when there is none.
qint32 position(const QString &text, QLatin1StringView part, Qt::CaseSensitivity sensitivity = Qt::CaseSensitive)
{
    return qint32(text.indexOf(part, 0, sensitivity) + 1);
}

[[noreturn]] void refuseMissing(const QString &text)
{
    const qint32 small = position(text, kOpening, Qt::CaseInsensitive);
    if (small == 0)
        throw RunTimeFault(RunTimeFault::IndexOutOfRange,
            QStringLiteral("the query text holds no selection token \"%1\"").arg(kOpening));
    throw RunTimeFault(RunTimeFault::IndexOutOfRange,
        QStringLiteral("selection token \"%1\" at character %2: its tags must be written \"%3\" and \"%4\"")
            .arg(text.mid(small - 1, kOpeningLength)).arg(small).arg(kOpening, kClosing));
}

void requireClosing(const SelectionToken &token, const QString &text)
{
    if (token.end > token.start)
        return;
    QString reason = QStringLiteral("no closing \"%1\" follows").arg(kClosing);
    if (token.end > 0)
        reason = QStringLiteral("the first closing \"%1\" stands before it, at character %2").arg(kClosing).arg(token.end);
    else if (position(text, kClosing, Qt::CaseInsensitive) > 0)
        reason = QStringLiteral("its closing tag must be written \"%1\"").arg(kClosing);
    throw RunTimeFault(RunTimeFault::InvalidArgument, QString(token.place() + u": " + reason));
}

void requireFields(const SelectionToken &token, int count)
{
    if (token.fields.size() < count)
        throw RunTimeFault(RunTimeFault::IndexOutOfRange, QStringLiteral("%1: it has %2 of %3 fields")
                .arg(token.place()).arg(token.fields.size()).arg(kFieldCount));
}

double numberField(const SelectionToken &token, int field, const QString &name)
{
    requireFields(token, field + 1);
    const QString &text = token.fields[field];
    try {
        return strictNumber(text);
    } catch (const RunTimeFault &) {
        // The closing tag in it: the bar behind the last field is missing.
        const QString tail = text.contains(kClosing.first(kNameLength)) ? QStringLiteral("; the last field must end with \"|\"") : QString();
        throw RunTimeFault(RunTimeFault::TypeMismatch, QStringLiteral("%1: %2 (field %3) \"%4\" is no number%5")
                .arg(token.place(), name, QString::number(field + 1), text.left(40), tail));
    }
}

QString doubled(const QString &value)
{
    return replaceEvery(value, u"'", u"''");
}

QString oneValue(const SelectionToken &token, const SelectionAnswers &answers)
{
    if (answers.values.isEmpty())
        return {};
    const QString &value = answers.values.first();
    // Deliberate: a bare single value is written as it is, quotes not doubled: definitions pass pieces
    // of a query through it.
    return token.quoted ? QString(u'\'' + doubled(value) + u'\'') : value;
}

QString valueList(const SelectionToken &token, const SelectionAnswers &answers)
{
    const QStringView quote = token.quoted ? u"'" : u"";
    QString list;
    for (const QString &value : answers.values)
        list += u", " + quote + doubled(value) + quote;
    if (list.isEmpty())
        list = QStringLiteral(" NULL");
    return u'(' + QStringView(list).sliced(1) + u" ) ";
}

SelectionText selectionText(const SelectionToken &token, const SelectionAnswers &answers)
{
    if (!token.takesSeveral()) {
        const QString value = oneValue(token, answers);
        return {value, value};
    }
    if (token.mode == SelectionMode::SeveralJoined && answers.all)
        return {QStringLiteral("('') "), QStringLiteral("('') ")};
    const QString list = valueList(token, answers);
    if (token.mode == SelectionMode::Several)
        return {list, list};
    // Deliberate: every comma counts, those within values too, as definitions written for it expect.
    return {replaceEvery(list, u",", u"+'|'+"), list};
}

} // namespace

QString SelectionToken::place() const
{
    return QStringLiteral("selection token \"{*%1\" at character %2").arg(name).arg(start);
}

SelectionToken SelectionToken::parseRequest(const QString &xStr)
{
    SelectionToken token;
    token.start = position(xStr, kOpening);
    if (token.start == 0)
        refuseMissing(xStr);
    token.name = xStr.mid(token.start + 1, kNameLength);
    token.end = position(xStr, kClosing);
    requireClosing(token, xStr);
    // Deliberate: nine characters more than the body. They fall behind its last bar, into a field that
    // nobody reads, or make a body without that bar fail.
    const QString body = xStr.mid(token.start - 1 + kOpeningLength, token.end - token.start);
    token.fields = splitText(body, u"|").value_or(QStringList());
    const double mode = numberField(token, kModeField, QStringLiteral("the mode"));
    token.mode = mode == 0 ? SelectionMode::One : mode == 2 ? SelectionMode::SeveralJoined : SelectionMode::Several;
    token.quoted = numberField(token, kQuoteField, QStringLiteral("the quote")) != 0;
    return token;
}

QString selectionRefusal(const SelectionToken &token, const SelectionAnswers &answers, const QString &incomplete)
{
    if (incomplete.isEmpty() || !answers.all || token.mode != SelectionMode::SeveralJoined)
        return {};
    return QStringLiteral("All records cannot be selected, because their list is incomplete. "
        "Select some of them, or cancel and run the report again. Cause: %1").arg(incomplete);
}

SelectionResult applySelection(const QString &request, const SelectionToken &token, const SelectionAnswers &answers)
{
    const SelectionText text = selectionText(token, answers);
    // Around the token only: a chosen value that holds the marker's letters would come out of its quotes.
    const auto repeated = [&](const QString &part) { return replaceEvery(part, token.marker(), text.atMarkers); };
    const QString behind = request.mid(token.end - 1 + kClosing.size());
    return {QString(repeated(request.first(token.start - 1)) + text.inToken + repeated(behind)),
        {{}, {token.marker(), text.atMarkers, QString()}}};
}

SelectionResult applySelection(const QString &request, const SelectionAnswers &answers)
{
    const SelectionToken token = SelectionToken::parseRequest(request);
    if (token.marker() != answers.marker)
        throw RunTimeFault(RunTimeFault::InvalidArgument,
            QStringLiteral("%1: what was selected is for \"%2\"").arg(token.place(), answers.marker));
    return applySelection(request, token, answers);
}

} // namespace corvane
