#include "platform/controls/flood_panel.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

namespace corvane {

namespace {

constexpr int kBarThickness = 6;
constexpr int kShortestBar = 60;

} // namespace

FloodPanel::FloodPanel(QWidget *parent)
    : QProgressBar(parent)
{
    setRange(0, 100);
    setValue(0);
    setTextVisible(false);
    setAccessibleName(tr("Progress"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FloodPanel::setFloodPercent(int percent)
{
    setValue(qBound(0, percent, 100));
}

QSize FloodPanel::sizeHint() const
{
    return minimumSizeHint() + QSize(2 * kShortestBar, 0);
}

QSize FloodPanel::minimumSizeHint() const
{
    return {kShortestBar, qMax(fontMetrics().height(), kBarThickness)};
}

void FloodPanel::paintEvent(QPaintEvent *)
{
    if (floodPercent() == 0)
        return; // nothing runs: an empty track would look like a rule across the form
    QPainter painter(this);
    const QRect bar(0, (height() - kBarThickness) / 2, width(), kBarThickness);
    QColor track = palette().color(QPalette::WindowText);
    track.setAlphaF(0.12F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(track);
    painter.drawRoundedRect(bar, kBarThickness / 2.0, kBarThickness / 2.0);
    QRect filled = bar;
    filled.setWidth(bar.width() * floodPercent() / 100);
    // The rounded end of the track cuts the fill, whose own right edge stays straight.
    painter.setClipRect(QStyle::visualRect(layoutDirection(), bar, filled));
    painter.setBrush(palette().color(QPalette::Highlight));
    painter.drawRoundedRect(bar, kBarThickness / 2.0, kBarThickness / 2.0);
}

} // namespace corvane
