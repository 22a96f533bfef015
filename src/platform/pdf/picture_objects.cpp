#include "platform/pdf/picture_objects.h"

#include "platform/pdf/font_objects.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

void setImageKeys(Object stream, QSize size, const char *colours)
{
    Object dictionary = stream.getDict();
    dictionary.replaceKey("/Type", Object::newName("/XObject"));
    dictionary.replaceKey("/Subtype", Object::newName("/Image"));
    dictionary.replaceKey("/Width", Object::newInteger(size.width()));
    dictionary.replaceKey("/Height", Object::newInteger(size.height()));
    dictionary.replaceKey("/ColorSpace", Object::newName(colours));
    dictionary.replaceKey("/BitsPerComponent", Object::newInteger(8));
}

/// The samples of an image of whole bytes, rows joined.
std::string samplesOf(const QImage &image)
{
    const auto rowSize = size_t(image.width()) * size_t(image.depth()) / 8;
    std::string samples;
    samples.reserve(rowSize * size_t(image.height()));
    for (int y = 0; y < image.height(); ++y)
        samples.append(reinterpret_cast<const char *>(image.constScanLine(y)), rowSize);
    return samples;
}

} // namespace

PictureObjects::PictureObjects(QPDF &pdf, CompressionQueue &compression, const Document &document)
    : m_pdf(pdf)
    , m_compression(compression)
{
    for (const Page &page : document.pages) {
        for (const PlacedPicture &placed : page.pictures) {
            if (placed.picture >= document.pictures.size() || m_objects.contains(placed.picture))
                continue;
            if (const auto made = object(document.pictures[placed.picture]))
                m_objects.emplace(placed.picture, *made);
        }
    }
}

QPDFObjectHandle PictureObjects::resources() const
{
    Object dictionary = Object::newDictionary();
    for (const auto &[picture, object] : m_objects)
        dictionary.replaceKey("/" + nameOf(picture), object);
    return dictionary;
}

std::optional<QPDFObjectHandle> PictureObjects::object(const Picture &picture)
{
    if (!picture.jpeg.isEmpty()) {
        if (const auto passed = jpegObject(picture.jpeg))
            return passed;
    }
    if (picture.image.isNull())
        return std::nullopt;
    return imageObject(picture.image);
}

/// Empty for what is no JPEG file after all.
std::optional<QPDFObjectHandle> PictureObjects::jpegObject(const QByteArray &jpeg)
{
    QBuffer buffer;
    buffer.setData(jpeg);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "jpeg");
    const QSize size = reader.size();
    if (size.isEmpty())
        return std::nullopt;
    const bool isGrey = reader.imageFormat() == QImage::Format_Grayscale8;
    Object stream = Object::newStream(&m_pdf);
    stream.replaceStreamData(jpeg.toStdString(), Object::newName("/DCTDecode"), Object::newNull());
    setImageKeys(stream, size, isGrey ? "/DeviceGray" : "/DeviceRGB");
    return stream;
}

QPDFObjectHandle PictureObjects::imageObject(const QImage &image)
{
    const bool isGrey = image.allGray();
    const QImage opaque = image.hasAlphaChannel() ? image.convertToFormat(QImage::Format_RGBA8888) : image;
    const QImage colours = opaque.convertToFormat(QImage::Format_RGBX8888)
                               .convertToFormat(isGrey ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    Object object = raster(image.size(), isGrey ? "/DeviceGray" : "/DeviceRGB", samplesOf(colours));
    if (!image.hasAlphaChannel())
        return object;
    const std::string alpha = samplesOf(opaque.convertToFormat(QImage::Format_Alpha8));
    if (alpha.find_first_not_of('\xff') != std::string::npos)
        object.getDict().replaceKey("/SMask", raster(image.size(), "/DeviceGray", alpha));
    return object;
}

QPDFObjectHandle PictureObjects::raster(QSize size, const char *colours, const std::string &samples)
{
    Object stream = compressedStream(m_pdf, m_compression, samples);
    setImageKeys(stream, size, colours);
    return stream;
}

} // namespace corvane
