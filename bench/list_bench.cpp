#include "list_bench.h"

#include "dialogs/frmspatnt.h"
#include "platform/controls/record_list.h"
#include "session/patient_search.h"
#include "shared/reportr.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

class Silent : public MessageBoxes
{
public:
    MessageAnswer message(const QString &, int, const QString &) override { return MessageAnswer::Ok; }
};

void makePatients(const QString &file, int rows)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(file).constData(), &database);
    const QByteArray sql = "CREATE TABLE patient_info (id integer, last_name varchar(30), first_name varchar(30), "
                           "middle_init varchar(1), acctnbr varchar(12), ssn varchar(9));"
                           "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
        + QByteArray::number(rows)
        + ") INSERT INTO patient_info SELECT i, 'Lastname' || (i % 977), 'First' || (i % 613), "
          "CASE WHEN i % 3 THEN 'Q' END, 'A' || (100000 + i), 100000000 + i FROM n;";
    sqlite3_exec(database, sql.constData(), nullptr, nullptr, nullptr);
    sqlite3_close(database);
}

double stepThrough(const QString &file, const QByteArray &sql)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    sqlite3_open_v2(QFile::encodeName(file).constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    QElapsedTimer timer;
    timer.start();
    sqlite3_prepare_v2(database, sql.constData(), -1, &statement, nullptr);
    size_t bytes = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < 6; ++column) {
            if (sqlite3_column_text(statement, column))
                bytes += size_t(sqlite3_column_bytes(statement, column));
        }
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return bytes > 0 ? ms : -1;
}

/// Resident memory in MiB; 0 where the system does not tell.
double residentMiB()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * 4096 / (1 << 20);
}

} // namespace

bool measureLists(int rows, int rounds)
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("Data"));
    const QString file = folder.filePath(QStringLiteral("Data/Bench.db"));
    makePatients(file, rows);
    Reportr state;
    state.programFolder = folder.path();
    state.gConnectString = QStringLiteral("Data Source=sqlite:Data;Initial Catalog=Bench");
    state.gAccessType = 1;
    state.openConn(state.gConnectString);
    const QString sql = *patientQuery(ByLastName, QStringLiteral("%"), 1, {});
    Silent boxes;
    double bare = std::numeric_limits<double>::max();
    double list = bare;
    double memory = 0;
    for (int round = 0; round < rounds; ++round) {
        bare = std::min(bare, stepThrough(file, sql.toUtf8()));
        frmspatnt form(state, boxes, nullptr);
        form.show();
        form.findChild<QLineEdit *>(QStringLiteral("txtsearch"))->setText(QStringLiteral("%"));
        const double before = residentMiB();
        QElapsedTimer timer;
        timer.start();
        form.findChild<QPushButton *>(QStringLiteral("cmdsearch"))->click();
        list = std::min(list, double(timer.nsecsElapsed()) / 1e6);
        memory = std::max(memory, residentMiB() - before);
        if (form.findChild<RecordList *>()->model().rowCount() != rows)
            return false;
    }
    std::printf("patient list, %d rows: %.2f times stepping through the query alone, %.0f MiB\n", rows, list / bare, memory);
    return true;
}

} // namespace corvane::bench
