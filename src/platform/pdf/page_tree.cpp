#include "platform/pdf/page_tree.h"

#include "platform/pdf/content_stream.h"

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

/// So many pages hang on one node; two levels then serve a million pages without long lists.
constexpr size_t kPagesPerNode = 128;

Object number(qint64 hundredths)
{
    std::array<char, 24> text {};
    char *end = ContentStream::putNumber(text.data(), hundredths);
    return Object::newReal(std::string(text.data(), end));
}

Object indirectDictionary(QPDF &pdf, const char *type)
{
    Object dictionary = Object::newDictionary();
    dictionary.replaceKey("/Type", Object::newName(type));
    return pdf.makeIndirectObject(dictionary);
}

} // namespace

PageTree::PageTree(QPDF &pdf, const Document &document)
    : m_pdf(pdf)
    , m_root(indirectDictionary(pdf, "/Pages"))
{
    m_root.replaceKey("/MediaBox",
        Object::newArray(std::vector<Object> {Object::newInteger(0), Object::newInteger(0),
            number(hundredthsOf(document.paperWidth.count())),
            number(hundredthsOf(document.paperHeight.count()))}));
}

void PageTree::startNode()
{
    Object node = indirectDictionary(m_pdf, "/Pages");
    node.replaceKey("/Parent", m_root);
    node.replaceKey("/Kids", Object::newArray());
    m_nodes.push_back(node);
}

void PageTree::append(const QPDFObjectHandle &contents)
{
    if (m_pages.size() % kPagesPerNode == 0)
        startNode();
    Object page = indirectDictionary(m_pdf, "/Page");
    page.replaceKey("/Parent", m_nodes.back());
    page.replaceKey("/Contents", contents);
    m_nodes.back().getKey("/Kids").appendItem(page);
    m_pages.push_back(page);
}

void PageTree::finish(const QPDFObjectHandle &fonts)
{
    for (Object &node : m_nodes)
        node.replaceKey("/Count", Object::newInteger(node.getKey("/Kids").getArrayNItems()));
    m_root.replaceKey("/Kids", Object::newArray(m_nodes));
    m_root.replaceKey("/Count", Object::newInteger(qint64(m_pages.size())));
    Object resources = Object::newDictionary();
    resources.replaceKey("/Font", fonts);
    m_root.replaceKey("/Resources", m_pdf.makeIndirectObject(resources));
}

std::optional<QPDFObjectHandle> PageTree::outline(const Document &document)
{
    if (document.outline.empty())
        return std::nullopt;
    Object outlines = indirectDictionary(m_pdf, "/Outlines");
    std::vector<Object> items;
    for (const OutlineEntry &entry : document.outline) {
        const Object &page = m_pages[std::min(size_t(std::max(entry.page, 0)), m_pages.size() - 1)];
        Object item = m_pdf.makeIndirectObject(Object::newDictionary());
        item.replaceKey("/Title", Object::newUnicodeString(entry.title.toStdString()));
        item.replaceKey("/Parent", outlines);
        item.replaceKey("/Dest",
            Object::newArray(std::vector<Object> {page, Object::newName("/XYZ"), Object::newNull(),
                number(hundredthsOf((document.paperHeight - entry.top).count())), Object::newNull()}));
        if (!items.empty()) {
            item.replaceKey("/Prev", items.back());
            items.back().replaceKey("/Next", item);
        }
        items.push_back(item);
    }
    outlines.replaceKey("/First", items.front());
    outlines.replaceKey("/Last", items.back());
    outlines.replaceKey("/Count", Object::newInteger(qint64(items.size())));
    return outlines;
}

} // namespace corvane
