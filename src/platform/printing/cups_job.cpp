#include "platform/printing/cups_job.h"

#include "platform/printing/print_delivery.h"
#include "platform/printing/print_error.h"

#include <QtCore/QFile>
#include <QtCore/QLibrary>
#include <QtPrintSupport/QPrintEngine>
#include <QtPrintSupport/QPrinter>

#include <cups/cups.h>

namespace corvane {

namespace {

/// Where the print dialog leaves what only this printing system has, names and values in turn: a
/// cover sheet, a time to print at, odd pages only. Qt has no public name for the key.
constexpr auto kDialogOptions = QPrintEngine::PrintEnginePropertyKey(0xfe00);

constexpr int kCupsVersion = 2; ///< of its binary interface

/// The printing system's library. Not linked, because with the nine others that it brings every start
/// of a program would wait for it; a printer has loaded it before a job can be handed over, and the
/// toolkit's package for printing depends on it.
struct Cups
{
    decltype(&::cupsAddOption) addOption = nullptr;
    decltype(&::cupsPrintFile) printFile = nullptr;
    decltype(&::cupsFreeOptions) freeOptions = nullptr;
    decltype(&::cupsLastErrorString) lastErrorString = nullptr;
};

template <typename Function> void resolve(QLibrary &library, Function &function, const char *name)
{
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function)
        throw PrintError(
            QStringLiteral("The report was not printed: the library of the printing system, "
                           "libcups, cannot be used. %1. Install it and print again.")
                .arg(library.errorString()));
}

/// @throws PrintError when it is not installed
Cups loadCups()
{
    QLibrary library(QStringLiteral("cups"), kCupsVersion);
    Cups cups;
    resolve(library, cups.addOption, "cupsAddOption");
    resolve(library, cups.printFile, "cupsPrintFile");
    resolve(library, cups.freeOptions, "cupsFreeOptions");
    resolve(library, cups.lastErrorString, "cupsLastErrorString");
    return cups;
}

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
    static const Cups cups = loadCups();
    cups_option_t *options = nullptr;
    int count = 0;
    for (const auto &[name, value] : cupsOptionsOf(printer))
        count = cups.addOption(name.constData(), value.constData(), count, &options);
    // "queue/instance" is a queue with settings of its own, which the printer has taken over.
    const QByteArray queue = printer.printerName().section(u'/', 0, 0).toUtf8();
    const int job = cups.printFile(queue.constData(), QFile::encodeName(fileName).constData(),
        printer.docName().toUtf8().constData(), count, options);
    cups.freeOptions(count, options);
    if (job != 0)
        return;
    throw PrintError(QStringLiteral(
        "The report was not printed on %1. The printing system says: %2. See whether the "
        "printer is set up and switched on, then print again.")
                         .arg(printerWords(printer), QString::fromUtf8(cups.lastErrorString())));
}

} // namespace corvane
