#include "platform/database/error.h"

namespace corvane {

DatabaseError::DatabaseError(int number, QString description, FailureCause cause, QString state)
    : m_number(number)
    , m_description(std::move(description))
    , m_cause(cause)
    , m_state(std::move(state))
    , m_utf8(m_description.toUtf8())
{
}

} // namespace corvane
