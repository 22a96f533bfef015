#pragma once

#include "platform/printing/print_pages.h"

namespace corvane {

class Desktop;

/// Asks with the system's print dialog how to print the document and prints it. Says so when no
/// printer is set up, offering a PDF file instead, and when printing fails.
/// @return what was printed; empty when the user cancelled or there was nothing that may be
/// printed, and after a failure
std::optional<PrintResult> printDocument(
    Desktop &desktop, const DocumentPtr &document, const PrintOptions &options = {});

} // namespace corvane
