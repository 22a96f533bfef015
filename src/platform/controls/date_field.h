#pragma once

#include "platform/dates/date_text.h"

#include <QtWidgets/QLineEdit>

namespace corvane {

/// A date typed into a mask ("__/__/____", year first "____/__/__"). Digits flow over the separators, a
/// separator completes a single digit, up and down move a whole date by a day, and a pasted or dropped
/// date is understood in any of readDate()'s forms.
class DateField : public QLineEdit
{
    Q_OBJECT

public:
    explicit DateField(QWidget *parent = nullptr);

    /// 0 month-day-year, 1 day-month-year, 2 year first. A whole date stays what it is.
    void setDateOrder(int order);
    DateOrder dateOrder() const { return m_order; }

    /// Empty when nothing, half a date or an impossible date is typed.
    std::optional<QDate> date() const;
    /// An invalid date empties the field.
    void setDate(QDate date);
    /// Days since 1899-12-30; 0 when there is no date. Below 2 means "no date".
    int dayNumber() const;

    // Both hide the line edit's own on purpose: what the mask makes of a text is no caller's business.
    // NOLINTBEGIN(bugprone-derived-method-shadowing-base-method)
    /// As displayed, "11/01/2026" or "11/__/____"; empty when nothing is typed.
    QString text() const;
    /// Any form that readDate() takes; anything else empties the field.
    void setText(const QString &text);
    // NOLINTEND(bugprone-derived-method-shadowing-base-method)

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// What is typed has changed, by whatever way.
    void changed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void applyMask();
    void insertDateText(const QString &text);
    void pasteFrom(int clipboardMode);
    void completeGroup(int group);
    void typeSeparator();
    void stepDay(int days);

    DateOrder m_order = DateOrder::MonthDayYear;
};

} // namespace corvane
