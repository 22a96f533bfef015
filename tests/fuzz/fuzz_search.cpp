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

/// Appends a text as a search does, behind a blank that is not its own.
template <typename Text>
void appends(const QString &text, CaseRule rule, const SearchFolding::Folded &folded)
{
    static SearchFolding folding; // learning letters takes long
    Text out(1, ' ');
    std::vector<OriginStep> steps;
    const bool fits = folding.append(text, rule, out, steps);
    if (!fits) {
        promise(out.size() == 1 && steps.empty(), "what does not fit leaves nothing");
        promise(std::ranges::any_of(folded.text, [](char16_t c) { return c > 0xff; })
                && sizeof(out[0]) == 1,
            "only wide letters do not fit");
        return;
    }
    promise(out.size() == folded.text.size() + 1, "both ways of folding are as long");
    for (size_t i = 0; i < folded.text.size(); ++i) {
        const auto letter = std::make_unsigned_t<typename Text::value_type>(out[i + 1]);
        promise(letter == folded.text[i], "both ways of folding agree");
    }
    for (quint32 i = 0; i <= folded.text.size(); ++i)
        promise(originOf(steps, i) == originOf(folded.steps, i), "both know the origins");
}

void folds(const QString &text, CaseRule rule, const SearchFolding::Folded &folded)
{
    quint32 before = 0;
    for (quint32 i = 0; i < folded.text.size(); ++i) {
        const quint32 origin = originOf(folded.steps, i);
        promise(
            origin >= before && origin < quint32(text.size()), "folded letters keep their order");
        before = origin;
    }
    promise(originOf(folded.steps, quint32(folded.text.size())) == quint32(text.size()),
        "the end's origin is the end");
    promise(folded.text.find(SearchFolding::kSeparator) == std::u16string::npos,
        "no letter is the separator");
    appends<std::string>(text, rule, folded);
    appends<std::u16string>(text, rule, folded);
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
    // A ligature is one hit, however many of its letters match.
    const qint64 plain = plainHits(folded.text, folding.fold(pattern, rule).text);
    promise(search.hitCount() <= plain && (search.hitCount() > 0) == (plain > 0),
        "a search finds what is there");
    promise(search.hitCount() == plain || !folded.steps.empty(),
        "where each letter stands for itself it finds all of it");
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
