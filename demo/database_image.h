#pragma once

#include "demo/clinic.h"

#include <QtCore/QByteArray>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace corvane::demo {

/// A SQLite database that is put together in memory and handed over as the bytes of its file. The
/// same statements give the same bytes: no clock, no counter and no library version is in them.
/// Every fault is a std::runtime_error with the library's words.
class DatabaseImage
{
public:
    DatabaseImage();

    void execute(const char *sql);
    QByteArray bytes() const;

private:
    friend class Insert;
    struct Close
    {
        void operator()(sqlite3 *database) const;
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

/// One INSERT, run row by row with the values in the order of the table's columns.
/// Dates are stored as YYYY-MM-DD, date-times with a blank and HH:MM:SS unless it is midnight,
/// amounts as the number closest to their two decimals.
class Insert
{
public:
    Insert(DatabaseImage &image, std::string_view table, int columns);

    template <typename... Values> void row(const Values &...values)
    {
        int column = 0;
        (bind(++column, values), ...);
        run(column);
    }

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };

    void bind(int column, qint64 value);
    void bind(int column, int value) { bind(column, qint64(value)); }
    void bind(int column, bool value) { bind(column, qint64(value)); }
    void bind(int column, std::string_view text);
    void bind(int column, const std::string &text) { bind(column, std::string_view(text)); }
    void bind(int column, Day day);
    void bind(int column, Stamp stamp);
    void bind(int column, Money amount);
    void bind(int column, std::nullopt_t);
    template <typename Value> void bind(int column, const std::optional<Value> &value)
    {
        if (value)
            bind(column, *value);
        else
            bind(column, std::nullopt);
    }
    void check(int result) const;
    void run(int columns);

    sqlite3 *m_database;
    int m_columns;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

} // namespace corvane::demo
