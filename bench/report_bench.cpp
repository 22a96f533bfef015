#include "report_bench.h"

#include "bench_clinic.h"
#include "limit.h"
#include "measured.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

constexpr int kMostTagged = 100'000; ///< rows; beyond it nobody asks for tags

struct Stages
{
    double limitMs = std::numeric_limits<double>::max();
    double queryMs = limitMs;
    double composeMs = limitMs;
    double bothMs = limitMs;
    double pdfMs = limitMs;
    double taggedMs = limitMs;
    double wholeMs = limitMs;
    qint64 peakKiB = 0;
    int pages = 0;
};

double number(const QString &line, const char *name)
{
    const QRegularExpression pattern(QString::fromLatin1(name) + QStringLiteral("=(\\d+)"));
    return pattern.match(line).captured(1).toDouble();
}

/// One whole run of the batch program and its wall time; its own stage times come on standard
/// error, which is returned. Empty when it failed.
QString runBatch(const QString &clinic, const QStringList &more, double &wholeMs)
{
    QProcess batch;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("bench"));
    batch.setProcessEnvironment(environment);
    QElapsedTimer timer;
    timer.start();
    batch.start(QCoreApplication::applicationDirPath() + u"/corvane-batch",
        QStringList{QStringLiteral("run"), QStringLiteral("Bench.rpt"), QStringLiteral("--folder"),
            clinic, QStringLiteral("--user"), QStringLiteral("bench"), QStringLiteral("--pdf"),
            clinic + u"/bench.pdf", QStringLiteral("--timings")}
            + more);
    batch.waitForFinished(-1);
    wholeMs = double(timer.nsecsElapsed()) / 1e6;
    QString output = QString::fromUtf8(batch.readAllStandardError());
    if (batch.exitCode() != 0) {
        std::fprintf(stderr, "corvane-batch ended with status %d: %s\n", batch.exitCode(),
            qPrintable(output));
        return {};
    }
    return output;
}

bool measureRun(const QString &clinic, Stages &best)
{
    double wholeMs = 0;
    const QString output = runBatch(clinic, {}, wholeMs);
    if (output.isEmpty())
        return false;
    const double queryMs = number(output, "query_ms");
    const double composeMs = number(output, "compose_ms");
    best.queryMs = std::min(best.queryMs, queryMs);
    best.composeMs = std::min(best.composeMs, composeMs);
    best.bothMs = std::min(best.bothMs, queryMs + composeMs);
    best.pdfMs = std::min(best.pdfMs, number(output, "pdf_ms"));
    best.wholeMs = std::min(best.wholeMs, wholeMs);
    best.peakKiB = std::max(best.peakKiB, qint64(number(output, "peak_rss_kib")));
    best.pages = int(number(output, "pages"));
    return true;
}

bool measureTagged(const QString &clinic, Stages &best)
{
    double wholeMs = 0;
    const QString output = runBatch(clinic, {QStringLiteral("--tagged")}, wholeMs);
    best.taggedMs = std::min(best.taggedMs, number(output, "pdf_ms"));
    return !output.isEmpty();
}

bool measure(int rows, int rounds, Stages &best)
{
    const QTemporaryDir folder;
    makeBenchClinic(folder.path(), rows);
    for (int round = 0; round < rounds; ++round) {
        best.limitMs = std::min(best.limitMs,
            runLimit(folder.filePath(QStringLiteral("limit.pdf")).toStdString(), rows));
        if (!measureRun(folder.path(), best)
            || (rows <= kMostTagged && !measureTagged(folder.path(), best)))
            return false;
    }
    const auto ratio = [&](double ms) { return ms / best.limitMs; };
    const QString tagged
        = rows <= kMostTagged ? QString::number(ratio(best.taggedMs), 'f', 2) : QStringLiteral("-");
    std::printf("%9d %7d %8.0f | %6.2f %8.2f %6.2f | %6.2f %6s %6.2f | %8.0f\n", rows, best.pages,
        best.limitMs, ratio(best.queryMs), ratio(best.composeMs), ratio(best.bothMs),
        ratio(best.pdfMs), qPrintable(tagged), ratio(best.wholeMs), double(best.peakKiB) / 1024);
    std::fflush(stdout);
    return true;
}

void recordFigures(const Stages &middle)
{
    record("compose", middle.bothMs / middle.limitMs);
    record("pdf", middle.pdfMs / middle.limitMs);
    record("tagged", middle.taggedMs / middle.limitMs);
    record("whole", middle.wholeMs / middle.limitMs);
    record("peak", double(middle.peakKiB) / 1024);
}

/// The first size is a tenth of the second, which is a tenth of the third.
void recordGrowth(const Stages &small, const Stages &middle, const Stages &large)
{
    record("whole-1m", large.wholeMs / middle.wholeMs);
    record("peak-1m", double(large.peakKiB) / 1024);
    record("compose-growth", large.bothMs / small.bothMs / 100);
    record("pdf-growth", large.pdfMs / middle.pdfMs / 10);
}

} // namespace

bool measureReports(int most, int rounds)
{
    std::printf(
        "     rows   pages limit ms |  fetch  compose   both |    PDF tagged  whole | peak MiB\n");
    std::array<Stages, 3> stages;
    constexpr std::array kRows{10'000, 100'000, 1'000'000};
    for (size_t i = 0; i < kRows.size() && kRows[i] <= most; ++i) {
        if (!measure(kRows[i], rounds, stages[i]))
            return false;
    }
    if (kRows[1] <= most)
        recordFigures(stages[1]);
    if (kRows[2] <= most)
        recordGrowth(stages[0], stages[1], stages[2]);
    return true;
}

} // namespace corvane::bench
