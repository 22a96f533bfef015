#include "platform/engine/band.h"

#include <algorithm>
#include <optional>

namespace corvane {

namespace {

/// A field keeps its distance from the lowest of the fields that the layout puts above it.
qint32 settledTop(const Band &band, size_t index)
{
    const auto &fields = band.plan->fields;
    const qint32 top = fields[index].top();
    std::optional<qint32> lowest;
    for (size_t above = 0; above < band.items.size(); ++above) {
        if (above == index || fields[above].isFrame() || fields[above].bottom() > top
            || fields[above].field->height.count() == 0)
            continue;
        const BandItem &item = band.items[above];
        lowest = std::max(lowest.value_or(item.top + item.height + top - fields[above].bottom()),
            item.top + item.height + top - fields[above].bottom());
    }
    return lowest.value_or(top);
}

/// How far the bottom of what stands inside a rectangle, or beside a vertical line, has moved.
std::optional<qint32> shiftWithin(const Band &band, const FieldPlan &frame)
{
    std::optional<qint32> shift;
    for (const BandItem &item : band.items) {
        const FieldPlan &inner = band.plan->fields[item.field];
        if (!inner.isFrame() && inner.top() >= frame.top() && inner.bottom() <= frame.bottom())
            shift = std::max(shift.value_or(item.top + item.height - inner.bottom()),
                item.top + item.height - inner.bottom());
    }
    return shift;
}

/// Cells with a background or borders end where their neighbours with the same lower edge end.
void stretchCells(Band &band)
{
    for (BandItem &item : band.items) {
        const FieldPlan &cell = band.plan->fields[item.field];
        if (!item.look || !item.look->hasFrame() || cell.isFrame())
            continue;
        for (const BandItem &neighbour : band.items) {
            const FieldPlan &other = band.plan->fields[neighbour.field];
            if (!other.isFrame() && other.bottom() == cell.bottom() && other.top() >= cell.top())
                item.height = std::max(item.height, neighbour.top + neighbour.height - item.top);
        }
    }
}

} // namespace

void settleBand(Band &band)
{
    const auto &fields = band.plan->fields;
    band.height = band.plan->height;
    const bool isAsDrawn = std::ranges::all_of(
        band.items, [&](const BandItem &item) { return item.height == band.fieldHeight(item); });
    if (isAsDrawn)
        return;
    // What stands above comes first: the order of tops, not the reading order.
    std::vector<size_t> byTop(band.items.size());
    for (size_t i = 0; i < byTop.size(); ++i)
        byTop[i] = i;
    std::ranges::stable_sort(byTop, {}, [&](size_t i) { return fields[i].top(); });
    for (const size_t i : byTop)
        band.items[i].top = settledTop(band, i);
    stretchCells(band);
    std::optional<qint32> height;
    for (size_t i = 0; i < band.items.size(); ++i) {
        BandItem &item = band.items[i];
        const auto shift = fields[i].isFrame() ? shiftWithin(band, fields[i]) : std::nullopt;
        if (shift)
            item.height = std::max(fields[i].bottom() + *shift - item.top, 0);
        const qint32 needed = item.top + item.height + band.plan->height - fields[i].bottom();
        height = std::max(height.value_or(needed), needed);
    }
    band.height = std::max(height.value_or(band.plan->height), 0);
}

} // namespace corvane
