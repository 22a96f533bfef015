#pragma once

#include "platform/dates/date_text.h"
#include "shared/parameter_tables.h"

#include <QtCore/QString>

#include <array>
#include <optional>

namespace corvane {

/// The long date token of a query text:
/// "{DATE*1|count|check|label|caption1|caption2|default1|default2}".
struct DateToken
{
    qint32 tokenStart = 0; ///< position of "{", counted from 1
    qint32 tokenEnd = 0; ///< position of "}", counted from 1
    qint32 dateCount = 0; ///< below 2 asks for one date, otherwise for two
    qint32 checkOrder = 0; ///< not 0: of two dates the first must not lie after the second
    QString label;
    std::array<QString, 2> captions;
    std::array<QString, 2> defaults; ///< a date, "Now()", or anything else for none

    bool asksForTwo() const { return dateCount >= 2; }

    /// Reads the first long date token of a query text; more than eight fields are let pass.
    /// @throws RunTimeFault InvalidArgument: no such token or no closing brace; IndexOutOfRange: fields
    /// missing; TypeMismatch, Overflow: count or check is no whole number of 32 bits. Each names the
    /// token and its place.
    static DateToken parseRequest(const QString &sql);
};

/// What the user answered. The second one exists for a single date too: its default, which
/// "{DATE*2}" takes. A re-run keeps these and applies them to the text at hand.
struct DateAnswers
{
    std::optional<QDate> first;
    std::optional<QDate> second;

    bool operator==(const DateAnswers &) const = default;
};

/// What a default field puts into a date picker: a date as it stands, today for "Now()", otherwise
/// nothing.
QString getDefaultSetting(const QString &field, DateOrder order, QDate today);

/// The dates that the token's defaults give; the second one also when it is not asked for.
DateAnswers defaultAnswers(const DateToken &token, DateOrder order, QDate today);

/// Whether every date that the token asks for is there; a day number below 2 is no date.
bool isAnswered(const DateToken &token, const DateAnswers &answers);

/// What to tell the user about two dates in the wrong order; empty when they may stand as they are.
std::optional<QString> orderFault(const DateToken &token, const DateAnswers &answers);

/// The query text with the first long token and every short one replaced by quoted dates in that
/// order. No date gives ''. @throws RunTimeFault as parseRequest().
QString applyDates(const QString &sql, const DateAnswers &answers, DateOrder order);

DateParamTable dateParamTable(const DateAnswers &answers, DateOrder order);

} // namespace corvane
