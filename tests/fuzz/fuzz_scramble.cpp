#include "fuzz/promise.h"
#include "shared/code_page.h"
#include "shared/run_time_fault.h"
#include "shared/scramble.h"

using namespace corvane;
using test::promise;

namespace {

/// What the two do one after the other; null where one of them refuses.
template <typename First, typename Second>
QString bothWays(const QString &text, First first, Second second)
{
    QString changed;
    try {
        changed = first(text);
    } catch (const RunTimeFault &fault) {
        promise(fault.number() == RunTimeFault::InvalidArgument, "a refusal is fault 5");
        return {};
    }
    return second(changed); // what was scrambled can always be taken back, and the other way round
}

void staysTheSame(const QString &text)
{
    for (const QString &back :
        {bothWays(text, scramblePW, unscramblePW), bothWays(text, unscramblePW, scramblePW)})
        promise(back.isNull() || back == text, "there and back is the same password");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    const QString text = fromWindows1252(bytes);
    for (qsizetype i = 0; i < text.size(); ++i)
        promise(
            toWindows1252(text[i]) == uchar(bytes[i]), "every byte of the code page comes back");
    staysTheSame(text);
    staysTheSame(test::inputText(bytes));
    return 0;
}
