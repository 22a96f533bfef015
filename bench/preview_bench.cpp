#include "preview_bench.h"

#include "measured.h"

#include "platform/composer/page_composer.h"
#include "platform/preview/document_search.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_pane.h"

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

constexpr int kRowsPerPage = 50;

DocumentPtr report(int pages)
{
    const QStringList names{QStringLiteral("Abernathy"), QStringLiteral("Díaz"),
        QStringLiteral("O'Neill"), QStringLiteral("Lindqvist"), QStringLiteral("Castellano"),
        QStringLiteral("Fontaine"), QStringLiteral("Åkesson")};
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

template <typename Work> void keepBest(double &best, Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    best = std::min(best, double(timer.nsecsElapsed()) / 1e6);
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
    constexpr double kNever = std::numeric_limits<double>::max();
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

/// A jump ends with the page painted.
void measureJumps(const DocumentPtr &large, const DocumentPtr &small, int rounds)
{
    constexpr double kNever = std::numeric_limits<double>::max();
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
}

} // namespace

bool measurePreview(int pages, int rounds)
{
    const DocumentPtr document = report(pages);
    const QString block = oneBlock(*document);
    std::printf(
        "%d pages, %.0f million letters\n\n", document->pageCount(), double(block.size()) / 1e6);
    std::printf("text               case        hits in block | block ms |  first  again\n");
    for (const QString &text : {QStringLiteral("lindqvist"), QStringLiteral("abernathy"),
             QStringLiteral("room 9"), QStringLiteral("an"), QStringLiteral("zebra crossing")})
        measureSearch(document, block, text, CaseRule::Ignore, rounds);
    measureSearch(document, block, QStringLiteral("Lindqvist"), CaseRule::Match, rounds);
    measureSearch(document, block, QStringLiteral("zebra crossing"), CaseRule::Match, rounds);
    measureJumps(document, report(1), rounds);
    return true;
}

} // namespace corvane::bench
