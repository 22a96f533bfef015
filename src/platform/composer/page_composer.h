#pragma once

#include "platform/composer/document.h"
#include "platform/composer/line_breaker.h"
#include "platform/composer/table_format.h"

#include <optional>
#include <stdexcept>

namespace corvane {

enum class Orientation { Portrait, Landscape };

/// Rules around a heading row: none, or one above and one below.
enum class TableBorder { None = 0, AboveAndBelow = 3 };

/// Something that cannot be laid out as asked; the words name it and its place.
class ComposeError : public std::runtime_error
{
public:
    explicit ComposeError(const QString &description)
        : std::runtime_error(description.toStdString())
        , m_description(description)
    {
    }
    const QString &description() const { return m_description; }

private:
    QString m_description;
};

/// Whether a table row starts a table of its own or continues the one above without space.
enum class TableFlow { Starts, Continues };

/// A shade value of a table row; kNoShade leaves the paper white.
inline constexpr int kNoShade = 0;
inline constexpr int kCaptionShade = 65535;

/// Font sizes that can be asked for, in points.
inline constexpr double kSmallestFont = 1;
inline constexpr double kLargestFont = 144;

/// Builds a Document from paragraphs and tables, page by page, on Letter paper. No widget, no printer.
/// Positions count from the paper's upper edge. Text wraps in its column and rows grow; a row is split
/// across pages only when it is taller than a page.
class PageComposer
{
public:
    PageComposer();

    /// Portrait, Arial 10, one column, no bold, no indent; any document is dropped.
    void reset();

    void setOrientation(Orientation orientation) { m_orientation = orientation; }
    void setFontName(const QString &name);
    /// Points; 0 keeps the size. @throws ComposeError beyond 1 to 144 points.
    void setFontSize(double points);
    const QString &fontName() const { return m_fontName; }
    double fontSize() const { return m_fontSize; }
    void setHeaderFont(const QString &name, double points);
    void setBold(bool bold);
    /// Newspaper columns from here on; below 1 counts as 1.
    void setPageColumns(int columns);
    void setTableBorder(TableBorder border) { m_border = border; }
    void setLeftIndent(double twips);

    /// The widest table to come: side margins shrink from 1 to 0.5 inch as it needs. Before startDocument().
    void setWidthNeeded(Twips width) { m_widthNeeded = width; }
    /// The room between the margins of Letter paper when both are as narrow as they get.
    static Twips widestContent(Orientation orientation);
    /// The width that so many newspaper columns of tables this wide take with the gaps between them.
    static Twips widthOfColumns(Twips tableWidth, int columns);

    void startDocument(DocumentInfo info);
    void setDateRange(const QString &range) { m_document->info.dateRange = range; }
    /// Finishes the document; it counts as whole from here on.
    DocumentPtr endDocument();
    /// Finishes what is there of a run that failed: it can be looked at but never printed or saved.
    DocumentPtr abandonDocument();

    /// Left, centre and right part separated by bars; holds for every page.
    void setHeader(QStringView parts) { m_header = parts.toString(); }
    void setFooter(QStringView parts) { m_footer = parts.toString(); }

    /// One paragraph; the empty text takes one empty line.
    void writeParagraph(QStringView text);

    /// Adds a heading row, a body row, or both. A continuing row's heading is drawn only at the top of a
    /// page or column that the composer itself starts, also when a caption or a note started it.
    /// @throws ComposeError for a format text that is none.
    void addTable(QStringView format, QStringView header, QStringView body, int headerShade, int bodyShade, TableFlow flow);

    void newPage();
    /// An outline entry that points at the current position.
    void addOutlineEntry(const QString &title);
    Twips currentY() const { return m_y; }
    int pageCount() const;

private:
    struct Format {
        QString text;
        std::vector<ColumnFormat> columns;
        Twips width;
    };
    enum class Weight { Current, Bold };
    struct RowLook {
        BlockKind kind = BlockKind::Row;
        Weight weight = Weight::Current;
        int shade = kNoShade;
    };

    Twips fontTwips() const { return Twips::fromPoints(m_fontSize); }
    Page &page() { return m_document->pages.back(); }
    Twips columnWidth() const;
    Twips columnLeft() const;
    Twips bottomLimit() const;
    void beginPage();
    void packPage();
    void noteMissingGlyphs();
    /// Next newspaper column or page; draws the running heading there.
    void breakColumn();
    bool isAtColumnTop() const { return m_y <= m_contentTop; }

    const Format &formatOf(QStringView text);
    void narrowToColumn(Format &format);
    void drawHeading(QStringView header, const Format &format, int shade, Weight weight, TableBorder border);
    void drawRow(QStringView row, const Format &format, const RowLook &look);
    bool drawSingleLineRow(const Format &format, const RowLook &look);
    void breakCells(const Format &format, const RowLook &look);
    void placeCells(const Format &format, const RowLook &look, size_t firstLine, size_t lineCount);
    void startRow(const Format &format, const RowLook &look, Twips height, bool continued = false);
    void openBlock(BlockKind kind, size_t columns, Twips height, bool continued = false);
    void addRule(Twips y);
    Furniture furniture(const QString &parts);
    DocumentPtr finish(bool whole);

    FontLibrary m_fonts;
    LineBreaker m_breaker {m_fonts};
    FaceIndex m_faceIndex = [this](const FontFacePtr &face) { return faceIndex(*m_document, face); };

    Orientation m_orientation = Orientation::Portrait;
    QString m_fontName;
    double m_fontSize = 0;
    QString m_headerFontName;
    double m_headerFontSize = 0;
    bool m_bold = false;
    TableBorder m_border = TableBorder::None;
    Twips m_leftIndent;
    Twips m_widthNeeded;
    QString m_header;
    QString m_footer;

    std::shared_ptr<Document> m_document;
    struct Boxes {
        int page = 0; ///< from 1; 0: header and footer
        int count = 0;
    };
    std::vector<Boxes> m_boxes; ///< where characters that no font has stand
    int m_columns = 1;
    int m_column = 0;
    Twips m_columnTop;   ///< where newspaper columns start on this page
    Twips m_contentTop;  ///< below the repeated heading of this column
    Twips m_y;
    QString m_runningHeading;
    Format m_runningFormat;
    bool m_drawingHeading = false;

    /// The current font in use, resolved when first needed after a change.
    struct UsedFont {
        FontFacePtr face;
        quint16 style = 0;
        Twips ascent;
        Twips lineHeight;
    };
    const UsedFont &font(Weight weight);

    std::optional<UsedFont> m_used[2]; ///< by Weight
    std::vector<Format> m_formats;
    std::vector<QStringView> m_cells;
    std::vector<qint64> m_cellUnits;
    std::vector<std::vector<Line>> m_cellLines;
};

} // namespace corvane
