#pragma once

#include "platform/engine/report_control.h"

#include <QtCore/QTemporaryDir>

namespace corvane::test {

/// Renders a designed report from XML text over made-up rows. Paper is Letter with margins of one
/// inch unless the text says otherwise.
class LayoutFixture
{
public:
    /// The answer to a query: the first line names the columns, cells are separated by "|". Whole
    /// numbers, decimals ("12.50"), dates ("2026-01-31") and bytes ("0x00ff") become such, "~" a
    /// null.
    void answer(const QString &sql, const QString &table) { m_answers[sql] = table; }

    /// The content of the file's first <Report>, which is named "Main" and reads "rows"; more
    /// reports may follow in `others`.
    RenderResult render(const QString &report, const QString &table, const QString &others = {});
    /// The words of the ReportError that rendering ends with; empty when it does not.
    QString refusal(const QString &report, const QString &table, const QString &others = {});

    RenderSettings settings;
    bool bindToItself = false; ///< puts the report into its own sub-report fields
    QStringList queries; ///< that ran, in their order

private:
    QTemporaryDir m_folder;
    std::map<QString, QString> m_answers;
};

/// Columns "n", counting from 1, and "g", the same for `groupSize` rows.
QString numberedRows(int count, int groupSize = 1 << 30);

} // namespace corvane::test
