#pragma once

#include "platform/composer/document.h"

#include <QtGui/QRawFont>

#include <map>

class QPainter;
class QRectF;

namespace corvane {

/// Draws the pages of documents on any paint device. Keeps the fonts that it made, so one painter should
/// live as long as its view or print job.
class PagePainter
{
public:
    /// Draws one page (index from 0) with its header and footer. The painter's origin is the paper's upper
    /// left corner; what lies wholly above or below `visible` (the painter's units) is passed over.
    /// @return how many rectangles, pictures and text runs were drawn
    int paint(QPainter &painter, const Document &document, int pageIndex, double pixelsPerTwip, const QRectF &visible);

private:
    struct Glyphs {
        std::vector<quint32> indexes;
        std::vector<QPointF> positions;
    };
    struct Job;

    int paintPart(Job &job, const Page &page);
    static int paintRects(Job &job, const Page &page);
    static int paintPictures(Job &job, const Page &page);
    int paintText(Job &job, const Page &page);
    void collect(const Job &job, const Page &page, const TextRun &run);
    void drawShaped(Job &job, const Page &page, const TextRun &run);
    void drawCollected(Job &job, const Page &page);
    const QRawFont &fontAt(const FontFacePtr &face, double pixelSize);

    std::map<std::pair<FontFacePtr, double>, QRawFont> m_fonts;
    std::vector<Glyphs> m_collected; ///< plain glyphs of the part at hand, by style
};

} // namespace corvane
