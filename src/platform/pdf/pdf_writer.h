#pragma once

#include "platform/composer/document.h"
#include "platform/files/file_replacement.h"

#include <QtCore/QString>

#include <stdexcept>

namespace corvane {

/// Whether a file says in which order its headings, paragraphs and cells are read. That takes room and
/// time for every cell, so long documents do without unless asked.
enum class PdfTagging { ShortDocuments, Always, Never };
inline constexpr int kShortDocument = 500; ///< pages

struct PdfOptions {
    QString producer = QStringLiteral("Corvane Reporter 1.0");
    PdfTagging tagging = PdfTagging::ShortDocuments;
    int threads = 0; ///< that compress, the caller's own included; 0: as many as the machine has, 4 at the most
};

/// A PDF that could not be written; the words name the file and the cause.
class PdfError : public std::runtime_error
{
public:
    explicit PdfError(const QString &message);
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// Writes the document as PDF 1.7 (ISO 32000-1): real text, fonts embedded as subsets, one page for
/// each of the document's, tagged as the options say. Written beside the target and renamed into place, so that a failure leaves
/// an older file as it was. The same document gives the same bytes, dates and
/// id aside, whatever the number of threads; none of them outlives the call.
/// @throws PdfError when the document is not whole or the file cannot be written.
void writePdf(const Document &document, const QString &fileName, const PdfOptions &options = {});

/// The same in two steps, for several files that are to appear together: this one writes all there is, and
/// the caller commits it.
void writePdf(const Document &document, FileReplacement &file, const PdfOptions &options = {});
FileReplacement pdfReplacement(const QString &fileName);

} // namespace corvane
