#pragma once

#include "platform/workbook/column_survey.h"

#include <QtCore/QStringList>

#include <functional>
#include <span>

namespace corvane {

class RecordWriter;
class Rowset;
struct WorkbookSheet;

/// One column as every sheet shows it.
struct SheetColumn
{
    ColumnFormats formats;
    int width = 0; ///< characters
};

/// Writes sheet after sheet of one rowset ([MS-XLS] Worksheet Substream).
class SheetWriter
{
public:
    /// `texts` are the numbers of the shared texts: the headings', then those of all text cells,
    /// row after row.
    SheetWriter(RecordWriter &out, const Rowset &rows, std::span<const SheetColumn> columns,
        quint16 headingXf, std::span<const quint32> texts);

    /// `number` counts from 1; the first sheet is the one that shows. `step` is told each row
    /// before it is written.
    void write(
        const WorkbookSheet &sheet, int number, const std::function<void(qsizetype row)> &step);

private:
    void start(const WorkbookSheet &sheet);
    void columnRecords();
    void rowBlock(const WorkbookSheet &sheet, int first, int end,
        const std::function<void(qsizetype row)> &step);
    void headingCells();
    void dataCells(int sheetRow, qsizetype row);
    void cell(int sheetRow, int column, const Value &value);
    void windowRecords(int number);

    RecordWriter &m_out;
    const Rowset &m_rows;
    std::span<const SheetColumn> m_columns;
    quint16 m_headingXf;
    std::span<const quint32> m_headings;
    std::span<const quint32> m_texts; ///< of the cells that are still to come
};

} // namespace corvane
