#pragma once

#include "platform/composer/document.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// The page tree of a file (ISO 32000-1, 7.7.3) as pages are added to it, balanced so that a reader
/// finds any of 20,000 pages at once. Paper and resources stand in the root.
class PageTree
{
public:
    PageTree(QPDF &pdf, const Document &document);

    void append(const QPDFObjectHandle &contents);
    const QPDFObjectHandle &root() const { return m_root; }

    /// Closes the tree; nothing can be appended afterwards.
    void finish(const QPDFObjectHandle &fonts);

    /// The document's outline (12.3.3), one flat level; empty when it has none.
    std::optional<QPDFObjectHandle> outline(const Document &document);

private:
    void startNode();

    QPDF &m_pdf;
    QPDFObjectHandle m_root;
    std::vector<QPDFObjectHandle> m_nodes;
    std::vector<QPDFObjectHandle> m_pages;
};

} // namespace corvane
