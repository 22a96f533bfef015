#pragma once

#include <QtCore/QList>

#include <utility>
#include <vector>

namespace corvane {

enum class PageOrder { FirstPageFirst, LastPageFirst };
enum class CopyOrder { Collated, PageByPage };

/// Pages from 0 that the ranges (first and last page, from 1) name, each once, in the document's
/// order. What lies beyond the document is passed over.
std::vector<int> pagesInRanges(const QList<std::pair<int, int>> &ranges, int pageCount);

/// The pages in the order in which a printer that can neither copy nor reverse has to get them.
std::vector<int> printingOrder(
    std::vector<int> pages, PageOrder order, int copies, CopyOrder copyOrder);

} // namespace corvane
