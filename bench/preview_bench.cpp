#include "preview_bench.h"

#include "measured.h"

#include "platform/composer/page_composer.h"
#include "platform/preview/document_search.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_pane.h"
#include "process_memory.h"

#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

namespace corvane::bench {

namespace {

constexpr int kRowsPerPage = 50;
constexpr double kNever = std::numeric_limits<double>::max();

/// @param lastName the seventh
DocumentPtr report(int pages, const QString &lastName)
{
    const QStringList names{QStringLiteral("Abernathy"), QStringLiteral("Díaz"),
        QStringLiteral("O'Neill"), QStringLiteral("Lindqvist"), QStringLiteral("Castellano"),
        QStringLiteral("Fontaine"), lastName};
    PageComposer composer;
    composer.startDocument({});
    for (int row = 0; composer.pageCount() <= pages; ++row) {
        if (row % (kRowsPerPage * 5) == 0)
            composer.addOutlineEntry(names[row / kRowsPerPage % 7]);
        composer.addTable(u"1800|1500|1500|1200|1600|1500;",
            u"Last Name|First Name|Date|Time|Status|Room;",
            QStringLiteral("%1|First%2|11/%3/2026|10:%4 AM|Therapist Cancel|Room %5;")
                .arg(names[row % 7])
                .arg(row % 613)
                .arg(1 + row % 30)
                .arg(10 + row % 50)
                .arg(row % 97),
            0, 0, row == 0 ? TableFlow::Starts : TableFlow::Continues);
    }
    auto document = std::make_shared<Document>(*composer.endDocument());
    document->pages.resize(size_t(pages));
    std::erase_if(
        document->outline, [&](const OutlineEntry &entry) { return entry.page >= pages; });
    return document;
}

QString oneBlock(const Document &document)
{
    QString block;
    for (const Page &page : document.pages)
        block += page.text;
    return block;
}

/// Milliseconds of the processor's time: nothing here waits, and others at work on the machine
/// would count.
template <typename Work> void keepBest(double &best, Work work)
{
    const std::clock_t before = std::clock();
    work();
    best = std::min(best, double(std::clock() - before) * 1e3 / CLOCKS_PER_SEC);
}

qint64 countIn(const QString &block, const QString &text, Qt::CaseSensitivity sensitivity)
{
    qint64 count = 0;
    for (qsizetype at = block.indexOf(text, 0, sensitivity); at >= 0;
         at = block.indexOf(text, at + text.size(), sensitivity))
        ++count;
    return count;
}

void measureSearch(const DocumentPtr &document, const QString &block, const QString &text,
    CaseRule rule, int rounds)
{
    double library = kNever;
    double first = kNever;
    double again = kNever;
    qint64 expected = 0;
    DocumentSearch search;
    const auto find = [&] {
        search.start(text, rule, 0);
        search.finish();
    };
    for (int i = 0; i < rounds; ++i) {
        const Qt::CaseSensitivity sensitivity
            = rule == CaseRule::Match ? Qt::CaseSensitive : Qt::CaseInsensitive;
        keepBest(library, [&] { expected = countIn(block, text, sensitivity); });
        search.setDocument(document);
        keepBest(first, find);
        keepBest(again, find);
    }
    record("search-first", first / library);
    record("search", again / library);
    std::printf("%-18s %-6s %9lld %9lld | %8.1f | %6.2f %6.2f\n", qPrintable(text),
        rule == CaseRule::Match ? "match" : "ignore", static_cast<long long>(search.hitCount()),
        static_cast<long long>(expected), library, first / library, again / library);
}

struct ScrollTimes
{
    double notch = kNever;
    double notchAtEnd = kNever;
    double notchMarked = kNever;
    double screen = kNever;
};

/// Each step ends with its strip painted.
ScrollTimes measureScrolling(const DocumentPtr &document, int rounds)
{
    constexpr int kSteps = 20;
    constexpr int kNotch = 120; // three lines of 40 pixels
    ScrollTimes times;
    Preview preview;
    preview.resize(1000, 1000);
    preview.show();
    preview.setZoomMode(ZoomMode::WholePage);
    preview.setDocument(document);
    const auto scroll = [&](double &best, int page, int pixels) {
        preview.goToPage(page);
        QApplication::processEvents();
        for (int i = 0; i < kSteps; ++i) {
            keepBest(best, [&] {
                preview.scrollBy({0, pixels});
                QApplication::processEvents();
            });
        }
    };
    for (int i = 0; i < rounds; ++i) {
        scroll(times.notch, 1, kNotch);
        scroll(times.screen, 1, preview.viewport()->height());
        scroll(times.notchAtEnd, document->pageCount() - 5, kNotch);
    }
    TextSelection all;
    all.selectAll(*document);
    preview.setSelection(all);
    for (int i = 0; i < rounds; ++i)
        scroll(times.notchMarked, 1, kNotch);
    return times;
}

/// A jump ends with the page painted.
void measureJumps(const DocumentPtr &large, const DocumentPtr &small, int rounds)
{
    double open = kNever;
    double onePage = kNever;
    double jump = kNever;
    Preview preview;
    preview.resize(1000, 1000);
    preview.show();
    preview.setZoomMode(ZoomMode::WholePage);
    for (int i = 0; i < rounds; ++i) {
        keepBest(open, [&] { preview.setDocument(large); });
        QApplication::processEvents();
        for (const int page : {large->pageCount() - 1, large->pageCount() / 2, 0}) {
            keepBest(jump, [&] {
                preview.goToPage(page);
                preview.viewport()->repaint();
            });
        }
        preview.setDocument(small);
        QApplication::processEvents();
        keepBest(onePage, [&] { preview.viewport()->repaint(); });
    }
    const ScrollTimes scrolling = measureScrolling(large, rounds);
    double whole = kNever;
    PreviewPane pane;
    pane.resize(1200, 1000);
    pane.show();
    for (int i = 0; i < rounds; ++i) {
        pane.preview()->setDocument(nullptr);
        keepBest(whole, [&] { pane.preview()->setDocument(large); });
    }
    record("preview-jump", jump / onePage);
    record("preview-open", whole / onePage);
    std::printf("\n%d pages, in times painting a report of one page: opening %.2f, with bar and "
                "side panel %.2f, a jump %.2f\n",
        large->pageCount(), open / onePage, whole / onePage, jump / onePage);
    std::printf(
        "a notch of the wheel %.2f, at the end of the report %.2f, with every letter marked "
        "%.2f, a screen %.2f\n",
        scrolling.notch / onePage, scrolling.notchAtEnd / onePage, scrolling.notchMarked / onePage,
        scrolling.screen / onePage);
}

/// A copy of everything, beside writing the same as text.
void measureCopying(const Document &document, int rounds)
{
    double text = kNever;
    double copy = kNever;
    double memoryMiB = 0;
    double sizeMiB = 0;
    const LetterPlace end{document.pageCount() - 1, quint32(document.pages.back().text.size())};
    for (int i = 0; i < rounds; ++i) {
        keepBest(text, [&] { documentText(document); });
        const MemoryRise rise;
        keepBest(copy, [&] {
            const QString copied = textForCopying(document, {0, 0}, end);
            sizeMiB = double(copied.size()) * sizeof(QChar) / (1 << 20);
        });
        memoryMiB = std::max(memoryMiB, rise.miB());
    }
    std::printf(
        "copying all of it: %.2f times writing it as text, %.0f MiB for a text of %.0f MiB\n",
        copy / text, memoryMiB, sizeMiB);
}

} // namespace

bool measurePreview(int pages, int rounds)
{
    const DocumentPtr document = report(pages, QStringLiteral("Åkesson"));
    {
        const QString block = oneBlock(*document);
        std::printf("%d pages, %.0f million letters\n\n", document->pageCount(),
            double(block.size()) / 1e6);
        std::printf("text               case        hits in block | block ms |  first  again\n");
        for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match}) {
            for (const QString &text :
                {QStringLiteral("Lindqvist"), QStringLiteral("Abernathy"), QStringLiteral("Room 9"),
                    QStringLiteral("an"), QStringLiteral("Díaz"), QStringLiteral("zebra crossing")})
                measureSearch(document, block, text, rule, rounds);
        }
    }
    measureCopying(*document, rounds);
    measureJumps(document, report(1, QStringLiteral("Åkesson")), rounds);

    std::printf("\nThe same with a letter on every page that is searched as two:\n");
    const DocumentPtr folding = report(pages, QStringLiteral("Strauß"));
    const QString block = oneBlock(*folding);
    for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match}) {
        for (const QString &text :
            {QStringLiteral("Lindqvist"), QStringLiteral("an"), QStringLiteral("zebra crossing")})
            measureSearch(folding, block, text, rule, rounds);
    }
    return true;
}

} // namespace corvane::bench
