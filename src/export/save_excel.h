#pragma once

#include "platform/workbook/workbook_writer.h"

#include <QtCore/QString>

namespace corvane {

class DataControl;
class Desktop;
class ReportHost;

/// Asks for the workbook's name; empty when the user cancels. A name that ends in ".xlsx" gets ".xls"
/// appended and the user is told, since that is what is written.
QString SentToExcel(Desktop &desktop, const QString &programFolder);

/// Asks for a file name, saves the rows of the grid `fg` there as an Excel workbook, tells what could not
/// be kept as it was and offers to open the file. Without rows nothing is asked or written.
/// @throws WorkbookError when the file cannot be written; an older one is as it was.
void SaveExcel(Desktop &desktop, ReportHost &host, const DataControl &fg, const WorkbookOptions &options,
    const QString &programFolder);

} // namespace corvane
