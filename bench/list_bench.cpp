#include "list_bench.h"

#include "measured.h"

#include "definitions/selection_token_list.h"
#include "dialogs/frm_rptr_select.h"
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
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
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

/// The best time and the largest growth of memory over several fillings.
struct Filling {
    double ms = std::numeric_limits<double>::max();
    double memoryMiB = 0;

    template <typename Fill>
    void measure(Fill fill)
    {
        const double before = residentMiB();
        QElapsedTimer timer;
        timer.start();
        fill();
        ms = std::min(ms, double(timer.nsecsElapsed()) / 1e6);
        memoryMiB = std::max(memoryMiB, residentMiB() - before);
    }
};

template <typename Round>
bool measureOne(const char *name, const QString &file, const QByteArray &sql, int rounds, Round round)
{
    double bare = std::numeric_limits<double>::max();
    Filling filling;
    for (int i = 0; i < rounds; ++i) {
        bare = std::min(bare, stepThrough(file, sql));
        if (!round(filling))
            return false;
    }
    record("lists", filling.ms / bare);
    record("lists-memory", filling.memoryMiB);
    std::printf("%s: %.2f times stepping through the query alone, %.0f MiB\n", name, filling.ms / bare, filling.memoryMiB);
    return true;
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
    Silent boxes;

    const auto patients = [&](Filling &filling) {
        frmspatnt form(state, boxes, nullptr);
        form.show();
        form.findChild<QLineEdit *>(QStringLiteral("txtsearch"))->setText(QStringLiteral("%"));
        filling.measure([&] { form.findChild<QPushButton *>(QStringLiteral("cmdsearch"))->click(); });
        return form.findChild<RecordList *>()->model().rowCount() == rows;
    };
    const auto selection = [&](Filling &filling) {
        frmRptrSelect form(*state.gConn, boxes, {}, nullptr);
        form.RequestSQL = QStringLiteral("id IN {*SQL01*}acctnbr|id|patient_info||Patients|1|0|{*/SQL*}");
        form.show();
        filling.measure([&] { form.load(); });
        return form.findChild<RecordList *>()->model().rowCount() == rows;
    };
    const QByteArray selectionQuery = selectionListQuery(
        SelectionToken::parseRequest(QStringLiteral("{*SQL01*}acctnbr|id|patient_info||Patients|1|0|{*/SQL*}"))).toUtf8();
    return measureOne("patient list", file, patientQuery(ByLastName, QStringLiteral("%"), 1, {})->toUtf8(), rounds, patients)
        && measureOne("selection list", file, selectionQuery, rounds, selection);
}

} // namespace corvane::bench
