#include "platform/engine/band_queue.h"
#include "platform/engine/subreports.h"

#include <QtCore/QElapsedTimer>

namespace corvane {

namespace {

/// The user stopped the run.
struct RunStop
{
};

/// One run of one report: rows, plan and pages, from the query to the document.
class ReportRendering
{
public:
    ReportRendering(const ReportControl &control, const RenderSettings &settings)
        : m_control(control)
        , m_settings(settings)
        , m_document(std::make_shared<Document>())
        , m_rowSource(settings, [this] { report(); })
        , m_looks(*m_document)
        , m_facts{settings, control.layout().name, &m_faults}
        , m_builder(*m_document, m_looks, settings.style)
        , m_placer(*m_document)
        , m_subreports(control, m_rowSource, m_looks, m_builder, m_facts)
    {
        m_facts.onRow = [this] { report(); };
        m_builder.setSubreportSource([this](const FieldPlan &field, RowContext &context) {
            return m_subreports.layOut(field, context);
        });
    }

    RenderResult run();

private:
    void setUpPaper();
    void layOut();
    void report();
    void collectNotes();

    const ReportControl &m_control;
    const RenderSettings &m_settings;
    std::shared_ptr<Document> m_document;
    RowSource m_rowSource;
    TextLooks m_looks;
    RunFaults m_faults;
    RunFacts m_facts;
    BandBuilder m_builder;
    BandPlacer m_placer;
    Subreports m_subreports;
    RowsetPtr m_rows;
    qsizetype m_row = 0; ///< of the main layout, the latest that was laid out
};

RenderResult ReportRendering::run()
{
    const DataSource &source = m_control.dataSource();
    QElapsedTimer timer;
    timer.start();
    qint64 queryMs = 0;
    setUpPaper();
    bool isStopped = false;
    try {
        m_rows = m_rowSource.rows(source.connectionString, source.recordSource);
        queryMs = timer.elapsed();
        layOut();
    } catch (const RunStop &) {
        isStopped = true;
    }
    m_document->isWhole = !isStopped;
    return {m_document, m_rows, isStopped, queryMs};
}

void ReportRendering::setUpPaper()
{
    const ReportLayout &layout = m_control.layout();
    m_document->info = m_settings.info;
    if (m_document->info.title.isEmpty())
        m_document->info.title = layout.title.isEmpty() ? layout.name : layout.title;
    m_document->paperWidth = layout.page.paperWidth;
    m_document->paperHeight = layout.page.paperHeight;
    m_document->leftMargin = layout.page.left;
    m_document->rightMargin = layout.page.right;
}

void ReportRendering::layOut()
{
    const LayoutPlan plan(m_control.layout(), m_rows->fieldNames(), m_looks, PlanFor::Report);
    RowContext context(plan, m_facts, m_rows);
    PageFiller filler(*m_document, context, m_builder, m_placer, m_facts, m_facts.onRow);
    BandQueue queue(filler);
    RowWalker walker(context, m_builder, queue, GroupOutline::Entries);
    report();
    filler.start();
    walker.walk([this](qsizetype row) {
        m_row = row;
        m_facts.onRow();
    });
    queue.finish();
    filler.leaveColumns();
    walker.addSections(SectionKind::ReportFooter, context.rowCount() - 1);
    queue.finish();
    filler.finish();
    collectNotes();
}

/// At each row, page and row of a sub-report and while queries run: how long one takes nobody knows, so that only who listens can
/// tell by the clock when something is to come of it.
void ReportRendering::report()
{
    const qsizetype count = m_rows ? std::max<qsizetype>(m_rows->rowCount(), 1) : 1;
    if (m_settings.progress && !m_settings.progress(int(m_row * 100 / count)))
        throw RunStop();
}

void ReportRendering::collectNotes()
{
    if (m_faults.groups > 0) {
        const QString words = m_faults.groups == 1
            ? QStringLiteral(
                "The group of %1 row could not be computed; it stands in one without a value: %2")
            : QStringLiteral("The groups of %1 rows could not be computed; they stand in one "
                             "without a value: %2");
        m_document->notes += words.arg(m_faults.groups).arg(m_faults.groupWords);
    }
    if (m_faults.conditions > 0) {
        m_document->notes += QStringLiteral(
            "A condition could not be evaluated (%1 times); what it would hide is shown: %2")
                                 .arg(m_faults.conditions)
                                 .arg(m_faults.conditionWords);
    }
    m_document->notes += m_placer.notes();
    m_document->notes += m_looks.fonts().takeSubstitutions();
}

} // namespace

RenderResult ReportControl::render(const RenderSettings &settings)
{
    if (!isLoaded())
        throw ReportError(QStringLiteral("No layout is loaded."));
    return ReportRendering(*this, settings).run();
}

} // namespace corvane
