#pragma once

#include <QtCore/QString>

#include <exception>

namespace corvane {

/// A fault with a classic run-time number, which messages show and users quote.
class RunTimeFault : public std::exception
{
public:
    enum Number { InvalidArgument = 5, Overflow = 6, IndexOutOfRange = 9, TypeMismatch = 13 };

    /// `detail` says what and where; empty gives the number's own words alone.
    explicit RunTimeFault(Number number, const QString &detail = {});

    int number() const { return m_number; }
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    Number m_number;
    QString m_description;
    QByteArray m_utf8;
};

} // namespace corvane
