#include "platform/preview/preview_bar.h"

#include "platform/preview/find_box.h"

#include <QtGui/QAction>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFrame>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include <cmath>

namespace corvane {

namespace {

constexpr int kIconSize = 16;
constexpr int kPresets[]{50, 75, 100, 125, 150, 200, 400};

QString pageWidthText()
{
    return QStringLiteral("Page width");
}

QString wholePageText()
{
    return QStringLiteral("Whole page");
}

QString percentText(double percent)
{
    return QStringLiteral("%1 %").arg(std::lround(percent));
}

void addSeparator(QHBoxLayout &layout)
{
    auto *line = new QFrame;
    line->setFrameShape(QFrame::VLine);
    line->setForegroundRole(QPalette::Mid);
    line->setFrameShadow(QFrame::Plain);
    line->setFixedHeight(kIconSize);
    layout.addSpacing(4);
    layout.addWidget(line);
    layout.addSpacing(4);
}

} // namespace

std::optional<ZoomChoice> readZoom(QStringView text)
{
    QStringView rest = text.trimmed();
    if (rest.compare(pageWidthText(), Qt::CaseInsensitive) == 0)
        return ZoomChoice{.mode = ZoomMode::PageWidth};
    if (rest.compare(wholePageText(), Qt::CaseInsensitive) == 0)
        return ZoomChoice{.mode = ZoomMode::WholePage};
    if (rest.endsWith(u'%'))
        rest = rest.chopped(1).trimmed();
    bool isNumber = false;
    const double percent = rest.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(percent) || percent <= 0)
        return std::nullopt;
    return ZoomChoice{.percent = percent};
}

PreviewBar::PreviewBar(Preview *preview, QWidget *parent)
    : QWidget(parent)
    , m_preview(preview)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(4);
    addButton(*layout, Preview::Command::SidePanel, QStringLiteral("sidePanel"));
    addSeparator(*layout);
    addButton(*layout, Preview::Command::FirstPage, QStringLiteral("firstPage"));
    addButton(*layout, Preview::Command::PreviousPage, QStringLiteral("previousPage"));
    addPageBox(*layout);
    addButton(*layout, Preview::Command::NextPage, QStringLiteral("nextPage"));
    addButton(*layout, Preview::Command::LastPage, QStringLiteral("lastPage"));
    addSeparator(*layout);
    addButton(*layout, Preview::Command::ZoomOut, QStringLiteral("zoomOut"));
    addZoomBox(*layout);
    addButton(*layout, Preview::Command::ZoomIn, QStringLiteral("zoomIn"));
    addButton(*layout, Preview::Command::SinglePage, QStringLiteral("singlePage"));
    addSeparator(*layout);
    layout->addWidget(new FindBox(m_preview, this), 1);
    layout->addStretch();

    connect(m_preview->action(PreviewCommand::GoToPage), &QAction::triggered, m_pageBox, [this] {
        m_pageBox->setFocus(Qt::ShortcutFocusReason);
        m_pageBox->selectAll();
    });
    connect(m_preview, &Preview::documentChanged, this, &PreviewBar::showPageCount);
    connect(m_preview, &Preview::currentPageChanged, this, &PreviewBar::showPage);
    connect(m_preview, &Preview::zoomChanged, this, &PreviewBar::showZoom);
    showPageCount();
    showZoom();
}

void PreviewBar::addButton(QHBoxLayout &layout, Preview::Command command, const QString &objectName)
{
    auto *button = new QToolButton(this);
    button->setObjectName(objectName);
    button->setDefaultAction(m_preview->action(command));
    button->setAccessibleName(m_preview->action(command)->text());
    button->setIconSize(QSize(kIconSize, kIconSize));
    button->setAutoRaise(true);
    layout.addWidget(button);
}

void PreviewBar::addPageBox(QHBoxLayout &layout)
{
    m_pageBox = new QLineEdit(this);
    m_pageBox->setObjectName(QStringLiteral("pageBox"));
    m_pageBox->setAccessibleName(tr("Page"));
    m_pageBox->setToolTip(tr("Page to go to (Ctrl+G, then Enter)"));
    m_pageBox->setAlignment(Qt::AlignRight);
    m_pageCount = new QLabel(this);
    m_pageCount->setObjectName(QStringLiteral("pageCount"));
    m_pageCount->setTextFormat(Qt::PlainText);
    layout.addWidget(m_pageBox);
    layout.addWidget(m_pageCount);
    m_pageBox->installEventFilter(this);
    connect(m_pageBox, &QLineEdit::returnPressed, this, &PreviewBar::enterPage);
    connect(m_pageBox, &QLineEdit::editingFinished, this, &PreviewBar::showPage);
}

void PreviewBar::addZoomBox(QHBoxLayout &layout)
{
    m_zoomBox = new QComboBox(this);
    m_zoomBox->setObjectName(QStringLiteral("zoomBox"));
    m_zoomBox->setAccessibleName(tr("Zoom"));
    m_zoomBox->setToolTip(tr("Zoom (Ctrl and the mouse wheel, Ctrl+0 for 100 %)"));
    m_zoomBox->setEditable(true);
    m_zoomBox->lineEdit()->setAccessibleName(tr("Zoom"));
    m_zoomBox->setInsertPolicy(QComboBox::NoInsert);
    m_zoomBox->setCompleter(nullptr);
    m_zoomBox->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_zoomBox->addItems({pageWidthText(), wholePageText()});
    for (const int percent : kPresets)
        m_zoomBox->addItem(percentText(percent));
    layout.addWidget(m_zoomBox);
    connect(m_zoomBox, &QComboBox::activated, this, &PreviewBar::enterZoom);
    for (QObject *watched :
        {static_cast<QObject *>(m_zoomBox), static_cast<QObject *>(m_zoomBox->lineEdit()),
            static_cast<QObject *>(m_zoomBox->view())})
        watched->installEventFilter(this);
    connect(m_zoomBox->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        const bool isZoom = readZoom(m_zoomBox->currentText()).has_value();
        enterZoom();
        if (isZoom)
            leaveBox();
    });
    connect(m_zoomBox->lineEdit(), &QLineEdit::editingFinished, this, &PreviewBar::showZoom);
}

bool PreviewBar::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBox = watched == m_pageBox || watched == m_zoomBox->lineEdit();
    switch (event->type()) {
    case QEvent::KeyPress:
        if (!isBox || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape)
            break;
        leaveBox();
        return true;
    case QEvent::Wheel: // a pointer that only passes by is not to change the size
        if (watched != m_zoomBox || m_zoomBox->hasFocus())
            break;
        event->ignore();
        return true;
    case QEvent::Hide: // the list closed; what was chosen in it is told after this
        if (watched == m_zoomBox->view())
            QMetaObject::invokeMethod(this, &PreviewBar::leaveBox, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

/// Back to the paper, where keys scroll; a box whose text was not entered shows the truth again.
void PreviewBar::leaveBox()
{
    m_preview->setFocus();
}

void PreviewBar::showPage()
{
    const int page = m_preview->currentPage();
    m_pageBox->setText(page < 0 ? QString() : QString::number(page + 1));
}

void PreviewBar::showPageCount()
{
    const int count = m_preview->pageCount();
    const QString widest(std::max<qsizetype>(3, QString::number(count).size()), u'0');
    m_pageBox->setFixedWidth(m_pageBox->fontMetrics().horizontalAdvance(widest) + 20);
    m_pageBox->setEnabled(count > 0);
    m_zoomBox->setEnabled(count > 0);
    m_pageCount->setText(count > 0 ? tr("of %1").arg(locale().toString(count)) : tr("of 0"));
    showPage();
}

void PreviewBar::showZoom()
{
    switch (m_preview->zoomMode()) {
    case ZoomMode::PageWidth:
        return m_zoomBox->setEditText(pageWidthText());
    case ZoomMode::WholePage:
        return m_zoomBox->setEditText(wholePageText());
    case ZoomMode::Fixed:
        return m_zoomBox->setEditText(percentText(m_preview->zoomPercent()));
    }
}

void PreviewBar::enterPage()
{
    bool isNumber = false;
    const QString typed = m_pageBox->text().trimmed();
    int page = typed.toInt(&isNumber);
    if (!isNumber) // as the number of pages is written beside it
        page = locale().toInt(typed, &isNumber);
    if (isNumber && page >= 1 && page <= m_preview->pageCount()) {
        m_preview->goToPage(page - 1);
        m_preview->setFocus();
    }
    showPage();
    m_pageBox->selectAll();
}

void PreviewBar::enterZoom()
{
    if (const std::optional<ZoomChoice> choice = readZoom(m_zoomBox->currentText())) {
        if (choice->mode == ZoomMode::Fixed)
            m_preview->setZoomPercent(choice->percent);
        else
            m_preview->setZoomMode(choice->mode);
    }
    showZoom();
}

} // namespace corvane
