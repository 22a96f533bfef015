#pragma once

#include "platform/composer/document.h"

#include <QtCore/QHash>

#include <variant>

namespace corvane {

/// Decodes pictures and keeps each once in Document::pictures, however often it is placed.
class PictureStore
{
public:
    explicit PictureStore(Document &document)
        : m_document(document)
    {
    }

    /// Index into Document::pictures, or words that say why there is no picture.
    std::variant<quint32, QString> add(const QByteArray &file);
    const QImage &image(quint32 index) const { return m_document.pictures[index].image; }

private:
    std::variant<quint32, QString> decode(const QByteArray &file);

    Document &m_document;
    QHash<QByteArray, std::variant<quint32, QString>> m_known; ///< by the SHA-256 of the file
};

} // namespace corvane
