#include "platform/preview/find_box.h"

#include "platform/controls/control_names.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_finder.h"

#include <QtGui/QAction>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include <utility>

namespace corvane {

namespace {

constexpr int kIconSize = 16;
constexpr int kNarrowest = 90;
constexpr int kWidest = 220;

} // namespace

FindBox::FindBox(Preview *preview, QWidget *parent)
    : QWidget(parent)
    , m_preview(preview)
    , m_text(new QLineEdit(this))
    , m_matchCase(addButton(QStringLiteral("matchCase")))
    , m_state(new QLabel(this))
{
    nameControl(m_text, QStringLiteral("findBox"), tr("Find in the report"));
    m_text->setPlaceholderText(tr("Find in the report"));
    m_text->setToolTip(tr("Text to find in the whole report (Ctrl+F; Enter for the next one)"));
    m_text->setClearButtonEnabled(true);
    auto *clear = m_text->findChild<QToolButton *>();
    clear->setAccessibleName(tr("End the search"));
    clear->setToolTip(tr("End the search (Escape)"));
    m_text->setMinimumWidth(kNarrowest);
    m_text->setMaximumWidth(kWidest);
    m_text->installEventFilter(this);
    m_matchCase->setAccessibleName(tr("Match case"));
    m_matchCase->setText(QStringLiteral("Aa"));
    m_matchCase->setToolTip(tr("Tell capital from small letters (match case)"));
    m_matchCase->setCheckable(true);
    nameControl(m_state, QStringLiteral("findState"), tr("Search result"));
    m_state->setMinimumWidth(1); // a longer text is not to push the report list aside

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(4);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_matchCase);
    for (const PreviewCommand command : {PreviewCommand::FindPrevious, PreviewCommand::FindNext}) {
        QToolButton *button
            = addButton(command == PreviewCommand::FindNext ? QStringLiteral("findNext")
                                                            : QStringLiteral("findPrevious"));
        button->setDefaultAction(m_preview->action(command));
        button->setAccessibleName(m_preview->action(command)->text());
        layout->addWidget(button);
    }
    layout->addWidget(m_state);

    connect(m_text, &QLineEdit::textChanged, this, &FindBox::find);
    connect(m_matchCase, &QToolButton::toggled, this, &FindBox::find);
    connect(&m_preview->finder(), &PreviewFinder::changed, this, &FindBox::showState);
    connect(m_preview->action(PreviewCommand::Find), &QAction::triggered, this, &FindBox::start);
    connect(m_preview, &Preview::documentChanged, this,
        [this] { setEnabled(m_preview->pageCount() > 0); });
    setEnabled(false);
    showState();
}

void FindBox::start()
{
    const TextSelection &selection = m_preview->selection();
    if (!selection.isEmpty() && selection.begin().page == selection.end().page) {
        const QString text
            = textForCopying(*m_preview->document(), selection.begin(), selection.end());
        if (!text.contains(u'\n') && !text.contains(u'\t'))
            m_text->setText(text);
    }
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

bool FindBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        m_preview->finder().prepare(caseRule());
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (key->modifiers().testFlag(Qt::ShiftModifier))
            m_preview->finder().findPrevious();
        else
            m_preview->finder().findNext();
        return true;
    case Qt::Key_Escape:
        end();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

QToolButton *FindBox::addButton(const QString &objectName)
{
    auto *button = new QToolButton(this);
    button->setObjectName(objectName);
    button->setIconSize(QSize(kIconSize, kIconSize));
    button->setAutoRaise(true);
    return button;
}

CaseRule FindBox::caseRule() const
{
    return m_matchCase->isChecked() ? CaseRule::Match : CaseRule::Ignore;
}

void FindBox::find()
{
    m_preview->finder().find(m_text->text(), caseRule(), m_preview->currentPage());
}

/// Says so where the search went on beyond an end. Of two hits either way is the same.
QString FindBox::hitText()
{
    const PreviewFinder &finder = m_preview->finder();
    const qint64 count = finder.hitCount();
    const qint64 number = finder.currentHit()->number;
    const qint64 before = std::exchange(m_shownHit, number);
    QString text = tr("%1 of %2").arg(locale().toString(number), locale().toString(count));
    if (count > 2 && before == count && number == 1)
        text += tr(", from the top");
    else if (count > 2 && before == 1 && number == count)
        text += tr(", from the end");
    return text;
}

void FindBox::showState()
{
    const PreviewFinder &finder = m_preview->finder();
    QString state;
    if (!finder.isActive())
        state = QString();
    else if (!finder.isFinished())
        state = tr("Searching…");
    else if (finder.hitCount() == 0)
        state = tr("Not found");
    else
        state = hitText();
    if (!finder.isActive() || !finder.isFinished())
        m_shownHit = 0;
    m_state->setText(state);
    m_state->setToolTip(state);
}

void FindBox::end()
{
    m_text->clear();
    m_preview->setFocus(Qt::OtherFocusReason);
}

} // namespace corvane
