#pragma once

#include "platform/preview/view_settings.h"

#include <QtWidgets/QTabWidget>

class QTreeView;

namespace corvane {

class OutlineModel;
class Preview;
class ThumbnailList;

/// Beside the pages: the document's groups and its pages in small, to jump to.
class SidePanel : public QTabWidget
{
    Q_OBJECT

public:
    /// The preview must outlive the panel.
    explicit SidePanel(Preview *preview, QWidget *parent = nullptr);

    /// Whether there is nowhere to jump to: no groups and at most one page.
    bool isEmpty() const;
    /// The tab that the user chose last, though a report without groups shows the other one.
    SideTab tab() const { return m_tab; }
    void setTab(SideTab tab);

Q_SIGNALS:
    void tabChosen();

private:
    void makeOutline();
    void makeThumbnails();
    void showDocument();
    void showPage(int page);
    void goToGroup(const class QModelIndex &index);

    Preview *m_preview;
    OutlineModel *m_groups;
    QTreeView *m_outline;
    ThumbnailList *m_thumbnails;
    SideTab m_tab = SideTab::Groups;
    bool m_following = false; ///< the mark moves because the pages moved, or the other way round
};

} // namespace corvane
