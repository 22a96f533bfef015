#pragma once

#include <QtCore/QString>

#include <stdexcept>

namespace corvane {

/// A report that could not be printed; the words name the printer or file, the cause and what to
/// do.
class PrintError : public std::runtime_error
{
public:
    explicit PrintError(const QString &message);
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

} // namespace corvane
