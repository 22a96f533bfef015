#pragma once

#include <QtCore/QString>

#include <span>

namespace corvane {

/// The candidate that a misspelt word is most like, case and blanks aside; empty when none is near.
QString nearWord(QStringView word, std::span<const QString> candidates);

} // namespace corvane
