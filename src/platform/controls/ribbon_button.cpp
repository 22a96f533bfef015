#include "platform/controls/ribbon_button.h"

#include "platform/controls/icons.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionToolButton>
#include <QtWidgets/QStylePainter>

namespace corvane {

namespace {

constexpr int kIconSize = 24;
constexpr int kPadding = 9;
constexpr int kLeastPadding = 3;
constexpr int kIconGap = 4;
constexpr int kShortestCaption
    = 12; ///< average letters that even the narrowest button has room for

int captionWidth(const QToolButton &button)
{
    return button.fontMetrics().size(Qt::TextShowMnemonic, button.text()).width();
}

} // namespace

RibbonButton::RibbonButton(const QString &caption, const QString &iconName, QWidget *parent)
    : QToolButton(parent)
    , m_iconName(iconName)
{
    setText(caption);
    setAccessibleName(caption);
    setIcon(corvane::icon(m_iconName, palette()));
    setIconSize(QSize(kIconSize, kIconSize));
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize RibbonButton::sizeHint() const
{
    const int caption
        = qMax(captionWidth(*this), fontMetrics().averageCharWidth() * kShortestCaption);
    return {caption + 2 * kPadding, heightHint()};
}

/// Asked for a hundred times before a toolbar is shown: the caption is measured only once each
/// time.
QSize RibbonButton::minimumSizeHint() const
{
    return {captionWidth(*this) + 2 * kLeastPadding, heightHint()};
}

int RibbonButton::heightHint() const
{
    return iconSize().height() + kIconGap + fontMetrics().height() + 2 * kPadding;
}

void RibbonButton::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange)
        setIcon(corvane::icon(m_iconName, palette()));
}

void RibbonButton::paintEvent(QPaintEvent *)
{
    // The style draws the frame; drawing and caption are placed here, because styles squeeze the
    // two together and differ in where the caption's line stands.
    QStylePainter painter(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    const QString caption = option.text;
    option.text.clear();
    option.icon = {};
    const bool showsFocus = option.state.testFlag(QStyle::State_HasFocus)
        && option.state.testFlag(QStyle::State_KeyboardFocusChange);
    option.state &= ~QStyle::State_HasFocus;
    painter.drawComplexControl(QStyle::CC_ToolButton, option);

    const QRect inner = rect().adjusted(kLeastPadding, kPadding, -kLeastPadding, -kPadding);
    const QRect drawing(inner.center().x() - kIconSize / 2 + 1, inner.top(), kIconSize, kIconSize);
    icon().paint(&painter, drawing, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    style()->drawItemText(&painter, inner,
        Qt::AlignHCenter | Qt::AlignBottom | Qt::TextShowMnemonic, palette(), isEnabled(), caption,
        QPalette::ButtonText);
    if (!showsFocus)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 4, 4);
}

} // namespace corvane
