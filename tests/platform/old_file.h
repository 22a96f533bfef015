#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <memory>

namespace corvane::test {

/// What tests of replacing start from: a folder of their own with the older file "out.txt" in it.
class OldFile
{
protected:
    void renew()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        write("out.txt", "old");
    }
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QByteArray read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace corvane::test
