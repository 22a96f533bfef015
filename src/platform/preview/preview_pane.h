#pragma once

#include "platform/preview/view_settings.h"

#include <QtWidgets/QWidget>

class QSettings;
class QSplitter;

namespace corvane {

class Preview;
class PreviewBar;
class SidePanel;

/// The preview with all that belongs to it: the bar above, the panel beside. Follows the user's
/// view settings and, once it is given a store, keeps them there.
class PreviewPane : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);

    Preview *preview() const { return m_preview; }
    /// Of the bar above the preview, in pixels: what stands beside it can be as high.
    int barHeight() const;

    ViewSettings viewSettings() const;
    void setViewSettings(const ViewSettings &settings);
    /// Takes the settings from a store, which must outlive the pane, and writes every change to it.
    void keepViewSettings(QSettings &store);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *withFocusLine();
    void showSidePanel();
    void toggleSidePanel(bool on);
    void keep();

    Preview *m_preview;
    PreviewBar *m_bar; // made before what stands below it: Tab goes from top to bottom
    QSplitter *m_splitter;
    QWidget *m_focusLine = nullptr;
    bool m_isReachedByMouse = false; ///< the paper, when it got the focus last
    SidePanel *m_side;
    QSettings *m_store = nullptr;
    ViewSettings m_kept; ///< as the store has them
    bool m_sideWanted = true;
    int m_sideWidth = ViewSettings().sideWidth;
};

} // namespace corvane
