#include "platform/workbook/workbook_globals.h"

#include "platform/workbook/cell_formats.h"
#include "platform/workbook/record_writer.h"

#include <algorithm>
#include <array>

namespace corvane {

using biff::Record;

namespace {

constexpr quint16 kUtf16 = 1200;
/// Fonts count 0, 1, 2, 3, 5: there is no font 4.
constexpr int kPlainFonts = 4;
constexpr quint16 kBoldFont = 5;

void writeUser(RecordWriter &out, const QString &user)
{
    constexpr qsizetype kSize = 112;
    constexpr qsizetype kHeader = 3;
    constexpr qsizetype kLongestName = 50;
    const QStringView name
        = user.isEmpty() ? QStringView(u" ") : QStringView(user).left(kLongestName);
    const quint8 flag = RecordWriter::widthFlag(name);
    out.begin(Record::WriteAccess);
    out.longText(name);
    out.bytes(QByteArray(kSize - kHeader - name.size() * (flag != 0 ? 2 : 1), ' '));
    out.end();
}

void writeInterface(RecordWriter &out, size_t sheets, const QString &author)
{
    out.record(Record::InterfaceHdr, {kUtf16});
    out.record(Record::Mms, {0});
    out.record(Record::InterfaceEnd);
    writeUser(out, author);
    out.record(Record::CodePage, {kUtf16});
    out.record(Record::Dsf, {0});
    out.begin(Record::RrTabId);
    for (size_t i = 1; i <= std::min<size_t>(sheets, biff::kMaxRecordData / 2); ++i)
        out.u16(quint16(i));
    out.end();
}

void writeBehaviour(RecordWriter &out)
{
    for (const Record none : {Record::WinProtect, Record::Protect, Record::Password,
             Record::Prot4Rev, Record::Prot4RevPass})
        out.record(none, {0});
    constexpr quint16 kScrollBarsAndTabs = 0x0038;
    constexpr quint16 kTabShare = 600;
    out.record(Record::Window1, {0, 0, 24'000, 15'000, kScrollBarsAndTabs, 0, 0, 1, kTabShare});
    for (const Record none : {Record::Backup, Record::HideObj, Record::Date1904})
        out.record(none, {0});
    out.record(Record::CalcPrecision, {1});
    out.record(Record::RefreshAll, {0});
    out.record(Record::BookBool, {0});
}

void writeFont(RecordWriter &out, CellFont font)
{
    constexpr quint16 kTenPoints = 200;
    constexpr quint16 kAutomaticColour = 0x7FFF;
    constexpr quint8 kSwiss = 2;
    out.begin(Record::Font);
    out.u16(kTenPoints);
    out.u16(0);
    out.u16(kAutomaticColour);
    out.u16(font == CellFont::Bold ? 700 : 400);
    out.u16(0);
    out.u8(0);
    out.u8(kSwiss);
    out.u8(0);
    out.u8(0);
    out.shortText(u"Arial");
    out.end();
}

/// What differs between the XF records here; the rest is common to them.
struct XfParts
{
    quint16 font = 0;
    quint16 format = 0;
    quint16 flags = 0;
    quint8 used = 0; ///< groups of attributes: in a cell XF those that are its own, in a style XF
                     ///< those that it leaves out
};

void writeXf(RecordWriter &out, const XfParts &xf)
{
    constexpr quint8 kBottom = 0x20;
    constexpr quint16 kAutomaticPattern = 0x20C0;
    out.begin(Record::Xf);
    out.u16(xf.font);
    out.u16(xf.format);
    out.u16(xf.flags);
    out.u8(kBottom);
    out.u8(0);
    out.u8(0);
    out.u8(xf.used);
    out.u32(0);
    out.u32(0);
    out.u16(kAutomaticPattern);
    out.end();
}

constexpr quint16 kLocked = 0x0001;
constexpr quint16 kStyleXf = 0xFFF5;
constexpr quint16 kQuotePrefix = 0x0008;

/// The style "Normal" and the row and column levels of the outline, which readers expect in these
/// places.
void writeStyleXfs(RecordWriter &out)
{
    constexpr quint8 kNothingUsed = 0xF4;
    static constexpr std::array<quint16, CellFormats::kDefaultXf> kFonts{0, 1, 1, 2, 2};
    for (size_t i = 0; i < kFonts.size(); ++i)
        writeXf(
            out, {.font = kFonts[i], .flags = kStyleXf, .used = i == 0 ? quint8(0) : kNothingUsed});
}

void writeFormatting(RecordWriter &out, const CellFormats &formats)
{
    for (int i = 0; i < kPlainFonts; ++i)
        writeFont(out, CellFont::Plain);
    writeFont(out, CellFont::Bold);
    for (const CellFormats::CustomFormat &format : formats.customFormats()) {
        out.begin(Record::Format);
        out.u16(format.id);
        out.longText(format.code);
        out.end();
    }
    writeStyleXfs(out);
    writeXf(out, {.flags = kLocked});
    constexpr quint8 kOwnNumberFormat = 0x04;
    constexpr quint8 kOwnFont = 0x08;
    for (const CellFormats::Xf &xf : formats.xfs()) {
        const bool isBold = xf.font == CellFont::Bold;
        writeXf(out,
            {.font = isBold ? kBoldFont : quint16(0),
                .format = xf.format,
                .flags = quint16(kLocked | (xf.hasQuotePrefix ? kQuotePrefix : 0)),
                .used = quint8((xf.format != 0 ? kOwnNumberFormat : 0) | (isBold ? kOwnFont : 0))});
    }
    constexpr quint16 kBuiltInStyle = 0x8000;
    constexpr quint16 kNormal = 0xFF00;
    out.record(Record::Style, {kBuiltInStyle, kNormal});
    out.record(Record::UsesElfs, {0});
}

std::vector<quint32> writeSheetList(RecordWriter &out, const std::vector<WorkbookSheet> &sheets)
{
    std::vector<quint32> places;
    for (const WorkbookSheet &sheet : sheets) {
        out.begin(Record::BoundSheet8);
        places.push_back(out.position());
        out.u32(0);
        out.u16(0); // visible worksheet
        out.shortText(sheet.name);
        out.end();
    }
    return places;
}

} // namespace

std::vector<quint32> writeGlobals(RecordWriter &out, const std::vector<WorkbookSheet> &sheets,
    const CellFormats &formats, const QString &author)
{
    writeBeginOfFile(out, Substream::Globals);
    writeInterface(out, sheets.size(), author);
    writeBehaviour(out);
    writeFormatting(out, formats);
    const std::vector<quint32> places = writeSheetList(out, sheets);
    out.record(Record::Country, {1, 1});
    std::vector<SheetExtent> extents;
    extents.reserve(sheets.size());
    for (const WorkbookSheet &sheet : sheets)
        extents.push_back(sheet.extent);
    if (extents.front().columns > 0) {
        writeFilterNames(out, extents);
        writeFilterDrawingGroup(out, extents);
    }
    return places;
}

void writeBeginOfFile(RecordWriter &out, Substream type)
{
    constexpr quint16 kBiff8 = 0x0600;
    constexpr quint16 kBuild = 0x0DBB;
    constexpr quint16 kYear = 0x07CC;
    constexpr quint16 kReadableFrom = 0x0006;
    out.record(Record::Bof, {kBiff8, quint16(type), kBuild, kYear, 0, 0, kReadableFrom, 0});
}

} // namespace corvane
