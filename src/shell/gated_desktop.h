#pragma once

#include "platform/desktop/desktop.h"

namespace corvane {

class InputGate;

/// The desktop as the main window asks it: while one of its dialogs stands, the gate is open, so that the
/// dialog can be answered in the middle of a run too.
class GatedDesktop : public Desktop
{
public:
    GatedDesktop(Desktop &desktop, InputGate &gate)
        : m_desktop(desktop)
        , m_gate(gate)
    {
    }

    MessageAnswer message(const QString &text, int flags, const QString &title) override;
    QString openFile(const QString &title, const QString &initialFolder, const QString &filter) override;
    QString saveFile(const SaveFileRequest &request) override;
    bool printDialog(QPrinter &printer, int pageCount) override;
    int openDocument(const QString &path) override { return m_desktop.openDocument(path); }
    bool openAddress(const QUrl &address) override { return m_desktop.openAddress(address); }

private:
    Desktop &m_desktop;
    InputGate &m_gate;
};

} // namespace corvane
