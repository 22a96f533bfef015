#pragma once

#include "platform/desktop/system_desktop.h"
#include "shared/reportr.h"
#include "shell/frm_cvr_main.h"
#include "platform/process/single_instance.h"
#include "support/demo_folder.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

class QDialog;

namespace corvane::test {

/// Walks the real program through every window it has, on a demo clinic: logs on, runs reports,
/// answers what they ask, and shows each window to a visitor before it is answered.
class WindowTour : public QObject
{
    Q_OBJECT

public:
    /// @param name what is shown, as in "frmDefDates" or "main-running"; a form met again is not
    /// shown again
    using Visitor = std::function<void(const QString &name, QWidget &window)>;

    explicit WindowTour(Visitor visitor);
    ~WindowTour() override;

    void run();
    /// Names in the order of the visits.
    const QStringList &visited() const { return m_visited; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void visit(const QString &name, QWidget &window);
    void answer(QDialog &dialog);
    void waitForKinds();
    void runReports();
    void openForms();
    void showMessages();
    void open(const QString &report);
    void trigger(const char *action);

    DemoFolder m_demo{200};
    Visitor m_visitor;
    QStringList m_visited;
    Reportr m_state;
    SystemDesktop m_desktop;
    std::unique_ptr<frmCVRMain> m_window;
    std::unique_ptr<SingleInstance> m_instance;
};

} // namespace corvane::test
