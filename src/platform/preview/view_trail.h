#pragma once

#include "platform/preview/preview_layout.h"

#include <optional>
#include <vector>

namespace corvane {

/// The spots that a reader jumped away from, to go back to and forward again.
class ViewTrail
{
public:
    bool canGoBack() const { return !m_behind.empty(); }
    bool canGoForward() const { return !m_ahead.empty(); }

    /// A jump leaves `here`; what was ahead is forgotten, and the oldest spots of a long trail.
    void leave(const PageSpot &here);
    /// The spot to go to from `here`. Empty: none in this direction.
    std::optional<PageSpot> back(const PageSpot &here);
    std::optional<PageSpot> forward(const PageSpot &here);
    void clear() { *this = {}; }

private:
    std::vector<PageSpot> m_behind; ///< the last one left stands last
    std::vector<PageSpot> m_ahead; ///< the next one stands last
};

} // namespace corvane
