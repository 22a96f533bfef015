#include "platform/controls/date_field.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFrame>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr QChar kBlank = u'_';
constexpr int kLineEditMargin = 2; ///< what QLineEdit leaves free at either side of its text

/// Where a group of digits stands in the mask.
struct Group {
    int begin = 0;
    int length = 0;
};

std::array<Group, 3> groupsOf(DateOrder order)
{
    if (order == DateOrder::YearMonthDay)
        return {{{0, 4}, {5, 2}, {8, 2}}};
    return {{{0, 2}, {3, 2}, {6, 4}}};
}

QString maskOf(DateOrder order, QChar letter)
{
    QString mask = order == DateOrder::YearMonthDay ? QStringLiteral("dddd/dd/dd") : QStringLiteral("dd/dd/dddd");
    return mask.replace(u'd', letter);
}

QChar widestDigit(const QFontMetrics &metrics)
{
    QChar widest = u'0';
    for (char16_t digit = u'1'; digit <= u'9'; ++digit) {
        if (metrics.horizontalAdvance(QChar(digit)) > metrics.horizontalAdvance(widest))
            widest = QChar(digit);
    }
    return widest;
}

} // namespace

DateField::DateField(QWidget *parent)
    : QLineEdit(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    applyMask();
    connect(this, &QLineEdit::textChanged, this, &DateField::changed);
}

void DateField::applyMask()
{
    setInputMask(maskOf(m_order, u'0') + u';' + kBlank);
}

void DateField::setDateOrder(int order)
{
    if (dateOrderOf(order) == m_order)
        return;
    const std::optional<QDate> kept = date();
    {
        // The text passes through states that nobody typed; one notice at the end is the truth.
        const QSignalBlocker quiet(this);
        clear();
        m_order = dateOrderOf(order);
        applyMask();
        setDate(kept.value_or(QDate()));
    }
    updateGeometry();
    Q_EMIT changed();
}

std::optional<QDate> DateField::date() const
{
    const QString shown = displayText();
    return shown.contains(kBlank) ? std::nullopt : readDate(shown, m_order);
}

void DateField::setDate(QDate date)
{
    QLineEdit::setText(dateText(date, m_order));
    setCursorPosition(0);
}

int DateField::dayNumber() const
{
    return corvane::dayNumber(date().value_or(QDate()));
}

QString DateField::text() const
{
    const QString shown = displayText();
    return shown == maskOf(m_order, kBlank) ? QString() : shown;
}

void DateField::setText(const QString &text)
{
    setDate(readDate(text, m_order).value_or(QDate()));
}

QSize DateField::sizeHint() const
{
    ensurePolished();
    const QFontMetrics metrics = fontMetrics();
    const int width = qMax(metrics.horizontalAdvance(maskOf(m_order, widestDigit(metrics))),
        metrics.horizontalAdvance(maskOf(m_order, kBlank)));
    const QMargins text = textMargins();
    const int caret = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QSize content(
        width + caret + 2 * kLineEditMargin + text.left() + text.right(), QLineEdit::sizeHint().height());
    const int frame = style()->sizeFromContents(QStyle::CT_LineEdit, &option, content, this).width();
    return {frame, content.height()};
}

void DateField::keyPressEvent(QKeyEvent *event)
{
    const bool plain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
    const QString typed = event->text();
    if (event->matches(QKeySequence::Paste))
        pasteFrom(QClipboard::Clipboard);
    else if (plain && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down))
        stepDay(event->key() == Qt::Key_Up ? 1 : -1);
    else if (plain && typed.size() == 1 && QStringView(u"/-. ").contains(typed.front()))
        typeSeparator();
    else
        QLineEdit::keyPressEvent(event);
}

void DateField::focusOutEvent(QFocusEvent *event)
{
    for (int group = 0; group < 3; ++group)
        completeGroup(group);
    QLineEdit::focusOutEvent(event);
}

void DateField::mouseReleaseEvent(QMouseEvent *event)
{
    // The middle button pastes the selection; the line edit would put it into the mask piece by piece.
    if (event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection()) {
        pasteFrom(QClipboard::Selection);
        return;
    }
    QLineEdit::mouseReleaseEvent(event);
    if (text().isEmpty())
        setCursorPosition(0);
}

void DateField::contextMenuEvent(QContextMenuEvent *event)
{
    // Of its own, because the line edit's menu would paste piece by piece into the mask.
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [menu](const QString &text, const QString &name, bool enabled) {
        QAction *action = menu->addAction(text);
        action->setObjectName(name);
        action->setEnabled(enabled);
        return action;
    };
    const bool canPaste = !isReadOnly() && !QGuiApplication::clipboard()->text().isEmpty();
    connect(add(tr("Cu&t"), QStringLiteral("cut"), !isReadOnly() && hasSelectedText()), &QAction::triggered, this,
        &QLineEdit::cut);
    connect(add(tr("&Copy"), QStringLiteral("copy"), hasSelectedText()), &QAction::triggered, this, &QLineEdit::copy);
    connect(add(tr("&Paste"), QStringLiteral("paste"), canPaste), &QAction::triggered, this,
        [this] { pasteFrom(QClipboard::Clipboard); });
    connect(add(tr("C&lear"), QStringLiteral("clear"), !isReadOnly() && !text().isEmpty()), &QAction::triggered, this,
        &QLineEdit::clear);
    connect(add(tr("Select &All"), QStringLiteral("selectAll"), !text().isEmpty()), &QAction::triggered, this,
        &QLineEdit::selectAll);
    menu->popup(event->globalPos());
}

void DateField::dropEvent(QDropEvent *event)
{
    insertDateText(event->mimeData()->text());
    event->acceptProposedAction();
}

void DateField::pasteFrom(int clipboardMode)
{
    insertDateText(QGuiApplication::clipboard()->text(QClipboard::Mode(clipboardMode)));
}

/// A whole date replaces the field; digits alone go where the cursor stands; anything else is refused.
void DateField::insertDateText(const QString &text)
{
    if (isReadOnly())
        return;
    const QString trimmed = text.trimmed();
    if (const std::optional<QDate> whole = readDate(trimmed, m_order))
        setDate(*whole);
    else if (!trimmed.isEmpty()
        && std::all_of(trimmed.begin(), trimmed.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        insert(trimmed);
}

/// Puts a zero before the only digit of a day or month.
void DateField::completeGroup(int group)
{
    const Group place = groupsOf(m_order)[size_t(group)];
    QString shown = displayText();
    const QString digits = shown.mid(place.begin, place.length).remove(kBlank);
    if (isReadOnly() || place.length != 2 || digits.size() != 1 || digits == u"0")
        return;
    const int cursor = cursorPosition();
    shown.replace(place.begin, place.length, u'0' + digits);
    QLineEdit::setText(shown);
    setCursorPosition(cursor);
}

void DateField::typeSeparator()
{
    const std::array<Group, 3> groups = groupsOf(m_order);
    if (hasSelectedText())
        return;
    for (int i = 0; i < 3; ++i) {
        const Group place = groups[size_t(i)];
        const int cursor = cursorPosition();
        if (cursor <= place.begin || cursor > place.begin + place.length)
            continue;
        completeGroup(i);
        if (i < 2)
            setCursorPosition(groups[size_t(i) + 1].begin);
        return;
    }
}

void DateField::stepDay(int days)
{
    const std::optional<QDate> from = date();
    if (!from || isReadOnly())
        return;
    const QDate to = from->addDays(days);
    if (to.year() < 1 || to.year() > 9999)
        return;
    const int cursor = cursorPosition();
    setDate(to);
    setCursorPosition(cursor);
}

} // namespace corvane
