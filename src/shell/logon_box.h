#pragma once

#include <QtWidgets/QLineEdit>

namespace corvane {

/// A text box of the logon form: whatever would bring in a character that the key filter refuses
/// (key, paste, drop, input method) changes nothing.
class LogonBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit LogonBox(QWidget *parent = nullptr);

    void setSelStart(int at) { setSelection(at, 0); }
    void setSelLength(qsizetype length) { setSelection(0, int(length)); }
    QString Text() const { return text(); }

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
};

} // namespace corvane
