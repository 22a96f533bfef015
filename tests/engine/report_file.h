#pragma once

#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

namespace corvane::test {

/// A temporary folder of report files and pictures.
class ReportFolder
{
public:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
            ? file.fileName()
            : QString();
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// A picture of one blue dot.
inline QByteArray smallPicture()
{
    return QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGOQ96sEAAF2AOe2j1NWAAAAAElF"
        "TkSuQmCC");
}

} // namespace corvane::test
