#include "platform/preview/view_trail.h"

namespace corvane {

namespace {

constexpr size_t kKept = 100;

std::optional<PageSpot> step(
    std::vector<PageSpot> &from, std::vector<PageSpot> &to, const PageSpot &here)
{
    if (from.empty())
        return std::nullopt;
    to.push_back(here);
    const PageSpot there = from.back();
    from.pop_back();
    return there;
}

} // namespace

void ViewTrail::leave(const PageSpot &here)
{
    m_ahead.clear();
    m_behind.push_back(here);
    if (m_behind.size() > kKept)
        m_behind.erase(m_behind.begin());
}

std::optional<PageSpot> ViewTrail::back(const PageSpot &here)
{
    return step(m_behind, m_ahead, here);
}

std::optional<PageSpot> ViewTrail::forward(const PageSpot &here)
{
    return step(m_ahead, m_behind, here);
}

} // namespace corvane
