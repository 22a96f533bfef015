#pragma once

#include <QtCore/QTemporaryDir>

namespace corvane::test {

/// A program folder made by the demo clinic's own generator, with files of the test's beside it.
class DemoFolder
{
public:
    explicit DemoFolder(int patients = 200);

    QString path() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }
    QString report(const QString &name) const { return m_folder.filePath(QStringLiteral("Reports/") + name); }

    /// Writes or replaces a file below the folder.
    void write(const QString &name, const QByteArray &bytes) const;
    QByteArray read(const QString &name) const;

private:
    QTemporaryDir m_folder;
};

/// A definition that lists providers: short, quick, no dates. `more` goes behind it.
QByteArray providerList(const QByteArray &more = {});

} // namespace corvane::test
