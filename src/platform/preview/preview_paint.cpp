// How the preview draws its sheets and what is marked on them.

#include "platform/controls/colours.h"
#include "platform/preview/page_marks.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_finder.h"

#include <QtGui/QPainter>
#include <QtGui/QPaintEvent>

namespace corvane {

namespace {

constexpr int kShadowReach = 6;
// Paper is white in every palette, so these are too: pale enough for black ink on top of them.
constexpr QColor kHitTint(0xff, 0xe0, 0x70);
constexpr QColor kCurrentHitTint(0xff, 0xa9, 0x4d);
constexpr QColor kSelectionTint(0xc6, 0xdf, 0xff);

QColor groundColour(const QPalette &palette)
{
    return isDark(palette) ? QColor(0x1f, 0x22, 0x26) : QColor(0xa6, 0xae, 0xb7);
}

QColor quietTextColour(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xb4, 0xba, 0xc2) : QColor(0x2c, 0x36, 0x42);
}

} // namespace

void Preview::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), groundColour(palette()));
    m_lastPaint = {};
    if (pageCount() == 0) {
        paintEmptyText(painter);
        return;
    }
    const QRect exposed = event->rect().translated(contentOrigin());
    const int last = m_layout.pageAt(exposed.bottom() + kShadowReach);
    for (int page = m_layout.pageAt(exposed.top() - kShadowReach); page <= last; ++page)
        paintSheet(painter, page, exposed);
}

void Preview::paintSheet(QPainter &painter, int page, const QRect &exposed)
{
    const QRect sheet = m_layout.pageRect(page);
    painter.save();
    painter.translate(sheet.topLeft() - contentOrigin());
    const QRect paper(QPoint(), sheet.size());
    for (int i = 0; i < kShadowReach; ++i) {
        painter.setPen(QColor(0, 0, 0, 48 / (i + 1)));
        painter.drawRoundedRect(paper.adjusted(-i - 1, -i, i, i + 1), i, i);
    }
    const QRect visible = exposed.translated(-sheet.topLeft()) & paper;
    if (!visible.isEmpty()) {
        painter.fillRect(visible, Qt::white);
        painter.setClipRect(visible);
        m_lastPaint.operations
            += m_painter.paint(painter, *m_document, page, m_layout.pixelsPerTwip(), visible);
        ++m_lastPaint.pages;
        paintMarksOn(painter, page);
    }
    painter.restore();
}

void Preview::paintMarksOn(QPainter &painter, int page)
{
    const std::vector<TextStretch> selected
        = copiedLetters(*m_document, m_selection.begin(), m_selection.end(), page);
    const std::vector<TextStretch> hits = m_finder->hitsOn(page);
    if (selected.empty() && hits.empty())
        return;
    const PageText text(*m_document, page);
    const double scale = m_layout.pixelsPerTwip();
    for (const TextStretch stretch : selected)
        m_lastPaint.marks += paintMarks(painter, text, stretch, scale, kSelectionTint);
    const std::optional<SearchHit> &current = m_finder->currentHit();
    for (const TextStretch &hit : hits) {
        const bool isCurrent = current && current->page == page && current->text == hit;
        m_lastPaint.marks += paintMarks(painter, text, hit, scale,
            isCurrent ? kCurrentHitTint : kHitTint, isCurrent ? Outline::Drawn : Outline::None);
    }
}

void Preview::paintEmptyText(QPainter &painter)
{
    painter.setPen(quietTextColour(palette()));
    painter.drawText(viewport()->rect().marginsRemoved(QMargins(24, 24, 24, 24)),
        Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
}

} // namespace corvane
