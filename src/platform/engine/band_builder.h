#pragma once

#include "platform/engine/band.h"
#include "platform/engine/picture_store.h"

#include <functional>

namespace corvane {

/// Fills sections: evaluates their fields for the current row, breaks texts into lines, lets fields
/// grow.
class BandBuilder
{
public:
    /// Lays out the sub-report of a field for the current row.
    using SubreportSource
        = std::function<std::shared_ptr<const Galley>(const FieldPlan &field, RowContext &context)>;

    BandBuilder(Document &document, TextLooks &looks, const ValueTextStyle &style)
        : m_pictures(document)
        , m_breaker(looks.fonts())
        , m_style(style)
    {
    }
    void setSubreportSource(SubreportSource source) { m_subreports = std::move(source); }

    /// Fills `band`, whose former content goes, from the context's current row.
    void build(Band &band, const SectionPlan &plan, RowContext &context);

    /// One field alone, in a frame whose height is settled: for fields that wait for their page.
    void rebuild(
        Band &band, const SectionPlan &plan, size_t field, RowContext &context, qint32 height);

private:
    void addItem(Band &band, size_t field);
    void fill(Band &band, BandItem &item, const FieldPlan &plan);
    void fillValue(Band &band, BandItem &item, const FieldPlan &plan);
    void fillPicture(Band &band, BandItem &item, const FieldPlan &plan);
    void fillBarcode(Band &band, BandItem &item, const FieldPlan &plan);
    void fillCheckMark(Band &band, BandItem &item, const FieldPlan &plan);
    void fillSubreport(Band &band, BandItem &item, const FieldPlan &plan);
    void fillReferences(Band &band, BandItem &item, const FieldPlan &plan);
    void markFaulty(Band &band, BandItem &item, const QString &words);
    void hideDuplicate(Band &band, BandItem &item, const FieldPlan &plan);
    void breakText(Band &band, BandItem &item, const FieldPlan &plan);
    void cut(Band &band, BandItem &item, Twips width, size_t lines);

    PictureStore m_pictures;
    LineBreaker m_breaker;
    const ValueTextStyle &m_style;
    SubreportSource m_subreports;
};

} // namespace corvane
