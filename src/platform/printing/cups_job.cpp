#include "platform/printing/cups_job.h"

#include "platform/printing/print_delivery.h"
#include "platform/printing/print_error.h"

#include <QtCore/QFile>
#include <QtPrintSupport/QPrintEngine>
#include <QtPrintSupport/QPrinter>

#include <cups/cups.h>

namespace corvane {

namespace {

/// Where the print dialog leaves what only this printing system has, names and values in turn: a
/// cover sheet, a time to print at, odd pages only. Qt has no public name for the key.
constexpr auto kDialogOptions = QPrintEngine::PrintEnginePropertyKey(0xfe00);

QByteArray sides(const QPrinter &printer)
{
    switch (printer.duplex()) {
    case QPrinter::DuplexNone:
        return "one-sided";
    case QPrinter::DuplexShortSide:
        return "two-sided-short-edge";
    case QPrinter::DuplexAuto:
        if (printer.pageLayout().orientation() == QPageLayout::Landscape)
            return "two-sided-short-edge";
        [[fallthrough]];
    case QPrinter::DuplexLongSide:
        break;
    }
    return "two-sided-long-edge";
}

} // namespace

CupsOptions cupsOptionsOf(const QPrinter &printer)
{
    const QPageLayout layout = printer.pageLayout();
    CupsOptions options{{"media", layout.pageSize().key().toUtf8()}, {"sides", sides(printer)}};
    if (printer.copyCount() > 1) {
        options.emplaceBack("copies", QByteArray::number(printer.copyCount()));
        options.emplaceBack("Collate", printer.collateCopies() ? "True" : "False");
    }
    if (layout.orientation() == QPageLayout::Landscape)
        options.emplaceBack("landscape", QByteArray());
    const QStringList dialog = printer.printEngine()->property(kDialogOptions).toStringList();
    for (qsizetype i = 0; i + 1 < dialog.size(); i += 2)
        options.emplaceBack(dialog[i].toUtf8(), dialog[i + 1].toUtf8());
    return options;
}

void submitToQueue(const QPrinter &printer, const QString &fileName)
{
    cups_option_t *options = nullptr;
    int count = 0;
    for (const auto &[name, value] : cupsOptionsOf(printer))
        count = cupsAddOption(name.constData(), value.constData(), count, &options);
    // "queue/instance" is a queue with settings of its own, which the printer has taken over.
    const QByteArray queue = printer.printerName().section(u'/', 0, 0).toUtf8();
    const int job = cupsPrintFile(queue.constData(), QFile::encodeName(fileName).constData(),
        printer.docName().toUtf8().constData(), count, options);
    cupsFreeOptions(count, options);
    if (job != 0)
        return;
    throw PrintError(QStringLiteral(
        "The report was not printed on %1. The printing system says: %2. See whether the "
        "printer is set up and switched on, then print again.")
                         .arg(printerWords(printer), QString::fromUtf8(cupsLastErrorString())));
}

} // namespace corvane
