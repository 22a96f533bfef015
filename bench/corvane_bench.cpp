// Times the stages of one large report against the limit program, all in one run.

#include "bench_clinic.h"
#include "limit.h"
#include "list_bench.h"
#include "preview_bench.h"
#include "workbook_bench.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace corvane;

namespace {

constexpr int kMostTagged = 100'000; ///< rows; beyond it nobody asks for tags

struct Stages {
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

/// One whole run of the batch program and its wall time; its own stage times come on standard error, which is
/// returned. Empty when it failed.
QString runBatch(const QString &clinic, const QStringList &more, double &wholeMs)
{
    QProcess batch;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("bench"));
    batch.setProcessEnvironment(environment);
    QElapsedTimer timer;
    timer.start();
    batch.start(QCoreApplication::applicationDirPath() + u"/corvane-batch",
        QStringList {QStringLiteral("run"), QStringLiteral("Bench.rpt"), QStringLiteral("--folder"), clinic, QStringLiteral("--user"),
            QStringLiteral("bench"), QStringLiteral("--pdf"), clinic + u"/bench.pdf", QStringLiteral("--timings")} + more);
    batch.waitForFinished(-1);
    wholeMs = double(timer.nsecsElapsed()) / 1e6;
    QString output = QString::fromUtf8(batch.readAllStandardError());
    if (batch.exitCode() != 0) {
        std::fprintf(stderr, "corvane-batch ended with status %d: %s\n", batch.exitCode(), qPrintable(output));
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

bool measure(int rows, int rounds)
{
    const QTemporaryDir folder;
    bench::makeBenchClinic(folder.path(), rows);
    Stages best;
    for (int round = 0; round < rounds; ++round) {
        best.limitMs = std::min(best.limitMs, bench::runLimit(folder.filePath(QStringLiteral("limit.pdf")).toStdString(), rows));
        if (!measureRun(folder.path(), best) || (rows <= kMostTagged && !measureTagged(folder.path(), best)))
            return false;
    }
    const auto ratio = [&](double ms) { return ms / best.limitMs; };
    const QString tagged = rows <= kMostTagged ? QString::number(ratio(best.taggedMs), 'f', 2) : QStringLiteral("-");
    std::printf("%9d %7d %8.0f | %6.2f %8.2f %6.2f | %6.2f %6s %6.2f | %8.0f\n", rows, best.pages, best.limitMs, ratio(best.queryMs),
        ratio(best.composeMs), ratio(best.bothMs), ratio(best.pdfMs), qPrintable(tagged), ratio(best.wholeMs), double(best.peakKiB) / 1024);
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption most(QStringLiteral("rows"), QStringLiteral("The largest number of rows."), QStringLiteral("N"),
        QStringLiteral("1000000"));
    const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("Rounds per size; the best counts."),
        QStringLiteral("N"), QStringLiteral("5"));
    const QCommandLineOption lists(QStringLiteral("lists"), QStringLiteral("Time the filling of a list of 200,000 rows only."));
    const QCommandLineOption workbooks(QStringLiteral("workbooks"), QStringLiteral("Time the writing of workbooks only."));
    const QCommandLineOption preview(QStringLiteral("preview"), QStringLiteral("Time search and jumps in a preview of N pages only."),
        QStringLiteral("N"));
    parser.addOptions({most, rounds, lists, workbooks, preview});
    parser.process(application);

    if (parser.isSet(lists))
        return bench::measureLists(200'000, parser.value(rounds).toInt()) ? 0 : 1;
    if (parser.isSet(workbooks)) {
        bench::measureWorkbooks(parser.value(most).toInt(), parser.value(rounds).toInt());
        return 0;
    }
    if (parser.isSet(preview))
        return bench::measurePreview(parser.value(preview).toInt(), parser.value(rounds).toInt()) ? 0 : 1;
    std::printf("Every stage as a ratio to the limit program of the same run, best of %s.\n\n", qPrintable(parser.value(rounds)));
    std::printf("     rows   pages limit ms |  fetch  compose   both |    PDF tagged  whole | peak MiB\n");
    for (const int rows : {10'000, 100'000, 1'000'000}) {
        if (rows <= parser.value(most).toInt() && !measure(rows, parser.value(rounds).toInt()))
            return 1;
    }
    return 0;
}
