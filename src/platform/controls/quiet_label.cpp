#include "platform/controls/quiet_label.h"

#include "platform/controls/colours.h"

#include <QtCore/QEvent>

namespace corvane {

QuietLabel::QuietLabel(QWidget *parent)
    : QuietLabel(QString(), parent)
{
}

QuietLabel::QuietLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    setForegroundRole(QPalette::PlaceholderText); // a role that nobody else of the label draws with
    quieten();
}

bool QuietLabel::event(QEvent *event)
{
    const bool handled = QLabel::event(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        quieten();
    return handled;
}

void QuietLabel::quieten()
{
    QPalette own = palette();
    const QColor quiet = quietText(own);
    if (own.color(QPalette::PlaceholderText) == quiet)
        return;
    own.setColor(QPalette::PlaceholderText, quiet);
    setPalette(own);
}

} // namespace corvane
