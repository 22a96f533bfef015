#include "engine/fixed_context.h"
#include "fuzz/promise.h"

using namespace corvane;
using test::promise;

/// Compiles and evaluates the input as an expression of a designed report.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = test::inputText(QByteArrayView(data, qsizetype(size)));
    const auto compiled = Expression::compile(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&compiled)) {
        promise(!fault->words.isEmpty(), "a fault has words");
        promise(fault->offset >= 0 && fault->offset <= text.size(), "a fault lies within its text");
        return 0;
    }
    const QString value = test::evaluated(text);
    promise(value == test::evaluated(text), "the same row gives the same value");
    const QString enclosed = test::evaluated(QString(u'(' + text + u')'));
    promise(value == enclosed || enclosed.contains(u"more than"),
        "parentheses around an expression change nothing");
    return 0;
}
