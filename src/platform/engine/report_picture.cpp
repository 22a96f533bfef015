#include "platform/engine/report_picture.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>

namespace corvane {

namespace {

constexpr qint64 kMaxFileBytes = qint64(32) * 1024 * 1024;
constexpr qint64 kMaxPixels = 50'000'000;

bool leavesFolder(const QString &path)
{
    return QDir::isAbsolutePath(path) || path.contains(u':') || path.contains(u'\\')
        || path.split(u'/').contains(QStringLiteral(".."));
}

QByteArray fileBytes(const AttributeReader &reader)
{
    const QString path = reader.name("file");
    if (leavesFolder(path)) {
        reader.fail("file",
            QStringLiteral("a picture must lie in the report's folder or one below it; write its "
                           "path from there, with \"/\" between folders."));
    }
    const QDir folder(reader.source().folder());
    const QFileInfo info(folder.filePath(path));
    if (!info.exists()) {
        reader.fail("file",
            QStringLiteral("there is no such file in the folder \"%1\".")
                .arg(QDir::toNativeSeparators(folder.path())));
    }
    // A link may point anywhere.
    if (!info.canonicalFilePath().startsWith(QString(folder.canonicalPath() + u'/')))
        reader.fail("file",
            QStringLiteral("this leads out of the report's folder. Put the picture itself there."));
    QFile file(info.filePath());
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        reader.fail("file", QStringLiteral("the file cannot be read."));
    if (file.size() > kMaxFileBytes)
        reader.fail(
            "file", QStringLiteral("the file is larger than 32 MiB. Make the picture smaller."));
    return file.readAll();
}

QByteArray embeddedBytes(const AttributeReader &reader)
{
    QByteArray text = reader.element().text.toLatin1();
    text.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    const auto decoded
        = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        reader.source().fail(reader.element().textOffset,
            QStringLiteral("The text in <Picture> is not the base64 form of a file."));
    }
    return *decoded;
}

} // namespace

QString pictureFault(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader image(&buffer);
    if (const QString fault = pictureHeaderFault(image); !fault.isEmpty())
        return fault;
    return image.read().isNull() ? QStringLiteral("is a damaged picture") : QString();
}

QString pictureHeaderFault(QImageReader &image)
{
    image.setDecideFormatFromContent(true);
    static const QList<QByteArray> kFormats{"png", "jpeg", "gif", "bmp"};
    if (!kFormats.contains(image.format()))
        return QStringLiteral("is no picture; PNG, JPEG, GIF and BMP can be shown");
    const QSize size = image.size();
    if (qint64(size.width()) * size.height() > kMaxPixels) {
        return QStringLiteral("has %1 × %2 pixels; at most 50 million can be shown")
            .arg(size.width())
            .arg(size.height());
    }
    return {};
}

QByteArray readPicture(const AttributeReader &reader)
{
    const bool isFile = reader.has("file");
    const QByteArray bytes = isFile ? fileBytes(reader) : embeddedBytes(reader);
    if (const QString fault = pictureFault(bytes); !fault.isEmpty()) {
        if (isFile)
            reader.fail("file", QString(u"the file " % fault % u'.'));
        reader.source().fail(
            reader.element().textOffset, QString(u"The text in <Picture> " % fault % u'.'));
    }
    return bytes;
}

} // namespace corvane
