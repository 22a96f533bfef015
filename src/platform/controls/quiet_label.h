#pragma once

#include <QtWidgets/QLabel>

namespace corvane {

/// A label that stands back behind the others and still reads well: between the text and the window
/// colour, at least 4.5:1 against the latter. Plain text.
class QuietLabel : public QLabel
{
    Q_OBJECT

public:
    explicit QuietLabel(QWidget *parent = nullptr);
    explicit QuietLabel(const QString &text, QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;

private:
    void quieten();
};

} // namespace corvane
