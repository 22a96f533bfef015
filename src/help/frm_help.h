#pragma once

#include <QtWidgets/QWidget>

class QAction;
class QLineEdit;
class QListWidget;
class QToolBar;

namespace corvane {

class HelpBrowser;
struct HelpTopic;

/// The help window: contents or search results on the left, a topic on the right.
class frmHelp : public QWidget
{
    Q_OBJECT

public:
    explicit frmHelp(QWidget *parent = nullptr);

    void showTopic(const HelpTopic &topic);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildForm();
    QToolBar *buildToolBar();
    void connectControls();
    void txtsearch_Change();
    void listContents();
    void lstTopics_Click();
    void followPage(const QUrl &url);

    QLineEdit *txtsearch;
    QListWidget *lstTopics;
    HelpBrowser *m_page;
    QAction *m_back = nullptr;
    QAction *m_forward = nullptr;
    QAction *m_home = nullptr;
};

} // namespace corvane
