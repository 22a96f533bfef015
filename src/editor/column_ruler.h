#pragma once

#include "editor/page_properties.h"

#include <QtWidgets/QWidget>

namespace corvane {

/// The printed columns to scale against the page's width, with a tick at each inch. A click on a
/// column chooses it; what does not fit stands out behind the page's edge.
class ColumnRuler : public QWidget
{
    Q_OBJECT

public:
    explicit ColumnRuler(QWidget *parent = nullptr);

    void showColumns(std::vector<PrintedColumn> columns, bool isLandscape);
    void setCurrentRow(int row);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void rowClicked(int row);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QRectF columnRect(int row) const;
    int rowAt(QPointF position) const;
    qreal place(double inches) const;
    void paintTicks(QPainter &painter) const;
    void paintColumn(QPainter &painter, int row) const;

    std::vector<PrintedColumn> m_columns;
    std::vector<double> m_edges{0}; ///< inches from the left; one more than columns
    double m_limit = 0; ///< the page's width in inches
    int m_current = -1;
};

} // namespace corvane
