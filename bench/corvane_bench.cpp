// Times what the budget names against its limits, all in one run.

#include "check.h"
#include "designed_bench.h"
#include "list_bench.h"
#include "preview_bench.h"
#include "report_bench.h"
#include "startup_bench.h"
#include "workbook_bench.h"

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <exception>

using namespace corvane;

namespace {

constexpr int kListRows = 200'000;
constexpr int kDesignedRows = 100'000;
constexpr int kPages = 20'000;
constexpr int kQuickRounds = 2;
constexpr int kQuickRows = 100'000;

QCommandLineOption option(const char *name, const char *description, const char *value = nullptr,
    const char *fallback = nullptr)
{
    return {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value),
        QString::fromLatin1(fallback)};
}

bool check(bench::Extent extent, int most, int rounds, bench::TableForm form)
{
    bool isComplete = bench::measureReports(most, rounds);
    bench::measureWorkbooks(most, rounds);
    isComplete &= bench::measureDesigned(kDesignedRows, rounds);
    isComplete &= bench::measureLists(kListRows, rounds);
    isComplete &= bench::measureStartup(rounds);
    isComplete &= bench::measurePreview(kPages, rounds);
    return bench::checkBudgets(extent, form) && isComplete;
}

bool run(QApplication &application)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    const auto most = option("rows", "The largest number of rows.", "N", "1000000");
    const auto rounds = option("rounds", "Rounds; the best counts.", "N", "5");
    const auto checks
        = option("check", "Measure everything and hold it against the budget; status 1 on a miss.");
    const auto quick
        = option("quick", "With --check: two rounds, 100,000 rows at most.");
    const auto markdown = option("markdown", "With --check: the last table as in bench/README.md.");
    const auto lists = option("lists", "Time the filling of a list of 200,000 rows only.");
    const auto workbooks = option("workbooks", "Time the writing of workbooks only.");
    const auto designed = option("designed", "Time a designed report of N rows only.", "N");
    const auto startup = option("startup", "Time the start to the logon form only.");
    const auto preview
        = option("preview", "Time search and jumps in a preview of N pages only.", "N");
    parser.addOptions(
        {most, rounds, checks, quick, markdown, lists, workbooks, designed, startup, preview});
    parser.process(application);

    const bool isQuick = parser.isSet(quick);
    const int rows = isQuick ? kQuickRows : parser.value(most).toInt();
    const int times
        = isQuick && !parser.isSet(rounds) ? kQuickRounds : parser.value(rounds).toInt();
    std::printf("Ratios to the limit of the same run, best of %d.\n\n", times);
    if (parser.isSet(checks))
        return check(isQuick ? bench::Extent::Quick : bench::Extent::Full, rows, times,
            parser.isSet(markdown) ? bench::TableForm::Markdown : bench::TableForm::Plain);
    if (parser.isSet(lists))
        return bench::measureLists(kListRows, times);
    if (parser.isSet(designed))
        return bench::measureDesigned(parser.value(designed).toInt(), times);
    if (parser.isSet(startup))
        return bench::measureStartup(times);
    if (parser.isSet(preview))
        return bench::measurePreview(parser.value(preview).toInt(), times);
    if (parser.isSet(workbooks)) {
        bench::measureWorkbooks(rows, times);
        return true;
    }
    return bench::measureReports(rows, times);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    try {
        return run(application) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "corvane-bench: %s\n", error.what());
        return 1;
    }
}
