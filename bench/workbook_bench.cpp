#include "workbook_bench.h"

#include "limit.h"
#include "measured.h"
#include "platform/database/rowset.h"
#include "platform/workbook/workbook_writer.h"
#include "process_memory.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

constexpr std::array kLastNames{
    "Abbott", "Novak", "O'Neill", "Berg", "Okoye", "Lindqvist", "Carver", "Pryce", "Marsh", "Diaz"};
constexpr std::array kFirstNames{"Ann", "Farid", "Dmitri", "Bo", "Gus", "Eve", "Carla"};

/// Appointments: names and accounts as text, a date, a time, an amount and a room.
RowsetPtr appointments(int rows)
{
    RowsetBuilder builder({QStringLiteral("Last Name"), QStringLiteral("First Name"),
        QStringLiteral("Account"), QStringLiteral("Date"), QStringLiteral("Time"),
        QStringLiteral("Amount"), QStringLiteral("Room")});
    for (int i = 0; i < rows; ++i) {
        const QByteArray amount
            = QByteArray::number(i % 300) + "." + QByteArray::number(10 + i % 90);
        builder.addText(kLastNames[size_t(i) % kLastNames.size()]);
        builder.addText(kFirstNames[size_t(i) % kFirstNames.size()]);
        builder.addText(QByteArray("A" + QByteArray::number(10'000 + i % 90'000)));
        builder.add(Value::date(20'454 + i % 365));
        builder.add(Value::time(qint64(480 + i * 5 % 600) * 60'000));
        builder.add(Value::decimal(amount.constData(), quint32(amount.size())));
        builder.add(Value::integer(100 + i % 40));
    }
    return builder.finish();
}

/// Seven texts a row, none of them twice: the worst case for the shared texts.
RowsetPtr differentTexts(int rows)
{
    RowsetBuilder builder({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
        QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f"), QStringLiteral("g")});
    for (int i = 0; i < rows * 7; ++i)
        builder.addText(QByteArray("Text " + QByteArray::number(i)));
    return builder.finish();
}

void measureOne(const char *name, const Rowset &rows, int rounds)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("bench.xls"));
    const int count = int(rows.rowCount());
    double limitMs = std::numeric_limits<double>::max();
    double workbookMs = limitMs;
    double memoryMiB = 0;
    for (int round = 0; round < rounds; ++round) {
        limitMs = std::min(
            limitMs, runLimit(folder.filePath(QStringLiteral("limit.pdf")).toStdString(), count));
        const MemoryRise rise;
        QElapsedTimer timer;
        timer.start();
        writeWorkbook(rows, file);
        workbookMs = std::min(workbookMs, double(timer.nsecsElapsed()) / 1e6);
        memoryMiB = std::max(memoryMiB, rise.miB());
    }
    if (count == 100'000)
        record("workbook", workbookMs / limitMs);
    if (count == 1'000'000)
        record("workbook-memory", memoryMiB);
    std::printf("%9d  %-16s %8.0f | %8.2f | %10.0f | %8.1f\n", count, name, limitMs,
        workbookMs / limitMs, memoryMiB, double(QFileInfo(file).size()) / (1 << 20));
    std::fflush(stdout);
}

} // namespace

void measureWorkbooks(int most, int rounds)
{
    std::printf("     rows  values           limit ms | workbook | memory MiB | file MiB\n");
    for (const int rows : {10'000, 100'000, 1'000'000}) {
        if (rows > most)
            continue;
        measureOne("appointments", *appointments(rows), rounds);
        measureOne("different texts", *differentTexts(rows), rounds);
    }
}

} // namespace corvane::bench
