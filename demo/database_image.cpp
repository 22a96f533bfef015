#include "demo/database_image.h"

#include <QtCore/QtEndian>

#include <sqlite3.h>

#include <stdexcept>

namespace corvane::demo {

namespace {

[[noreturn]] void fail(sqlite3 *database)
{
    throw std::runtime_error(database ? sqlite3_errmsg(database) : "out of memory");
}

std::string isoText(Day day)
{
    const std::chrono::year_month_day date(day);
    const auto padded
        = [](unsigned number) { return (number < 10 ? "-0" : "-") + std::to_string(number); };
    return std::to_string(int(date.year())) + padded(unsigned(date.month()))
        + padded(unsigned(date.day()));
}

std::string clockText(int second)
{
    const auto padded
        = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return padded(second / 3600) + ':' + padded(second / 60 % 60) + ':' + padded(second % 60);
}

/// Offsets of the file header, https://www.sqlite.org/fileformat2.html#the_database_header
constexpr int kChangeCounter = 24;
constexpr int kPageCount = 28;
constexpr int kVersionValidFor = 92;
constexpr int kLibraryVersion = 96;
constexpr int kPageSize = 4096;
constexpr quint32 kAnyLibraryVersion = 3'040'001;

} // namespace

DatabaseImage::DatabaseImage()
{
    sqlite3 *database = nullptr;
    const int result = sqlite3_open(":memory:", &database);
    m_database.reset(database);
    if (result != SQLITE_OK)
        fail(database);
    execute("PRAGMA page_size = 4096; PRAGMA encoding = 'UTF-8'; PRAGMA auto_vacuum = 0; BEGIN");
}

void DatabaseImage::Close::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

void DatabaseImage::execute(const char *sql)
{
    if (sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(m_database.get());
}

QByteArray DatabaseImage::bytes() const
{
    if (sqlite3_exec(m_database.get(), "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(m_database.get());
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> data(
        sqlite3_serialize(m_database.get(), "main", &size, 0), &sqlite3_free);
    if (!data)
        throw std::runtime_error("out of memory");
    QByteArray file(reinterpret_cast<const char *>(data.get()), qsizetype(size));
    const auto put
        = [&](int offset, quint32 number) { qToBigEndian(number, file.data() + offset); };
    put(kChangeCounter, 1);
    put(kPageCount, quint32(size / kPageSize));
    put(kVersionValidFor, 1);
    put(kLibraryVersion, kAnyLibraryVersion);
    return file;
}

Insert::Insert(DatabaseImage &image, std::string_view table, int columns)
    : m_database(image.m_database.get())
    , m_columns(columns)
{
    std::string sql = "INSERT INTO ";
    sql.append(table).append(" VALUES (?");
    for (int i = 1; i < columns; ++i)
        sql += ", ?";
    sql += ')';
    sqlite3_stmt *statement = nullptr;
    check(sqlite3_prepare_v2(m_database, sql.c_str(), int(sql.size()), &statement, nullptr));
    m_statement.reset(statement);
}

void Insert::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

void Insert::bind(int column, qint64 value)
{
    check(sqlite3_bind_int64(m_statement.get(), column, value));
}

void Insert::bind(int column, std::string_view text)
{
    // An empty view may have no address, which would bind a null.
    const char *data = text.empty() ? "" : text.data();
    check(sqlite3_bind_text(m_statement.get(), column, data, int(text.size()), SQLITE_TRANSIENT));
}

void Insert::bind(int column, Day day)
{
    bind(column, isoText(day));
}

void Insert::bind(int column, Stamp stamp)
{
    bind(column,
        stamp.second == 0 ? isoText(stamp.day)
                          : isoText(stamp.day) + ' ' + clockText(stamp.second));
}

void Insert::bind(int column, Money amount)
{
    check(sqlite3_bind_double(m_statement.get(), column, double(amount.cents) / 100));
}

void Insert::bind(int column, std::nullopt_t)
{
    check(sqlite3_bind_null(m_statement.get(), column));
}

void Insert::check(int result) const
{
    if (result != SQLITE_OK)
        fail(m_database);
}

void Insert::run(int columns)
{
    if (columns != m_columns)
        throw std::logic_error("a row with the wrong number of values");
    if (sqlite3_step(m_statement.get()) != SQLITE_DONE)
        fail(m_database);
    check(sqlite3_reset(m_statement.get()));
}

} // namespace corvane::demo
