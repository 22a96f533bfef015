#pragma once

#include "platform/engine/band.h"

namespace corvane {

struct BandSlice;

/// A band of a sub-report on a page; without a slice it is all there.
struct PlacedBand
{
    const Band *band = nullptr;
    qint32 top = 0; ///< from the sub-report field's upper edge
    std::shared_ptr<const BandSlice> slice;
};

/// What of a field stands on one page.
struct ItemSlice
{
    qint32 top = 0;
    qint32 height = 0;
    quint32 firstLine = 0;
    quint32 lineCount = 0;
    bool isShown = false;
    bool isContinued = false; ///< some of it stands on an earlier page
    std::vector<PlacedBand> bands; ///< of a sub-report
};

/// What of a band stands on one page or newspaper column.
struct BandSlice
{
    std::vector<ItemSlice> items; ///< in the order of Band::items
    qint32 height = 0;
    bool isContinued = false;
};

class BandSlicer;

/// Takes bands of a galley from its front, as many as a page has room for.
class GalleySlicer
{
public:
    GalleySlicer(const Galley &galley, qint32 freshRoom);
    ~GalleySlicer();

    bool isDone() const;
    /// With `force` at least a little is taken, however small the room.
    std::vector<PlacedBand> next(qint32 room, bool force);
    qint32 remainingHeight() const;

private:
    qint32 repeatHeaders(std::vector<PlacedBand> &placed, qint32 room) const;

    const Galley &m_galley;
    qint32 m_freshRoom;
    size_t m_next = 0;
    qint32 m_taken = 0;
    std::unique_ptr<BandSlicer> m_split; ///< of a band taller than a page that is under way
};

/// Splits a band that is taller than its page between lines. Nothing is lost, and each forced slice
/// takes some.
class BandSlicer
{
public:
    /// `freshRoom`: height of an empty page; what fits there is not split.
    BandSlicer(const Band &band, qint32 freshRoom);

    bool isDone() const;
    BandSlice next(qint32 room, bool force);

    /// Height of the smallest slice that makes sense to leave at the end of a page.
    static qint32 leastHeight(const Band &band);

private:
    struct Progress
    {
        qint32 top = 0;
        quint32 linesDone = 0;
        bool isDone = false;
        bool isStarted = false;
        qint32 rest = 0; ///< height that is still to come
        std::unique_ptr<GalleySlicer> galley;
    };

    bool takeText(size_t index, ItemSlice &slice, qint32 room, bool force);
    bool takeGalley(size_t index, ItemSlice &slice, qint32 room, bool force);
    bool takeWhole(size_t index, ItemSlice &slice, qint32 room, bool force);
    void takeFrame(size_t index, ItemSlice &slice, qint32 room);
    bool takeItem(size_t index, ItemSlice &slice, qint32 room, bool force);
    void moveUp(qint32 room);

    const Band &m_band;
    qint32 m_freshRoom;
    std::vector<Progress> m_progress;
    qint32 m_rest; ///< height of the band that is still to come
    bool m_isContinued = false;
};

} // namespace corvane
