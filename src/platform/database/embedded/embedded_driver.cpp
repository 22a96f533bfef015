#include "platform/database/embedded/embedded_driver.h"

#include "platform/database/embedded/dialect.h"
#include "platform/database/embedded/fetch.h"
#include "platform/database/embedded/functions.h"
#include "platform/database/embedded/sqlite_handles.h"
#include "platform/database/embedded/tokens.h"

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtCore/QUrl>

#include <exception>

namespace corvane::embedded {

namespace {

constexpr int kBusyMs = 5000;
constexpr int kStepsPerWatch = 2000; ///< of SQLite's machine: far below a millisecond

bool isReservedCatalogue(const QString &name)
{
    return name.compare(u"main", Qt::CaseInsensitive) == 0
        || name.compare(u"temp", Qt::CaseInsensitive) == 0;
}

/// Has the database call a watch while a statement runs. An exception waits until the database has ended the
/// statement, because it cannot cross the library.
class WatchedDatabase
{
public:
    WatchedDatabase(sqlite3 *database, const QueryWatch &watch)
        : m_database(database)
        , m_watch(watch)
    {
        if (m_watch)
            sqlite3_progress_handler(m_database, kStepsPerWatch, &WatchedDatabase::look, this);
    }
    ~WatchedDatabase() { sqlite3_progress_handler(m_database, 0, nullptr, nullptr); }
    Q_DISABLE_COPY_MOVE(WatchedDatabase)

    void rethrow() const
    {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

private:
    static int look(void *self)
    {
        auto &watched = *static_cast<WatchedDatabase *>(self);
        try {
            watched.m_watch();
            return 0;
        } catch (...) {
            watched.m_thrown = std::current_exception();
            return 1;
        }
    }

    sqlite3 *m_database;
    const QueryWatch &m_watch;
    std::exception_ptr m_thrown;
};

class EmbeddedDriver final : public Driver
{
public:
    EmbeddedDriver(const ConnectionText &text, const DriverSettings &settings, Clock clock);

    RowsetPtr query(const QString &sql) override;

private:
    RowsetPtr rowsOf(const Translation &translation);
    void openEmpty();
    void attachCatalogue(const QDir &folder, const QString &catalogue);
    void attachOthers(const QDir &folder, const QString &catalogue);
    bool attach(const QString &file, const QString &name);
    void execute(const QByteArray &sql);
    SqlType columnType(const QString &catalogue, const QString &table, const QString &column);
    void checkCatalogues(const QStringList &named) const;

    FunctionState m_functions;
    DatabaseHandle m_database;
    DialectSettings m_dialect;
    Clock m_clock;
    QHash<QString, SqlType> m_columnTypes;
    QHash<QString, QString> m_notAttached; ///< lower-case name of a catalogue: why it is not there
};

EmbeddedDriver::EmbeddedDriver(
    const ConnectionText &text, const DriverSettings &settings, Clock clock)
    : m_clock(std::move(clock))
{
    const QString folderName
        = text.dataSource.sliced(text.dataSource.indexOf(u':') + 1).replace(u'\\', u'/');
    const QDir folder(QDir(settings.programFolder).absoluteFilePath(folderName));
    if (!folder.exists())
        throw DatabaseError(kConnectionError,
            QStringLiteral("The folder of the databases does not exist: %1")
                .arg(folder.absolutePath()),
            FailureCause::Server);
    openEmpty();
    m_functions.dateOrder = DateOrder(settings.dateOrder);
    registerFunctions(m_database.get(), m_functions);
    attachCatalogue(folder, text.catalogue);
    attachOthers(folder, text.catalogue);
    execute("PRAGMA query_only=1");
    m_dialect.dateOrder = settings.dateOrder;
    m_dialect.columnType
        = [this](const QString &catalogue, const QString &table, const QString &column) {
              return columnType(catalogue, table, column);
          };
}

/// An empty database comes first, so that every file is attached in the same way and read only.
void EmbeddedDriver::openEmpty()
{
    sqlite3 *database = nullptr;
    const int code = sqlite3_open_v2(":memory:", &database,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI, nullptr);
    m_database.reset(database);
    if (code != SQLITE_OK)
        throw DatabaseError(code, QString::fromUtf8(sqlite3_errstr(code)));
    sqlite3_busy_timeout(database, kBusyMs);
    // A name in double quotes that no column has is an error, not a text.
    sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    execute("PRAGMA temp_store=MEMORY");
}

void EmbeddedDriver::attachCatalogue(const QDir &folder, const QString &catalogue)
{
    const auto fail = [](const QString &why) {
        throw DatabaseError(kConnectionError, why, FailureCause::Catalogue);
    };
    if (catalogue.isEmpty())
        fail(QStringLiteral("The connection names no database."));
    if (catalogue.contains(u'/') || catalogue.contains(u'\\') || isReservedCatalogue(catalogue))
        fail(QStringLiteral("\"%1\" cannot be the name of a database.").arg(catalogue));
    const QFileInfo file(folder.filePath(catalogue + u".db"));
    if (!file.isFile())
        fail(QStringLiteral("There is no database %1 in the folder %2.")
                 .arg(file.fileName(), folder.absolutePath()));
    if (!attach(file.filePath(), catalogue))
        fail(QStringLiteral("The database %1 cannot be read: %2.")
                 .arg(file.fileName(), m_notAttached.value(catalogue.toLower())));
}

void EmbeddedDriver::attachOthers(const QDir &folder, const QString &catalogue)
{
    int room = sqlite3_limit(m_database.get(), SQLITE_LIMIT_ATTACHED, -1) - 1;
    const QFileInfoList files
        = folder.entryInfoList({QStringLiteral("*.db")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        const QString name = file.completeBaseName();
        if (name.compare(catalogue, Qt::CaseInsensitive) == 0 || name.isEmpty())
            continue;
        if (isReservedCatalogue(name))
            m_notAttached[name.toLower()] = QStringLiteral("no database can have that name");
        else if (room == 0)
            m_notAttached[name.toLower()] = QStringLiteral("the folder holds too many databases");
        else if (attach(file.filePath(), name))
            --room;
    }
}

/// False, and the reason kept, when the file is no database that can be read.
bool EmbeddedDriver::attach(const QString &file, const QString &name)
{
    constexpr qint64 kSmallestDatabase = 512;
    QString reason;
    if (QFileInfo(file).size() < kSmallestDatabase) {
        reason = QStringLiteral("file is not a database");
    } else {
        const QByteArray uri = QUrl::fromLocalFile(file).toEncoded() + "?mode=ro";
        try {
            const QByteArray schema = quotedName(name).toUtf8();
            execute("ATTACH " + quotedText(QString::fromUtf8(uri)).toUtf8() + " AS " + schema);
            execute("SELECT count(*) FROM " + schema + ".sqlite_schema");
            execute("PRAGMA " + schema + ".cache_size=-16000");
            return true;
        } catch (const DatabaseError &error) {
            reason = error.description();
        }
    }
    m_notAttached[name.toLower()] = reason;
    return false;
}

void EmbeddedDriver::execute(const QByteArray &sql)
{
    if (sqlite3_exec(m_database.get(), sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw latestError(m_database.get());
}

SqlType EmbeddedDriver::columnType(
    const QString &catalogue, const QString &table, const QString &column)
{
    const QString prefix = catalogue.isEmpty() ? QString() : quotedName(catalogue) + u'.';
    const QString sql = u"SELECT " % quotedName(column) % u" FROM " % prefix % quotedName(table);
    const auto known = m_columnTypes.constFind(sql);
    if (known != m_columnTypes.constEnd())
        return *known;
    const StatementHandle statement = prepared(m_database.get(), sql.toUtf8());
    const SqlType type = statement
        ? declaredType(QString::fromUtf8(sqlite3_column_decltype(statement.get(), 0)))
        : SqlType();
    return *m_columnTypes.insert(sql, type);
}

void EmbeddedDriver::checkCatalogues(const QStringList &named) const
{
    for (const QString &name : named) {
        const auto reason = m_notAttached.constFind(name.toLower());
        if (reason != m_notAttached.constEnd())
            throw DatabaseError(SQLITE_ERROR,
                QStringLiteral("The database %1 cannot be read: %2.").arg(name, *reason));
    }
}

RowsetPtr EmbeddedDriver::query(const QString &sql)
{
    m_dialect.now = m_clock();
    m_columnTypes.clear();
    const Translation translation = translate(sql, m_dialect);
    checkCatalogues(translation.catalogues);
    return rowsOf(translation);
}

/// Fails with the server's number where a function of the dialect knows it.
RowsetPtr EmbeddedDriver::rowsOf(const Translation &translation)
{
    m_functions.failure = 0;
    m_functions.recursions = 0;
    const WatchedDatabase watched(m_database.get(), m_watch);
    try {
        const StatementHandle statement = prepared(m_database.get(), translation.sql);
        if (!statement)
            throw latestError(m_database.get());
        return fetchAll(statement.get(), translation.results);
    } catch (const DatabaseError &error) {
        watched.rethrow();
        if (error.description() == u"parser stack overflow")
            throw DatabaseError(kStatementError,
                QStringLiteral("The query is nested too deeply for the embedded database. Make "
                               "its inner expressions columns of a subquery behind FROM."));
        if (m_functions.failure == 0)
            throw;
        throw DatabaseError(m_functions.failure, error.description());
    }
}

} // namespace

std::unique_ptr<Driver> open(
    const ConnectionText &text, const DriverSettings &settings, Clock clock)
{
    return std::make_unique<EmbeddedDriver>(text, settings, std::move(clock));
}

} // namespace corvane::embedded

namespace corvane {

std::unique_ptr<Driver> openEmbedded(const ConnectionText &text, const DriverSettings &settings)
{
    return embedded::open(text, settings, [] { return QDateTime::currentDateTime(); });
}

} // namespace corvane
