#include "fuzz/expression_promises.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString broken = corvane::test::brokenPromise(QByteArrayView(data, qsizetype(size)));
    if (!broken.isEmpty()) {
        qWarning("Broken: %s", qPrintable(broken));
        std::abort();
    }
    return 0;
}
