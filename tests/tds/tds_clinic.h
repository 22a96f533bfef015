#pragma once

#include "platform/database/driver.h"
#include "render/report_run.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/tds/server.h"

namespace corvane::test {

/// The demo clinic's two databases behind a loopback server, and a program folder that names it.
class TdsClinic
{
public:
    /// Settings but for `open`.
    explicit TdsClinic(int patients, tds::ServerSettings settings = {});

    const DemoFolder &folder() const { return m_folder; }
    tds::Server &server() { return m_server; }

    /// What the main database is opened with.
    QString connectionText() const;
    /// Replaces a line of corvane.ini, as in "UID=demo" by "UID=nobody"; qFatal when it is not
    /// there.
    void changeConfiguration(const QByteArray &line, const QByteArray &other) const;

private:
    DemoFolder m_folder;
    tds::Server m_server;
};

/// A started program without a window in that folder.
struct Program
{
    explicit Program(const QString &folder);

    bool logOn(const QString &password = QStringLiteral("clinic"));
    /// The text of the latest document; empty when there is none.
    QString text() const;

    Reportr state;
    RecordingHost host;
    ReportRun run{state, host, host, QLocale::c()};
};

} // namespace corvane::test
