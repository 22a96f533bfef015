#include "shell/report_list_view.h"

#include "definitions/report_kind.h"
#include "platform/controls/icons.h"
#include "platform/controls/tool_tip.h"
#include "render/report_hint.h"
#include "session/report_list.h"
#include "shared/report_host.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>
#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

namespace corvane {

namespace {

constexpr int kIconSize = 16;
constexpr int kItemSpacing = 2;
constexpr int kEmptyTextMargin = 16;

/// Holds the place of an icon, so that a name stays where it is when its icon comes.
QIcon emptyIcon()
{
    QPixmap pixmap(kIconSize, kIconSize);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

} // namespace

ReportListView::ReportListView(QWidget *parent)
    : QListWidget(parent)
    , m_unknownIcon(emptyIcon())
{
    setUniformItemSizes(true);
    setIconSize({kIconSize, kIconSize});
    setSpacing(kItemSpacing);
    makeIcons();
    m_kindTimer.setSingleShot(true);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { Q_EMIT chosen(item->text()); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ReportListView::folderChanged);
    connect(&m_kindTimer, &QTimer::timeout, this, &ReportListView::readNextKind);
}

void ReportListView::setFolder(const QString &folder)
{
    m_folder = folder;
    folderChanged();
}

void ReportListView::setFilter(const QString &typed)
{
    m_filter = ReportFilter(typed);
    QToolTip::hideText(); // its name may be gone
    applyFilter();
    if (isShown(currentItem()))
        scrollToItem(currentItem());
    else
        scrollToTop();
}

void ReportListView::goToShown()
{
    if (isShown(currentItem()))
        return;
    if (const auto shown = shownItems(); !shown.isEmpty())
        setCurrentItem(shown.front());
}

bool ReportListView::chooseShown()
{
    const auto shown = shownItems();
    if (shown.size() == 1)
        setCurrentItem(shown.front());
    if (!isShown(currentItem()))
        return false;
    Q_EMIT chosen(currentItem()->text());
    return true;
}

/// The base class finds names that are filtered out too.
void ReportListView::keyboardSearch(const QString &search)
{
    QListWidgetItem *before = currentItem();
    QListWidget::keyboardSearch(search);
    if (!isShown(currentItem()) && isShown(before))
        setCurrentItem(before);
}

bool ReportListView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QListWidget::viewportEvent(event);
    showToolTip(*static_cast<QHelpEvent *>(event));
    return true;
}

void ReportListView::showToolTip(const QHelpEvent &event)
{
    const QListWidgetItem *item = itemAt(event.pos());
    if (!item) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(event.globalPos(), plainToolTip(reportHint(pathOf(*item))), viewport(), visualItemRect(item));
}

void ReportListView::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter)
        QListWidget::keyPressEvent(event);
    else if (isShown(currentItem()))
        Q_EMIT chosen(currentItem()->text());
}

void ReportListView::focusInEvent(QFocusEvent *event)
{
    QListWidget::focusInEvent(event);
    if (currentItem() && currentItem()->isHidden() && event->reason() != Qt::MouseFocusReason)
        goToShown();
}

void ReportListView::changeEvent(QEvent *event)
{
    QListWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::ApplicationPaletteChange)
        return;
    makeIcons();
    for (int row = 0; row < count(); ++row) {
        if (const auto kind = m_kinds.constFind(item(row)->text()); kind != m_kinds.constEnd())
            showKind(*item(row), *kind);
    }
}

void ReportListView::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    if (!m_kindTimer.isActive() && nextWithoutKind())
        m_kindTimer.start();
    if (m_emptyText.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRect free = viewport()->rect().adjusted(kEmptyTextMargin, kEmptyTextMargin, -kEmptyTextMargin, -kEmptyTextMargin);
    painter.drawText(free, int(Qt::AlignHCenter) | int(Qt::AlignTop) | int(Qt::TextWordWrap), m_emptyText);
}

void ReportListView::folderChanged()
{
    m_kinds.clear();
    refill();
    viewport()->update();
}

void ReportListView::refill()
{
    watchFolders();
    const QStringList files = reportFiles(m_folder);
    const QSet<QString> present(files.begin(), files.end());
    for (int row = count() - 1; row >= 0; --row) {
        if (!present.contains(item(row)->text()))
            delete takeItem(row);
    }
    for (int row = 0; row < files.size(); ++row) {
        if (row == count() || item(row)->text() != files[row])
            insertItem(row, new QListWidgetItem(m_unknownIcon, files[row]));
    }
    applyFilter();
}

void ReportListView::watchFolders()
{
    // The folder above is watched too, because the reports' folder may come and go.
    const QStringList watched {m_folder, QFileInfo(m_folder).absolutePath()};
    for (const QString &folder : watched) {
        if (QFileInfo(folder).isDir() && !m_watcher.directories().contains(folder))
            m_watcher.addPath(folder);
    }
}

void ReportListView::applyFilter()
{
    for (int row = 0; row < count(); ++row)
        item(row)->setHidden(!m_filter.matches(item(row)->text()));
    showEmptyText();
}

void ReportListView::showEmptyText()
{
    m_emptyText = count() == 0 ? tr("There are no reports in the folder %1.").arg(QDir::toNativeSeparators(m_folder))
        : shownItems().isEmpty() ? tr("No report has such a name.")
                                 : QString();
    setAccessibleDescription(m_emptyText);
    viewport()->update();
}

QList<QListWidgetItem *> ReportListView::shownItems() const
{
    QList<QListWidgetItem *> shown;
    for (int row = 0; row < count(); ++row) {
        if (!item(row)->isHidden())
            shown += item(row);
    }
    return shown;
}

QString ReportListView::pathOf(const QListWidgetItem &item) const
{
    return QDir(m_folder).filePath(item.text());
}

/// The first name on screen whose kind was not read yet; null when there is none.
QListWidgetItem *ReportListView::nextWithoutKind() const
{
    const QRect screen = viewport()->rect();
    QListWidgetItem *top = itemAt(2 * kItemSpacing, 0);
    if (!top) // a gap between two names
        top = itemAt(2 * kItemSpacing, 2 * kItemSpacing + 1);
    for (int row = top ? this->row(top) : 0; row < count(); ++row) {
        QListWidgetItem *entry = item(row);
        if (entry->isHidden())
            continue;
        if (!visualItemRect(entry).intersects(screen))
            return nullptr;
        if (!m_kinds.contains(entry->text()))
            return entry;
    }
    return nullptr;
}

void ReportListView::readNextKind()
{
    QListWidgetItem *item = nextWithoutKind();
    if (!item)
        return;
    showKind(*item, m_kinds[item->text()] = getReportType(pathOf(*item)));
    m_kindTimer.start();
}

/// A click runs everything as designed that is not tabular, so its icon says so too.
void ReportListView::showKind(QListWidgetItem &item, int kind) const
{
    const bool isTabular = kind == TabularReport;
    item.setIcon(isTabular ? m_tabularIcon : m_designedIcon);
    item.setData(Qt::AccessibleDescriptionRole, isTabular ? tr("Tabular report") : tr("Designed report"));
}

void ReportListView::makeIcons()
{
    m_tabularIcon = icon(QStringLiteral("report"), palette());
    m_designedIcon = icon(QStringLiteral("designed-report"), palette());
}

} // namespace corvane
