#include "shared/run_time_fault.h"

namespace corvane {

namespace {

QString wordsOf(RunTimeFault::Number number)
{
    switch (number) {
    case RunTimeFault::InvalidArgument:
        return QStringLiteral("Invalid procedure call or argument");
    case RunTimeFault::Overflow:
        return QStringLiteral("Overflow");
    case RunTimeFault::IndexOutOfRange:
        return QStringLiteral("Subscript out of range");
    case RunTimeFault::TypeMismatch:
        return QStringLiteral("Type mismatch");
    }
    return {};
}

} // namespace

RunTimeFault::RunTimeFault(Number number, const QString &detail)
    : m_number(number)
    , m_description(detail.isEmpty() ? wordsOf(number) : wordsOf(number) + u": " + detail)
    , m_utf8(m_description.toUtf8())
{
}

} // namespace corvane
