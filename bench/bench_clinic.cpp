#include "bench_clinic.h"

#include "shared/scramble.h"

#include <QtCore/QDate>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <sqlite3.h>

#include <array>
#include <stdexcept>

namespace corvane::bench {

namespace {

constexpr auto kDefinition =
    "[Data Source]\r\n"
    "RecordSource1=SELECT last_name, first_name, account, appt_date, start_min, color, room FROM CorvaneDB.dbo.appointments\r\n"
    "Fields=7\r\n"
    "[Columns]\r\n"
    "Fields=0|1|2|3|4|5|6\r\n"
    "Heading=Last Name|First Name|Account|Date|Time|Status|Room;\r\n"
    "Spacing=1700|1500|1200|1200|>1100|1600|900;\r\n"
    "PageColumns=1\r\n"
    "Font=Arial;9\r\n"
    "Fontsize=9\r\n"
    "[ColumnFormat]\r\n"
    "4=MinToTime\r\n"
    "5=ColorToStatus\r\n"
    "[Header]\r\n"
    "LText={Date}\r\n"
    "CText=Appointments\r\n"
    "[Footer]\r\n"
    "CText=Page %d\r\n";

constexpr auto kSettings = "[SQLServer]\r\nDataSource=sqlite:Data\r\nProvider=SQLOLEDB\r\nInitialCatalog=Bench\r\n";

constexpr std::array kLastNames {"Abbott", "Novak", "O'Neill", "Berg", "Okoye", "Lindqvist", "Carver", "Pryce", "Marsh", "Diaz"};
constexpr std::array kFirstNames {"Ann", "Farid", "Dmitri", "Bo", "Gus", "Eve", "Carla"};
constexpr std::array kColours {192, 193, 194, 49152, 12632064, 16711680};

void write(const QString &path, const char *text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) < 0)
        throw std::runtime_error("cannot write " + path.toStdString());
}

class Database
{
public:
    explicit Database(const QString &path)
    {
        QFile::remove(path);
        if (sqlite3_open(QFile::encodeName(path).constData(), &m_handle) != SQLITE_OK)
            throw std::runtime_error("cannot open " + path.toStdString());
    }
    ~Database() { sqlite3_close(m_handle); }

    void run(const QByteArray &sql)
    {
        if (sqlite3_exec(m_handle, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_handle));
    }
    sqlite3 *handle() { return m_handle; }

private:
    sqlite3 *m_handle = nullptr;
};

void fill(Database &database, int rows)
{
    sqlite3_stmt *insert = nullptr;
    sqlite3_prepare_v2(database.handle(), "INSERT INTO appointments VALUES (?,?,?,?,?,?,?)", -1, &insert, nullptr);
    const QDate first(2026, 1, 1);
    for (int i = 0; i < rows; ++i) {
        const QByteArray account = "A" + QByteArray::number(10000 + i % 90000);
        const QByteArray date = first.addDays(i % 365).toString(Qt::ISODate).toLatin1();
        sqlite3_bind_text(insert, 1, kLastNames[size_t(i) % kLastNames.size()], -1, SQLITE_STATIC);
        sqlite3_bind_text(insert, 2, kFirstNames[size_t(i) % kFirstNames.size()], -1, SQLITE_STATIC);
        sqlite3_bind_text(insert, 3, account.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 4, date.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(insert, 5, 480 + i * 5 % 600);
        sqlite3_bind_int(insert, 6, kColours[size_t(i) % kColours.size()]);
        sqlite3_bind_int(insert, 7, 100 + i % 40);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
}

} // namespace

void makeBenchClinic(const QString &folder, int rows)
{
    QDir(folder).mkpath(QStringLiteral("Data"));
    QDir(folder).mkpath(QStringLiteral("Reports"));
    write(folder + u"/corvane.ini", kSettings);
    write(folder + u"/Reports/Bench.rpt", kDefinition);
    Database database(folder + u"/Data/Bench.db");
    database.run("BEGIN; CREATE TABLE passwords (pswd_user_id varchar(20), pswd_password varchar(20), "
                 "pswd_screen_access varchar(20), pswd_type_of_access integer);"
                 "CREATE TABLE appointments (last_name varchar(30), first_name varchar(30), account varchar(10), "
                 "appt_date date, start_min integer, color integer, room integer);");
    database.run("INSERT INTO passwords VALUES ('bench', '" + scramblePW(u"bench").toUtf8().replace('\'', "''") + "', '00000002', 1)");
    fill(database, rows);
    database.run("COMMIT");
}

} // namespace corvane::bench
