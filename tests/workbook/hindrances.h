#pragma once

#include <QtCore/QString>

#include <functional>
#include <vector>

namespace corvane::test {

/// The file that is to be written.
const QString kUsual = QStringLiteral("out.xls");

/// Something that stands in the way until what it returns is called.
using Hindrance = std::function<std::function<void()>(const QString &folder)>;

struct HindranceRow
{
    const char *name;
    Hindrance hindrance;
    const char *cause; ///< as the message says it
};

/// Those that each system makes in its own way; `whole`: how many bytes the file has when nothing is.
std::vector<HindranceRow> systemHindrances(qint64 whole);

} // namespace corvane::test
