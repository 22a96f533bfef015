#include "platform/workbook/sheet_writer.h"

#include "platform/database/rowset.h"
#include "platform/workbook/record_writer.h"
#include "platform/workbook/workbook_globals.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace corvane {

using biff::Record;

namespace {

/// Rows come in blocks: first their Row records, then their cells.
constexpr int kRowsPerBlock = 32;
constexpr quint16 kRowHeight = 255; // twips, for ten points

/// A cell's record as it stands in the file; Payload has no padding.
template <typename Payload>
void cellRecord(RecordWriter &out, Record type, int row, int column, quint16 xf, Payload payload)
{
    std::array<char, 10 + sizeof payload> bytes;
    const std::array<quint16, 5> head{
        quint16(type), quint16(6 + sizeof payload), quint16(row), quint16(column), xf};
    std::memcpy(bytes.data(), head.data(), sizeof head);
    std::memcpy(bytes.data() + sizeof head, &payload, sizeof payload);
    out.wholeRecord(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
}

/// [MS-XLS] RkNumber: a whole number of 30 bits with its mark; empty when the number is no such.
std::optional<quint32> rkNumber(double number)
{
    constexpr double kLimit = 1 << 29;
    constexpr quint32 kWhole = 2;
    if (number != std::floor(number) || number < -kLimit || number >= kLimit)
        return std::nullopt;
    return (quint32(qint32(number)) << 2) | kWhole;
}

void writeCalculation(RecordWriter &out)
{
    constexpr quint16 kAutomatic = 1;
    constexpr double kDelta = 0.001;
    out.record(Record::CalcMode, {kAutomatic});
    out.record(Record::CalcCount, {100});
    out.record(Record::CalcRefMode, {1});
    out.record(Record::CalcIter, {0});
    out.begin(Record::CalcDelta);
    out.f64(kDelta);
    out.end();
    out.record(Record::CalcSaveRecalc, {1});
}

void writePage(RecordWriter &out)
{
    constexpr quint16 kOutlineBelowAndRight = 0x04C1;
    constexpr quint16 kNoPrinterData = 0x0004;
    constexpr double kHalfInch = 0.5;
    out.record(Record::PrintRowCol, {0});
    out.record(Record::PrintGrid, {0});
    out.record(Record::GridSet, {1});
    out.record(Record::Guts, {0, 0, 0, 0});
    out.record(Record::DefaultRowHeight, {0, kRowHeight});
    out.record(Record::WsBool, {kOutlineBelowAndRight});
    out.record(Record::Header);
    out.record(Record::Footer);
    out.record(Record::HCenter, {0});
    out.record(Record::VCenter, {0});
    out.begin(Record::Setup);
    for (const quint16 word : {quint16(0), quint16(100), quint16(1), quint16(1), quint16(1),
             kNoPrinterData, quint16(0), quint16(0)})
        out.u16(word);
    out.f64(kHalfInch);
    out.f64(kHalfInch);
    out.u16(1);
    out.end();
}

} // namespace

SheetWriter::SheetWriter(RecordWriter &out, const Rowset &rows,
    std::span<const SheetColumn> columns, quint16 headingXf, std::span<const quint32> texts)
    : m_out(out)
    , m_rows(rows)
    , m_columns(columns)
    , m_headingXf(headingXf)
    , m_headings(texts.first(columns.size()))
    , m_texts(texts.subspan(columns.size()))
{
}

void SheetWriter::write(
    const WorkbookSheet &sheet, int number, const std::function<void(qsizetype row)> &step)
{
    start(sheet);
    for (int row = 0; row < sheet.extent.rows; row += kRowsPerBlock)
        rowBlock(sheet, row, std::min(row + kRowsPerBlock, sheet.extent.rows), step);
    writeFilterButtons(m_out, number, sheet.extent.columns);
    windowRecords(number);
    m_out.record(Record::Eof);
}

void SheetWriter::start(const WorkbookSheet &sheet)
{
    writeBeginOfFile(m_out, Substream::Sheet);
    writeCalculation(m_out);
    writePage(m_out);
    columnRecords();
    if (sheet.extent.columns > 0)
        writeFilterInfo(m_out, sheet.extent.columns);
    m_out.begin(Record::Dimensions);
    m_out.u32(0);
    m_out.u32(quint32(sheet.extent.rows));
    m_out.u16(0);
    m_out.u16(quint16(sheet.extent.columns));
    m_out.u16(0);
    m_out.end();
}

void SheetWriter::columnRecords()
{
    constexpr quint16 kUsualWidth = 8;
    constexpr int kUnitsPerCharacter = 256;
    constexpr quint16 kSetOnPurpose = 0x0002;
    m_out.record(Record::DefColWidth, {kUsualWidth});
    for (size_t i = 0; i < m_columns.size(); ++i) {
        const auto width = quint16(m_columns[i].width * kUnitsPerCharacter);
        m_out.record(Record::ColInfo,
            {quint16(i), quint16(i), width, CellFormats::kDefaultXf, kSetOnPurpose, 0});
    }
}

void SheetWriter::rowBlock(
    const WorkbookSheet &sheet, int first, int end, const std::function<void(qsizetype row)> &step)
{
    constexpr quint16 kAlwaysSet = 0x0100;
    for (int row = first; row < end; ++row)
        m_out.record(Record::Row,
            {quint16(row), 0, quint16(sheet.extent.columns), kRowHeight, 0, 0, kAlwaysSet,
                CellFormats::kDefaultXf});
    for (int sheetRow = first; sheetRow < end; ++sheetRow) {
        if (sheetRow == 0) {
            headingCells();
            continue;
        }
        const qsizetype row = sheet.firstRow + sheetRow - 1;
        step(row);
        dataCells(sheetRow, row);
    }
}

void SheetWriter::headingCells()
{
    for (size_t column = 0; column < m_headings.size(); ++column)
        cellRecord(m_out, Record::LabelSst, 0, int(column), m_headingXf, m_headings[column]);
}

void SheetWriter::dataCells(int sheetRow, qsizetype row)
{
    for (int column = 0; column < m_rows.fieldCount(); ++column)
        cell(sheetRow, column, m_rows.value(row, column));
}

void SheetWriter::cell(int sheetRow, int column, const Value &value)
{
    const CellValue content = cellValue(value);
    if (content.kind == CellKind::Empty)
        return;
    const quint16 xf = m_columns[size_t(column)].formats.of(value, content);
    if (content.isText()) {
        cellRecord(m_out, Record::LabelSst, sheetRow, column, xf, m_texts.front());
        m_texts = m_texts.subspan(1);
    } else if (content.kind == CellKind::Boolean) {
        cellRecord(m_out, Record::BoolErr, sheetRow, column, xf,
            quint16(content.number)); // value, then "no error"
    } else if (const auto whole = rkNumber(content.number)) {
        cellRecord(m_out, Record::Rk, sheetRow, column, xf, *whole);
    } else {
        cellRecord(
            m_out, Record::Number, sheetRow, column, xf, std::bit_cast<quint64>(content.number));
    }
}

/// The heading row stays when the rows scroll.
void SheetWriter::windowRecords(int number)
{
    constexpr quint16 kShownAndFrozen = 0x01BE;
    constexpr quint16 kSelectedAndActive = 0x0600;
    constexpr quint16 kAutomaticColour = 0x0040;
    constexpr quint8 kUpperPane = 3;
    constexpr quint8 kLowerPane = 2;
    m_out.record(Record::Window2,
        {quint16(kShownAndFrozen | (number == 1 ? kSelectedAndActive : 0)), 0, 0, kAutomaticColour,
            0, 0, 0, 0, 0});
    m_out.record(Record::Pane, {0, 1, 1, 0, kLowerPane});
    for (const quint8 pane : {kUpperPane, kLowerPane}) {
        const quint16 row = pane == kLowerPane ? 1 : 0;
        m_out.begin(Record::Selection);
        m_out.u8(pane);
        for (const quint16 word : {row, quint16(0), quint16(0), quint16(1), row, row, quint16(0)})
            m_out.u16(word);
        m_out.end();
    }
}

} // namespace corvane
