#pragma once

#include "platform/composer/document.h"
#include "platform/pdf/compression_queue.h"

#include <qpdf/QPDF.hh>

#include <map>

namespace corvane {

/// The pictures that a document's pages show, each once, as image XObjects (ISO 32000-1, 8.9.5). JPEG
/// files go through as they are. A picture that holds nothing is left out.
class PictureObjects
{
public:
    PictureObjects(QPDF &pdf, CompressionQueue &compression, const Document &document);

    bool isEmpty() const { return m_objects.empty(); }
    bool holds(quint32 picture) const { return m_objects.contains(picture); }
    /// Name of a picture in the resources of every page.
    static std::string nameOf(quint32 picture) { return "P" + std::to_string(picture + 1); }
    QPDFObjectHandle resources() const;

private:
    std::optional<QPDFObjectHandle> object(const Picture &picture);
    std::optional<QPDFObjectHandle> jpegObject(const QByteArray &jpeg);
    QPDFObjectHandle imageObject(const QImage &image);
    QPDFObjectHandle raster(QSize size, const char *colours, const std::string &samples);

    QPDF &m_pdf;
    CompressionQueue &m_compression;
    std::map<quint32, QPDFObjectHandle> m_objects; ///< by index into Document::pictures
};

} // namespace corvane
