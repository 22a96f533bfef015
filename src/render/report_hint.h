#pragma once

#include <QtCore/QString>

namespace corvane {

/// What a definition says about its report, as lines of plain text, without running it: the
/// header's texts of a tabular report, the title of a designed one; the file's name where it gives
/// neither, and for a definition that cannot be read the sentence that says why.
QString reportHint(const QString &path);

} // namespace corvane
