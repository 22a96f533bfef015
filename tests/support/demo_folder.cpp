#include "support/demo_folder.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>

namespace corvane::test {

DemoFolder::DemoFolder(int patients)
{
    const int status = QProcess::execute(QStringLiteral(CORVANE_DEMO_CLINIC),
        {m_folder.path(), QStringLiteral("--patients"), QString::number(patients)});
    if (status != 0)
        qFatal("corvane-demo-clinic ended with status %d", status);
}

void DemoFolder::write(const QString &name, const QByteArray &bytes) const
{
    QDir(path()).mkpath(QFileInfo(name).path());
    QFile target(file(name));
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(target.fileName()));
}

QByteArray DemoFolder::read(const QString &name) const
{
    QFile source(file(name));
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

QByteArray providerList(const QByteArray &more)
{
    return "[Data Source]\nRecordSource1=SELECT provider_id, last_name FROM CorvaneDB.dbo.providers ORDER BY provider_id\n"
           "Fields=2\n[Columns]\nFields=0|1\nHeading=Id|Name;\nSpacing=2000|3000;\nPageColumns=1\nFont=Arial;9\nFontsize=9\n"
        + more;
}

} // namespace corvane::test
