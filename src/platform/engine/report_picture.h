#pragma once

#include "platform/engine/attribute_reader.h"

#include <QtCore/QByteArray>

namespace corvane {

/// Why bytes are no picture that a report can show, as the end of a sentence; empty when they are
/// one: PNG, JPEG, GIF or BMP of at most 50 million pixels. The size is looked at before anything
/// is decoded.
QString pictureFault(const QByteArray &bytes);

/// The bytes of a `<Picture>` with a file inside the report's folder, or with base64 text. @throws
/// ReportError
QByteArray readPicture(const AttributeReader &reader);

} // namespace corvane
