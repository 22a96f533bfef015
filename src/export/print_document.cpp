#include "export/print_document.h"

#include "export/save_pdf.h"
#include "platform/desktop/desktop.h"
#include "platform/printing/print_error.h"
#include "platform/printing/print_queue.h"

#include <QtPrintSupport/QPrinter>

namespace corvane {

namespace {

const QString kTitle = QStringLiteral("Corvane");

/// Without a printer the print dialog would have nothing to choose from.
bool chooseFile(Desktop &desktop, QPrinter &printer)
{
    const MessageAnswer answer = desktop.message(
        QStringLiteral(
            "No printer is set up on this computer. Set one up in the system's settings and "
            "print again.\n\nDo you want to print to a PDF file instead?"),
        MessageFlags::YesNo | MessageFlags::Exclamation, kTitle);
    if (answer != MessageAnswer::Yes)
        return false;
    const QString fileName = desktop.saveFile({QStringLiteral("Print to file"), {},
        QStringLiteral("PDF Files (*.pdf)|*.pdf"), QStringLiteral("*.pdf")});
    if (fileName.isEmpty())
        return false;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(fileName);
    return true;
}

} // namespace

std::optional<PrintResult> printDocument(
    Desktop &desktop, const DocumentPtr &document, const PrintOptions &options)
{
    if (!mayExport(desktop, document))
        return {};
    QPrinter printer(QPrinter::HighResolution);
    requestPaper(printer, *document);
    const bool isChosen = printerNames().isEmpty()
        ? chooseFile(desktop, printer)
        : desktop.printDialog(printer, document->pageCount());
    if (!isChosen)
        return {};
    try {
        return printPages(printer, *document, options);
    } catch (const PrintError &error) {
        desktop.message(error.message(), MessageFlags::Exclamation, kTitle);
        return {};
    }
}

} // namespace corvane
