#pragma once

#include <QtWidgets/QToolButton>

namespace corvane {

/// A button of the main toolbar: the drawing above its caption, as wide as the caption asks for but
/// never narrower than its neighbours with short captions.
class RibbonButton : public QToolButton
{
    Q_OBJECT

public:
    /// @param iconName a drawing as icon() takes it
    RibbonButton(const QString &caption, const QString &iconName, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    /// In a narrow toolbar a button gives way as far as its caption lets it.
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int heightHint() const;

    QString m_iconName;
};

} // namespace corvane
