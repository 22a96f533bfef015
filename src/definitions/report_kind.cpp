#include "definitions/report_kind.h"

#include "platform/files/reach.h"
#include "platform/messages/system_words.h"
#include "shared/profile.h"
#include "shared/report_host.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

constexpr qint64 kMarkerBytes = 60;
constexpr qint64 kMegabyte = qint64(1024) * 1024;

QByteArray firstBytes(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(kMarkerBytes) : QByteArray();
}

} // namespace

int getReportType(const QString &path)
{
    const QByteArray start = firstBytes(path);
    if (start.contains("<Reports>") && start.contains("<?xml version=\"1.0\""))
        return DesignedReport;
    return ReadINI(path, u"Columns", u"PageColumns").trimmed().isEmpty() ? NoReport : TabularReport;
}

int listedReportType(const QString &path)
{
    return ReadINI(path, u"Columns", u"PageColumns").isEmpty() ? DesignedReport : TabularReport;
}

QString unreadableReason(const QString &path)
{
    const QString shown = QDir::toNativeSeparators(path);
    const QFileInfo info(path);
    if (info.isDir())
        return QStringLiteral("\"%1\" is a folder, not a report definition.").arg(shown);
    if (info.exists() && !info.isFile())
        return QStringLiteral("\"%1\" is no file. A report definition is a file of text.").arg(shown);
    if (info.size() > kLargestProfile) {
        return QStringLiteral("\"%1\" has %2 MB, more than is read. A definition has some kilobytes: look whether it is the right file.")
            .arg(shown)
            .arg(info.size() / kMegabyte);
    }
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return {};
    const QString words = QStringLiteral("The report definition \"%1\" cannot be read: %2.");
    if (const QString reason = outOfReachReason(path); !reason.isEmpty())
        return words.arg(shown, reason) + QStringLiteral(" If it is on the network, check the connection.");
    return words.arg(shown, info.exists() ? systemWords(file.errorString()) : QStringLiteral("there is no such file"));
}

} // namespace corvane
