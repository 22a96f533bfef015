#include "shell/dropped_report.h"

#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QUrl>

namespace corvane {

QString droppedReport(const QMimeData &dragged)
{
    const QList<QUrl> urls = dragged.urls();
    if (urls.size() != 1 || !urls.front().isLocalFile())
        return {};
    const QString file = urls.front().toLocalFile();
    return QFileInfo(file).isFile() ? file : QString();
}

} // namespace corvane
