#pragma once

#include "platform/composer/document.h"

namespace corvane {

class Desktop;

/// Whether a document may leave the program; otherwise a notice says why not.
bool mayExport(Desktop &desktop, const DocumentPtr &document);

/// Asks for a file name, writes the document there as PDF and opens it.
/// Deliberate: the question comes before the write, "No" writes nothing, and a cancelled file dialog
/// followed by "Yes" ends in the failure message, which names no cause.
/// @return why there is no file, as a sentence; empty when there is one or none was wanted
QString savepdf(Desktop &desktop, const DocumentPtr &document, const QString &programFolder);

} // namespace corvane
