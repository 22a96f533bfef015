#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace corvane {

/// Which words there are, as the end of a sentence: "; did you mean width?" where one is near what
/// was written, else a list of them.
QString suggestion(QStringView written, const QStringList &words);

} // namespace corvane
