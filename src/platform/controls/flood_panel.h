#pragma once

#include <QtWidgets/QProgressBar>

namespace corvane {

/// How much of a long fill is done: an optional caption and a thin bar in the accent colour.
class FloodPanel : public QProgressBar
{
    Q_OBJECT

public:
    explicit FloodPanel(QWidget *parent = nullptr);

    /// 0 to 100; anything beyond is held at the nearer end. 0 fills nothing.
    void setFloodPercent(int percent);
    int floodPercent() const { return value(); }

    /// Shown to the left of the bar.
    void setCaption(const QString &caption);
    QString caption() const { return m_caption; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect barRect() const;

    QString m_caption;
};

} // namespace corvane
