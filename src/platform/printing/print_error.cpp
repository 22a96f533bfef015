#include "platform/printing/print_error.h"

namespace corvane {

PrintError::PrintError(const QString &message)
    : std::runtime_error(message.toStdString())
    , m_message(message)
{
}

} // namespace corvane
