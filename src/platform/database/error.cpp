#include "platform/database/error.h"

namespace corvane {

DatabaseError::DatabaseError(int number, QString description, FailureCause cause)
    : m_number(number)
    , m_description(std::move(description))
    , m_cause(cause)
    , m_utf8(m_description.toUtf8())
{
}

} // namespace corvane
