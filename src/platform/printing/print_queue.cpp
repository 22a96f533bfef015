#include "platform/printing/print_queue.h"

#include "platform/printing/print_error.h"

#include <QtPrintSupport/QPrinter>
#include <QtPrintSupport/QPrinterInfo>

namespace corvane {

namespace {

QString unknownPrinter(const QString &name, const QStringList &known)
{
    const QString sentence
        = QStringLiteral("There is no printer \"%1\" on this computer. ").arg(name);
    if (known.isEmpty())
        return sentence
            + QStringLiteral(
                "None is set up; set one up in the system's settings and print again.");
    return sentence
        + QStringLiteral("Choose one of these: %1.").arg(known.join(QStringLiteral(", ")));
}

} // namespace

QStringList printerNames()
{
    return QPrinterInfo::availablePrinterNames();
}

PrintResult printToQueue(
    const Document &document, const QString &queueName, const QueueOptions &options)
{
    const QStringList known = printerNames();
    if (!known.contains(queueName))
        throw PrintError(unknownPrinter(queueName, known));
    QPrinter printer(QPrinterInfo::printerInfo(queueName), QPrinter::HighResolution);
    // A printer that vanished since it was listed would silently become a PDF file.
    if (printer.outputFormat() != QPrinter::NativeFormat)
        throw PrintError(unknownPrinter(queueName, printerNames()));
    requestPaper(printer, document);
    printer.setCopyCount(std::max(options.copies, 1));
    return printPages(printer, document, {.progress = options.progress});
}

} // namespace corvane
