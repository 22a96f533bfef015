#include "platform/engine/page_filler.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr qint32 kLeastRoom = 240; ///< for the body of a page: a line of 10 points
constexpr int kMostPages = 100'000;
constexpr size_t kRunsPerPage = 512;

QString inches(qint32 twips)
{
    return QStringLiteral("%1 inches").arg(twips / 1440.0, 0, 'f', 2);
}

void pack(Page &page)
{
    page.text.squeeze();
    page.runs.shrink_to_fit();
    page.blocks.shrink_to_fit();
    page.rects.shrink_to_fit();
}

} // namespace

PageFiller::PageFiller(Document &document, RowContext &context, BandBuilder &builder,
    BandPlacer &placer, RunFacts &facts, std::function<void()> onPage)
    : m_document(document)
    , m_context(context)
    , m_builder(builder)
    , m_placer(placer)
    , m_facts(facts)
    , m_onPage(std::move(onPage))
    , m_setup(context.plan().layout().page)
    , m_headers(context.plan().sectionsOf(SectionKind::PageHeader))
    , m_footers(context.plan().sectionsOf(SectionKind::PageFooter))
    , m_hasNoDetails(context.plan().sectionsOf(SectionKind::Detail).empty())
{
}

void PageFiller::start()
{
    const auto reportHeaders = m_context.plan().sectionsOf(SectionKind::ReportHeader);
    m_next = 0;
    const RowContext::Visit visit(m_context, 0);
    if (reportHeaders.empty()) {
        beginPage(true);
    } else {
        beginPage(false);
        startColumn();
        Band band;
        for (const SectionPlan *plan : reportHeaders) {
            if (!m_context.holds(plan->visibleWhen))
                continue;
            m_builder.build(band, *plan, m_context);
            put(band);
        }
        // The page that starts with the report's header has the page header below it; a title page
        // has none.
        if (!m_wantsPage && m_document.pageCount() == 1)
            placePageHeader();
    }
    m_columns = m_setup.columns;
    startColumn();
}

qint32 PageFiller::columnWidth() const
{
    const Twips content = m_document.paperWidth - m_setup.left - m_setup.right;
    return ((content - m_setup.columnGap * (m_columns - 1)) / m_columns).count();
}

qint32 PageFiller::columnLeft() const
{
    return m_setup.left.count() + (columnWidth() + m_setup.columnGap.count()) * m_column;
}

qint32 PageFiller::freshRoom() const
{
    qint32 repeated = 0;
    for (const auto &[level, band] : m_repeated)
        repeated += band.height;
    const qint32 whole = m_bottom - m_columnTop;
    return repeated > whole / 2 ? whole : whole - repeated;
}

void PageFiller::beginPage(bool withHeader)
{
    if (m_document.pageCount() >= kMostPages) {
        throw ReportError(QStringLiteral("The report needs more than 100,000 pages. Choose fewer "
                                         "rows, or look whether a section is far too high."));
    }
    if (m_document.pageCount() > 0) {
        const int kept = m_columns;
        closePage();
        m_columns = kept;
        m_onPage();
    }
    const int columns = std::exchange(m_columns, 1);
    m_document.pages.emplace_back().runs.reserve(kRunsPerPage);
    m_facts.pageNumber = m_restartsNumbers || m_numbers.empty() ? 1 : m_numbers.back() + 1;
    m_numbers.push_back(m_facts.pageNumber);
    m_restartsNumbers = m_wantsPage = m_hasBody = false;
    m_context.beginPage();
    m_column = 0;
    m_y = m_contentTop = m_deepest = m_setup.top.count();
    m_above = nullptr;
    reserveFooter();
    if (withHeader)
        placePageHeader();
    m_columns = columns;
    checkRoom();
}

/// The footer is drawn when its page is full; what it may need is kept free from the start.
void PageFiller::reserveFooter()
{
    m_bottom = (m_document.paperHeight - m_setup.bottom).count();
    m_footersHere.clear();
    const RowContext::Visit visit(m_context, m_next);
    Band band;
    for (const SectionPlan *plan : m_footers) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(band, *plan, m_context);
        m_bottom -= std::max(band.height, plan->height);
        m_footersHere.push_back(plan);
    }
}

void PageFiller::placePageHeader()
{
    const RowContext::Visit visit(m_context, m_next);
    Band band;
    const int columns = std::exchange(m_columns, 1);
    for (const SectionPlan *plan : m_headers) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(band, *plan, m_context);
        if (band.height + kLeastRoom > m_bottom - m_setup.top.count())
            m_y += band.height; // reported below, with its measure
        else
            placeHere(band);
    }
    m_columns = columns;
    checkRoom();
}

void PageFiller::checkRoom() const
{
    if (room() >= kLeastRoom)
        return;
    const qint32 paper = (m_document.paperHeight - m_setup.top - m_setup.bottom).count();
    const qint32 footer = (m_document.paperHeight - m_setup.bottom).count() - m_bottom;
    throw ReportError(QStringLiteral(
        "The layout \"%1\" leaves no room for its rows on page %2: headers take %3 and the page "
        "footer %4 of %5 between the margins. Make these sections lower.")
                          .arg(m_context.plan().layout().name)
                          .arg(m_document.pageCount())
                          .arg(inches(m_y - m_setup.top.count()), inches(footer), inches(paper)));
}

void PageFiller::closePage()
{
    m_deepest = std::max(m_deepest, m_y);
    m_column = 0;
    m_y = m_bottom;
    m_columns = 1;
    {
        const RowContext::Visit visit(m_context, m_latest);
        Band band;
        for (const SectionPlan *plan : m_footersHere) {
            m_builder.build(band, *plan, m_context);
            const qint32 left = (m_document.paperHeight - m_setup.bottom).count() - m_y;
            if (band.height <= left) {
                placeHere(band);
                continue;
            }
            const BandSlice slice = BandSlicer(band, left).next(std::max(left, 1), true);
            placeHere(band, &slice);
            m_placer.cutValues().add(m_document.pageCount() - 1);
        }
    }
    m_pageTotals.push_back(m_context.pageTotals());
    pack(m_document.pages.back());
}

void PageFiller::nextColumn()
{
    m_deepest = std::max(m_deepest, m_y);
    if (m_column + 1 < m_columns && !m_wantsPage) {
        ++m_column;
        m_y = m_columnTop;
        startColumn();
        return;
    }
    beginPage(true);
    startColumn();
}

/// Group headers that are repeated come first, unless they fill half the column by themselves.
void PageFiller::startColumn()
{
    m_above = nullptr;
    if (m_column == 0)
        m_columnTop = m_y;
    const bool hasRoom = freshRoom() < m_bottom - m_columnTop;
    if (hasRoom) {
        for (const auto &[level, band] : m_repeated)
            placeHere(band);
    }
    m_contentTop = m_y;
}

void PageFiller::makeRoom(qint32 height, qsizetype position)
{
    m_next = position;
    if (m_wantsPage && m_hasBody) {
        nextColumn();
    } else if (m_wantsPage) {
        if (m_restartsNumbers)
            m_numbers.back() = 1;
        m_wantsPage = m_restartsNumbers = false;
    }
    if (height > room() && !isAtTop())
        nextColumn();
}

void PageFiller::put(const Band &band)
{
    const Section &section = *band.plan->section;
    if (section.newPageBefore)
        wantNewPage();
    makeRoom(0, band.position);
    const bool isKept = section.keepTogether && band.height <= freshRoom();
    makeRoom(isKept ? band.height : BandSlicer::leastHeight(band), band.position);
    if (tellsOfRow(section.kind))
        m_context.countOnPage(band.position);
    m_hasBody = true;
    if (band.height <= room())
        placeHere(band);
    else
        putSplit(band);
    m_latest = band.position;
    if (section.newPageAfter)
        wantNewPage();
}

/// A group's header stands before its first row, unless rows show in no other way.
bool PageFiller::tellsOfRow(SectionKind kind) const
{
    return kind == SectionKind::Detail || kind == SectionKind::GroupFooter
        || kind == SectionKind::ReportFooter
        || (kind == SectionKind::GroupHeader && m_hasNoDetails);
}

void PageFiller::putSplit(const Band &band)
{
    BandSlicer slicer(band, freshRoom());
    for (;;) {
        const BandSlice slice = slicer.next(room(), isAtTop());
        placeHere(band, &slice);
        if (slicer.isDone())
            break;
        nextColumn();
        m_hasBody = true;
    }
}

void PageFiller::placeHere(const Band &band, const BandSlice *slice)
{
    const auto duplicates
        = m_above == band.plan ? BandPlacer::Duplicates::Hide : BandPlacer::Duplicates::Show;
    m_placer.place(band, columnLeft(), m_y, columnWidth(), duplicates, slice);
    m_y += slice ? slice->height : band.height;
    m_above = band.plan;
}

void PageFiller::wantNewPage(Numbering numbering)
{
    m_wantsPage = true;
    m_restartsNumbers = m_restartsNumbers || numbering == Numbering::Restarts;
}

void PageFiller::repeatHeader(int level, const Band &header)
{
    m_repeated.emplace_back(level, header);
    m_repeated.back().second.outline.clear();
}

void PageFiller::endGroups(int outermost)
{
    std::erase_if(m_repeated, [&](const auto &repeated) { return repeated.first >= outermost; });
}

void PageFiller::leaveColumns()
{
    endGroups(0);
    if (m_columns == 1)
        return;
    m_y = std::max(m_deepest, m_y);
    m_columns = 1;
    m_column = 0;
    m_above = nullptr;
}

void PageFiller::finish()
{
    closePage();
    fillPageFields();
}

/// For each page the number of pages that are counted with it: numbers start again where a group
/// asks for it.
std::vector<int> PageFiller::sectionPageCounts() const
{
    std::vector<int> counts(m_numbers.size());
    int count = 0;
    for (size_t page = m_numbers.size(); page-- > 0;) {
        count = std::max(count, m_numbers[page]);
        counts[page] = count;
        if (m_numbers[page] == 1)
            count = 0;
    }
    return counts;
}

void PageFiller::fillPageFields()
{
    const std::vector<int> counts = sectionPageCounts();
    Band band;
    int page = -1;
    size_t runsAtStart = 0;
    for (const PageField &field : m_placer.pageFields()) {
        if (field.page != page) {
            page = field.page;
            runsAtStart = m_document.pages[size_t(page)].runs.size();
        }
        m_facts.pageNumber = m_numbers[size_t(page)];
        m_facts.pageCount = counts[size_t(page)];
        const auto added = quint32(m_document.pages[size_t(page)].runs.size() - runsAtStart);
        const auto *totals = field.context == &m_context ? &m_pageTotals[size_t(page)] : nullptr;
        const RowContext::Visit visit(*field.context, field.position, &field.running, totals);
        m_builder.rebuild(band, *field.plan, field.field, *field.context, field.height);
        m_placer.placeLate(field, band, added);
    }
}

} // namespace corvane
