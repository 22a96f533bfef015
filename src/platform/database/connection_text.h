#pragma once

#include <QtCore/QString>

namespace corvane {

/// A connection text read once: "Keyword=value;" pieces, keywords without regard to case and with
/// their synonyms. The first piece of a meaning wins; unknown keywords are passed over.
struct ConnectionText {
    QString provider;
    QString dataSource;     ///< Data Source, Server, Address
    QString catalogue;      ///< Initial Catalog, Database
    QString userId;         ///< User Id, UID
    QString password;       ///< Password, PWD
    bool integratedSecurity = false; ///< Integrated Security=SSPI/True/Yes, Trusted_Connection=Yes

    bool operator==(const ConnectionText &) const = default;
};

ConnectionText parseConnectionText(QStringView text);

} // namespace corvane
