#include "platform/workbook/rowset_survey.h"

#include "platform/database/rowset.h"
#include "platform/workbook/records.h"
#include "platform/workbook/sheet_name.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr qsizetype kRowsPerSheet = biff::kMaxRows - 1;

/// A column by its letters: A to Z, AA to IV.
QString columnLetters(int column)
{
    const QString last(QChar(char16_t(u'A' + column % 26)));
    return column < 26 ? last : QString(QChar(char16_t(u'A' + column / 26 - 1)) + last);
}

} // namespace

std::vector<WorkbookSheet> sheetsOf(const Rowset &rows, QStringView name)
{
    std::vector<WorkbookSheet> sheets;
    qsizetype first = 0;
    do {
        const qsizetype count = std::min(kRowsPerSheet, rows.rowCount() - first);
        sheets.push_back(
            {sheetName(name, int(sheets.size()) + 1), first, {int(count) + 1, rows.fieldCount()}});
        first += count;
    } while (first < rows.rowCount());
    return sheets;
}

RowsetSurvey::RowsetSurvey(
    const Rowset &rows, const std::vector<WorkbookSheet> &sheets, const ValueTextStyle &style)
    : m_rows(rows)
    , m_sheets(sheets)
    , m_style(style)
    , m_texts(size_t(rows.rowCount() + 1) * size_t(rows.fieldCount()))
{
    for (const QString &name : rows.fieldNames()) {
        m_columns.emplace_back(name);
        m_texts.add(name.toUtf8(), SharedStrings::Storage::Copied);
    }
}

void RowsetSurvey::addRow(qsizetype row)
{
    for (int field = 0; field < m_rows.fieldCount(); ++field) {
        const Value value = m_rows.value(row, field);
        const CellValue cell = cellValue(value);
        m_columns[size_t(field)].add(value, cell);
        if (cell.isText())
            addText(value, cell.kind, row, field);
    }
}

void RowsetSurvey::addText(const Value &value, CellKind kind, qsizetype row, int field)
{
    TextChanges changes;
    if (kind == CellKind::Text) {
        changes = m_texts.add(value.data(), SharedStrings::Storage::Lasting);
    } else {
        m_derived.resize(0);
        appendCellText(m_derived, value, kind, m_style);
        changes = m_texts.add(m_derived, SharedStrings::Storage::Copied);
    }
    if (changes.wasCut)
        note(m_notes.cutCells, row, field);
    if (changes.replaced > 0)
        note(m_notes.replacedCharacters, row, field);
    if (kind == CellKind::NumberAsText)
        note(m_notes.textNumbers, row, field);
    if (kind == CellKind::DateAsText)
        note(m_notes.textDates, row, field);
    if (kind == CellKind::BytesAsText)
        note(m_notes.hexCells, row, field);
}

void RowsetSurvey::note(WorkbookNote &note, qsizetype row, int field)
{
    if (++note.count > 1)
        return;
    const WorkbookSheet &sheet = m_sheets[size_t(row / kRowsPerSheet)];
    note.firstCell
        = sheet.name + u'!' + columnLetters(field) + QString::number(row - sheet.firstRow + 2);
}

} // namespace corvane
