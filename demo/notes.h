#pragma once

#include "demo/random.h"

#include <optional>
#include <string>

namespace corvane::demo {

/// What the therapist wrote after a session; empty when nothing was. Some run over many lines, some
/// hold semicolons and bars, a few hold words in other scripts.
std::optional<std::string> sessionNote(Random &random);

/// Why the patient did not come; often empty.
std::optional<std::string> absenceNote(Random &random);

} // namespace corvane::demo
