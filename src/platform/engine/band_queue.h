#pragma once

#include "platform/engine/band_sink.h"
#include "platform/engine/page_filler.h"

#include <deque>

namespace corvane {

/// Holds bands back until it is known what they have to stay together with: a header with what
/// follows it, a group that is to stay whole with all of its bands. Never more than a page's worth
/// is held.
class BandQueue final : public BandSink
{
public:
    explicit BandQueue(PageFiller &pages)
        : m_pages(pages)
    {
    }

    void openGroup(int level, const Group &group, bool isFirst) override;
    void closeGroup(int level, bool wantsPage) override;
    void addHeader(Band &band, int level, bool isRepeated) override;
    /// Straight to the page when nothing is held.
    void add(Band &band) override;
    void finish() { settle(true); }

private:
    struct Entry
    {
        Band band;
        int opens = -1; ///< outermost group level that begins here
        int headerLevel = -1; ///< -1: no header
        bool isRepeated = false;
        bool wantsPage = false;
        bool restartsNumbers = false;
    };
    static constexpr size_t kOpen = size_t(-1);
    struct KeptGroup
    {
        size_t first = 0; ///< entries count from the first that was ever held
        size_t end = kOpen;
        int level = 0;
    };

    Entry &hold(Band &band);
    void settle(bool isFinished);
    /// How many entries from the front stay together; 0: not known yet.
    size_t unitSize(bool isFinished) const;
    qint32 heightOf(size_t count) const;
    void begin(const Entry &entry);
    void release(size_t count);

    PageFiller &m_pages;
    std::deque<Entry> m_entries;
    std::vector<KeptGroup> m_kept;
    size_t m_released = 0;
    Entry m_opening; ///< what openGroup() asked of the next entry
};

} // namespace corvane
