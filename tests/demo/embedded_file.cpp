#include "demo/embedded_file.h"

#include <sqlite3.h>

namespace corvane::test {

EmbeddedFile::EmbeddedFile(const QString &folder)
{
    sqlite3 *database = nullptr;
    sqlite3_open_v2(":memory:", &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI, nullptr);
    m_database.reset(database);
    for (const QString &name : {QStringLiteral("Clinic"), QStringLiteral("Halvern")})
        column(QStringLiteral("ATTACH 'file:%1/Data/%2.db?mode=ro' AS %2").arg(folder, name));
}

void EmbeddedFile::Close::operator()(sqlite3 *database) const
{
    sqlite3_close(database);
}

QStringList EmbeddedFile::column(const QString &sql) const
{
    sqlite3_stmt *prepared = nullptr;
    int result
        = sqlite3_prepare_v2(m_database.get(), sql.toUtf8().constData(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(
        prepared, &sqlite3_finalize);
    QStringList values;
    while (result == SQLITE_OK || result == SQLITE_ROW) {
        result = sqlite3_step(statement.get());
        if (result == SQLITE_ROW)
            values += QString::fromUtf8(
                reinterpret_cast<const char *>(sqlite3_column_text(statement.get(), 0)));
    }
    if (result != SQLITE_DONE)
        return {QString::fromUtf8(sqlite3_errmsg(m_database.get()))};
    return values;
}

} // namespace corvane::test
