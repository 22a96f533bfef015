#pragma once

#include "platform/engine/band_slicer.h"
#include "platform/engine/value_tally.h"

namespace corvane {

/// A field whose letters come when its page, or the last page, is finished.
struct PageField
{
    int page = 0;
    quint32 run = 0; ///< index into Page::runs where its runs go
    quint32 block = 0; ///< index into Page::blocks that they belong to
    const SectionPlan *plan = nullptr;
    quint16 field = 0;
    RowContext *context = nullptr;
    qsizetype position = -1;
    qint32 x = 0; ///< of the band, twips
    qint32 top = 0; ///< of the field, twips
    qint32 height = 0;
    RowContext::Snapshot running;
};

/// Draws bands onto pages of a document.
class BandPlacer
{
public:
    explicit BandPlacer(Document &document)
        : m_document(document)
    {
    }

    enum class Duplicates { Hide, Show };

    /// The band, or a slice of it, with its upper left corner at (x, y) of the last page.
    void place(const Band &band, qint32 x, qint32 y, qint32 width, Duplicates duplicates,
        const BandSlice *slice = nullptr);
    /// Letters for a field that waited, into a page that is otherwise finished; runs and blocks
    /// behind move on.
    void placeLate(const PageField &where, const Band &filled, quint32 runsBefore);

    std::vector<PageField> &pageFields() { return m_pageFields; }
    /// What to tell of values that were cut or could not be computed.
    QStringList notes() const;
    ValueTally &cutValues() { return m_cut; }

private:
    struct Spot
    {
        const Band &band;
        qint32 x;
        qint32 y;
    };

    Page &page() { return m_document.pages[size_t(m_page)]; }
    void paint(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void paintBorder(const Border &border, const QRect &frame);
    void fill(qint32 x, qint32 y, qint32 width, qint32 height, QRgb colour);
    void startBlock(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void putText(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void underline(size_t firstRun, const Spot &spot, const BandItem &item);
    void putReferences(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void wait(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void placeGalley(const Spot &spot, const BandItem &item, const ItemSlice &slice);
    void placeItem(const Spot &spot, const BandItem &item, const ItemSlice &part, bool isShown);
    void count(const Spot &spot, const BandItem &item);

    Document &m_document;
    FaceIndex m_faceIndex = [this](const FontFacePtr &face) { return faceIndex(m_document, face); };
    int m_page = 0;
    int m_line = -1; ///< of the band whose block is open
    std::vector<PageField> m_pageFields;
    ValueTally m_cut;
    ValueTally m_faults;
    ValueTally m_referenceFaults;
};

} // namespace corvane
