#pragma once

#include "platform/composer/document.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// A number of hundredths of a point.
QPDFObjectHandle pdfNumber(qint64 hundredths);

/// The page tree of a file (ISO 32000-1, 7.7.3) as pages are added to it, balanced so that a reader
/// finds any of 20,000 pages at once. Paper and resources stand in the root.
class PageTree
{
public:
    PageTree(QPDF &pdf, const Document &document);

    /// A new page, still blank.
    QPDFObjectHandle append();
    const QPDFObjectHandle &root() const { return m_root; }

    /// Closes the tree; nothing can be appended afterwards.
    void finish(const QPDFObjectHandle &resources);

    const std::vector<QPDFObjectHandle> &pages() const { return m_pages; }
    /// A place on a page, from 0, as links and the outline lead to it (12.3.2).
    QPDFObjectHandle destination(int page, Twips top) const;

private:
    void startNode();

    QPDF &m_pdf;
    Twips m_paperHeight;
    QPDFObjectHandle m_root;
    std::vector<QPDFObjectHandle> m_nodes;
    std::vector<QPDFObjectHandle> m_pages;
};

} // namespace corvane
