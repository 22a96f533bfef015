#pragma once

#include <QtCore/QStringList>

namespace corvane::test {

/// What an independent reader prints about a file. A reader that is missing or fails gives a text that
/// starts with "FAILED", so that no comparison passes without it.
QString readerOutput(const QString &program, const QStringList &arguments);

/// Text as poppler and as mupdf see it; poppler's either in the order of the contents or in the one
/// that it works out for a reader.
enum class TextOrder { Contents, Reader };
QString popplerText(const QString &fileName, TextOrder order = TextOrder::Contents);
QString mupdfText(const QString &fileName);

/// Letters in their composed form, every stretch of white space one blank, direction marks left out:
/// readers differ in these.
QString normalised(const QString &text);

} // namespace corvane::test
