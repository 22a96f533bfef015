#include "platform/preview/preview_pane.h"

#include "platform/preview/preview.h"
#include "platform/preview/preview_bar.h"
#include "platform/preview/side_panel.h"

#include <QtGui/QAction>
#include <QtGui/QFocusEvent>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

namespace corvane {

namespace {

constexpr int kFocusLine = 2; ///< pixels

} // namespace

PreviewPane::PreviewPane(QWidget *parent)
    : QWidget(parent)
    , m_preview(new Preview)
    , m_bar(new PreviewBar(m_preview, this))
    , m_splitter(new QSplitter(this))
    , m_side(new SidePanel(m_preview))
{
    m_splitter->setObjectName(QStringLiteral("sideSplitter"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(m_side);
    m_splitter->addWidget(withFocusLine());
    m_splitter->setStretchFactor(1, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_splitter, 1);

    connect(m_preview, &Preview::documentChanged, this, &PreviewPane::showSidePanel);
    connect(m_preview->action(PreviewCommand::SidePanel), &QAction::triggered, this,
        &PreviewPane::toggleSidePanel);
    connect(m_splitter, &QSplitter::splitterMoved, this, [this] {
        m_sideWidth = m_side->width();
        keep();
    });
    connect(m_preview, &Preview::zoomChanged, this, &PreviewPane::keep);
    connect(m_preview, &Preview::viewModeChanged, this, &PreviewPane::keep);
    connect(m_side, &SidePanel::tabChosen, this, &PreviewPane::keep);
    showSidePanel();
}

/// The paper, under a line that shows where keys go once it was reached by them.
QWidget *PreviewPane::withFocusLine()
{
    auto *framed = new QWidget;
    m_focusLine = new QWidget(framed);
    m_focusLine->setObjectName(QStringLiteral("focusLine"));
    m_focusLine->setFixedHeight(kFocusLine);
    m_focusLine->setAutoFillBackground(true);
    m_focusLine->setBackgroundRole(QPalette::Window);
    auto *column = new QVBoxLayout(framed);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_focusLine);
    column->addWidget(m_preview, 1);
    m_preview->installEventFilter(this);
    return framed;
}

bool PreviewPane::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        const bool isIn = event->type() == QEvent::FocusIn;
        // Menus and other windows only borrow the focus, so how the paper was reached still counts.
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            m_isReachedByMouse = isIn && reason == Qt::MouseFocusReason;
        if (reason != Qt::PopupFocusReason)
            m_focusLine->setBackgroundRole(
                isIn && !m_isReachedByMouse ? QPalette::Highlight : QPalette::Window);
    }
    return QWidget::eventFilter(watched, event);
}

int PreviewPane::barHeight() const
{
    return m_bar->sizeHint().height();
}

ViewSettings PreviewPane::viewSettings() const
{
    const ZoomMode mode = m_preview->zoomMode();
    return {.zoomMode = mode,
        .zoomPercent
        = mode == ZoomMode::Fixed ? m_preview->zoomPercent() : ViewSettings().zoomPercent,
        .viewMode = m_preview->viewMode(),
        .sidePanel = m_sideWanted,
        .sideTab = m_side->tab(),
        .sideWidth = m_sideWidth};
}

void PreviewPane::setViewSettings(const ViewSettings &settings)
{
    m_preview->setViewMode(settings.viewMode);
    if (settings.zoomMode == ZoomMode::Fixed)
        m_preview->setZoomPercent(settings.zoomPercent);
    else
        m_preview->setZoomMode(settings.zoomMode);
    m_side->setTab(settings.sideTab);
    m_sideWanted = settings.sidePanel;
    m_sideWidth = settings.sideWidth;
    showSidePanel();
}

void PreviewPane::keepViewSettings(QSettings &store)
{
    m_store = nullptr;
    m_kept = readViewSettings(store);
    setViewSettings(m_kept);
    m_store = &store;
}

/// A report without anywhere to jump to has no panel, whatever the user likes.
void PreviewPane::showSidePanel()
{
    QAction *toggle = m_preview->action(PreviewCommand::SidePanel);
    toggle->setEnabled(!m_side->isEmpty());
    toggle->setChecked(m_sideWanted && toggle->isEnabled());
    m_side->setVisible(toggle->isChecked());
    m_splitter->setSizes({m_sideWidth, std::max(1, width() - m_sideWidth)});
}

void PreviewPane::toggleSidePanel(bool on)
{
    m_sideWanted = on;
    if (!on && m_side->isAncestorOf(window()->focusWidget()))
        m_preview->setFocus();
    showSidePanel();
    keep();
}

void PreviewPane::keep()
{
    // A page that fits changes its scale with the window: nothing to write each time.
    if (m_store && std::exchange(m_kept, viewSettings()) != viewSettings())
        writeViewSettings(*m_store, m_kept);
}

} // namespace corvane
