// What the preview does with keys, wheel, mouse and its menu.

#include "platform/controls/icons.h"
#include "platform/controls/tool_tip.h"
#include "platform/preview/document_links.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_finder.h"
#include "platform/preview/preview_pointer.h"

#include <QtGui/QAction>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QHelpEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QMenu>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr double kWheelStep = 1.1;
constexpr int kKeptOnPaging = 40; ///< pixels of the old screen that stay in view

QString tooltipOf(const QAction &action)
{
    QString name = action.text();
    return QStringLiteral("%1 (%2)").arg(
        name.remove(u'…'), action.shortcut().toString(QKeySequence::NativeText));
}

} // namespace

bool Preview::event(QEvent *event)
{
    if (event->type() == QEvent::ScreenChangeInternal)
        refit();
    return QAbstractScrollArea::event(event);
}

bool Preview::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Gesture:
        m_pointer->pinch(*static_cast<QGestureEvent *>(event));
        return event->isAccepted();
    case QEvent::NativeGesture:
        m_pointer->pinch(*static_cast<QNativeGestureEvent *>(event));
        return event->isAccepted();
    case QEvent::ToolTip: {
        const auto *help = static_cast<QHelpEvent *>(event);
        const QString target = m_pointer->linkTargetAt(help->pos());
        QToolTip::showText(
            help->globalPos(), webAddress(target) ? plainToolTip(target) : QString(), viewport());
        return true;
    }
    default:
        return QAbstractScrollArea::viewportEvent(event);
    }
}

void Preview::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        updateIcons();
        viewport()->update();
    }
}

void Preview::contextMenuEvent(QContextMenuEvent *event)
{
    if (pageCount() == 0)
        return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("previewMenu"));
    fillMenu(menu,
        event->reason() == QContextMenuEvent::Mouse ? m_pointer->linkTargetAt(event->pos())
                                                    : QString());
    menu.exec(event->globalPos());
}

void Preview::focusOutEvent(QFocusEvent *event)
{
    m_pointer->setHandKey(false); // its release goes elsewhere now
    QAbstractScrollArea::focusOutEvent(event);
}

void Preview::keyPressEvent(QKeyEvent *event)
{
    if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != Qt::NoModifier) {
        event->ignore(); // the actions' keys, also while there is nothing for them to do
        return;
    }
    const int screen
        = std::max(verticalScrollBar()->singleStep(), viewport()->height() - kKeptOnPaging);
    switch (event->key()) {
    case Qt::Key_Plus:
        return action(Command::ZoomIn)->trigger(); // does nothing where the action is off
    case Qt::Key_Minus:
        return action(Command::ZoomOut)->trigger();
    case Qt::Key_PageDown:
        return scrollVertically(screen);
    case Qt::Key_PageUp:
        return scrollVertically(-screen);
    case Qt::Key_Down:
        return scrollVertically(verticalScrollBar()->singleStep());
    case Qt::Key_Up:
        return scrollVertically(-verticalScrollBar()->singleStep());
    case Qt::Key_Space:
        if (!m_pointer->isHandKeyDown())
            m_pointer->setHandKey(true); // scrolls when it is let go without having moved the paper
        return;
    case Qt::Key_Home:
        return goToPage(m_currentPage);
    case Qt::Key_End:
        if (m_currentPage >= 0)
            scrollTo(QPointF(horizontalScrollBar()->value(),
                m_layout.pageRect(m_currentPage).bottom() + 1 + PreviewLayout::kMargin
                    - viewport()->height()));
        return;
    case Qt::Key_Escape:
        if (!m_selection.isEmpty())
            return setSelection({});
        event->ignore();
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event); // left and right
    }
}

void Preview::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space || !m_pointer->isHandKeyDown())
        return QAbstractScrollArea::keyReleaseEvent(event);
    const int screen
        = std::max(verticalScrollBar()->singleStep(), viewport()->height() - kKeptOnPaging);
    if (!m_pointer->wasHandUsed())
        scrollVertically(event->modifiers().testFlag(Qt::ShiftModifier) ? -screen : screen);
    if (!event->isAutoRepeat()) // a key held down lets go and presses again: it scrolls on and
                                // stays the hand
        m_pointer->setHandKey(false);
}

void Preview::mousePressEvent(QMouseEvent *event)
{
    m_pointer->press(*event);
}

void Preview::mouseMoveEvent(QMouseEvent *event)
{
    m_pointer->move(*event);
}

void Preview::mouseReleaseEvent(QMouseEvent *event)
{
    m_pointer->release(*event);
}

void Preview::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_pointer->doubleClick(*event);
}

void Preview::wheelEvent(QWheelEvent *event)
{
    const int turned = event->angleDelta().y();
    if (event->modifiers().testFlag(Qt::ControlModifier) && pageCount() > 0) {
        if (turned != 0)
            zoomAround(m_zoomPercent
                    * std::pow(kWheelStep, turned / double(QWheelEvent::DefaultDeltasPerStep)),
                event->position());
        event->accept();
        return;
    }
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        scrollBy({-turned * QApplication::wheelScrollLines() * horizontalScrollBar()->singleStep()
                / QWheelEvent::DefaultDeltasPerStep,
            0});
        event->accept();
        return;
    }
    const int before = verticalScrollBar()->value();
    QAbstractScrollArea::wheelEvent(event);
    if (m_viewMode != ViewMode::SinglePage || verticalScrollBar()->value() != before) {
        m_wheelRest = 0;
        return;
    }
    m_wheelRest += turned;
    if (std::abs(m_wheelRest) >= QWheelEvent::DefaultDeltasPerStep)
        turnPage(std::exchange(m_wheelRest, 0) < 0 ? 1 : -1);
    event->accept();
}

void Preview::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    refit();
}

void Preview::scrollContentsBy(int dx, int dy)
{
    // At fractions of a pixel what is on the screen cannot be moved without blurring it.
    if (devicePixelRatioF() == std::floor(devicePixelRatioF()))
        viewport()->scroll(dx, dy);
    else
        viewport()->update();
    if (!m_placing)
        noteVisiblePage();
}

void Preview::makeActions()
{
    for (size_t i = 0; i < kPreviewCommandCount; ++i) {
        const PreviewCommandLook &look = lookOf(Command(i));
        auto *made = new QAction(tr(look.text), this);
        made->setObjectName(QLatin1StringView(look.name));
        made->setShortcuts(keysOf(Command(i)));
        made->setShortcutContext(
            look.scope == KeyScope::Window ? Qt::WindowShortcut : Qt::WidgetWithChildrenShortcut);
        made->setToolTip(tooltipOf(*made));
        made->setCheckable(look.isSwitch);
        connect(made, &QAction::triggered, this, [this, i] { run(Command(i)); });
        addAction(made);
        m_actions[i] = made;
    }
    action(Command::SidePanel)->setEnabled(false);
    updateIcons();
    updateActions();
}

void Preview::updateIcons()
{
    for (QAction *each : m_actions)
        each->setIcon(icon(each->objectName(), palette()));
}

void Preview::updateActions()
{
    const bool hasPages = pageCount() > 0;
    for (const Command command : {Command::GoToPage, Command::ActualSize, Command::WholePage,
             Command::PageWidth, Command::SinglePage, Command::Find, Command::SelectAll})
        action(command)->setEnabled(hasPages);
    action(Command::FirstPage)->setEnabled(m_currentPage > 0);
    action(Command::PreviousPage)->setEnabled(m_currentPage > 0);
    action(Command::NextPage)->setEnabled(hasPages && m_currentPage < pageCount() - 1);
    action(Command::LastPage)->setEnabled(hasPages && m_currentPage < pageCount() - 1);
    action(Command::ZoomIn)->setEnabled(hasPages && m_zoomPercent < ViewSettings::kMostZoom);
    action(Command::ZoomOut)->setEnabled(hasPages && m_zoomPercent > ViewSettings::kLeastZoom);
    action(Command::SinglePage)->setChecked(m_viewMode == ViewMode::SinglePage);
    action(Command::FindNext)->setEnabled(m_finder->hitCount() > 0);
    action(Command::FindPrevious)->setEnabled(m_finder->hitCount() > 0);
    action(Command::Back)->setEnabled(m_trail.canGoBack());
    action(Command::Forward)->setEnabled(m_trail.canGoForward());
    action(Command::Copy)->setEnabled(!m_selection.isEmpty());
}

void Preview::run(Command command)
{
    switch (command) {
    case Command::FirstPage:
        return goToPage(0);
    case Command::PreviousPage:
        return goToPage(m_currentPage - 1);
    case Command::NextPage:
        return goToPage(m_currentPage + 1);
    case Command::LastPage:
        return goToPage(pageCount() - 1);
    case Command::Back:
        return goAlongTrail(m_trail.back(spotShown()));
    case Command::Forward:
        return goAlongTrail(m_trail.forward(spotShown()));
    case Command::ZoomIn:
        return zoomIn();
    case Command::ZoomOut:
        return zoomOut();
    case Command::ActualSize:
        return setZoomPercent(100);
    case Command::WholePage:
        return setZoomMode(ZoomMode::WholePage);
    case Command::PageWidth:
        return setZoomMode(ZoomMode::PageWidth);
    case Command::SinglePage:
        return setViewMode(
            action(command)->isChecked() ? ViewMode::SinglePage : ViewMode::Continuous);
    case Command::FindNext:
        return m_finder->findNext();
    case Command::FindPrevious:
        return m_finder->findPrevious();
    case Command::Copy:
        return copySelection();
    case Command::SelectAll: {
        TextSelection all;
        all.selectAll(*m_document);
        return setSelection(all);
    }
    case Command::GoToPage:
    case Command::Find:
    case Command::SidePanel:
        return; // the bar's and the panel's
    }
}

void Preview::fillMenu(QMenu &menu, const QString &link)
{
    if (!link.isEmpty()) {
        connect(menu.addAction(tr("Follow the link")), &QAction::triggered, this,
            [this, link] { followLink(link); });
        if (webAddress(link))
            connect(menu.addAction(tr("Copy the link's address")), &QAction::triggered, this,
                [link] { QGuiApplication::clipboard()->setText(link); });
        menu.addSeparator();
    }
    using enum PreviewCommand;
    for (const std::initializer_list<Command> group :
        {std::initializer_list<Command>{Copy, SelectAll, Find},
            {PreviousPage, NextPage, GoToPage, Back, Forward},
            {ZoomIn, ZoomOut, ActualSize, WholePage, PageWidth}, {SinglePage, SidePanel}}) {
        for (const Command command : group)
            menu.addAction(action(command));
        menu.addSeparator();
    }
}

void Preview::copySelection()
{
    QGuiApplication::clipboard()->setText(
        textForCopying(*m_document, m_selection.begin(), m_selection.end()));
}

} // namespace corvane
