#include "fuzz/promise.h"

#include <cstdio>
#include <cstdlib>

namespace corvane::test {

void promise(bool kept, const char *words)
{
    if (kept)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", words);
    std::abort();
}

QString inputText(QByteArrayView input)
{
    return QString::fromUtf8(input).replace(QChar::ReplacementCharacter, QChar(0xd800));
}

InputParts::InputParts(QByteArrayView input)
{
    const qsizetype end = input.indexOf('\n');
    line = input.first(end < 0 ? input.size() : end).toByteArray();
    rest = input.sliced(end < 0 ? input.size() : end + 1).toByteArray();
}

} // namespace corvane::test
