#include "editor/column_ruler.h"

#include "platform/controls/colours.h"
#include "platform/controls/tool_tip.h"
#include "shared/numbers.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr int kTickHeight = 6;
constexpr int kPadding = 5;
constexpr double kWidestView
    = 1.35; ///< of the page's width: more would make the page itself too small

/// Of the page's edge and the ticks; what styles call "mid" is black in some dark palettes.
QColor lineColour(const QPalette &palette)
{
    return isDark(palette) ? outlineOnDark(palette) : palette.color(QPalette::Mid);
}

QColor warningInk(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xf0, 0x8a, 0x80) : QColor(0xb3, 0x26, 0x1e);
}

} // namespace

ColumnRuler::ColumnRuler(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ColumnRuler::showColumns(std::vector<PrintedColumn> columns, bool isLandscape)
{
    m_columns = std::move(columns);
    m_limit = pageWidth(isLandscape);
    m_edges.assign(1, 0);
    QStringList spoken;
    for (const PrintedColumn &column : m_columns) {
        m_edges.push_back(m_edges.back() + std::max(0.0, leadingNumber(column.size)));
        spoken += QString(column.caption + u' ' + column.size.trimmed());
    }
    setAccessibleDescription(tr("%1. %2").arg(
        spoken.join(QStringLiteral(", ")), columnSizeSummary(m_columns, isLandscape)));
    update();
}

void ColumnRuler::setCurrentRow(int row)
{
    m_current = row;
    update();
}

QSize ColumnRuler::sizeHint() const
{
    return {240, kTickHeight + 2 + fontMetrics().height() + 2 * kPadding};
}

bool ColumnRuler::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int row = rowAt(help->pos());
    if (row < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(),
            plainToolTip(
                tr("%1: %2 inches")
                    .arg(m_columns[size_t(row)].caption, m_columns[size_t(row)].size.trimmed())),
            this);
    return true;
}

void ColumnRuler::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRectF page(0, kTickHeight + 2, place(m_limit), height() - kTickHeight - 2);
    painter.fillRect(page, palette().base());
    painter.setPen(lineColour(palette()));
    painter.drawRect(page.adjusted(0.5, 0.5, -0.5, -0.5));
    paintTicks(painter);
    for (int row = 0; row < int(m_columns.size()); ++row)
        paintColumn(painter, row);
    if (m_edges.back() > m_limit) {
        painter.setPen(QPen(warningInk(palette()), 2));
        painter.drawLine(QPointF(place(m_limit), 0), QPointF(place(m_limit), height()));
    }
}

void ColumnRuler::paintTicks(QPainter &painter) const
{
    painter.setPen(lineColour(palette()));
    const int halves = int(std::floor(m_limit * 2)); // of an inch
    for (int half = 0; half <= halves; ++half) {
        const qreal x = std::min(std::floor(place(half / 2.0)) + 0.5, width() - 0.5);
        const bool isWhole = half % 2 == 0;
        painter.drawLine(QPointF(x, isWhole ? 0 : kTickHeight / 2.0), QPointF(x, kTickHeight));
    }
}

void ColumnRuler::paintColumn(QPainter &painter, int row) const
{
    const QRectF rect = columnRect(row);
    if (rect.width() < 1 || rect.left() > width())
        return;
    const bool isCurrent = row == m_current;
    const bool isBeyond
        = m_edges[size_t(row) + 1] > m_limit + 0.0001; // sums of decimals miss the edge by a hair
    const QColor accent = isBeyond ? warningInk(palette()) : palette().highlight().color();
    painter.fillRect(rect, isCurrent ? accent : blended(accent, palette().base().color(), 0.16));
    painter.setPen(blended(accent, palette().base().color(), 0.6));
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    const QColor onAccent
        = isBeyond ? palette().base().color() : palette().highlightedText().color();
    painter.setPen(isCurrent ? onAccent : palette().text().color());
    const QRectF room = rect.adjusted(kPadding, 0, -kPadding, 0);
    const QString caption = fontMetrics().elidedText(
        m_columns[size_t(row)].caption, Qt::ElideRight, int(room.width()));
    if (room.width() > fontMetrics().averageCharWidth() * 2)
        painter.drawText(room, Qt::AlignCenter, caption);
}

void ColumnRuler::mousePressEvent(QMouseEvent *event)
{
    if (const int row = rowAt(event->position()); row >= 0)
        Q_EMIT rowClicked(row);
}

QRectF ColumnRuler::columnRect(int row) const
{
    const qreal left = std::round(place(m_edges[size_t(row)]));
    const qreal right = std::round(place(m_edges[size_t(row) + 1]));
    return {left, kTickHeight + 2.0, right - left, height() - kTickHeight - 2.0};
}

int ColumnRuler::rowAt(QPointF position) const
{
    for (int row = 0; row < int(m_columns.size()); ++row) {
        if (columnRect(row).contains(position))
            return row;
    }
    return -1;
}

qreal ColumnRuler::place(double inches) const
{
    const double shown = std::clamp(m_edges.back(), m_limit, m_limit * kWidestView);
    return shown > 0 ? inches / shown * width() : 0;
}

} // namespace corvane
