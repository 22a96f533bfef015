#include "platform/preview/side_panel.h"

#include "platform/controls/control_names.h"
#include "platform/preview/outline_model.h"
#include "platform/preview/preview.h"
#include "platform/preview/thumbnail_list.h"

#include <QtCore/QScopedValueRollback>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTreeView>

namespace corvane {

namespace {

constexpr int kIndent = 14;
constexpr int kRowPadding = 3; ///< above and below a title

/// Roomy rows, the page numbers quieter than the titles.
class OutlineDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * kRowPadding);
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() == 1)
            option->palette.setColor(
                QPalette::Text, option->palette.color(QPalette::PlaceholderText));
    }
};

} // namespace

SidePanel::SidePanel(Preview *preview, QWidget *parent)
    : QTabWidget(parent)
    , m_preview(preview)
    , m_groups(new OutlineModel(this))
{
    nameControl(this, QStringLiteral("sidePanelTabs"), tr("Groups and pages"));
    setDocumentMode(true);
    tabBar()->setAccessibleName(tr("Groups and pages"));
    setMinimumWidth(ViewSettings::kLeastSideWidth);
    makeOutline();
    makeThumbnails();
    addTab(m_outline, tr("Groups"));
    addTab(m_thumbnails, tr("Pages"));
    // Only the user's own clicks count as a choice: a report without groups hides the first tab.
    const auto choose = [this](int index) {
        m_tab = SideTab(index);
        Q_EMIT tabChosen();
    };
    connect(tabBar(), &QTabBar::tabBarClicked, this, [choose](int index) {
        if (index >= 0)
            choose(index);
    });
    connect(this, &QTabWidget::currentChanged, this, [this, choose](int index) {
        if (tabBar()->hasFocus())
            choose(index);
    });
    connect(m_preview, &Preview::documentChanged, this, &SidePanel::showDocument);
    connect(m_preview, &Preview::currentPageChanged, this, &SidePanel::showPage);
    showDocument();
}

bool SidePanel::isEmpty() const
{
    return m_preview->pageCount() <= 1 && m_groups->isEmpty();
}

void SidePanel::setTab(SideTab tab)
{
    m_tab = tab;
    setCurrentIndex(isTabVisible(int(tab)) ? int(tab) : int(SideTab::Pages));
}

void SidePanel::makeOutline()
{
    m_outline = new QTreeView(this);
    nameControl(m_outline, QStringLiteral("outline"), tr("Groups"));
    m_outline->setModel(m_groups);
    m_outline->setItemDelegate(new OutlineDelegate(m_outline));
    m_outline->setFrameShape(QFrame::NoFrame);
    m_outline->setHeaderHidden(true);
    m_outline->setUniformRowHeights(true);
    m_outline->setIndentation(kIndent);
    m_outline->setAllColumnsShowFocus(true);
    m_outline->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_outline->header()->setStretchLastSection(false);
    m_outline->header()->setMinimumSectionSize(0);
    m_outline->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_outline->header()->setSectionResizeMode(1, QHeaderView::Fixed);
    connect(m_outline->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex &current) { goToGroup(current); });
    // A click on the marked group goes back to where it starts.
    connect(m_outline, &QTreeView::clicked, this, &SidePanel::goToGroup);
}

void SidePanel::makeThumbnails()
{
    m_thumbnails = new ThumbnailList(this);
    nameControl(m_thumbnails, QStringLiteral("thumbnails"), tr("Pages"));
    connect(m_thumbnails, &ThumbnailList::pageChosen, m_preview, &Preview::goToPage);
    connect(m_thumbnails, &QListView::clicked, m_preview,
        [this](const QModelIndex &page) { m_preview->goToPage(page.row()); });
}

void SidePanel::showDocument()
{
    const QScopedValueRollback following(m_following, true);
    m_groups->setDocument(m_preview->document());
    m_thumbnails->setDocument(m_preview->document());
    const QString widest = QString::number(m_preview->pageCount()) + u"000";
    m_outline->header()->resizeSection(1, m_outline->fontMetrics().horizontalAdvance(widest));
    m_outline->setRootIsDecorated(false);
    for (int row = 0; row < m_groups->rowCount() && !m_outline->rootIsDecorated(); ++row)
        m_outline->setRootIsDecorated(m_groups->hasChildren(m_groups->index(row, 0)));
    setTabVisible(int(SideTab::Groups), !m_groups->isEmpty());
    setTab(m_tab);
    showPage(m_preview->currentPage());
}

void SidePanel::showPage(int page)
{
    m_thumbnails->showPage(page);
    if (m_following && m_outline->currentIndex().isValid())
        return;
    const QScopedValueRollback following(m_following, true);
    m_outline->setCurrentIndex(page < 0 ? QModelIndex() : m_groups->groupOf(page));
}

void SidePanel::goToGroup(const QModelIndex &index)
{
    if (m_following || !index.isValid())
        return;
    const QScopedValueRollback following(m_following, true);
    const OutlineEntry &group = m_groups->entry(index);
    m_preview->goToPlace(group.page, group.top);
}

} // namespace corvane
