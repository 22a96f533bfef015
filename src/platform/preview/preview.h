#pragma once

#include "platform/painting/page_painter.h"
#include "platform/preview/preview_commands.h"
#include "platform/preview/preview_layout.h"
#include "platform/preview/text_selection.h"
#include "platform/preview/view_settings.h"
#include "platform/preview/view_trail.h"

#include <QtWidgets/QAbstractScrollArea>

#include <array>

class QAction;
class QMenu;
class QUrl;

namespace corvane {

class PreviewFinder;
class PreviewPointer;

/// Shows a finished document as sheets of white paper on a grey ground, all below one another or
/// one at a time. Draws only what is visible, so its cost does not grow with the document. Pages
/// count from 0.
class Preview : public QAbstractScrollArea
{
    Q_OBJECT

public:
    using Command = PreviewCommand;

    explicit Preview(QWidget *parent = nullptr);

    /// Shows a document from its first page; null empties the preview. Zoom stays as it is.
    void setDocument(DocumentPtr document);
    const DocumentPtr &document() const { return m_document; }
    /// The quiet text in place of a document.
    void setEmptyText(const QString &text);

    int pageCount() const { return m_document ? m_document->pageCount() : 0; }
    /// -1 without pages.
    int currentPage() const { return m_currentPage; }

    ZoomMode zoomMode() const { return m_zoomMode; }
    double zoomPercent() const { return m_zoomPercent; }
    /// Fits the page now and whenever the preview changes its size; Fixed keeps the present scale.
    void setZoomMode(ZoomMode mode);
    /// Held between ViewSettings::kLeastZoom and kMostZoom.
    void setZoomPercent(double percent);
    /// The same, keeping in place what stands at a point of the viewport.
    void zoomAround(double percent, QPointF viewportPoint);
    ViewMode viewMode() const { return m_viewMode; }
    void setViewMode(ViewMode mode);

    QAction *action(Command command) const { return m_actions[size_t(command)]; }
    PreviewFinder &finder() const { return *m_finder; }

    /// A point on paper, in twips from the upper left corner of the page nearest to it; page -1
    /// without pages.
    struct PaperPoint
    {
        int page = -1;
        QPointF at;
    };
    PaperPoint paperPointAt(QPointF viewportPoint) const;
    void scrollBy(QPoint pixels);

    const TextSelection &selection() const { return m_selection; }
    void setSelection(const TextSelection &selection);
    /// Goes to a bookmark, or lets the window open an address; says so where it can do neither.
    void followLink(const QString &target);

    struct PaintCount
    {
        int pages = 0;
        int operations = 0; ///< rectangles, pictures and text runs
        int marks = 0; ///< areas of hits and of the selection
    };
    /// What the last repaint drew; shows that nothing hidden is drawn.
    PaintCount lastPaint() const { return m_lastPaint; }

    QSize sizeHint() const override { return {640, 800}; }

public Q_SLOTS:
    /// Brings the page to the top of the view, as far as the document's end allows. Out of range:
    /// nothing.
    void goToPage(int page);
    /// The same for a height on a page.
    void goToPlace(int page, corvane::Twips top);
    void zoomIn();
    void zoomOut();

Q_SIGNALS:
    void documentChanged();
    void currentPageChanged(int page);
    void zoomChanged();
    void viewModeChanged();
    void selectionChanged();
    /// A link to an address was clicked; only http, https and mailto.
    void webLinkActivated(const QUrl &address);

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void makeActions();
    void updateActions();
    void updateIcons();
    void run(Command command);
    void fillMenu(QMenu &menu, const QString &link);
    void copySelection();

    PageSet pages() const;
    double pixelsPerTwip(double percent) const;
    double fittingPercent() const;
    void layOut(double percent, QPointF anchor);
    void refit();
    void updateScrollBars();
    QPoint contentOrigin() const;
    void scrollTo(QPointF content);
    void showArea(int page, const QRectF &twips);
    PageSpot spotShown() const;
    void leaveFor(int page);
    void goAlongTrail(std::optional<PageSpot> spot);
    void setCurrentPage(int page);
    void noteVisiblePage();
    void scrollVertically(int pixels);
    void turnPage(int step);
    bool isOnScreen(int page) const;

    void paintSheet(QPainter &painter, int page, const QRect &exposed);
    void paintMarksOn(QPainter &painter, int page);
    void paintEmptyText(QPainter &painter);

    DocumentPtr m_document;
    PagePainter m_painter;
    PreviewLayout m_layout;
    TextSelection m_selection;
    ViewTrail m_trail;
    PreviewFinder *m_finder;
    PreviewPointer *m_pointer;
    QString m_emptyText;
    ZoomMode m_zoomMode = ZoomMode::PageWidth;
    ViewMode m_viewMode = ViewMode::Continuous;
    double m_zoomPercent = 100;
    int m_currentPage = -1;
    int m_wheelRest = 0; ///< turned beyond the end of a single page
    bool m_placing = false; ///< scroll bars move by the program's own hand
    PaintCount m_lastPaint;
    std::array<QAction *, kPreviewCommandCount> m_actions{};
};

} // namespace corvane
