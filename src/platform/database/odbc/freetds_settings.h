#pragma once

#include "platform/database/connection_text.h"
#include "platform/database/error.h"
#include "platform/database/odbc/diagnostics.h"

#include <QtCore/QTemporaryFile>

#include <optional>

namespace corvane::odbc {

/// FreeTDS reads what it checks of a certificate only from a settings file, and from that only for
/// a server that the file names: a file for one logon, made known to the driver while this lives.
class FreeTdsSettings
{
public:
    /// @throws DatabaseError when the file cannot be written or names no certificate that is there
    explicit FreeTdsSettings(const ConnectionText &text);
    ~FreeTdsSettings();
    Q_DISABLE_COPY_MOVE(FreeTdsSettings)

private:
    QTemporaryFile m_file;
    std::optional<QByteArray> m_before;
};

/// The name of the server in that file: its own, which the server gets to see.
QString freeTdsServer(const ConnectionText &text);

/// Whether the driver broke off before the logon: because of the certificate or a server that went
/// away, it does not say which.
bool endsBeforeLogon(const std::vector<Diagnostic> &records);

/// The text for a second try that shows which: nothing is checked, and nothing of worth is told.
ConnectionText uncheckedTrial(const ConnectionText &text);

/// What to say when that try reached the logon.
DatabaseError certificateFailure(const ConnectionText &text);

/// The file's text: certificate and host name are checked unless the text says to trust the server.
QByteArray freeTdsSettings(const ConnectionText &text);

} // namespace corvane::odbc
