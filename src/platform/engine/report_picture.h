#pragma once

#include "platform/engine/attribute_reader.h"

#include <QtCore/QByteArray>

class QImageReader;

namespace corvane {

/// Why bytes are no picture that a report can show, as the end of a sentence; empty when they are
/// one: PNG, JPEG, GIF or BMP of at most 50 million pixels. The size is looked at before anything
/// is decoded.
QString pictureFault(const QByteArray &bytes);

/// The same by the header alone, for a reader that stands at the first byte.
QString pictureHeaderFault(QImageReader &image);

/// The bytes of a `<Picture>` with a file inside the report's folder, or with base64 text. @throws
/// ReportError
QByteArray readPicture(const AttributeReader &reader);

} // namespace corvane
