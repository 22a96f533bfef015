#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace corvane {

/// The one of the words that a person probably meant: at most a third of its letters differ,
/// letters' case aside. Empty: none is near.
QString nearWord(QStringView written, const QStringList &words);

/// Which words there are, as the end of a sentence: `; did you mean "width"?`, else `; possible are
/// "a" and "b".`
QString suggestion(QStringView written, const QStringList &words);

} // namespace corvane
