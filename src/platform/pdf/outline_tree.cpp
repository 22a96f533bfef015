#include "platform/pdf/outline_tree.h"

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

/// An entry that further ones may go below.
struct Branch {
    Object entry;
    std::optional<Object> lastKid;
    int kidCount = 0;
};

void append(Branch &parent, Object item)
{
    item.replaceKey("/Parent", parent.entry);
    if (parent.lastKid) {
        item.replaceKey("/Prev", *parent.lastKid);
        parent.lastKid->replaceKey("/Next", item);
    } else {
        parent.entry.replaceKey("/First", item);
    }
    parent.lastKid = item;
    ++parent.kidCount;
}

/// A count below 0 says that the entry is closed.
void close(Branch &branch, int sign)
{
    if (!branch.lastKid)
        return;
    branch.entry.replaceKey("/Last", *branch.lastKid);
    branch.entry.replaceKey("/Count", Object::newInteger(qint64(sign) * branch.kidCount));
}

} // namespace

std::optional<QPDFObjectHandle> outlineTree(QPDF &pdf, const Document &document, const PageTree &pages)
{
    if (document.outline.empty())
        return std::nullopt;
    const std::vector<int> levels = outlineLevels(document.outline);
    std::vector<Branch> open {{pdf.makeIndirectObject(Object::parse("<</Type/Outlines>>")), {}, 0}};
    for (size_t i = 0; i < levels.size(); ++i) {
        const OutlineEntry &entry = document.outline[i];
        for (; open.size() > size_t(levels[i]) + 1; open.pop_back())
            close(open.back(), -1);
        Object item = pdf.makeIndirectObject(Object::newDictionary());
        item.replaceKey("/Title", Object::newUnicodeString(entry.title.toStdString()));
        item.replaceKey("/Dest", pages.destination(entry.page, entry.top));
        append(open.back(), item);
        open.push_back({item, {}, 0});
    }
    for (; open.size() > 1; open.pop_back())
        close(open.back(), -1);
    close(open.front(), 1);
    return open.front().entry;
}

std::vector<int> outlineLevels(const std::vector<OutlineEntry> &outline)
{
    std::vector<int> levels;
    levels.reserve(outline.size());
    for (const OutlineEntry &entry : outline)
        levels.push_back(std::clamp(entry.depth, 0, levels.empty() ? 0 : levels.back() + 1));
    return levels;
}

} // namespace corvane
