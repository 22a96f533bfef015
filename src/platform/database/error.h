#pragma once

#include <QtCore/QString>

#include <exception>

namespace corvane {

/// Number of a failed connection, and of any failure for which a driver has none of its own.
constexpr int kConnectionError = -2147467259;

/// What a connection attempt stumbled over; lets the caller say which setting to look at.
enum class FailureCause { Unknown, Provider, Server, Certificate, Logon, Catalogue, TimeOut };

/// Every database failure: the driver's number and words, never the connection text or a password.
class DatabaseError : public std::exception
{
public:
    DatabaseError(int number, QString description, FailureCause cause = FailureCause::Unknown);

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    FailureCause cause() const { return m_cause; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_description;
    FailureCause m_cause;
    QByteArray m_utf8;
};

} // namespace corvane
