#include "shell/gated_desktop.h"

#include "shell/input_gate.h"

namespace corvane {

MessageAnswer GatedDesktop::message(const QString &text, int flags, const QString &title)
{
    const InputGate::Opened opened(m_gate);
    return m_desktop.message(text, flags, title);
}

QString GatedDesktop::openFile(const QString &title, const QString &initialFolder, const QString &filter)
{
    const InputGate::Opened opened(m_gate);
    return m_desktop.openFile(title, initialFolder, filter);
}

QString GatedDesktop::saveFile(const SaveFileRequest &request)
{
    const InputGate::Opened opened(m_gate);
    return m_desktop.saveFile(request);
}

bool GatedDesktop::printDialog(QPrinter &printer, int pageCount)
{
    const InputGate::Opened opened(m_gate);
    return m_desktop.printDialog(printer, pageCount);
}

} // namespace corvane
