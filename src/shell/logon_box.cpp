#include "shell/logon_box.h"

#include "session/logon.h"
#include "shared/lists.h"

#include <QtGui/QFocusEvent>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QValidator>

namespace corvane {

namespace {

class KeyFilter : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &) const override { return passesKeyFilter(text) ? Acceptable : Invalid; }
};

} // namespace

LogonBox::LogonBox(QWidget *parent)
    : QLineEdit(parent)
{
    setValidator(new KeyFilter(this));
}

void LogonBox::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    selectText(*this);
}

void LogonBox::keyPressEvent(QKeyEvent *event)
{
    // Enter is discarded like every other key that the filter refuses: it must not press a button.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return;
    QLineEdit::keyPressEvent(event);
}

void LogonBox::inputMethodEvent(QInputMethodEvent *event)
{
    if (passesKeyFilter(event->preeditString()) && passesKeyFilter(event->commitString()))
        QLineEdit::inputMethodEvent(event);
}

} // namespace corvane
