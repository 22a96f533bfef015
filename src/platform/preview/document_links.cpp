#include "platform/preview/document_links.h"

#include <QtCore/QRectF>

#include <algorithm>

namespace corvane {

const LinkArea *linkAt(const Page &page, QPointF point)
{
    const auto holds = [&](const LinkArea &link) {
        return QRectF(link.x, link.y, link.width, link.height).contains(point);
    };
    const auto link = std::find_if(page.links.rbegin(), page.links.rend(), holds);
    return link == page.links.rend() ? nullptr : &*link;
}

std::optional<Bookmark> bookmarkOf(const Document &document, const QString &target)
{
    if (!target.startsWith(u'#'))
        return std::nullopt;
    const QStringView name = QStringView(target).sliced(1);
    const auto found = std::ranges::find(document.bookmarks, name, &Bookmark::name);
    if (found == document.bookmarks.end())
        return std::nullopt;
    return *found;
}

std::optional<QUrl> webAddress(const QString &target)
{
    QUrl url(target.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    const bool isWeb = (scheme == u"http" || scheme == u"https") && !url.host().isEmpty();
    if (!url.isValid() || !(isWeb || scheme == u"mailto"))
        return std::nullopt;
    return url;
}

} // namespace corvane
