#include "shell/report_list_pane.h"

#include "platform/controls/control_names.h"
#include "shell/report_list_view.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>

namespace corvane {

ReportListPane::ReportListPane(QWidget *parent)
    : QWidget(parent)
    , m_filterRow(new QWidget(this))
    , txtfilter(new QLineEdit(m_filterRow))
    , File1(new ReportListView(this))
{
    nameControl(txtfilter, QStringLiteral("txtfilter"), tr("Filter reports"));
    nameControl(File1, QStringLiteral("File1"), tr("Reports"));
    txtfilter->setPlaceholderText(tr("Filter reports"));
    txtfilter->setClearButtonEnabled(true);
    txtfilter->setAcceptDrops(false); // a file that is dropped here is opened, not typed
    txtfilter->installEventFilter(this);
    File1->setFrameShape(QFrame::NoFrame);
    connect(txtfilter, &QLineEdit::textChanged, File1, &ReportListView::setFilter);

    auto *pane = new QVBoxLayout(this);
    const int gap = pane->spacing();
    auto *row = new QHBoxLayout(m_filterRow);
    row->setContentsMargins(gap, 0, gap, 0);
    row->addWidget(txtfilter);
    pane->setContentsMargins(0, 0, 0, 0);
    pane->setSpacing(0);
    pane->addWidget(m_filterRow);
    pane->addWidget(File1);
}

void ReportListPane::setFilterRowHeight(int height)
{
    m_filterRow->setFixedHeight(height);
}

bool ReportListPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtfilter && event->type() == QEvent::KeyPress
        && keyPressed(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QWidget::eventFilter(watched, event);
}

bool ReportListPane::keyPressed(int key)
{
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        File1->goToShown();
        File1->setFocus(Qt::OtherFocusReason);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!File1->chooseShown()) {
            File1->goToShown();
            File1->setFocus(Qt::OtherFocusReason);
        }
        return true;
    case Qt::Key_Escape:
        if (txtfilter->text().isEmpty())
            return false;
        txtfilter->clear();
        return true;
    default:
        return false;
    }
}

} // namespace corvane
