#include "shell/report_list_view.h"

#include "platform/controls/icons.h"
#include "session/report_list.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QKeyEvent>

namespace corvane {

namespace {

constexpr int kIconSize = 16;
constexpr int kItemSpacing = 2;

} // namespace

ReportListView::ReportListView(QWidget *parent)
    : QListWidget(parent)
{
    setUniformItemSizes(true);
    setIconSize({kIconSize, kIconSize});
    setSpacing(kItemSpacing);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { Q_EMIT chosen(item->text()); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ReportListView::refill);
}

void ReportListView::setFolder(const QString &folder)
{
    m_folder = folder;
    refill();
}

void ReportListView::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentItem())
        Q_EMIT chosen(currentItem()->text());
    else
        QListWidget::keyPressEvent(event);
}

void ReportListView::refill()
{
    // The folder above is watched too, because the reports' folder may come and go.
    const QStringList watched {m_folder, QFileInfo(m_folder).absolutePath()};
    for (const QString &folder : watched) {
        if (QFileInfo(folder).isDir() && !m_watcher.directories().contains(folder))
            m_watcher.addPath(folder);
    }
    const QStringList files = reportFiles(m_folder);
    QStringList shown;
    for (int row = 0; row < count(); ++row)
        shown += item(row)->text();
    if (files == shown)
        return;
    const QString current = currentItem() ? currentItem()->text() : QString();
    clear();
    const QIcon reportIcon = icon(QStringLiteral("report"));
    for (const QString &file : files) {
        auto *entry = new QListWidgetItem(reportIcon, file, this);
        if (file == current)
            setCurrentItem(entry);
    }
}

} // namespace corvane
