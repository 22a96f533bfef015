#pragma once

#include <QtCore/QString>

#include <cstdint>

namespace corvane::test {

/// Ends the program with the words of a promise that the input broke; whoever feeds it keeps the
/// input.
void promise(bool kept, const char *words);

/// A fuzzer's input as text. Bytes that are no UTF-8 become half of a surrogate pair, so that
/// broken texts turn up while the corpus stays readable.
QString inputText(QByteArrayView input);

/// An input of two things: its first line and what follows.
struct InputParts
{
    explicit InputParts(QByteArrayView input);

    QByteArray line;
    QByteArray rest;
};

} // namespace corvane::test

/// What every fuzzing program defines: one input, looked at from all sides.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
