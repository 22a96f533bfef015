#pragma once

#include <QtWidgets/QProgressBar>

namespace corvane {

/// How much of a long fill is done: a thin bar in the accent colour.
class FloodPanel : public QProgressBar
{
    Q_OBJECT

public:
    explicit FloodPanel(QWidget *parent = nullptr);

    /// 0 to 100; anything beyond is held at the nearer end. 0 fills nothing.
    void setFloodPercent(int percent);
    int floodPercent() const { return value(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace corvane
