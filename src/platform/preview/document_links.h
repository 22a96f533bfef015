#pragma once

#include "platform/composer/document.h"

#include <QtCore/QPointF>
#include <QtCore/QUrl>

#include <optional>

namespace corvane {

/// The link at a point of a page, in twips from the paper's upper left corner; of several the last
/// one placed. Null: none.
const LinkArea *linkAt(const Page &page, QPointF point);

/// Where a target "#name" leads to in the document. Empty: nowhere, or no target within the
/// document.
std::optional<Bookmark> bookmarkOf(const Document &document, const QString &target);

/// The address of a link that leads out of the document. Empty unless it is http, https or mailto:
/// a report shows what a database holds, and that must not open files or start programs.
std::optional<QUrl> webAddress(const QString &target);

} // namespace corvane
