#include "platform/engine/band_queue.h"

#include <algorithm>

namespace corvane {

void BandQueue::openGroup(int level, const Group &group, bool isFirst)
{
    if (m_opening.opens < 0)
        m_opening.opens = level;
    m_opening.wantsPage
        = m_opening.wantsPage || ((group.newPageBefore || group.resetPageNumber) && !isFirst);
    m_opening.restartsNumbers = m_opening.restartsNumbers || group.resetPageNumber;
    if (group.keepTogether == KeepTogether::WholeGroup)
        m_kept.push_back({m_released + m_entries.size(), kOpen, level});
}

void BandQueue::closeGroup(int level, bool wantsPage)
{
    m_opening.wantsPage = m_opening.wantsPage || wantsPage;
    for (KeptGroup &kept : m_kept) {
        if (kept.level == level && kept.end == kOpen)
            kept.end = m_released + m_entries.size();
    }
}

BandQueue::Entry &BandQueue::hold(Band &band)
{
    Entry &entry = m_entries.emplace_back(std::exchange(m_opening, {}));
    entry.band = std::exchange(band, {});
    return entry;
}

void BandQueue::addHeader(Band &band, int level, bool isRepeated)
{
    Entry &entry = hold(band);
    entry.headerLevel = level;
    entry.isRepeated = isRepeated;
    settle(false);
}

void BandQueue::add(Band &band)
{
    const bool isHeld = !m_entries.empty() || m_opening.opens >= 0 || m_opening.wantsPage
        || std::ranges::any_of(m_kept, [this](const KeptGroup &kept) {
               return kept.end == kOpen && kept.first >= m_released;
           });
    if (!isHeld) {
        m_pages.put(band);
        return;
    }
    hold(band);
    settle(false);
}

void BandQueue::settle(bool isFinished)
{
    while (!m_entries.empty()) {
        const size_t count = unitSize(isFinished);
        if (count == 0)
            return;
        release(count);
    }
}

qint32 BandQueue::heightOf(size_t count) const
{
    qint32 height = 0;
    for (size_t i = 0; i < std::min(count, m_entries.size()); ++i)
        height += m_entries[i].band.height;
    return height;
}

size_t BandQueue::unitSize(bool isFinished) const
{
    for (size_t i = 0; i < m_entries.size(); ++i) {
        for (const KeptGroup &kept : m_kept) {
            if (kept.first != m_released + i || kept.end <= kept.first)
                continue;
            const bool isComplete = kept.end != kOpen || isFinished;
            const size_t end = kept.end != kOpen ? kept.end - m_released : m_entries.size();
            const bool fits = heightOf(end) <= m_pages.freshRoom();
            if (fits && isComplete)
                return end;
            if (fits)
                return 0;
        }
        if (m_entries[i].headerLevel < 0)
            return i + 1;
    }
    return isFinished || heightOf(m_entries.size()) > m_pages.freshRoom() ? m_entries.size() : 0;
}

/// Groups that end before an entry are told to the pages, and what it asks of them.
void BandQueue::begin(const Entry &entry)
{
    if (entry.opens >= 0)
        m_pages.endGroups(entry.opens);
    if (entry.restartsNumbers)
        m_pages.wantNewPage(PageFiller::Numbering::Restarts);
    else if (entry.wantsPage)
        m_pages.wantNewPage();
}

void BandQueue::release(size_t count)
{
    begin(m_entries.front());
    const Band &last = m_entries[count - 1].band;
    const bool isLastKept = last.plan->section->keepTogether;
    qint32 needed = heightOf(count);
    if (!isLastKept || needed > m_pages.freshRoom())
        needed = heightOf(count - 1) + BandSlicer::leastHeight(last);
    m_pages.makeRoom(0, m_entries.front().band.position);
    m_pages.makeRoom(std::min(needed, m_pages.freshRoom()), m_entries.front().band.position);
    for (size_t i = 0; i < count; ++i) {
        const Entry entry = std::move(m_entries.front());
        m_entries.pop_front();
        ++m_released;
        if (i > 0)
            begin(entry);
        m_pages.put(entry.band);
        if (entry.isRepeated)
            m_pages.repeatHeader(entry.headerLevel, entry.band);
    }
    std::erase_if(
        m_kept, [&](const KeptGroup &kept) { return kept.end != kOpen && kept.end <= m_released; });
}

} // namespace corvane
