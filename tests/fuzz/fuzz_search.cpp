#include "fuzz/promise.h"
#include "platform/preview/document_search.h"

using namespace corvane;
using test::promise;

namespace {

/// One page with one paragraph, which is all that a search looks at.
DocumentPtr pageOf(const QString &text)
{
    auto document = std::make_shared<Document>();
    Page page;
    page.text = text;
    page.runs.push_back({0, 0, 0, quint32(text.size()), 0, 0, 0});
    page.blocks.push_back({});
    document->pages.push_back(std::move(page));
    return document;
}

/// The hits that a plain search of the folded text finds, one behind the other.
qint64 plainHits(const std::u16string &text, const std::u16string &pattern)
{
    qint64 hits = 0;
    for (size_t at = text.find(pattern); at != std::u16string::npos;
         at = text.find(pattern, at + pattern.size()))
        ++hits;
    return hits;
}

void folds(const QString &text, CaseRule rule, const SearchFolding::Folded &folded)
{
    promise(folded.origins.size() == folded.text.size() + 1, "every folded letter has an origin");
    promise(std::ranges::is_sorted(folded.origins), "folded letters keep their order");
    promise(folded.origins.back() == quint32(text.size()), "the end's origin is the end");
    static SearchFolding folding; // learning letters takes long
    if (folding.keepsLength(text))
        for (qsizetype i = 0; i < text.size(); ++i)
            promise(folding.letter(text[i].unicode(), rule) == folded.text.at(size_t(i)),
                "both ways of folding agree");
}

void finds(const QString &text, const QString &pattern, CaseRule rule)
{
    static const SearchFolding folding;
    const auto folded = folding.fold(text, rule);
    folds(text, rule, folded);
    static DocumentSearch search; // learns letters, which takes long
    search.setDocument(pageOf(text));
    search.start(pattern, rule, 0);
    if (!search.isActive())
        return;
    search.finish();
    promise(search.hitCount() == plainHits(folded.text, folding.fold(pattern, rule).text),
        "a search finds what is there");
    const auto hits = search.hitsOn(0);
    promise(qint64(hits.size()) == search.hitCount(), "the hits of all pages are all hits");
    for (const TextStretch &hit : hits)
        promise(!hit.isEmpty() && hit.end <= quint32(text.size()), "a hit lies within its page");
}

} // namespace

/// What is searched for in the first line, a page's text behind it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const test::InputParts parts(QByteArrayView(data, qsizetype(size)));
    for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match})
        finds(test::inputText(parts.rest), test::inputText(parts.line), rule);
    return 0;
}
