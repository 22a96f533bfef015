#pragma once

#include "platform/composer/document.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// What a file says about itself.
struct FileDescription {
    DocumentInfo info;
    QString producer;
    bool isWhole = false;
    QString tagged; ///< "yes", or "no" and why
};

/// The information dictionary (ISO 32000-1, 14.3.3) of the file; times as the document has them. Keys of
/// our own say which report with which dates it is, whether it is whole and whether it is tagged.
QPDFObjectHandle infoDictionary(QPDF &pdf, const FileDescription &file);

/// The same as an XMP packet (ISO 16684-1) in a metadata stream, uncompressed for programs that scan for it.
QPDFObjectHandle metadataStream(QPDF &pdf, const FileDescription &file);

} // namespace corvane
