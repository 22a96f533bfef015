#pragma once

#include "platform/composer/document.h"

#include <QtCore/QStringList>

#include <functional>

class QPrinter;

namespace corvane {

/// Called before each page with its number in the job, from 1, and the number of pages in the job.
/// False stops the job.
using PrintProgress = std::function<bool(int page, int pageCount)>;

struct PrintOptions
{
    int currentPage = 0; ///< what "Current page" means, from 0
    PrintProgress progress;
};

enum class PrintOutcome { Printed, Stopped };

struct PrintResult
{
    PrintOutcome outcome = PrintOutcome::Printed;
    int pageCount = 0; ///< pages handed over; copies that the printer makes by itself count once
    QStringList notes; ///< what a reader of the paper should know: pages scaled down
};

/// Asks the printer for the document's own paper and orientation and names the job after the
/// report.
void requestPaper(QPrinter &printer, const Document &document);

/// Prints the pages that the printer's settings ask for, as vectors, and returns once the printing
/// system or the file has all of them. Nothing is handed over of a job that stops or fails.
/// @throws PrintError
PrintResult printPages(
    QPrinter &printer, const Document &document, const PrintOptions &options = {});

} // namespace corvane
