#pragma once

#include "platform/pdf/block_tagger.h"
#include "platform/pdf/content_stream.h"

namespace corvane {

/// A link of a page and the number of its annotation in the file, from 0.
struct TaggedLink {
    LinkArea area;
    int annotation = 0;
};

/// Marks what stands on the pages with the structure elements it belongs to (ISO 32000-1, 14.7.4). Each
/// open…() writes the operator that begins a marked content; what ends it is always the same.
class PageTags
{
public:
    explicit PageTags(const Document &document);

    static constexpr std::string_view kEnd = "EMC\n";

    void beginPage(int pageIndex, std::vector<TaggedLink> links);
    /// A picture without a description only decorates.
    void openPicture(ContentStream &out, const PlacedPicture &picture);
    void beginBlock(const Page &page, size_t block);
    /// Begins with the first of these runs of the block. @return how many of them belong to it.
    size_t openRuns(ContentStream &out, std::span<const TextRun> runs);
    void endPage();

    void finish() { m_tagger.finish(); }
    const StructureTree &tree() const { return m_tree; }

private:
    using Id = StructureTree::Id;
    static constexpr size_t kNoLink = size_t(-1);

    void open(ContentStream &out, Id element);
    size_t linkAt(const TextRun &run) const;
    Id linkElement(size_t link, Id around);
    void placePictures(qint32 downTo);

    const Document &m_document;
    StructureTree m_tree;
    BlockTagger m_tagger;
    int m_page = 0;
    std::span<const Id> m_columns; ///< elements of the block; none: it is no part of the text
    std::vector<TaggedLink> m_links;
    std::vector<std::optional<Id>> m_linkElements;
    std::multimap<qint32, Id> m_pictures; ///< by their tops; not yet between the blocks
};

} // namespace corvane
