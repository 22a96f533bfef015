#include "platform/pdf/page_tree.h"

#include "platform/pdf/content_stream.h"

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

/// So many pages hang on one node; two levels then serve a million pages without long lists.
constexpr size_t kPagesPerNode = 128;

Object indirectDictionary(QPDF &pdf, const char *type)
{
    Object dictionary = Object::newDictionary();
    dictionary.replaceKey("/Type", Object::newName(type));
    return pdf.makeIndirectObject(dictionary);
}

} // namespace

QPDFObjectHandle pdfNumber(qint64 hundredths)
{
    std::array<char, 24> text {};
    char *end = ContentStream::putNumber(text.data(), hundredths);
    return Object::newReal(std::string(text.data(), end));
}

PageTree::PageTree(QPDF &pdf, const Document &document)
    : m_pdf(pdf)
    , m_paperHeight(document.paperHeight)
    , m_root(indirectDictionary(pdf, "/Pages"))
{
    m_root.replaceKey("/MediaBox",
        Object::newArray(std::vector<Object> {Object::newInteger(0), Object::newInteger(0),
            pdfNumber(hundredthsOf(document.paperWidth.count())),
            pdfNumber(hundredthsOf(document.paperHeight.count()))}));
}

void PageTree::startNode()
{
    Object node = indirectDictionary(m_pdf, "/Pages");
    node.replaceKey("/Parent", m_root);
    node.replaceKey("/Kids", Object::newArray());
    m_nodes.push_back(node);
}

QPDFObjectHandle PageTree::append()
{
    if (m_pages.size() % kPagesPerNode == 0)
        startNode();
    Object page = indirectDictionary(m_pdf, "/Page");
    page.replaceKey("/Parent", m_nodes.back());
    m_nodes.back().getKey("/Kids").appendItem(page);
    m_pages.push_back(page);
    return page;
}

void PageTree::finish(const QPDFObjectHandle &resources)
{
    for (Object &node : m_nodes)
        node.replaceKey("/Count", Object::newInteger(node.getKey("/Kids").getArrayNItems()));
    m_root.replaceKey("/Kids", Object::newArray(m_nodes));
    m_root.replaceKey("/Count", Object::newInteger(qint64(m_pages.size())));
    m_root.replaceKey("/Resources", m_pdf.makeIndirectObject(resources));
}

QPDFObjectHandle PageTree::destination(int page, Twips top) const
{
    const size_t index = std::min(size_t(std::max(page, 0)), m_pages.size() - 1);
    return Object::newArray(std::vector<Object> {m_pages[index], Object::newName("/XYZ"), Object::newNull(),
        pdfNumber(hundredthsOf((m_paperHeight - top).count())), Object::newNull()});
}

} // namespace corvane
