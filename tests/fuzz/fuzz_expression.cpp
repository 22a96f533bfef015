#include "engine/fixed_context.h"

#include <cstdint>

/// Compiles the input and evaluates it on the fixed row. Bytes that are no UTF-8 become half of a surrogate pair, so
/// that broken texts turn up while the corpus stays readable.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    const QString text = QString::fromUtf8(bytes).replace(QChar::ReplacementCharacter, QChar(0xd800));
    corvane::test::evaluated(text);
    return 0;
}
