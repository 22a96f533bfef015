#pragma once

#include "platform/pdf/compression_queue.h"
#include "platform/pdf/font_codes.h"

#include <qpdf/QPDF.hh>

namespace corvane {

/// A stream object that has these bytes, compressed, once the queue is finished; until then it has none.
QPDFObjectHandle compressedStream(QPDF &pdf, CompressionQueue &compression, std::string_view bytes);

/// The font resources of the pages: for each PDF font a composite font (ISO 32000-1, 9.7) whose CMap
/// has one-byte codes.
QPDFObjectHandle fontResources(QPDF &pdf, CompressionQueue &compression, FontCodes &codes);

} // namespace corvane
