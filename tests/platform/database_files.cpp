#include "database_files.h"

#include <QtTest/QtTest>

#include <sqlite3.h>

namespace corvane::test {

void writeDatabase(const QString &path, const QByteArray &statements)
{
    sqlite3 *database = nullptr;
    char *message = nullptr;
    sqlite3_open(path.toUtf8().constData(), &database);
    const int code = sqlite3_exec(database, statements.constData(), nullptr, nullptr, &message);
    const QByteArray words(message);
    sqlite3_free(message);
    sqlite3_close(database);
    QVERIFY2(code == SQLITE_OK, words.constData());
}

QString described(const Value &value)
{
    constexpr const char *kNames[] = {"Null", "Integer", "Real", "Decimal", "Text", "Date",
        "DateTime", "Time", "Boolean", "Bytes"};
    const QString name = QString::fromLatin1(kNames[size_t(value.kind())]);
    return value.isNull() ? name : name + u' ' + valueText(value, {});
}

QString described(const Rowset &rowset)
{
    QStringList rows;
    for (qsizetype row = 0; row < rowset.rowCount(); ++row) {
        QStringList cells;
        for (int field = 0; field < rowset.fieldCount(); ++field)
            cells += described(rowset.value(row, field));
        rows += cells.join(u" | ");
    }
    return rows.join(u" / ");
}

} // namespace corvane::test
