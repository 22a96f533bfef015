#pragma once

#include <QtCore/QString>

#include <exception>

namespace corvane {

/// Number of a failed connection, and of any failure for which a driver has none of its own.
constexpr int kConnectionError = -2147467259;

/// What a database failure stumbled over; lets the caller say which setting to look at.
enum class FailureCause {
    Unknown,     ///< nothing of the following: mostly the statement itself
    Provider,    ///< there is no such driver
    Server,      ///< no machine of that name, or it does not answer
    Port,        ///< the machine is there, the database server is not
    Certificate, ///< the encryption could not be agreed on
    Logon,
    Catalogue,   ///< there is no such database
    TimeOut,
    Lost,        ///< the connection was there and broke
};

/// Every database failure: the driver's number and words, never the connection text or a password.
class DatabaseError : public std::exception
{
public:
    DatabaseError(int number, QString description, FailureCause cause = FailureCause::Unknown, QString state = {});

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    FailureCause cause() const { return m_cause; }
    /// The five characters of the call-level interface (ISO/IEC 9075-3); empty where a driver has none.
    const QString &state() const { return m_state; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_description;
    FailureCause m_cause;
    QString m_state;
    QByteArray m_utf8;
};

} // namespace corvane
