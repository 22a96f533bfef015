#pragma once

#include "platform/composer/document.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// The information dictionary (ISO 32000-1, 14.3.3) of the file; times as the document has them.
QPDFObjectHandle infoDictionary(QPDF &pdf, const DocumentInfo &info, const QString &producer);

/// The same as an XMP packet (ISO 16684-1) in a metadata stream, uncompressed for programs that scan for it.
QPDFObjectHandle metadataStream(QPDF &pdf, const DocumentInfo &info, const QString &producer);

} // namespace corvane
