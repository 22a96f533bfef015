#include "platform/workbook/auto_filter.h"

#include "platform/workbook/record_writer.h"

#include <algorithm>

namespace corvane {

namespace {

/// Each sheet's drawing has a cluster of so many shape identifiers ([MS-ODRAW] OfficeArtIDCL).
constexpr quint32 kShapesPerDrawing = 1024;
/// More sheets than one record lists go without buttons; the filter itself works.
constexpr size_t kMostDrawings = 1000;

/// [MS-ODRAW] record types.
enum Art : quint16 {
    DggContainer = 0xF000,
    DgContainer = 0xF002,
    SpgrContainer = 0xF003,
    SpContainer = 0xF004,
    FdggBlock = 0xF006,
    Fdg = 0xF008,
    Fspgr = 0xF009,
    Fsp = 0xF00A,
    Fopt = 0xF00B,
    ClientAnchor = 0xF010,
    ClientData = 0xF011,
    SplitMenuColors = 0xF11E,
};

constexpr quint16 kContainer = 0xF;
constexpr quint32 kArtHeader = 8;
constexpr quint32 kGroupShapeSize = 40; ///< records inside the patriarch's SpContainer
constexpr quint32 kButtonShapeSize = 88; ///< records inside a button's SpContainer

struct Option
{
    quint16 id;
    quint32 value;
};

/// [MS-ODRAW] OfficeArtRecordHeader.
void artHeader(RecordWriter &out, Art type, quint16 version, quint16 instance, quint32 size)
{
    out.u16(quint16(version | instance << 4));
    out.u16(type);
    out.u32(size);
}

template <size_t N> void options(RecordWriter &out, const Option (&list)[N])
{
    artHeader(out, Fopt, 3, N, N * 6);
    for (const Option &option : list) {
        out.u16(option.id);
        out.u32(option.value);
    }
}

quint32 firstShape(int sheet)
{
    return kShapesPerDrawing * quint32(sheet);
}

void shape(RecordWriter &out, quint16 kind, quint32 id, quint32 flags)
{
    artHeader(out, Fsp, 2, kind, 8);
    out.u32(id);
    out.u32(flags);
}

/// The containers around all shapes and the invisible one that holds them, in front of the first
/// button.
void drawingStart(RecordWriter &out, int sheet, int columns)
{
    constexpr quint32 kGroupAndPatriarch = 0x0005;
    const quint32 shapes
        = kArtHeader + kGroupShapeSize + quint32(columns) * (kArtHeader + kButtonShapeSize);
    artHeader(out, DgContainer, kContainer, 0, 2 * kArtHeader + 8 + shapes);
    artHeader(out, Fdg, 0, quint16(sheet), 8);
    out.u32(quint32(columns) + 1);
    out.u32(firstShape(sheet) + quint32(columns));
    artHeader(out, SpgrContainer, kContainer, 0, shapes);
    artHeader(out, SpContainer, kContainer, 0, kGroupShapeSize);
    artHeader(out, Fspgr, 1, 0, 16);
    out.zeros(16);
    shape(out, 0, firstShape(sheet), kGroupAndPatriarch);
}

void buttonShape(RecordWriter &out, int sheet, int column)
{
    constexpr quint16 kHostControl = 201;
    constexpr quint32 kHasAnchorAndType = 0x0A00;
    artHeader(out, SpContainer, kContainer, 0, kButtonShapeSize);
    shape(out, kHostControl, firstShape(sheet) + quint32(column) + 1, kHasAnchorAndType);
    // Protection, text, fill, line and group flags of a control that the sheet draws itself.
    options(out,
        {{0x007F, 0x0104'0104}, {0x00BF, 0x0008'0008}, {0x01BF, 0x0001'0000}, {0x01FF, 0x0008'0000},
            {0x03BF, 0x000A'0000}});
    artHeader(out, ClientAnchor, 0, 0, 18);
    const auto left = quint16(column);
    for (const quint16 part : {quint16(1), left, quint16(0), quint16(0), quint16(0),
             quint16(left + 1), quint16(0), quint16(1), quint16(0)})
        out.u16(part);
    artHeader(out, ClientData, 0, 0, 0);
}

/// [MS-XLS] Obj: FtCmo, FtSbs, FtLbsData and the end.
void buttonObject(RecordWriter &out, int column)
{
    out.begin(biff::Record::Obj);
    for (const quint16 word : {0x0015, 0x0012, 0x0014, column + 1, 0x2101, 0, 0, 0, 0, 0, 0})
        out.u16(word);
    for (const quint16 word : {0x000C, 0x0014, 0, 0, 0, 0, 100, 1, 10, 0, 16, 1})
        out.u16(word);
    // The length of a filter's list data is a constant that says nothing about its size.
    for (const quint16 word : {0x0013, 0x1FEE, 0, 0, 1, 0x0301, 0, 2, 8, 87})
        out.u16(word);
    out.u32(0);
    out.end();
}

} // namespace

void writeFilterNames(RecordWriter &out, const std::vector<SheetExtent> &sheets)
{
    constexpr quint16 kOwnWorkbook = 0x0401;
    out.record(biff::Record::SupBook, {quint16(sheets.size()), kOwnWorkbook});
    out.begin(biff::Record::ExternSheet);
    out.u16(quint16(sheets.size()));
    for (size_t i = 0; i < sheets.size(); ++i) {
        out.u16(0);
        out.u16(quint16(i));
        out.u16(quint16(i));
    }
    out.end();

    constexpr quint16 kHiddenBuiltIn = 0x0021;
    constexpr quint8 kFilterDatabase = 0x0D;
    constexpr quint8 kArea3d = 0x3B; // [MS-XLS] PtgArea3d
    for (size_t i = 0; i < sheets.size(); ++i) {
        out.begin(biff::Record::Lbl);
        out.u16(kHiddenBuiltIn);
        out.u8(0);
        out.u8(1);
        out.u16(11);
        out.u16(0);
        out.u16(quint16(i + 1));
        out.u32(0);
        out.u8(0);
        out.u8(kFilterDatabase);
        out.u8(kArea3d);
        for (const quint16 part : {quint16(i), quint16(0), quint16(sheets[i].rows - 1), quint16(0),
                 quint16(sheets[i].columns - 1)})
            out.u16(part);
        out.end();
    }
}

void writeFilterDrawingGroup(RecordWriter &out, const std::vector<SheetExtent> &sheets)
{
    const auto drawings = quint32(std::min(sheets.size(), kMostDrawings));
    const auto shapes = quint32(sheets.front().columns) + 1; // the same in every sheet
    const quint32 blockSize = 16 + 8 * drawings;
    constexpr quint32 kOptionsSize = kArtHeader + 18;
    constexpr quint32 kColoursSize = kArtHeader + 16;
    out.begin(biff::Record::MsoDrawingGroup);
    artHeader(
        out, DggContainer, kContainer, 0, kArtHeader + blockSize + kOptionsSize + kColoursSize);
    artHeader(out, FdggBlock, 0, 0, blockSize);
    out.u32(firstShape(int(drawings)) + shapes);
    out.u32(drawings + 1);
    out.u32(drawings * shapes);
    out.u32(drawings);
    for (quint32 drawing = 1; drawing <= drawings; ++drawing) {
        out.u32(drawing);
        out.u32(shapes);
    }
    options(out, {{0x00BF, 0x0008'0008}, {0x0181, 0x0800'0041}, {0x01C0, 0x0800'0040}});
    artHeader(out, SplitMenuColors, 0, 4, 16);
    for (const quint32 colour : {0x0800'000Du, 0x0800'000Cu, 0x0800'0017u, 0x1000'00F7u})
        out.u32(colour);
    out.end();
}

void writeFilterInfo(RecordWriter &out, int columns)
{
    out.record(biff::Record::AutoFilterInfo, {quint16(columns)});
}

void writeFilterButtons(RecordWriter &out, int sheet, int columns)
{
    if (size_t(sheet) > kMostDrawings)
        return;
    for (int column = 0; column < columns; ++column) {
        out.begin(biff::Record::MsoDrawing);
        if (column == 0)
            drawingStart(out, sheet, columns);
        buttonShape(out, sheet, column);
        out.end();
        buttonObject(out, column);
    }
}

} // namespace corvane
