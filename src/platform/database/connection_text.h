#pragma once

#include <QtCore/QString>

namespace corvane {

/// What a connection text says of encryption: mostly nothing.
enum class Encryption { DriverDefault, Off, On, Strict };

/// A connection text read once: "Keyword=value;" pieces, keywords without regard to case and with
/// their synonyms. The first piece of a meaning wins; unknown keywords are passed over.
struct ConnectionText {
    QString provider;
    QString dataSource;     ///< Data Source, Server, Address
    QString catalogue;      ///< Initial Catalog, Database
    QString userId;         ///< User Id, UID
    QString password;       ///< Password, PWD
    bool integratedSecurity = false; ///< Integrated Security=SSPI/True/Yes, Trusted_Connection=Yes
    Encryption encryption = Encryption::DriverDefault; ///< Encrypt=yes/no/strict, Use Encryption for Data
    bool trustServerCertificate = false; ///< TrustServerCertificate, Trust Server Certificate
    QString serverCertificate {}; ///< ServerCertificate: a PEM file to trust in place of the system's

    bool operator==(const ConnectionText &) const = default;
};

ConnectionText parseConnectionText(QStringView text);

} // namespace corvane
