#pragma once

#include "platform/composer/document.h"

namespace corvane::test {

/// Makes documents line by line, without a composer: Letter paper, one inch margins, 12 points a line.
class DocumentBuilder
{
public:
    DocumentBuilder();

    Document &document() { return m_document; }
    /// The style of the lines that follow: Liberation Sans 10 to begin with.
    void setStyle(const QString &family, double points, bool bold = false, QRgb colour = 0xff000000);
    void setStyle(const FontFacePtr &face, double points, QRgb colour = 0xff000000);
    quint16 style() const { return m_style; }

    void newPage();
    /// A line of plain glyphs.
    void paragraph(const QString &text);
    /// A table row of plain glyphs, cells at these places in twips from the paper's left edge.
    void row(const QStringList &cells, const std::vector<qint32> &places);
    /// A line that Qt's shaper sets, whatever fonts it needs.
    void shapedParagraph(const QString &text);
    /// A line of the current face's own glyphs, one for each character, marked as shaped.
    void glyphParagraph(const QString &text);
    void rect(qint32 x, qint32 y, qint32 width, qint32 height, QRgb colour);

    /// The document, whole; the builder is empty afterwards.
    Document finish();

private:
    Page &page();
    void startBlock(BlockKind kind, quint16 columns);
    TextRun addText(QStringView text, qint32 x);
    quint16 faceIndex(const FontFacePtr &face);

    FontLibrary m_library;
    Document m_document;
    quint16 m_style = 0;
    qint32 m_y = 0;
};

} // namespace corvane::test
