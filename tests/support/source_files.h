#pragma once

#include <QtCore/QDir>
#include <QtCore/QFile>

namespace corvane::test {

/// The project's own folder, whose pages and drawings tests read too.
inline const QDir kSource(QStringLiteral(CORVANE_SOURCE_DIR));

/// A file's text, in UTF-8; empty when it cannot be read.
inline QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace corvane::test
