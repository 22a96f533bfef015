#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtWidgets/QListWidget>

namespace corvane {

/// The list of report definitions: a click or Enter chooses, arrow keys only move. It keeps itself
/// current with its folder and shows the file names as they are.
class ReportListView : public QListWidget
{
    Q_OBJECT

public:
    explicit ReportListView(QWidget *parent = nullptr);

    /// Lists the "*.rpt" files of the folder from now on, should it exist or not.
    void setFolder(const QString &folder);
    const QString &folder() const { return m_folder; }

Q_SIGNALS:
    void chosen(const QString &fileName);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void refill();

    QString m_folder;
    QFileSystemWatcher m_watcher;
};

} // namespace corvane
