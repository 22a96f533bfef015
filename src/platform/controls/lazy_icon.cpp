#include "platform/controls/lazy_icon.h"

#include <QtGui/QIconEngine>
#include <QtGui/QPainter>

#include <algorithm>
#include <map>

namespace corvane {

namespace {

class LazyEngine : public QIconEngine
{
public:
    LazyEngine(const QList<int> &sizes, std::function<QPixmap(int, QIcon::Mode)> read)
        : m_sizes(sizes)
        , m_read(std::move(read))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double ratio = painter->device() ? painter->device()->devicePixelRatio() : 1;
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state));
    }

    /// From the smallest drawing that is large enough.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const int side = actualSize(size, mode, state).width();
        if (side <= 0)
            return {};
        const auto [drawing, isNew] = m_drawings.try_emplace({side, mode});
        if (isNew) {
            drawing->second = m_read(*std::ranges::lower_bound(m_sizes, side), mode);
            if (drawing->second.width() != side)
                drawing->second = drawing->second.scaled(
                    side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        }
        return drawing->second;
    }

    /// No larger than it is drawn.
    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side
            = m_sizes.isEmpty() ? 0 : std::min({size.width(), size.height(), m_sizes.last()});
        return {side, side};
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int size : m_sizes)
            sizes += QSize(size, size);
        return sizes;
    }

    bool isNull() override { return m_sizes.isEmpty(); }
    QIconEngine *clone() const override { return new LazyEngine(*this); }

private:
    QList<int> m_sizes;
    std::function<QPixmap(int, QIcon::Mode)> m_read;
    std::map<std::pair<int, QIcon::Mode>, QPixmap> m_drawings;
};

} // namespace

QIcon lazyIcon(const QList<int> &sizes, std::function<QPixmap(int size, QIcon::Mode mode)> read)
{
    return QIcon(new LazyEngine(sizes, std::move(read)));
}

} // namespace corvane
