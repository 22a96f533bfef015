#pragma once

namespace corvane {

/// Makes previews known to screen readers as documents that say the text of their current page.
/// Once is enough; more do no harm.
void describePreviewsToReaders();

} // namespace corvane
