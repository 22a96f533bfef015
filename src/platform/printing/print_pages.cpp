#include "platform/printing/print_pages.h"

#include "platform/painting/page_painter.h"
#include "platform/printing/page_fit.h"
#include "platform/printing/page_selection.h"
#include "platform/printing/print_delivery.h"
#include "platform/printing/print_error.h"

#include <QtGui/QPainter>
#include <QtPrintSupport/QPrinter>

#include <cmath>

namespace corvane {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr double kTwipsPerInch = 1440;

QSizeF pageSize(const Document &document)
{
    return QSizeF(document.paperWidth.count(), document.paperHeight.count());
}

QPageRanges askedPages(const QPrinter &printer, const Document &document, int currentPage)
{
    if (printer.printRange() == QPrinter::PageRange && !printer.pageRanges().isEmpty())
        return printer.pageRanges();
    QPageRanges asked;
    if (printer.printRange() == QPrinter::CurrentPage)
        asked.addPage(currentPage + 1);
    else
        asked.addRange(1, std::max(document.pageCount(), 1));
    return asked;
}

std::vector<int> chosenPages(const QPrinter &printer, const Document &document, int currentPage)
{
    const QPageRanges asked = askedPages(printer, document, currentPage);
    QList<std::pair<int, int>> ranges;
    for (const QPageRanges::Range &range : asked.toRangeList())
        ranges.emplaceBack(range.from, range.to);
    std::vector<int> pages = pagesInRanges(ranges, document.pageCount());
    if (!pages.empty())
        return pages;
    throw PrintError(QStringLiteral(
        "Nothing was printed. The pages asked for, %1, are not among the report's %2. "
        "Choose other pages.")
                         .arg(asked.toString())
                         .arg(document.pageCount()));
}

std::vector<int> jobPages(const QPrinter &printer, std::vector<int> pages)
{
    const int copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    return printingOrder(std::move(pages),
        printer.pageOrder() == QPrinter::LastPageFirst ? PageOrder::LastPageFirst
                                                       : PageOrder::FirstPageFirst,
        copies, printer.collateCopies() ? CopyOrder::Collated : CopyOrder::PageByPage);
}

PageFit fitOn(const QPrinter &printer, const Document &document, std::span<const int> pages)
{
    QPageLayout layout = printer.pageLayout();
    layout.setUnits(QPageLayout::Point);
    const QRectF paper = layout.fullRect(QPageLayout::Point);
    const QRectF printable = paper.marginsRemoved(layout.minimumMargins());
    return fitPage(pageSize(document), inkedArea(document, pages), paper.size() * kTwipsPerPoint,
        QRectF(printable.topLeft() * kTwipsPerPoint, printable.size() * kTwipsPerPoint));
}

QString scalingNote(const QPrinter &printer, const PageFit &fit)
{
    return QStringLiteral("The pages were printed at %1 % of their size, to fit the printable area "
                          "of the paper (%2).")
        .arg(std::floor(fit.scale * 100))
        .arg(printer.pageLayout().pageSize().name());
}

/// @return whether all pages were painted; else the progress asked to stop
bool paintPages(QPrinter &printer, const Document &document, std::span<const int> pages,
    const PageFit &fit, const PrintProgress &progress)
{
    QPainter painter;
    if (!painter.begin(&printer)) {
        throw PrintError(QStringLiteral(
            "The report was not printed on %1. The printer does not take a job now. See "
            "whether it is set up and switched on, then print again.")
                             .arg(printerWords(printer)));
    }
    const double unit = printer.resolution() / kTwipsPerInch;
    const QRectF visible({}, pageSize(document) * unit * fit.scale);
    PagePainter pagePainter;
    for (size_t i = 0; i < pages.size(); ++i) {
        if (progress && !progress(int(i + 1), int(pages.size()))) {
            printer.abort();
            return false;
        }
        if (i > 0 && !printer.newPage()) {
            printer.abort();
            throw PrintError(QStringLiteral(
                "Printing on %1 ended before page %2. See whether the printer is switched "
                "on and has paper, then print again.")
                                 .arg(printerWords(printer))
                                 .arg(i + 1));
        }
        painter.resetTransform();
        painter.translate(fit.origin * unit);
        pagePainter.paint(painter, document, pages[i], unit * fit.scale, visible);
    }
    return painter.end();
}

} // namespace

void requestPaper(QPrinter &printer, const Document &document)
{
    const QSizeF size = pageSize(document) / kTwipsPerPoint;
    const bool isLandscape = size.width() > size.height();
    // In this order: printers look up the margins of a size for the orientation that they have
    // then.
    printer.setPageOrientation(isLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setPageSize(QPageSize(isLandscape ? size.transposed() : size, QPageSize::Point));
    printer.setDocName(document.info.title);
    printer.setCreator(QStringLiteral("Corvane Reporter"));
}

PrintResult printPages(QPrinter &printer, const Document &document, const PrintOptions &options)
{
    if (!document.isWhole) {
        throw PrintError(QStringLiteral(
            "The report was not printed. It is not complete. Run the report again and let "
            "it finish."));
    }
    const std::vector<int> pages
        = jobPages(printer, chosenPages(printer, document, options.currentPage));
    // The document has margins of its own: positions count from the corner of the paper.
    printer.setFullPage(true);
    const PageFit fit = fitOn(printer, document, pages);
    PrintResult result;
    result.pageCount = int(pages.size());
    if (fit.isScaled())
        result.notes += scalingNote(printer, fit);
    PrintDelivery delivery(printer);
    if (!paintPages(printer, document, pages, fit, options.progress))
        return {PrintOutcome::Stopped, 0, {}};
    delivery.handOver();
    return result;
}

} // namespace corvane
