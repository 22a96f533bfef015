#pragma once

#include "platform/database/embedded/sql_type.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace corvane::embedded {

/// A translated expression with what is known of its value.
struct Expression
{
    QString sql;
    SqlType type;
    std::optional<QString> literal; ///< the content, when it is a quoted text
    QString column; ///< the name, when it is a column
    bool primary = true; ///< needs no parentheses as an operand
};

inline Expression primaryOf(QString sql, SqlType type = {})
{
    return {std::move(sql), type, {}, {}, true};
}

/// Needs parentheses as an operand.
inline Expression compound(QString sql, SqlType type = {})
{
    return {std::move(sql), type, {}, {}, false};
}

inline QString operand(const Expression &e)
{
    return e.primary ? e.sql : u'(' % e.sql % u')';
}

/// The same value read as a number of that type; the running query fails when it is none.
Expression asNumber(const Expression &e, const SqlType &type);

/// The parts with the word between them. SQLite refuses a chain of a thousand: halves in
/// parentheses keep the tree of a long one flat.
QString balanced(const QStringList &parts, QStringView word);

} // namespace corvane::embedded
