#pragma once

#include <QtCore/QStringList>

#include <memory>

struct sqlite3;

namespace corvane::test {

/// Both databases of a clinic folder, read by plain SQL under the names Clinic and Halvern.
class EmbeddedFile
{
public:
    explicit EmbeddedFile(const QString &folder);

    /// The first column of every row; a failed query gives one row with the library's words.
    QStringList column(const QString &sql) const;
    QString value(const QString &sql) const { return column(sql).value(0); }

private:
    struct Close
    {
        void operator()(sqlite3 *database) const;
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

} // namespace corvane::test
