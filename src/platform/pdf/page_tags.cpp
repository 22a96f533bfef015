#include "platform/pdf/page_tags.h"

#include <charconv>
#include <limits>

namespace corvane {

namespace {

bool holds(const LinkArea &area, const TextRun &run)
{
    return run.x >= area.x && run.x < area.x + area.width && run.y >= area.y && run.y <= area.y + area.height;
}

} // namespace

PageTags::PageTags(const Document &document)
    : m_document(document)
    , m_tagger(document, m_tree)
{
}

void PageTags::beginPage(int pageIndex, std::vector<TaggedLink> links)
{
    m_page = pageIndex;
    m_links = std::move(links);
    m_linkElements.assign(m_links.size(), std::nullopt);
}

void PageTags::openPicture(ContentStream &out, const PlacedPicture &picture)
{
    if (picture.description.isEmpty()) {
        out.text("/Artifact<</Type/Layout>>BDC\n");
        return;
    }
    const Id figure = m_tree.create(StructureRole::Figure);
    const qint64 bottom = hundredthsOf(m_document.paperHeight.count() - picture.y - picture.height);
    m_tree.describe(figure, {picture.description,
        QRect(int(hundredthsOf(picture.x)), int(bottom), int(hundredthsOf(picture.width)), int(hundredthsOf(picture.height)))});
    m_pictures.emplace(picture.y, figure);
    open(out, figure);
}

void PageTags::beginBlock(const Page &page, size_t block)
{
    placePictures(page.blocks[block].top);
    m_columns = m_tagger.tag(page, block);
}

size_t PageTags::openRuns(ContentStream &out, std::span<const TextRun> runs)
{
    if (m_columns.empty()) {
        out.text("/Artifact<</Type/Pagination>>BDC\n");
        return runs.size();
    }
    const TextRun &first = runs.front();
    const size_t link = linkAt(first);
    size_t count = 1;
    while (count < runs.size() && runs[count].column == first.column && linkAt(runs[count]) == link)
        ++count;
    const Id element = m_columns[std::min<size_t>(first.column, m_columns.size() - 1)];
    open(out, link == kNoLink ? element : linkElement(link, element));
    return count;
}

/// Links that no text stands in, as around a picture, come behind the page's text.
void PageTags::endPage()
{
    placePictures(std::numeric_limits<qint32>::max());
    for (size_t i = 0; i < m_links.size(); ++i) {
        const bool hasText = m_linkElements[i].has_value();
        const Id link = hasText ? *m_linkElements[i] : m_tree.create(StructureRole::Link);
        m_tree.addAnnotation(link, m_page, m_links[i].annotation);
        if (!hasText)
            m_tagger.place(link);
    }
}

void PageTags::open(ContentStream &out, Id element)
{
    const std::string_view role = roleName(m_tree.elements()[element].role);
    char *at = out.room(role.size() + 40);
    *at++ = '/';
    at = std::copy(role.begin(), role.end(), at);
    at = std::copy_n("<</MCID ", 8, at);
    at = std::to_chars(at, at + 12, m_tree.addContent(element, m_page)).ptr;
    out.commit(std::copy_n(">>BDC\n", 6, at));
}

size_t PageTags::linkAt(const TextRun &run) const
{
    for (size_t i = 0; i < m_links.size(); ++i) {
        if (holds(m_links[i].area, run))
            return i;
    }
    return kNoLink;
}

StructureTree::Id PageTags::linkElement(size_t link, Id around)
{
    std::optional<Id> &element = m_linkElements[link];
    if (!element)
        element = m_tree.add(StructureRole::Link, around);
    return *element;
}

void PageTags::placePictures(qint32 downTo)
{
    while (!m_pictures.empty() && m_pictures.begin()->first <= downTo) {
        m_tagger.place(m_pictures.begin()->second);
        m_pictures.erase(m_pictures.begin());
    }
}

} // namespace corvane
