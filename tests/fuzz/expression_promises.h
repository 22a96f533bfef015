#pragma once

#include <QtCore/QString>

namespace corvane::test {

/// Compiles and evaluates an input of the fuzzer. Bytes that are no UTF-8 become half of a
/// surrogate pair, so that broken texts turn up while the corpus stays readable.
/// @return which promise of expressions it breaks; empty: none
QString brokenPromise(QByteArrayView input);

} // namespace corvane::test
