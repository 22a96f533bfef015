#pragma once

#include "platform/workbook/column_survey.h"
#include "platform/workbook/shared_strings.h"
#include "platform/workbook/workbook_globals.h"
#include "platform/workbook/workbook_writer.h"

namespace corvane {

class Rowset;

/// The sheets that the rows fill: 65,535 rows each and the heading; at least one.
std::vector<WorkbookSheet> sheetsOf(const Rowset &rows, QStringView name);

/// What has to be known of all rows before the first one can be written: texts, widths, formats,
/// notes.
class RowsetSurvey
{
public:
    RowsetSurvey(
        const Rowset &rows, const std::vector<WorkbookSheet> &sheets, const ValueTextStyle &style);

    /// Looks at one row; rows come in order.
    void addRow(qsizetype row);

    const SharedStrings &texts() const { return m_texts; }
    const std::vector<ColumnSurvey> &columns() const { return m_columns; }
    const WorkbookNotes &notes() const { return m_notes; }

private:
    void addText(const Value &value, CellKind kind, qsizetype row, int field);
    void note(WorkbookNote &note, qsizetype row, int field);

    const Rowset &m_rows;
    const std::vector<WorkbookSheet> &m_sheets;
    const ValueTextStyle &m_style;
    SharedStrings m_texts;
    std::vector<ColumnSurvey> m_columns;
    WorkbookNotes m_notes;
    QByteArray m_derived;
};

} // namespace corvane
