#pragma once

#include "platform/pdf/compressor.h"
#include "platform/pdf/font_codes.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// A stream object of these bytes, compressed.
QPDFObjectHandle compressedStream(QPDF &pdf, Compressor &compressor, std::string_view bytes);

/// The font resources of the pages: for each PDF font a composite font (ISO 32000-1, 9.7) whose CMap
/// has one-byte codes.
QPDFObjectHandle fontResources(QPDF &pdf, Compressor &compressor, FontCodes &codes);

} // namespace corvane
