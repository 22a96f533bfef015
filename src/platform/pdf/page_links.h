#pragma once

#include "platform/pdf/page_tree.h"

#include <map>

namespace corvane {

/// The named destinations of a document (ISO 32000-1, 12.3.2.3) and the links of its pages (12.5.6.5).
class PageLinks
{
public:
    explicit PageLinks(const Document &document);

    /// Whether a link leads somewhere: to the web, to a mailbox, or with "#" to a bookmark. Anything else
    /// might start a program or read a file.
    bool leads(const QString &target) const;
    /// The annotation of a link that leads somewhere.
    QPDFObjectHandle annotation(QPDF &pdf, const LinkArea &link) const;
    /// The document's name tree; empty when it has no bookmark.
    std::optional<QPDFObjectHandle> names(const PageTree &pages) const;

private:
    Twips m_paperHeight;
    std::map<std::string, Bookmark> m_bookmarks; ///< by their names as the file holds them
};

} // namespace corvane
