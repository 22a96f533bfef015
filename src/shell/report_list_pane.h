#pragma once

#include <QtWidgets/QWidget>

class QLineEdit;

namespace corvane {

class ReportListView;

/// The report list under a box that filters it. From the box, Down goes to the list, Enter chooses
/// what is meant, Escape clears. What was typed is kept nowhere.
class ReportListPane : public QWidget
{
    Q_OBJECT

public:
    explicit ReportListPane(QWidget *parent = nullptr);

    ReportListView *list() const { return File1; }
    /// Makes the filter's row as high as the one beside it, in pixels.
    void setFilterRowHeight(int height);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool keyPressed(int key);

    QWidget *m_filterRow;
    QLineEdit *txtfilter;
    ReportListView *File1;
};

} // namespace corvane
