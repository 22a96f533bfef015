#include "platform/pdf/page_links.h"

#include "platform/pdf/content_stream.h"

#include <QtCore/QUrl>

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

std::string fileName(const QString &bookmark)
{
    return Object::newUnicodeString(bookmark.toStdString()).getStringValue();
}

bool isAddress(const QUrl &url)
{
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == u"http" || scheme == u"https" || scheme == u"mailto");
}

} // namespace

PageLinks::PageLinks(const Document &document)
    : m_paperHeight(document.paperHeight)
{
    for (const Bookmark &bookmark : document.bookmarks)
        m_bookmarks.emplace(fileName(bookmark.name), bookmark);
}

bool PageLinks::leads(const QString &target) const
{
    return target.startsWith(u'#') ? m_bookmarks.contains(fileName(target.sliced(1))) : isAddress(QUrl(target));
}

QPDFObjectHandle PageLinks::annotation(QPDF &pdf, const LinkArea &link) const
{
    Object annotation = Object::newDictionary();
    annotation.replaceKey("/Type", Object::newName("/Annot"));
    annotation.replaceKey("/Subtype", Object::newName("/Link"));
    const qint32 bottom = m_paperHeight.count() - link.y - link.height;
    annotation.replaceKey("/Rect",
        Object::newArray(std::vector<Object> {pdfNumber(hundredthsOf(link.x)), pdfNumber(hundredthsOf(bottom)),
            pdfNumber(hundredthsOf(link.x + link.width)), pdfNumber(hundredthsOf(bottom + link.height))}));
    annotation.replaceKey("/Border", Object::parse("[0 0 0]"));
    annotation.replaceKey("/F", Object::newInteger(4)); // printed, as everything on the page
    annotation.replaceKey("/Contents", Object::newUnicodeString(link.target.toStdString()));
    if (link.target.startsWith(u'#')) {
        annotation.replaceKey("/Dest", Object::newString(fileName(link.target.sliced(1))));
    } else {
        Object action = Object::newDictionary();
        action.replaceKey("/S", Object::newName("/URI"));
        action.replaceKey("/URI", Object::newString(QUrl(link.target).toEncoded().toStdString()));
        annotation.replaceKey("/A", action);
    }
    return pdf.makeIndirectObject(annotation);
}

std::optional<QPDFObjectHandle> PageLinks::names(const PageTree &pages) const
{
    if (m_bookmarks.empty())
        return std::nullopt;
    std::vector<Object> pairs;
    for (const auto &[name, bookmark] : m_bookmarks) { // sorted by their bytes, as the tree must be
        pairs.push_back(Object::newString(name));
        pairs.push_back(pages.destination(bookmark.page, bookmark.top));
    }
    Object destinations = Object::newDictionary();
    destinations.replaceKey("/Names", Object::newArray(pairs));
    Object names = Object::newDictionary();
    names.replaceKey("/Dests", destinations);
    return names;
}

} // namespace corvane
