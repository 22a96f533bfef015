#pragma once

#include <QtCore/QMap>
#include <QtCore/QStringList>

namespace corvane::test {

/// A cell as another program reads it. Types: text, number, boolean, date, time, formula.
/// Numbers have 15 digits; dates are "2024-10-04" or "2024-10-04T13:30:00.000", times
/// "13:30:00.000".
struct ReadCell
{
    QString type;
    QString value;

    bool operator==(const ReadCell &) const = default;
};

/// What another program reads of one workbook; rows and columns count from 0.
struct ReadWorkbook
{
    QStringList sheets;
    QMap<QString, ReadCell> cells; ///< by "Sheet!row,column"
    QMap<QString, QString> formats; ///< number format codes and "bold"; from xlrd only
    QStringList facts; ///< sheets, filters, names, properties, in the reader's words

    ReadCell at(int row, int column, int sheet = 0) const
    {
        return cells.value(
            QStringLiteral("%1!%2,%3").arg(sheets.value(sheet)).arg(row).arg(column));
    }
};

/// Both readers take all files in one start, which costs seconds. A reader that fails or is missing
/// gives no workbooks and its words in `fault`.
QList<ReadWorkbook> readWithOfficeSuite(
    const QStringList &files, const QString &scratchFolder, QString &fault);
QList<ReadWorkbook> readWithXlrd(const QStringList &files, QString &fault);

/// A stream of the container, by the same independent reader.
QByteArray containerStream(const QString &file, const QString &name, QString &fault);

} // namespace corvane::test
