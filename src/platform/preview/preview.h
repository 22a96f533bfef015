#pragma once

#include "platform/painting/page_painter.h"
#include "platform/preview/preview_layout.h"

#include <QtWidgets/QAbstractScrollArea>

#include <array>

class QAction;

namespace corvane {

enum class ZoomMode { Fixed, PageWidth, WholePage };

/// Shows a finished document as sheets of white paper on a grey ground, scrolling through all its pages.
/// Draws only what is visible, so its cost does not grow with the document. Pages count from 0.
class Preview : public QAbstractScrollArea
{
    Q_OBJECT

public:
    static constexpr double kLeastZoom = 10;
    static constexpr double kMostZoom = 500;

    /// What the user can ask for by key or button; the actions follow what is possible at the moment.
    enum class Command { FirstPage, PreviousPage, NextPage, LastPage, ZoomIn, ZoomOut, ActualSize };
    static constexpr size_t kCommandCount = 7;

    explicit Preview(QWidget *parent = nullptr);

    /// Shows a document from its first page; null empties the preview. Zoom stays as it is.
    void setDocument(DocumentPtr document);
    const DocumentPtr &document() const { return m_document; }
    /// The quiet text in place of a document.
    void setEmptyText(const QString &text);

    int pageCount() const { return m_layout.pageCount(); }
    /// -1 without pages.
    int currentPage() const { return m_currentPage; }

    ZoomMode zoomMode() const { return m_zoomMode; }
    double zoomPercent() const { return m_zoomPercent; }
    /// Fits the page now and whenever the preview changes its size; Fixed keeps the present scale.
    void setZoomMode(ZoomMode mode);
    /// Held between kLeastZoom and kMostZoom.
    void setZoomPercent(double percent);

    QAction *action(Command command) const { return m_actions[size_t(command)]; }

    struct PaintCount {
        int pages = 0;
        int operations = 0; ///< rectangles and text runs
    };
    /// What the last repaint drew; shows that nothing hidden is drawn.
    PaintCount lastPaint() const { return m_lastPaint; }

    QSize sizeHint() const override { return {640, 800}; }

public Q_SLOTS:
    /// Brings the page to the top of the view, as far as the document's end allows. Out of range: nothing.
    void goToPage(int page);
    void zoomIn();
    void zoomOut();

Q_SIGNALS:
    void documentChanged();
    void currentPageChanged(int page);
    void zoomChanged();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void makeActions();
    void updateActions();
    void updateIcons();
    void run(Command command);

    PageSet pages() const;
    double pixelsPerTwip(double percent) const;
    double fittingPercent() const;
    void zoomAround(double percent, QPointF viewportPoint);
    void layOut(double percent, QPointF anchor);
    void refit();
    void updateScrollBars();
    QPoint contentOrigin() const;
    void scrollTo(QPointF content);
    void setCurrentPage(int page);
    void noteVisiblePage();
    void scrollVertically(int pixels);
    bool isOnScreen(int page) const;

    void paintSheet(QPainter &painter, int page, const QRect &exposed);
    void paintEmptyText(QPainter &painter);

    DocumentPtr m_document;
    PagePainter m_painter;
    PreviewLayout m_layout;
    QString m_emptyText;
    ZoomMode m_zoomMode = ZoomMode::PageWidth;
    double m_zoomPercent = 100;
    int m_currentPage = -1;
    bool m_placing = false; ///< scroll bars move by the program's own hand
    PaintCount m_lastPaint;
    std::array<QAction *, kCommandCount> m_actions {};
};

} // namespace corvane
