#pragma once

#include "platform/database/rowset.h"
#include "tabular/getrs.h"

#include <vector>

namespace corvane {

/// Lays the rows of one rowset into the document: groups, captions, counts, cells and notes.
class TabularBuild
{
public:
    TabularBuild(const TabularRun &run, const QString &spacing, const QString &heading);

    void writeRows(const Rowset &rows);
    void writeTotals();

private:
    enum class CellFormat { Text, MinToTime, ColorToStatus };
    struct Column {
        int ordinal = 0;
        CellFormat format = CellFormat::Text;
    };

    void readRecordKeys();
    CellFormat formatWord(int ordinal) const;
    void startGroup(const QString &value);
    void breakPageForGroup();
    void addHeadingRow();
    void addTotalRow(QStringView label, float count);
    void addRow(const Rowset &rows, qsizetype row);
    void appendCell(const Value &value, CellFormat format);
    void addNote(const Value &value);

    const TabularRun &m_run;
    const QString &m_spacing;
    const QString &m_heading;

    // Read once per run.
    std::vector<Column> m_columns;
    int m_groupField = 0;
    bool m_countsGroups = false;
    bool m_countsAll = false;
    bool m_printsGrandTotal = false;

    // Looked at again for each record, should the definition change while the report runs.
    int m_noteField = 0;
    double m_noteIndent = 0;
    bool m_breaksPageOnGroup = false;
    bool m_landscape = false;

    bool m_isFirst = true;
    QString m_groupValue;
    float m_groupCount = 0;
    float m_grandCount = 0;
    QString m_body; ///< reused for every row
    QString m_text; ///< reused for every group value and note
};

} // namespace corvane
