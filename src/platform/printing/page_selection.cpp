#include "platform/printing/page_selection.h"

#include <algorithm>

namespace corvane {

std::vector<int> pagesInRanges(const QList<std::pair<int, int>> &ranges, int pageCount)
{
    std::vector<int> pages;
    for (const auto &[first, last] : ranges) {
        for (int page = std::max(first, 1); page <= std::min(last, pageCount); ++page)
            pages.push_back(page - 1);
    }
    std::ranges::sort(pages);
    pages.erase(std::ranges::unique(pages).begin(), pages.end());
    return pages;
}

std::vector<int> printingOrder(
    std::vector<int> pages, PageOrder order, int copies, CopyOrder copyOrder)
{
    if (order == PageOrder::LastPageFirst)
        std::ranges::reverse(pages);
    std::vector<int> job;
    job.reserve(pages.size() * size_t(std::max(copies, 1)));
    if (copyOrder == CopyOrder::Collated) {
        for (int copy = 0; copy < copies; ++copy)
            job.insert(job.end(), pages.begin(), pages.end());
    } else {
        for (const int page : pages)
            job.insert(job.end(), size_t(std::max(copies, 0)), page);
    }
    return job;
}

} // namespace corvane
