#pragma once

#include "platform/database/driver.h"
#include "platform/database/error.h"

#include <QtCore/QStringList>

namespace corvane::test {

/// Answers every query with the same rows. A cell of digits is a number, "(null)" a null.
class CannedDriver : public Driver
{
public:
    CannedDriver(QStringList fields, QList<QStringList> rows)
        : m_fields(std::move(fields))
        , m_rows(std::move(rows))
    {
    }

    RowsetPtr query(const QString &sql) override
    {
        queries += sql;
        if (sql.contains(u"fail"))
            throw DatabaseError(1, QStringLiteral("no such table: fail"));
        RowsetBuilder builder(m_fields);
        for (const QStringList &row : m_rows) {
            for (const QString &cell : row)
                add(builder, cell);
        }
        return builder.finish();
    }

    QStringList queries;

private:
    static void add(RowsetBuilder &builder, const QString &cell)
    {
        bool isNumber = false;
        const qint64 number = cell.toLongLong(&isNumber);
        if (cell == u"(null)")
            builder.add(Value());
        else if (isNumber)
            builder.add(Value::integer(number));
        else
            builder.addText(cell.toUtf8());
    }

    QStringList m_fields;
    QList<QStringList> m_rows;
};

} // namespace corvane::test
