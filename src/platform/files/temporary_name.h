#pragma once

#include <QtCore/QString>

namespace corvane {

/// The names by which removeAbandonedFiles() knows its own, "XXXXXX" where they differ.
QString temporaryTemplate(const QString &folder);
/// The same with "??????".
QString temporaryPattern();

QString randomTemporaryName(const QString &folder);
/// Always the same for one key.
QString temporaryNameFor(const QString &folder, const QString &key);

} // namespace corvane
