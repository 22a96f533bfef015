#pragma once

#include "platform/composer/document.h"
#include "platform/pdf/content_stream.h"
#include "platform/pdf/font_codes.h"
#include "platform/pdf/page_tags.h"
#include "platform/pdf/picture_objects.h"

namespace corvane {

/// Turns pages into content streams: shades and rules first, then pictures, then the text in reading
/// order, page header before and page footer behind the body. With tags, all of it is marked.
class PageContent
{
public:
    PageContent(const Document &document, FontCodes &codes, const PictureObjects &pictures, PageTags *tags);

    /// The page's operators; valid until the next call.
    std::string_view write(int pageIndex);

    /// Name of a PDF font in the resources of every page.
    static std::string fontName(size_t font);

private:
    void fill(const std::vector<FilledRect> &rects);
    void draw(const std::vector<PlacedPicture> &pictures);
    void showText(const Page &body, const Page &furniture);
    void showFurniture(const Page &furniture, size_t block);
    void showBody(const Page &page);
    void show(const Page &page, std::span<const TextRun> runs);
    void showPlain(const TextStyle &style, const TextRun &run, QStringView text);
    void showShaped(const TextStyle &style, const TextRun &run, const ShapedGlyphs &shaped, QStringView text);
    void showGlyph(const TextStyle &style, const FaceCodes::Placed &glyph, double x, double y);
    void openSpan(QStringView letters);
    void closeString();
    char *putMove(char *at, qint64 x, qint64 y);
    char *putFont(char *at, quint32 font, Twips size);
    void setColour(QRgb colour);

    const Document &m_document;
    FontCodes &m_codes;
    const PictureObjects &m_pictures;
    PageTags *m_tags; ///< null: the file has no tags
    ContentStream m_out;
    qint64 m_paperHeight;
    qint64 m_x = 0; ///< start of the line in hundredths of a point, y upwards
    qint64 m_y = 0;
    quint32 m_font = 0;
    Twips m_size; ///< 0 while no font is set
    double m_penX = 0; ///< where the advances of the open string's glyphs lead
    bool m_isStringOpen = false;
    QRgb m_colour = 0xff000000;
};

} // namespace corvane
