#pragma once

#include <QtWidgets/QProxyStyle>

namespace corvane {

/// The style that is set, with outlines that can be seen on a dark ground. Qt's own style derives them
/// by darkening the window colour, so that an empty check box or field vanishes in a dark palette.
class ClearOutlines : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
};

/// Puts ClearOutlines over the application's style where that is Qt's own; other styles know their palettes.
void showOutlinesOnDark();

} // namespace corvane
