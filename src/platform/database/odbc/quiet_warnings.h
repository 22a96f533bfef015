#pragma once

#include <QtCore/QString>

namespace corvane::odbc {

/// For calls whose failures are thrown: while it lives, warnings of Qt's ODBC driver on this thread
/// are kept instead of printed; every other message goes its way.
class QuietWarnings
{
public:
    QuietWarnings();
    ~QuietWarnings();
    Q_DISABLE_COPY_MOVE(QuietWarnings)

    /// The first warning since, empty when there was none.
    const QString &first() const { return m_first; }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);

    QuietWarnings *m_outer;
    QString m_first;
};

} // namespace corvane::odbc
