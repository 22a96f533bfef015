#pragma once

#include "platform/composer/font_face.h"
#include "platform/composer/twips.h"

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QRgb>

#include <memory>
#include <span>
#include <vector>

namespace corvane {

/// A face at a size in a colour; runs refer to it by its index in Document::styles.
struct TextStyle {
    quint16 face = 0; ///< index into Document::faces
    Twips size;       ///< font size; 20 twips to the point
    QRgb colour = 0xff000000;

    bool operator==(const TextStyle &) const = default;
};

/// One stretch of text on one line, drawn from (x, y). Positions count from the paper's upper left
/// corner in twips; y is the baseline. The letters stand in Page::text.
struct TextRun {
    qint32 x = 0;
    qint32 y = 0;
    quint32 textStart = 0;  ///< UTF-16 units into Page::text
    quint32 textLength = 0;
    quint32 shaped = 0;     ///< 0: plain glyphs of the style's face; n: Page::shaped[n - 1]
    quint16 style = 0;      ///< index into Document::styles
    quint16 column = 0;     ///< cell of the row, from 0; 0 in a paragraph
};

/// Glyphs that the shaper placed. Offsets are twips from the run's (x, y), y downwards.
struct ShapedGlyphs {
    quint16 face = 0; ///< index into Document::faces
    std::vector<quint32> glyphs;
    std::vector<float> xOffsets;
    std::vector<float> yOffsets;
};

enum class BlockKind : quint8 { Paragraph, HeadingRow, Row, Caption };

/// A paragraph or one table row: the runs from firstRun up to the next block's first run. A row's runs
/// are ordered by column; a column without a run is an empty cell. The runs of one cell cover one
/// stretch of Page::text, with the blanks at which its lines were broken between them.
struct Block {
    BlockKind kind = BlockKind::Paragraph;
    bool continuesPreviousPage = false; ///< the rest of a row or paragraph taller than its page
    quint16 columnCount = 1;
    quint32 firstRun = 0;
    qint32 top = 0;    ///< twips
    qint32 bottom = 0; ///< twips
};

/// A filled rectangle in twips: a rule or a shade. Drawn before the text.
struct FilledRect {
    qint32 x = 0;
    qint32 y = 0;
    qint32 width = 0;
    qint32 height = 0;
    QRgb colour = 0xff000000;
};

/// A picture in its frame, in twips; it fills the frame. Drawn behind the text and over the rectangles.
struct PlacedPicture {
    qint32 x = 0;
    qint32 y = 0;
    qint32 width = 0;
    qint32 height = 0;
    quint32 picture = 0; ///< index into Document::pictures
    QString description; ///< for people who do not see it; empty: it only decorates
};

/// A part of the page, in twips, that leads elsewhere.
struct LinkArea {
    qint32 x = 0;
    qint32 y = 0;
    qint32 width = 0;
    qint32 height = 0;
    QString target; ///< an address such as "https://clinic.example", or "#" and a bookmark's name
};

struct Page {
    QString text;
    std::vector<TextRun> runs;
    std::vector<Block> blocks;
    std::vector<FilledRect> rects;
    std::vector<PlacedPicture> pictures;
    std::vector<LinkArea> links;
    std::vector<ShapedGlyphs> shaped;
    std::vector<TextStyle> ownStyles; ///< of a page header or footer: numbered on behind Document::styles

    std::span<const TextRun> blockRuns(size_t block) const;
    QStringView runText(const TextRun &run) const
    {
        return QStringView(text).sliced(run.textStart, run.textLength);
    }
};

/// Left, centre and right text of a page header or footer; "%d" stands for the page number.
struct Furniture {
    QString left;
    QString centre;
    QString right;
    quint16 style = 0;
    quint16 quietStyle = 0; ///< for the left and right parts

    bool isEmpty() const { return left.isEmpty() && centre.isEmpty() && right.isEmpty(); }
};

struct OutlineEntry {
    QString title;
    int page = 0; ///< from 0
    Twips top;
    int depth = 0; ///< below the last entry of a smaller depth
};

/// A place that links of the document lead to.
struct Bookmark {
    QString name;
    int page = 0; ///< from 0
    Twips top;
};

/// A picture once, however often it is placed.
struct Picture {
    QImage image;
    QByteArray jpeg; ///< the file it came from when that was a grey or RGB JPEG, else empty
};

/// What a file made from the document says about itself.
struct DocumentInfo {
    QString title;
    QString report;    ///< the definition's file name
    QString user;
    QString dateRange; ///< as the heading line shows it
    QDateTime printedAt;
    QString language {}; ///< of its fixed words, as in "en-US" (BCP 47); empty: not known
};

/// A finished report: pages of packed drawing operations, all lengths in twips. Immutable once shared.
struct Document {
    DocumentInfo info;
    Twips paperWidth {12240};
    Twips paperHeight {15840};
    Twips leftMargin {1440};
    Twips rightMargin {1440};
    std::vector<FontFacePtr> faces;
    std::vector<TextStyle> styles;
    std::vector<Page> pages;
    Furniture header;
    Furniture footer;
    std::vector<OutlineEntry> outline;
    std::vector<Bookmark> bookmarks;
    std::vector<Picture> pictures;
    QStringList notes; ///< what a reader should know: values cut, tables scaled, fonts substituted
    bool isWhole = false; ///< false while composing and for ever after a failed or stopped run

    int pageCount() const { return int(pages.size()); }

    const TextStyle &styleOf(const Page &page, const TextRun &run) const
    {
        return run.style < styles.size() ? styles[run.style] : page.ownStyles[run.style - styles.size()];
    }
};

using DocumentPtr = std::shared_ptr<const Document>;

/// Header and footer of one page (index from 0) as runs and rules of their own, ready to draw: block 0
/// is the header, block 1 the footer, their columns the left, centre and right part. Nothing is cut: a
/// part wraps within its share of the line, and where its band has no more lines the letters shrink.
Page pageFurniture(const Document &document, int pageIndex);

/// The whole document as text: a line per paragraph or row, cells separated by tabs, a form feed
/// before every page but the first; header and footer left out.
QString documentText(const Document &document);
/// The same for one page, without form feeds.
void appendPageText(QString &out, const Page &page);

} // namespace corvane
