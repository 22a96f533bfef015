#pragma once

#include "platform/engine/row_context.h"

#include <QtCore/QRect>

namespace corvane {

struct Galley;

/// One field of a band: where it stands after growing, and its text or what else it shows.
/// Lengths are twips from the band's upper left corner.
struct BandItem
{
    qint32 top = 0;
    qint32 height = 0;
    quint32 textStart = 0; ///< into Band::text
    quint32 textLength = 0;
    quint32 firstLine = 0; ///< into Band::lines
    quint32 lineCount = 0; ///< 0 with letters: one plain line of `lineWidth`
    qint32 lineWidth = 0;
    qint32 extra = -1; ///< into Band::extras
    const TextLook *look = nullptr;
    quint16 field = 0; ///< into SectionPlan::fields
    bool isVisible = true;
    bool isDuplicate = false; ///< shows only where no row of its section stands right above
    bool isCut = false;
    bool isFaulty = false;
    bool isOfPage = false; ///< filled when the pages are known; until then only its place counts

    quint32 lines() const { return lineCount > 0 ? lineCount : textLength > 0 ? 1 : 0; }
};

/// What few fields have.
struct BandExtra
{
    QString link;
    QString bookmark;
    QString fault; ///< why the field could not be filled
    QString referenceFault; ///< why its link or bookmark is missing
    std::vector<FilledRect> bars;
    int picture = -1; ///< into Document::pictures
    QRect pictureFrame;
    std::shared_ptr<const Galley> galley;
    RowContext::Snapshot running;
};

/// One section filled from one row, ready to be placed. Reused for many rows.
struct Band
{
    const SectionPlan *plan = nullptr;
    RowContext *context = nullptr;
    qsizetype position = -1;
    qint32 height = 0;
    QString text;
    std::vector<BandItem> items; ///< in the order of SectionPlan::fields
    std::vector<Line> lines;
    std::vector<BandExtra> extras;
    std::vector<std::pair<int, QString>>
        outline; ///< depth and title of the groups that begin with it

    qint32 fieldHeight(const BandItem &item) const
    {
        return plan->fields[item.field].field->height.count();
    }
    const Field &fieldOf(const BandItem &item) const { return *plan->fields[item.field].field; }
    BandExtra *extraOf(const BandItem &item)
    {
        return item.extra < 0 ? nullptr : &extras[size_t(item.extra)];
    }
    const BandExtra *extraOf(const BandItem &item) const
    {
        return item.extra < 0 ? nullptr : &extras[size_t(item.extra)];
    }
    BandExtra &needExtra(BandItem &item)
    {
        if (item.extra < 0) {
            item.extra = qint32(extras.size());
            extras.emplace_back();
        }
        return extras[size_t(item.extra)];
    }
    void clear()
    {
        height = 0;
        text.resize(0);
        items.clear();
        lines.clear();
        extras.clear();
        outline.clear();
    }
};

/// A header of a galley that comes again where the galley continues on a new page within [first,
/// last).
struct GalleyHeader
{
    size_t first = 0;
    size_t last = 0;
    Band band;
};

/// A sub-report's bands below each other, not yet on pages.
struct Galley
{
    std::vector<Band> bands;
    std::vector<GalleyHeader> headers;
    qint32 height = 0;
};

/// Moves fields below what grew or shrank and gives the band its height; `height` of the items is
/// known.
void settleBand(Band &band);

} // namespace corvane
