#include "platform/database/odbc/quiet_warnings.h"

namespace corvane::odbc {

namespace {

thread_local QuietWarnings *current = nullptr;
QtMessageHandler previousHandler = nullptr;

} // namespace

QuietWarnings::QuietWarnings()
    : m_outer(current)
{
    current = this;
    if (!m_outer)
        previousHandler = qInstallMessageHandler(handle);
}

QuietWarnings::~QuietWarnings()
{
    current = m_outer;
    if (!m_outer)
        qInstallMessageHandler(previousHandler);
}

void QuietWarnings::handle(
    QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!current || type != QtWarningMsg || !message.contains(u"QODBC"))
        return previousHandler(type, context, message);
    if (current->m_first.isEmpty())
        current->m_first = message;
}

} // namespace corvane::odbc
