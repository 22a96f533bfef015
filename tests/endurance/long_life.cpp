// The whole program for a working life: reports in turn, saved now and then, and every dialog again
// and again.
//
// corvane-long-life RUNS
// Prints how memory, descriptors and widgets go, and ends with status 1 when they have grown from
// the first tenth of the runs to the last; of fewer than 1000 runs, from the first third.

#include "definitions/parameters_clause.h"
#include "endurance/dialog_visitor.h"
#include "platform/desktop/system_desktop.h"
#include "platform/preview/preview.h"
#include "shell/frm_cvr_main.h"
#include "shell/frm_reportr_logon.h"
#include "shell/report_list_view.h"
#include "platform/process/single_instance.h"
#include "support/demo_folder.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <functional>
#include <malloc.h>
#include <unistd.h>

using namespace corvane;

namespace {

const QDateTime kNow(QDate(2026, 11, 2), QTime(8, 5));
const QString kPlainReport = QStringLiteral("Phone list.rpt");
constexpr int kLongRun = 1000;
constexpr double kMostGrowth = 1.10;
constexpr int kSaveEvery = 5;

/// What a leak would make grow.
struct Footprint
{
    long memoryKiB = 0;
    qsizetype descriptors = 0;
    qsizetype widgets = 0;
    qsizetype objects = 0;
};

/// Opens nothing: the viewer of another program is not what is looked at here.
class QuietDesktop : public SystemDesktop
{
public:
    int openDocument(const QString &) override { return OpenCodes::Started; }
};

class LongLife
{
public:
    explicit LongLife(int runs)
        : m_runs(runs)
        , m_first(runs >= kLongRun ? runs / 10 : runs / 3)
    {
        m_state.programFolder = m_demo.path();
        m_window = std::make_unique<frmCVRMain>(
            m_state, m_desktop, [] { return kNow; }, QLocale::c());
        m_desktop.setParentWindow(m_window.get());
        m_instance = std::make_unique<SingleInstance>(m_demo.path());
        if (!m_window->Form_Load(*m_instance))
            qFatal("the program did not start");
        m_list = m_window->findChild<ReportListView *>();
    }

    bool runReports();
    bool openDialogs();

private:
    struct Dialog
    {
        const char *name;
        std::function<void()> open;
    };

    std::vector<Dialog> dialogs();
    void runReport(const QString &name);
    void press(int index);
    void saveBothWays(int run);
    Footprint footprint();
    bool repeat(const char *what, const std::function<void(int)> &once);

    int m_runs;
    int m_first;
    test::DemoFolder m_demo{60};
    test::DialogVisitor m_visitor;
    Reportr m_state;
    QuietDesktop m_desktop;
    std::unique_ptr<frmCVRMain> m_window;
    std::unique_ptr<SingleInstance> m_instance;
    ReportListView *m_list = nullptr;
};

/// Taken while the same short report is shown, with what the allocator keeps given back.
Footprint LongLife::footprint()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    malloc_trim(0);
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        qFatal("no /proc/self/statm");
    const long pages = statm.readAll().split(' ').at(1).toLong();
    statm.close();
    const auto descriptors = QDir(QStringLiteral("/proc/self/fd"))
                                 .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return {pages * (::sysconf(_SC_PAGESIZE) / 1024), descriptors.size(),
        QApplication::allWidgets().size(), m_window->findChildren<QObject *>().size()};
}

/// Does it all the times, prints the curve, and compares the end with the end of the first part.
bool LongLife::repeat(const char *what, const std::function<void(int)> &once)
{
    std::printf(
        "%s\n  %6s %10s %12s %8s %8s\n", what, "times", "KiB", "descriptors", "widgets", "objects");
    Footprint first;
    Footprint last;
    for (int run = 1; run <= m_runs; ++run) {
        once(run);
        if (run != m_first && run != m_runs && run % std::max(m_runs / 10, 1) != 0)
            continue;
        last = footprint();
        if (run == m_first)
            first = last;
        std::printf("  %6d %10ld %12lld %8lld %8lld\n", run, last.memoryKiB,
            qlonglong(last.descriptors), qlonglong(last.widgets), qlonglong(last.objects));
        std::fflush(stdout);
    }
    const bool isSteady = double(last.memoryKiB) <= double(first.memoryKiB) * kMostGrowth
        && last.descriptors <= first.descriptors && last.widgets <= first.widgets
        && last.objects <= first.objects;
    std::printf("  memory after %d is %.3f of that after %d%s\n\n", m_runs,
        double(last.memoryKiB) / double(first.memoryKiB), m_first,
        isSteady ? "" : "   FAILED: it grows");
    return isSteady;
}

void LongLife::runReport(const QString &name)
{
    const auto items = m_list->findItems(name, Qt::MatchExactly);
    if (items.size() != 1)
        qFatal("no report %s", qPrintable(name));
    m_list->scrollToItem(items[0]);
    QTest::mouseClick(
        m_list->viewport(), Qt::LeftButton, {}, m_list->visualItemRect(items[0]).center());
    if (!m_window->findChild<Preview *>()->document())
        qFatal("%s shows nothing", qPrintable(name));
    QCoreApplication::processEvents(); // the preview paints
}

void LongLife::press(int index)
{
    auto *button = m_window->findChild<QAbstractButton *>(QStringLiteral("btnvp%1").arg(index));
    QTest::mouseClick(button, Qt::LeftButton);
}

void LongLife::saveBothWays(int run)
{
    const QString base = m_demo.file(QStringLiteral("saved%1").arg(run % 3));
    m_visitor.setFileName(QString(base + u".pdf"));
    press(PdfButton);
    if (!QFile::exists(QString(base + u".pdf")))
        qFatal("no PDF was saved");
    m_visitor.setFileName(QString(base + u".xls"));
    if (m_window->findChild<QWidget *>(QStringLiteral("btnvp%1").arg(ExcelButton))->isEnabled())
        press(ExcelButton);
}

bool LongLife::runReports()
{
    QStringList reports;
    for (int row = 0; row < m_list->count(); ++row)
        reports += m_list->item(row)->text();
    std::printf("%lld reports in turn, each %dth saved as PDF and workbook\n",
        qlonglong(reports.size()), kSaveEvery);
    const bool isSteady = repeat("report runs", [&](int run) {
        runReport(reports[run % reports.size()]);
        if (run % kSaveEvery == 0)
            saveBothWays(run);
        if (run == m_first || run % std::max(m_runs / 10, 1) == 0)
            runReport(kPlainReport);
    });
    std::printf("%d dialogs were shown and answered on the way\n\n", m_visitor.shown());
    return isSteady;
}

std::vector<LongLife::Dialog> LongLife::dialogs()
{
    const auto trigger = [this](const char *name) {
        return
            [this, name] { m_window->findChild<QAction *>(QString::fromLatin1(name))->trigger(); };
    };
    const QString dates = QStringLiteral("SELECT 1 WHERE {DATE*1|1|0|Which day?|On||11/01/2026||}");
    const QString selection = QStringLiteral(
        "SELECT 1 WHERE payer_id IN {*SQL01*}name|payer_id|%1.dbo.payers||Whom?|1|1|{*/SQL*}")
                                  .arg(m_state.gDBName);
    const auto clause = ParametersClause::parse(
        u"PARAMETERS Which Long, Since DateTime; SELECT 1", dateOrderOf(m_state.gDateOrder));
    if (!clause)
        qFatal("the parameters clause is not understood");
    return {
        {"frmReportrLogon", [this] { frmReportrLogon(m_state, *m_window, m_window.get()).exec(); }},
        {"frmDefDates", [this] { m_window->askDateRange(*m_window); }},
        {"frmspatnt", [this] { m_window->askPatient(); }},
        {"frmRptrDates", [this, dates] { m_window->askDates(dates); }},
        {"frmRptrSelect", [this, selection] { m_window->askSelection(selection); }},
        {"frmRptrParams", [this, clause] { m_window->askParameters(*clause); }},
        {"frmCVRProps", trigger("mnuFProps")},
        {"frmAbout", trigger("mnuHAbout")},
        {"frmHelp",
            [this] {
                m_window->findChild<QAction *>(QStringLiteral("mnuHContents"))->trigger();
                m_window->findChild<QWidget *>(QStringLiteral("frmHelp"))->close();
            }},
        {"message box",
            [this] { m_desktop.message(QStringLiteral("A question?"), MessageFlags::YesNo, {}); }},
        {"file dialog",
            [this] {
                m_visitor.setFileName(m_demo.file(QStringLiteral("saved.pdf")));
                m_desktop.saveFile({QStringLiteral("Save as..."), m_demo.path(),
                    QStringLiteral("PDF Files (*.pdf)|*.pdf"), QStringLiteral("*.pdf")});
            }},
    };
}

bool LongLife::openDialogs()
{
    runReport(kPlainReport);
    bool isSteady = true;
    for (const Dialog &dialog : dialogs()) {
        const int before = m_visitor.shown();
        isSteady = repeat(dialog.name, [&](int) { dialog.open(); }) && isSteady;
        if (m_visitor.shown() < before + m_runs)
            qFatal("%s was not shown each time", dialog.name);
    }
    return isSteady;
}

} // namespace

/// The screen that is none has a word to say about each window.
void printOthers(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.startsWith(u"This plugin does not support "))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

int main(int argc, char **argv)
{
    qInstallMessageHandler(printOthers);
    const QApplication application(argc, argv);
    const int runs = argc == 2 ? QString::fromLocal8Bit(argv[1]).toInt() : 0;
    if (runs < 30) {
        std::fputs("usage: corvane-long-life RUNS   (30 or more, so that every report has been run "
                   "once)\n",
            stderr);
        return 2;
    }
    LongLife life(runs);
    const bool reportsAreSteady = life.runReports();
    const bool dialogsAreSteady = life.openDialogs();
    return reportsAreSteady && dialogsAreSteady ? 0 : 1;
}
