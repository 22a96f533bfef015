#pragma once

#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace corvane {

/// The style's distance between controls, in pixels; groups of controls stand twice as far apart.
inline int controlGap(const QWidget *form)
{
    return qMax(1, form->style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing, nullptr, form));
}

/// The width of so many ordinary letters in the form's font.
inline int lettersWide(const QWidget *form, int letters)
{
    return letters * form->fontMetrics().averageCharWidth();
}

/// The height of so many lines in the form's font.
inline int linesHigh(const QWidget *form, int lines)
{
    return lines * form->fontMetrics().lineSpacing();
}

} // namespace corvane
