#include "platform/preview/thumbnail_list.h"

#include "platform/painting/page_painter.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QCache>
#include <QtCore/QScopedValueRollback>
#include <QtGui/QPainter>
#include <QtWidgets/QStyledItemDelegate>

namespace corvane {

/// One row per page; the page's number is all that it says.
class ThumbnailModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setDocument(const DocumentPtr &document)
    {
        beginResetModel();
        m_document = document;
        endResetModel();
    }

    const DocumentPtr &document() const { return m_document; }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() || !m_document ? 0 : m_document->pageCount();
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return QString::number(index.row() + 1);
        if (role == Qt::AccessibleTextRole)
            return ThumbnailList::tr("Page %1").arg(index.row() + 1);
        return {};
    }

private:
    DocumentPtr m_document;
};

namespace {

constexpr int kLongSide = 132; ///< of a page, pixels
constexpr int kAround = 8;
constexpr int kFrame = 3; ///< around the marked page
constexpr int kKept = 200; ///< pictures

class ThumbnailDelegate : public QStyledItemDelegate
{
public:
    ThumbnailDelegate(const ThumbnailModel *model, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_model(model)
    {
        m_pictures.setMaxCost(kKept);
    }

    void forget() { m_pictures.clear(); }
    int drawnPages() const { return int(m_pictures.count()); }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        const QSize paper = paperSize();
        return {paper.width() + 2 * kAround,
            paper.height() + 3 * kAround + option.fontMetrics.height()};
    }

    /// The marked page has a frame: a filled row of this height would outshine the pages.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override
    {
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        QRect paper(QPoint(), paperSize());
        paper.moveCenter(option.rect.center());
        paper.moveTop(option.rect.top() + kAround);
        const int frame = isSelected ? kFrame : 1;
        const QColor edge
            = isSelected ? option.palette.color(QPalette::Highlight) : QColor(128, 128, 128);
        painter->fillRect(paper.adjusted(-frame, -frame, frame, frame), edge);
        painter->drawPixmap(paper, pictureOf(index.row(), painter->device()->devicePixelRatioF()));
        const QRect below(option.rect.left(), paper.bottom() + kAround, option.rect.width(),
            option.fontMetrics.height());
        QFont font = option.font;
        font.setBold(isSelected);
        painter->setFont(font);
        painter->setPen(option.palette.color(QPalette::Text));
        painter->drawText(below, Qt::AlignCenter, index.data().toString());
    }

private:
    double scale() const
    {
        const Document &document = *m_model->document();
        return double(kLongSide) / std::max(document.paperWidth, document.paperHeight).count();
    }

    QSize paperSize() const
    {
        if (!m_model->document())
            return {kLongSide, kLongSide};
        const Document &document = *m_model->document();
        return {qRound(document.paperWidth.count() * scale()),
            qRound(document.paperHeight.count() * scale())};
    }

    QPixmap pictureOf(int page, double devicePixelRatio) const
    {
        if (const QPixmap *kept = m_pictures.object(page);
            kept && kept->devicePixelRatio() == devicePixelRatio)
            return *kept;
        QPixmap picture(paperSize() * devicePixelRatio);
        picture.setDevicePixelRatio(devicePixelRatio);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        m_painter.paint(
            painter, *m_model->document(), page, scale(), QRectF(QPointF(), paperSize()));
        painter.end();
        m_pictures.insert(page, new QPixmap(picture));
        return picture;
    }

    const ThumbnailModel *m_model;
    mutable PagePainter m_painter;
    mutable QCache<int, QPixmap> m_pictures;
};

} // namespace

ThumbnailList::ThumbnailList(QWidget *parent)
    : QListView(parent)
    , m_model(new ThumbnailModel(this))
{
    setModel(m_model);
    setItemDelegate(new ThumbnailDelegate(m_model, this));
    setUniformItemSizes(true);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ThumbnailList::setDocument(const DocumentPtr &document)
{
    const QScopedValueRollback showing(m_showing, true);
    static_cast<ThumbnailDelegate *>(itemDelegate())->forget();
    m_model->setDocument(document);
}

void ThumbnailList::showPage(int page)
{
    const QScopedValueRollback showing(m_showing, true);
    setCurrentIndex(m_model->index(page));
}

int ThumbnailList::drawnPages() const
{
    return static_cast<const ThumbnailDelegate *>(itemDelegate())->drawnPages();
}

void ThumbnailList::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    if (!m_showing && current.isValid())
        Q_EMIT pageChosen(current.row());
}

} // namespace corvane
