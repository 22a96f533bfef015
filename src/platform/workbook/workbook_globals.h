#pragma once

#include "platform/workbook/auto_filter.h"

#include <QtCore/QStringList>

#include <vector>

namespace corvane {

class CellFormats;

struct WorkbookSheet
{
    QString name;
    qsizetype firstRow = 0; ///< of the rowset
    SheetExtent extent;
};

/// The workbook's globals up to the shared texts ([MS-XLS] Globals Substream): window, fonts,
/// formats, sheets, filters.
/// @return where each sheet's position in the stream is to be put, in the order of the sheets
/// (BoundSheet8, lbPlyPos)
std::vector<quint32> writeGlobals(RecordWriter &out, const std::vector<WorkbookSheet> &sheets,
    const CellFormats &formats, const QString &author);

/// BOF of the globals or of a sheet.
enum class Substream : quint16 { Globals = 0x0005, Sheet = 0x0010 };
void writeBeginOfFile(RecordWriter &out, Substream type);

} // namespace corvane
