#include "platform/engine/band_slicer.h"

#include <algorithm>

namespace corvane {

GalleySlicer::GalleySlicer(const Galley &galley, qint32 freshRoom)
    : m_galley(galley)
    , m_freshRoom(freshRoom)
{
}

GalleySlicer::~GalleySlicer() = default;

bool GalleySlicer::isDone() const
{
    return m_next >= m_galley.bands.size();
}

qint32 GalleySlicer::remainingHeight() const
{
    return std::max(m_galley.height - m_taken, 0);
}

qint32 GalleySlicer::repeatHeaders(std::vector<PlacedBand> &placed, qint32 room) const
{
    qint32 used = 0;
    for (const GalleyHeader &header : m_galley.headers) {
        if (header.first >= m_next || m_next >= header.last || used + header.band.height > room / 2)
            continue;
        placed.push_back({&header.band, used, {}});
        used += header.band.height;
    }
    return used;
}

std::vector<PlacedBand> GalleySlicer::next(qint32 room, bool force)
{
    std::vector<PlacedBand> placed;
    qint32 used = m_next > 0 ? repeatHeaders(placed, room) : 0;
    const size_t headers = placed.size();
    while (!isDone()) {
        const Band &band = m_galley.bands[m_next];
        const bool mustTake = force && placed.size() == headers;
        if (!m_split && used + band.height <= room) {
            placed.push_back({&band, used, {}});
            used += band.height;
            m_taken += band.height;
            ++m_next;
            continue;
        }
        if (!m_split && band.height <= m_freshRoom && !mustTake)
            break;
        if (!m_split)
            m_split = std::make_unique<BandSlicer>(band, m_freshRoom);
        auto slice = std::make_shared<BandSlice>(m_split->next(room - used, mustTake));
        placed.push_back({&band, used, slice});
        used += slice->height;
        if (!m_split->isDone())
            break;
        m_split.reset();
        m_taken += band.height;
        ++m_next;
    }
    if (placed.size() == headers && headers > 0)
        placed.clear(); // headers alone say nothing
    return placed;
}

BandSlicer::BandSlicer(const Band &band, qint32 freshRoom)
    : m_band(band)
    , m_freshRoom(freshRoom)
    , m_progress(band.items.size())
    , m_rest(band.height)
{
    for (size_t i = 0; i < m_progress.size(); ++i) {
        const BandItem &item = band.items[i];
        m_progress[i].top = item.top;
        m_progress[i].rest = item.height;
        const BandExtra *extra = band.extraOf(item);
        if (extra && extra->galley)
            m_progress[i].galley = std::make_unique<GalleySlicer>(*extra->galley, freshRoom);
    }
}

bool BandSlicer::isDone() const
{
    return m_rest <= 0 && std::ranges::all_of(m_progress, &Progress::isDone);
}

qint32 BandSlicer::leastHeight(const Band &band)
{
    qint32 least = 0;
    for (const BandItem &item : band.items) {
        const BandExtra *extra = band.extraOf(item);
        if (extra && extra->galley && !extra->galley->bands.empty())
            least = std::max(least, item.top + leastHeight(extra->galley->bands.front()));
        else if (band.plan->fields[item.field].line == 0 && item.lines() > 0)
            least = std::max(
                least, item.top + item.look->look.padding.count() + item.look->lineHeight.count());
    }
    return least == 0 ? band.height : std::min(least, band.height);
}

BandSlice BandSlicer::next(qint32 room, bool force)
{
    BandSlice slice;
    slice.isContinued = m_isContinued;
    slice.items.resize(m_progress.size());
    bool hasTaken = false;
    for (size_t i = 0; i < m_progress.size(); ++i) {
        if (!m_progress[i].isDone && !m_band.plan->fields[m_band.items[i].field].isFrame())
            hasTaken = takeItem(i, slice.items[i], room, force && !hasTaken) || hasTaken;
    }
    const bool isLast = m_rest <= room
        && std::ranges::all_of(m_progress.begin(), m_progress.end(), [&](const Progress &progress) {
               const auto index = size_t(&progress - m_progress.data());
               return progress.isDone || m_band.plan->fields[m_band.items[index].field].isFrame();
           });
    slice.height = isLast ? std::max(m_rest, 0) : room;
    for (size_t i = 0; i < m_progress.size(); ++i) {
        if (!m_progress[i].isDone && m_band.plan->fields[m_band.items[i].field].isFrame())
            takeFrame(i, slice.items[i], slice.height);
        if (isLast)
            m_progress[i].isDone = true;
    }
    m_isContinued = true;
    if (isLast)
        m_rest = 0;
    else
        moveUp(room);
    return slice;
}

bool BandSlicer::takeItem(size_t index, ItemSlice &slice, qint32 room, bool force)
{
    Progress &progress = m_progress[index];
    if (progress.top >= room)
        return false;
    force = force && progress.top <= 0; // what stands lower comes to the top of a later page
    slice.top = progress.top;
    slice.isContinued = progress.isStarted;
    bool isTaken = false;
    if (progress.galley)
        isTaken = takeGalley(index, slice, room, force);
    else if (m_band.items[index].lineCount > 0)
        isTaken = takeText(index, slice, room, force);
    else
        isTaken = takeWhole(index, slice, room, force);
    slice.isShown = isTaken;
    progress.isStarted = progress.isStarted || isTaken;
    return isTaken;
}

bool BandSlicer::takeText(size_t index, ItemSlice &slice, qint32 room, bool force)
{
    Progress &progress = m_progress[index];
    const BandItem &item = m_band.items[index];
    const qint32 padding = item.look->look.padding.count();
    const qint32 line = item.look->lineHeight.count();
    qint32 fits = (room - progress.top - padding) / line;
    if (force && fits < 1)
        fits = 1;
    if (fits < 1)
        return false;
    slice.firstLine = progress.linesDone;
    slice.lineCount = std::min(quint32(fits), item.lineCount - progress.linesDone);
    progress.linesDone += slice.lineCount;
    progress.isDone = progress.linesDone == item.lineCount;
    const qint32 taken = qint32(slice.lineCount) * line + padding;
    slice.height = progress.isDone ? std::max(progress.rest, taken) : taken;
    slice.height = std::max(std::min(slice.height, room - slice.top), taken);
    progress.rest = progress.isDone ? 0 : std::max(progress.rest - taken, 0);
    return true;
}

bool BandSlicer::takeGalley(size_t index, ItemSlice &slice, qint32 room, bool force)
{
    Progress &progress = m_progress[index];
    slice.bands = progress.galley->next(room - progress.top, force);
    progress.isDone = progress.galley->isDone();
    if (slice.bands.empty())
        return progress.isDone;
    slice.height = std::min(progress.rest, room - progress.top);
    progress.rest = progress.isDone ? 0 : progress.galley->remainingHeight();
    return true;
}

/// One line, a picture, bars: they stand on one page. What is taller than any page is cut at its
/// foot.
bool BandSlicer::takeWhole(size_t index, ItemSlice &slice, qint32 room, bool force)
{
    Progress &progress = m_progress[index];
    const bool isEmpty = m_band.items[index].lines() == 0 && m_band.items[index].extra < 0;
    const bool fits = progress.top + progress.rest <= room;
    if (!fits && !force && (progress.rest <= m_freshRoom || progress.top > 0) && !isEmpty)
        return false;
    slice.lineCount = m_band.items[index].lines();
    slice.height = std::min(progress.rest, std::max(room - progress.top, 1));
    progress.isDone = true;
    progress.rest = 0;
    return true;
}

void BandSlicer::takeFrame(size_t index, ItemSlice &slice, qint32 room)
{
    Progress &progress = m_progress[index];
    slice.top = std::max(progress.top, 0);
    slice.height = std::min(progress.top + progress.rest, room) - slice.top;
    slice.isShown = slice.height > 0 && progress.top < room;
    progress.isDone = progress.top + progress.rest <= room;
}

/// The next slice starts where this one ended; fields keep their distance from what is above them.
void BandSlicer::moveUp(qint32 room)
{
    const auto &fields = m_band.plan->fields;
    qint32 pushed = 0;
    for (size_t i = 0; i < m_progress.size(); ++i) {
        Progress &progress = m_progress[i];
        const qint32 expected = progress.top - room;
        if (fields[i].isFrame()) {
            progress.top = expected;
            continue;
        }
        qint32 top = std::max(expected, 0);
        for (size_t above = 0; above < m_progress.size(); ++above) {
            if (above != i && !m_progress[above].isDone && !fields[above].isFrame()
                && fields[above].bottom() <= fields[i].top())
                top = std::max(top,
                    m_progress[above].top + m_progress[above].rest + fields[i].top()
                        - fields[above].bottom());
        }
        if (!progress.isDone)
            pushed = std::max(pushed, top + progress.rest - std::max(expected + progress.rest, 0));
        progress.top = top;
    }
    m_rest = std::max(m_rest - room, 0);
    for (size_t i = 0; i < m_progress.size(); ++i) {
        if (!m_progress[i].isDone && !fields[i].isFrame())
            m_rest = std::max(m_rest, m_progress[i].top + m_progress[i].rest);
        else if (!m_progress[i].isDone)
            m_progress[i].rest += pushed;
    }
}

} // namespace corvane
