#include "help/help_desk.h"

#include "help/frm_help.h"
#include "help/help_topics.h"
#include "platform/desktop/desktop.h"
#include "shared/reportr.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

namespace corvane {

namespace {

const HelpTopic *topicOfClass(const QMetaObject *type)
{
    for (; type; type = type->superClass()) {
        if (const HelpTopic *topic = topicOfForm(QString::fromLatin1(type->className())))
            return topic;
    }
    return nullptr;
}

} // namespace

const HelpTopic &topicInFront(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (const HelpTopic *topic = topicOfForm(widget->objectName()))
            return *topic;
        if (const HelpTopic *topic = topicOfClass(widget->metaObject()))
            return *topic;
    }
    return topicOfContext(kMainHelpContext);
}

HelpDesk::HelpDesk(Desktop &desktop, const QString &programFolder, QWidget *window)
    : QObject(window)
    , m_desktop(desktop)
    , m_programFolder(programFolder)
    , m_window(window)
{
    QCoreApplication::instance()->installEventFilter(this);
}

void HelpDesk::showContext(int context)
{
    show(topicOfContext(context));
}

bool HelpDesk::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    show(topicInFront(static_cast<QWidget *>(watched)));
    return true;
}

void HelpDesk::show(const HelpTopic &topic)
{
    if (shownBySystem(topic))
        return;
    if (!m_help) {
        m_help = new frmHelp(m_window);
        m_help->setAttribute(Qt::WA_DeleteOnClose);
    }
    standAbove(windowInFront());
    m_help->showTopic(topic);
    m_help->show();
    m_help->raise();
    m_help->activateWindow();
}

bool HelpDesk::shownBySystem(const HelpTopic &topic)
{
    const QString file = findFile(m_programFolder, kHelpFile.toString());
    return !file.isEmpty() && m_desktop.showHelpFile(file, topic.context);
}

/// A modal dialog lets only windows of its own be used, so the help goes to it and, when it
/// closes, to the one behind it.
void HelpDesk::standAbove(QWidget *owner)
{
    if (m_help->parentWidget() == owner)
        return;
    m_help->setParent(owner, m_help->windowFlags());
    auto *dialog = qobject_cast<QDialog *>(owner);
    if (!dialog)
        return;
    connect(dialog, &QDialog::finished, m_help, [this] {
        const bool wasOpen = m_help->isVisible();
        standAbove(windowInFront());
        m_help->setVisible(wasOpen);
    });
}

QWidget *HelpDesk::windowInFront() const
{
    QWidget *dialog = QApplication::activeModalWidget();
    return dialog ? dialog : m_window;
}

} // namespace corvane
