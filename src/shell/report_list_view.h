#pragma once

#include "shell/report_filter.h"

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QHash>
#include <QtCore/QTimer>
#include <QtWidgets/QListWidget>

class QHelpEvent;

namespace corvane {

/// The list of report definitions: a click or Enter chooses, arrow keys only move. It keeps itself
/// current with its folder and shows the file names as they are. What stands in a definition is read for
/// the names on screen alone, one file at a time between the window's events: kinds for their icons, header
/// texts when a tooltip asks.
class ReportListView : public QListWidget
{
    Q_OBJECT

public:
    explicit ReportListView(QWidget *parent = nullptr);

    /// Lists the "*.rpt" files of the folder from now on, should it exist or not.
    void setFolder(const QString &folder);
    const QString &folder() const { return m_folder; }

    /// Shows only the names that match what was typed.
    void setFilter(const QString &typed);
    /// Makes the first shown name the current one, unless the current one is shown.
    void goToShown();
    /// Chooses the only shown name, else the current one where it is shown; false when there is neither.
    bool chooseShown();

    void keyboardSearch(const QString &search) override;

Q_SIGNALS:
    void chosen(const QString &fileName);

protected:
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void folderChanged();
    void refill();
    void watchFolders();
    void applyFilter();
    void showEmptyText();
    QList<QListWidgetItem *> shownItems() const;
    bool isShown(const QListWidgetItem *item) const { return item && !item->isHidden(); }
    QString pathOf(const QListWidgetItem &item) const;
    void showToolTip(const QHelpEvent &event);

    QListWidgetItem *nextWithoutKind() const;
    void readNextKind();
    void showKind(QListWidgetItem &item, int kind) const;
    void makeIcons();

    QString m_folder;
    QFileSystemWatcher m_watcher;
    ReportFilter m_filter;
    QString m_emptyText; ///< where the names would be
    QHash<QString, int> m_kinds; ///< by file name, of those read since the folder changed
    QTimer m_kindTimer;
    QIcon m_unknownIcon;
    QIcon m_tabularIcon;
    QIcon m_designedIcon;
};

} // namespace corvane
