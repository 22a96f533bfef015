#pragma once

#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>

namespace corvane::test {

/// The two tables of ARCHITECTURE.md: which folder may include which, and where a library's headers may
/// stand. Folders are named as below src/; "demo" and "bench" stand beside it.
struct IncludeRules {
    QMap<QString, QSet<QString>> folders;   ///< by including folder
    QMap<QString, QSet<QString>> libraries; ///< by what a library's include starts with
};

/// Reads the table headed "folder | may include" and the one headed "headers | only in". Names stand in
/// backquotes, other words are passed over.
IncludeRules readIncludeRules(const QString &markdown);

/// One line for each fault of the sources below root/src, root/demo and root/bench: "file:line: why".
QStringList includeFaults(const IncludeRules &rules, const QString &root);

/// One line for each folder of the table that can be reached from itself.
QStringList circles(const IncludeRules &rules);

} // namespace corvane::test
