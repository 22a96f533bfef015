#pragma once

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <optional>

namespace corvane::test {

/// What came out of a queue.
struct PrintedJob
{
    QString fileName; ///< the PDF
    QString title;
    QString copies; ///< as the printer was told
    QString options; ///< "name=value" pairs separated by blanks
};

/// A printing system of the test's own: cupsd with its configuration, queues and socket in a
/// temporary folder, made known to this process. Its queues keep what they get. Stopped with the
/// object.
class PrintServer
{
public:
    PrintServer();
    ~PrintServer();

    /// Adds a queue for the next start. A description (PPD) gives it papers and margins.
    void addQueue(const QString &name, bool acceptsJobs, const QByteArray &description = {});
    enum class Queues { Added, None };
    /// Starts or restarts the server, always at the same address: the library asks for that only
    /// once. Empty when it runs, else why not.
    QString start(Queues queues = Queues::Added);
    void stop();

    /// The next finished job that was not taken yet.
    std::optional<PrintedJob> takeJob();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    bool write(const QString &name, const QByteArray &bytes);

    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_queues;
    int m_taken = 0;
};

/// Describes a printer for Letter and A5 paper with quarter-inch margins at the sides that prints
/// on both sides of the paper.
QByteArray letterPrinter();

} // namespace corvane::test
