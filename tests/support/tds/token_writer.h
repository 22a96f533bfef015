#pragma once

#include "support/tds/answer.h"
#include "support/tds/wire.h"

namespace corvane::test::tds {

/// Types of the ENVCHANGE token ([MS-TDS] 2.2.7.9).
enum class Environment : quint8 { Database = 1, Language = 2, PacketSize = 4, Collation = 7 };

/// Bits of the DONE tokens' status ([MS-TDS] 2.2.7.6).
enum DoneStatus : quint16 { Final = 0, More = 1, Error = 2, Count = 0x10, Attention = 0x20 };

/// The three DONE tokens: of a batch, of a procedure, of a statement in a procedure.
enum class Done : quint8 { Batch = 0xfd, Procedure = 0xfe, InProcedure = 0xff };

/// The server's side of a message: tokens one behind the other ([MS-TDS] 2.2.7).
class TokenWriter
{
public:
    void loginAcknowledged(quint32 version);
    void changed(Environment what, const QString &now, const QString &before);
    void changedCollation();
    /// ERROR or INFO by severity.
    void message(const ServerMessage &message);
    void columns(const QList<Column> &columns);
    /// ROW, or NBCROW where half of the cells or more are null.
    void row(const QList<Column> &columns, const QList<Cell> &cells);
    void done(Done token, int status, qint64 count = 0);
    void returnStatus(int status);

    const QByteArray &data() const { return m_out.data(); }

private:
    /// A token with two bytes of length.
    void sized(int token, const WireWriter &content);

    WireWriter m_out;
};

} // namespace corvane::test::tds
