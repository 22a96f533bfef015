#pragma once

#include <QtCore/qglobal.h>

#include <vector>

namespace corvane {

class RecordWriter;

/// One sheet's rows and columns, heading included.
struct SheetExtent
{
    int rows = 0;
    int columns = 0;
};

/// What a filter needs in the workbook's globals: the hidden name _FilterDatabase of each sheet
/// with the references that it is made of ([MS-XLS] SupBook, ExternSheet, Lbl).
void writeFilterNames(RecordWriter &out, const std::vector<SheetExtent> &sheets);
/// The table of all drawings: each heading's button is a drawn object ([MS-ODRAW]
/// OfficeArtDggContainer).
void writeFilterDrawingGroup(RecordWriter &out, const std::vector<SheetExtent> &sheets);

/// In a sheet, before its dimensions: the number of filtered columns ([MS-XLS] AutoFilterInfo).
void writeFilterInfo(RecordWriter &out, int columns);
/// In a sheet, after its cells: a drop-down button over each heading ([MS-XLS] Obj with FtLbsData).
/// Readers that are strict show no button without them. `sheet` counts from 1.
void writeFilterButtons(RecordWriter &out, int sheet, int columns);

} // namespace corvane
