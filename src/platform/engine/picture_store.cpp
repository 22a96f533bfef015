#include "platform/engine/picture_store.h"

#include "platform/engine/report_picture.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtGui/QImageReader>

namespace corvane {

namespace {

/// The number of components in the frame header of a JPEG file (ITU-T T.81, B.2.2); 0 when it has
/// none.
int jpegComponents(const QByteArray &file)
{
    qsizetype at = 2;
    while (at + 9 < file.size() && quint8(file[at]) == 0xff) {
        const auto marker = quint8(file[at + 1]);
        const bool isFrame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8
            && marker != 0xcc;
        if (isFrame)
            return quint8(file[at + 9]);
        at += 2 + (quint8(file[at + 2]) << 8 | quint8(file[at + 3]));
    }
    return 0;
}

} // namespace

std::variant<quint32, QString> PictureStore::add(const QByteArray &file)
{
    const QByteArray hash = QCryptographicHash::hash(file, QCryptographicHash::Sha256);
    const auto known = m_known.constFind(hash);
    if (known != m_known.constEnd())
        return *known;
    return *m_known.insert(hash, decode(file));
}

std::variant<quint32, QString> PictureStore::decode(const QByteArray &file)
{
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (const QString fault = pictureHeaderFault(reader); !fault.isEmpty())
        return QString(u"what should be a picture " + fault);
    const bool isJpeg = reader.format() == "jpeg"
        && reader.transformation() == QImageIOHandler::TransformationNone;
    Picture picture{reader.read(), {}};
    if (picture.image.isNull())
        return QStringLiteral("the picture cannot be read: %1").arg(reader.errorString());
    const int components = isJpeg ? jpegComponents(file) : 0;
    if (components == 1 || components == 3)
        picture.jpeg = file;
    m_document.pictures.push_back(std::move(picture));
    return quint32(m_document.pictures.size() - 1);
}

} // namespace corvane
