#pragma once

#include "platform/composer/twips.h"
#include "platform/engine/expression/expression.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QRgb>

#include <optional>
#include <vector>

namespace corvane {

class ReportControl;

enum class PageOrientation : quint8 { Portrait, Landscape };
enum class HorizontalAlignment : quint8 { Left, Centre, Right };
enum class VerticalAlignment : quint8 { Top, Middle, Bottom };

/// Paper and margins of a layout. The columns are newspaper columns: details and groups run through them.
struct PageSetup {
    Twips paperWidth {12240}; ///< of the paper as it lies, landscape included
    Twips paperHeight {15840};
    Twips left {1440};
    Twips top {1440};
    Twips right {1440};
    Twips bottom {1440};
    int columns = 1;
    Twips columnGap {360};
};

/// Lines around a field; a width of 0 draws none.
struct Border {
    Twips left;
    Twips top;
    Twips right;
    Twips bottom;
    QRgb colour = 0xff000000;

    bool operator==(const Border &) const = default;
};

/// How a field looks once named styles and its own attributes are put together.
struct FieldLook {
    QString font = QStringLiteral("Arial");
    double points = 10;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    QRgb colour = 0xff000000;
    std::optional<QRgb> background;
    HorizontalAlignment horizontal = HorizontalAlignment::Left;
    VerticalAlignment vertical = VerticalAlignment::Top;
    Border border;
    Twips padding; ///< between frame and content, on all sides
    QString format; ///< of numbers, dates and times; empty: the value's plain text form

    bool operator==(const FieldLook &) const = default;
};

/// The first condition that holds gives the look.
struct ConditionalLook {
    ExpressionPtr condition;
    FieldLook look;
};

enum class FieldKind : quint8 { Label, Value, Line, Rectangle, Picture, Barcode, CheckMark, Subreport };
enum class PictureFit : quint8 { Contain, Stretch };
enum class BarcodeKind : quint8 { Code128, Qr };

/// Rows of a sub-report belong to the current row: "{LINK*name}" in its record source becomes the value.
struct SubreportLink {
    QString name;
    ExpressionPtr value;
};

/// One field of a section. The frame counts from the section's upper left corner and never reaches beyond the
/// section's right edge or height; which of the members below `hideDuplicates` mean something depends on the
/// kind. A Line is its frame filled with look.colour: one of width and height is the line's thickness.
struct Field {
    FieldKind kind = FieldKind::Label;
    QString name;
    Twips x;
    Twips y;
    Twips width;
    Twips height;
    FieldLook look;
    std::vector<ConditionalLook> conditionalLooks;
    ExpressionPtr visibleWhen; ///< null: always
    ExpressionPtr link;        ///< gives an address, or "#" and a bookmark's name; null: none
    ExpressionPtr bookmark;    ///< gives the name of a bookmark; null: none
    bool canGrow = true;
    bool canShrink = false;
    bool hideDuplicates = false; ///< nothing where the row above shows the same

    QString text;        ///< Label
    ExpressionPtr value; ///< Value, Barcode, CheckMark; Picture: a column's bytes, else null
    QByteArray picture;  ///< Picture: the file as the reader found or decoded it
    PictureFit fit = PictureFit::Contain;
    QString description; ///< Picture: for people who do not see it
    BarcodeKind barcode = BarcodeKind::Code128;
    bool showText = false; ///< Barcode: letters below the bars
    std::vector<SubreportLink> links; ///< Subreport
    QString layoutName;               ///< Subreport: a layout of the same file; empty: bound by the program
    ReportControl *subreport = nullptr; ///< Subreport: what the program bound; not owned

    FilePlace place;
};

enum class SectionKind : quint8 { ReportHeader, PageHeader, GroupHeader, Detail, GroupFooter, PageFooter, ReportFooter };

/// One band of a layout, as wide as the page or newspaper column.
struct Section {
    SectionKind kind = SectionKind::Detail;
    int group = -1; ///< index into ReportLayout::groups for a group's header and footer, else -1
    Twips height;
    bool keepTogether = true; ///< moved whole to the next page when it fits there
    bool newPageBefore = false;
    bool newPageAfter = false;
    std::optional<QRgb> background;
    ExpressionPtr visibleWhen; ///< null: always
    std::vector<Field> fields;
    FilePlace place;
};

enum class SortOrder : quint8 { None, Ascending, Descending };
enum class KeepTogether : quint8 { No, WithFirstDetail, WholeGroup };

/// Rows with the same value of `on` that follow each other.
struct Group {
    QString name;
    ExpressionPtr on;
    SortOrder sort = SortOrder::None;
    KeepTogether keepTogether = KeepTogether::WithFirstDetail;
    bool newPageBefore = false; ///< not before the first group of the report
    bool newPageAfter = false;  ///< not after the last one
    bool resetPageNumber = false;
    bool repeatHeader = false; ///< at the top of each page and column that the group runs into
    ExpressionPtr outline;     ///< text of its entry in the outline; null: the group's value
    FilePlace place;
};

/// One layout of a designed report file, ready to be laid out. Groups stand outermost first; sections keep
/// the file's order.
struct ReportLayout {
    QString name;
    QString title; ///< of the document; empty: the name
    PageSetup page;
    QString recordSource;
    std::vector<Group> groups;
    std::vector<Section> sections;

    const Group *findGroup(QStringView name) const;
    const Section *findSection(SectionKind kind, int group = -1) const;
};

} // namespace corvane
