#pragma once

#include "platform/composer/document.h"

#include <QtCore/QRectF>

#include <vector>

namespace corvane {

/// Letters of Page::text, counted in UTF-16 units, the end not included.
struct TextStretch
{
    quint32 begin = 0;
    quint32 end = 0;

    bool isEmpty() const { return begin >= end; }
    bool operator==(const TextStretch &) const = default;
};

/// One cell of a row, or a paragraph: its runs and the letters that they cover, line breaks
/// included.
struct Cell
{
    quint32 block = 0;
    quint16 column = 0;
    quint32 firstRun = 0;
    quint32 endRun = 0;
    TextStretch text;
};

/// The cells of a page in reading order; those without letters are left out.
void cellsOf(const Page &page, std::vector<Cell> &cells);
/// Whether letters stand in one cell of the page's body, not in its own header or footer; does not
/// look at the whole page.
bool isWithinOneCell(const Page &page, TextStretch stretch);

/// Where the letters of one page stand. Points and areas are twips from the paper's upper left
/// corner. Made for the moment: it borrows the document.
class PageText
{
public:
    PageText(const Document &document, int page);

    /// One area for each line that the letters touch, as high as the line's font.
    std::vector<QRectF> areasOf(TextStretch stretch) const;
    /// The gap between two letters that is nearest to a point; 0 on a page without letters.
    quint32 offsetAt(QPointF point) const;
    /// The letter that a point is on or nearest to; 0 on a page without letters. Unlike the gap at
    /// its end it belongs to one cell only.
    quint32 letterAt(QPointF point) const;
    bool hasLetterAt(QPointF point) const;

    /// The word around an offset, or the blanks or signs between two words.
    TextStretch wordAt(quint32 offset) const;
    /// The line of a paragraph around an offset, or the whole of a table row.
    TextStretch lineAt(quint32 offset) const;

private:
    QRectF lineArea(const TextRun &run, double from, double to) const;
    std::vector<double> letterEdges(const TextRun &run) const;
    std::vector<double> shapedEdges(const TextRun &run) const;
    const TextRun *nearestRun(QPointF point) const;
    const Cell *cellAt(quint32 offset) const;

    const Document &m_document;
    const Page &m_page;
    std::vector<Cell> m_cells;
};

} // namespace corvane
