#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>

class QWidget;

namespace corvane {

class Desktop;
class frmHelp;
struct HelpTopic;

/// Shows help for the whole program: by context number, and by F1 for the form in front. The
/// system's engine is used where it exists and the help file stands in the program folder, else
/// frmHelp.
class HelpDesk : public QObject
{
    Q_OBJECT

public:
    /// @param window the program's own window, which the help stands above while no dialog is open
    HelpDesk(Desktop &desktop, const QString &programFolder, QWidget *window);

    void showContext(int context);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void show(const HelpTopic &topic);
    bool shownBySystem(const HelpTopic &topic);
    void standAbove(QWidget *owner);
    QWidget *windowInFront() const;

    Desktop &m_desktop;
    QString m_programFolder;
    QWidget *m_window;
    QPointer<frmHelp> m_help;
};

/// The topic of the nearest form that a widget belongs to; the main topic when none has one.
const HelpTopic &topicInFront(const QWidget *widget);

} // namespace corvane
