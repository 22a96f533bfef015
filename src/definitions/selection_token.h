#pragma once

#include "shared/parameter_tables.h"

#include <QtCore/QStringList>

#include <array>
#include <vector>

namespace corvane {

/// How many rows a selection takes; SeveralJoined has rules of its own for all rows and for its text.
enum class SelectionMode { One, Several, SeveralJoined };

/// A selection token as it stands in a query text: "{*SQLnn*}body{*/SQL*}".
struct SelectionToken {
    qint32 start = 0;   ///< where "{*SQL" stands, in characters from 1
    qint32 end = 0;     ///< where "{*/SQL*}" stands, likewise
    QString name;       ///< the five characters behind "{*"
    QStringList fields; ///< display column, value column, table, condition, instruction, mode, quote, …
    SelectionMode mode = SelectionMode::One;
    bool quoted = false; ///< values stand between single quotes

    /// The first token of a query text, its tags in capitals.
    /// @throws RunTimeFault InvalidArgument without a closing tag behind the opening one, IndexOutOfRange
    /// without a token or with fewer than seven fields, TypeMismatch for a mode or quote that is no number.
    static SelectionToken parseRequest(const QString &xStr);

    bool takesSeveral() const { return mode != SelectionMode::One; }
    QString instruction() const { return fields[4].trimmed(); }
    /// Stands in a query text wherever the selection is repeated.
    QString marker() const { return u"**INS" + name + u"**"; }
    /// For messages: the token and its place.
    QString place() const;
};

/// What the user chose for one token: what a repeated run keeps, and applies to the text at hand.
struct SelectionAnswers {
    QString marker;
    QStringList values; ///< in the order of the list
    bool all = false;   ///< these are the values of every row, of at least one

    bool operator==(const SelectionAnswers &) const = default;
};

/// Why these answers cannot be taken from a list that is incomplete for this reason; empty: they can.
QString selectionRefusal(const SelectionToken &token, const SelectionAnswers &answers, const QString &incomplete);

struct SelectionResult {
    QString sql;
    SelectionTable table; ///< Deliberate: the marker stands in row 1, row 0 stays empty
};

/// Puts the answers in place of the token, and of its marker wherever that stands.
SelectionResult applySelection(const QString &request, const SelectionToken &token, const SelectionAnswers &answers);

/// The same with the token that the text holds.
/// @throws RunTimeFault as parseRequest does, and InvalidArgument for answers to another token.
SelectionResult applySelection(const QString &request, const SelectionAnswers &answers);

} // namespace corvane
