#pragma once

#include "platform/printing/print_pages.h"

namespace corvane {

struct QueueOptions
{
    int copies = 1;
    PrintProgress progress;
};

/// The printers that the system knows. Needs a QGuiApplication, as everything here does.
QStringList printerNames();

/// Prints a whole document on a printer by its name, on the document's own paper, without a dialog.
/// Returns once the printing system has accepted the job. @throws PrintError
PrintResult printToQueue(
    const Document &document, const QString &queueName, const QueueOptions &options = {});

} // namespace corvane
