#pragma once

#include "platform/engine/band_builder.h"
#include "platform/engine/band_placer.h"

namespace corvane {

/// Fills pages and newspaper columns with bands, from top to bottom; draws page headers and footers
/// and repeats group headers. Positions are twips from the paper's upper edge.
class PageFiller
{
public:
    /// `onPage` is called for each new page and may throw to end the run.
    PageFiller(Document &document, RowContext &context, BandBuilder &builder, BandPlacer &placer,
        RunFacts &facts, std::function<void()> onPage);

    /// The first page with the report's header.
    void start();
    /// Places a band here or on the next column or page, split where it is taller than these.
    void put(const Band &band);
    /// Starts a column unless so much fits here; `position` is the row that comes next.
    void makeRoom(qint32 height, qsizetype position);
    /// The height of an empty column below the headers that are repeated there.
    qint32 freshRoom() const;

    enum class Numbering { Continues, Restarts };
    /// The next band starts a page; not a second time at the top of one.
    void wantNewPage(Numbering numbering = Numbering::Continues);
    /// From here on the header of a level comes again on each new column, until endGroups().
    void repeatHeader(int level, const Band &header);
    void endGroups(int outermost);
    /// What follows is as wide as the page and stands below all columns.
    void leaveColumns();
    /// Closes the last page and fills the fields that waited for page numbers and totals.
    void finish();

private:
    bool isAtTop() const { return m_y <= m_contentTop; }
    qint32 room() const { return m_bottom - m_y; }
    qint32 columnWidth() const;
    qint32 columnLeft() const;
    void beginPage(bool withHeader);
    void placePageHeader();
    void reserveFooter();
    void closePage();
    void nextColumn();
    void startColumn();
    void checkRoom() const;
    void placeHere(const Band &band, const BandSlice *slice = nullptr);
    bool tellsOfRow(SectionKind kind) const;
    void putSplit(const Band &band);
    void fillPageFields();
    std::vector<int> sectionPageCounts() const;

    Document &m_document;
    RowContext &m_context;
    BandBuilder &m_builder;
    BandPlacer &m_placer;
    RunFacts &m_facts;
    std::function<void()> m_onPage;
    const PageSetup &m_setup;
    std::vector<const SectionPlan *> m_headers;
    std::vector<const SectionPlan *> m_footers;
    bool m_hasNoDetails;
    std::vector<const SectionPlan *> m_footersHere; ///< those that show on this page

    int m_columns = 1;
    int m_column = 0;
    qint32 m_y = 0;
    qint32 m_columnTop = 0;
    qint32 m_contentTop = 0; ///< below what is repeated in this column
    qint32 m_bottom = 0;
    qint32 m_deepest = 0; ///< of all columns of this page
    bool m_hasBody = false; ///< more than headers stands on this page
    bool m_wantsPage = false;
    bool m_restartsNumbers = false;
    qsizetype m_next = -1; ///< row that is placed next
    qsizetype m_latest = -1; ///< row that was placed last
    const SectionPlan *m_above = nullptr; ///< section of the band right above, in this column
    std::vector<std::pair<int, Band>> m_repeated; ///< level, header
    std::vector<int> m_numbers; ///< by page
    std::vector<std::vector<AggregateValue>> m_pageTotals;
};

} // namespace corvane
