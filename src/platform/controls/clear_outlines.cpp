#include "platform/controls/clear_outlines.h"

#include "platform/controls/colours.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleOption>

namespace corvane {

namespace {

constexpr int kDarkening = 140; ///< what the style derives outlines with, in per cent

bool hasOutline(QStyle::PrimitiveElement element)
{
    switch (element) {
    case QStyle::PE_Frame:
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_FrameGroupBox:
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck:
    case QStyle::PE_IndicatorRadioButton:
    case QStyle::PE_PanelButtonCommand:
        return true;
    default:
        return false;
    }
}

/// While it lives, an option has a window colour that becomes a visible outline when darkened.
/// In place, because an option is copied only by who knows its class.
class LighterWindow
{
public:
    explicit LighterWindow(const QStyleOption *option)
        : m_option(const_cast<QStyleOption *>(option))
        , m_kept(option->palette)
    {
        m_option->palette.setColor(QPalette::Window, outlineOnDark(m_kept).lighter(kDarkening));
    }
    ~LighterWindow() { m_option->palette = m_kept; }
    Q_DISABLE_COPY_MOVE(LighterWindow)

private:
    QStyleOption *m_option;
    QPalette m_kept;
};

} // namespace

void ClearOutlines::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
    QPainter *painter, const QWidget *widget) const
{
    if (!option || !isDark(option->palette) || !hasOutline(element))
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    const LighterWindow lighter(option);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ClearOutlines::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
    QPainter *painter, const QWidget *widget) const
{
    if (!option || !isDark(option->palette) || (control != CC_ComboBox && control != CC_SpinBox))
        return QProxyStyle::drawComplexControl(control, option, painter, widget);
    const LighterWindow lighter(option);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void showOutlinesOnDark()
{
    if (QApplication::style()->name().compare(QStringLiteral("fusion"), Qt::CaseInsensitive) == 0)
        QApplication::setStyle(new ClearOutlines(QApplication::style()->name()));
}

} // namespace corvane
