#include "help/frm_help.h"

#include "help/help_browser.h"
#include "help/help_topics.h"
#include "platform/controls/control_names.h"
#include "platform/controls/icons.h"
#include "platform/controls/spacing.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QShortcut>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolBar>

namespace corvane {

namespace {

constexpr QSize kFormSize(960, 680);
constexpr int kListWidth = 270;
constexpr int kIconSize = 16;
constexpr int kContextRole = Qt::UserRole;

} // namespace

frmHelp::frmHelp(QWidget *parent)
    : QWidget(parent, Qt::Window)
    , txtsearch(new QLineEdit(this))
    , lstTopics(new QListWidget(this))
    , m_page(new HelpBrowser(this))
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(tr("Corvane Reporter Help"));
    buildForm();
    connectControls();
    listContents();
    showTopic(topicOfContext(kMainHelpContext));
}

void frmHelp::showTopic(const HelpTopic &topic)
{
    if (!txtsearch->text().isEmpty())
        txtsearch->clear();
    m_page->setSource(topicUrl(topic));
    followPage(m_page->source());
    m_page->setFocus();
}

void frmHelp::buildForm()
{
    nameControl(txtsearch, QStringLiteral("txtsearch"), tr("Search the help"));
    nameControl(lstTopics, QStringLiteral("lstTopics"), tr("Contents"));
    nameControl(m_page, QStringLiteral("page"), tr("Topic"));
    txtsearch->setPlaceholderText(tr("Search"));
    txtsearch->setClearButtonEnabled(true);
    lstTopics->setFrameShape(QFrame::NoFrame);
    lstTopics->setWordWrap(true);
    lstTopics->setSpacing(2);
    lstTopics->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_page->setFrameShape(QFrame::NoFrame);

    auto *left = new QWidget;
    auto *column = new QVBoxLayout(left);
    const int gap = controlGap(this);
    column->setContentsMargins(gap, gap, gap, gap);
    column->addWidget(txtsearch);
    column->addWidget(lstTopics, 1);
    auto *panes = new QSplitter;
    panes->setChildrenCollapsible(false);
    panes->addWidget(left);
    panes->addWidget(m_page);
    panes->setStretchFactor(1, 1);
    panes->setSizes({kListWidth, kFormSize.width() - kListWidth});
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins({});
    form->setSpacing(0);
    form->addWidget(buildToolBar());
    form->addWidget(panes, 1);
    setTabOrder(txtsearch, lstTopics);
    setTabOrder(lstTopics, m_page);
    resize(kFormSize);
}

QToolBar *frmHelp::buildToolBar()
{
    auto *bar = new QToolBar(this);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize({kIconSize, kIconSize});
    m_back = bar->addAction(icon(QStringLiteral("back"), palette()), tr("Back"));
    m_back->setShortcut(QKeySequence::Back);
    m_forward = bar->addAction(icon(QStringLiteral("forward"), palette()), tr("Forward"));
    m_forward->setShortcut(QKeySequence::Forward);
    m_home = bar->addAction(icon(QStringLiteral("home"), palette()), tr("Main Topic"));
    for (QAction *action : {m_back, m_forward})
        action->setEnabled(false);
    return bar;
}

void frmHelp::connectControls()
{
    connect(txtsearch, &QLineEdit::textChanged, this, &frmHelp::txtsearch_Change);
    connect(lstTopics, &QListWidget::itemSelectionChanged, this, &frmHelp::lstTopics_Click);
    connect(m_page, &QTextBrowser::sourceChanged, this, &frmHelp::followPage);
    connect(m_page, &QTextBrowser::backwardAvailable, m_back, &QAction::setEnabled);
    connect(m_page, &QTextBrowser::forwardAvailable, m_forward, &QAction::setEnabled);
    connect(m_back, &QAction::triggered, m_page, &QTextBrowser::backward);
    connect(m_forward, &QAction::triggered, m_page, &QTextBrowser::forward);
    connect(
        m_home, &QAction::triggered, this, [this] { showTopic(topicOfContext(kMainHelpContext)); });
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        txtsearch->setFocus();
        txtsearch->selectAll();
    });
}

void frmHelp::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void frmHelp::txtsearch_Change()
{
    if (txtsearch->text().trimmed().isEmpty()) {
        listContents();
        followPage(m_page->source());
        return;
    }
    const QSignalBlocker quiet(lstTopics);
    lstTopics->clear();
    for (const HelpHit &hit : searchHelp(txtsearch->text())) {
        auto *item
            = new QListWidgetItem(QString(topicTitle(*hit.topic) + u'\n' + hit.excerpt), lstTopics);
        item->setData(kContextRole, hit.topic->context);
    }
    if (lstTopics->count() == 0)
        (new QListWidgetItem(tr("No topic has all of these words."), lstTopics))
            ->setFlags(Qt::NoItemFlags);
}

void frmHelp::listContents()
{
    const QSignalBlocker quiet(lstTopics);
    lstTopics->clear();
    for (const HelpTopic &topic : helpTopics()) {
        auto *item = new QListWidgetItem(topicTitle(topic), lstTopics);
        item->setData(kContextRole, topic.context);
    }
}

void frmHelp::lstTopics_Click()
{
    const QList<QListWidgetItem *> chosen = lstTopics->selectedItems();
    if (chosen.isEmpty())
        return;
    m_page->setSource(topicUrl(topicOfContext(chosen.front()->data(kContextRole).toInt())));
    m_page->markWords(txtsearch->text());
}

/// Keeps the contents at the topic that is shown, however the user came there.
void frmHelp::followPage(const QUrl &url)
{
    const HelpTopic *topic = topicOfUrl(url);
    if (!topic)
        return;
    setWindowTitle(tr("%1 - Corvane Reporter Help").arg(topicTitle(*topic)));
    const QSignalBlocker quiet(lstTopics);
    for (int row = 0; row < lstTopics->count(); ++row) {
        if (lstTopics->item(row)->data(kContextRole).toInt() == topic->context)
            lstTopics->setCurrentRow(row);
    }
}

} // namespace corvane
