#pragma once

#include "platform/files/file_replacement.h"

#include <QtCore/QTemporaryFile>

class QPrinter;

namespace corvane {

/// Where a job's pages go. Where the toolkit makes a file of them it cannot abort, so that file is
/// made aside, and the target or the queue gets it once it is complete. Other printers get their
/// pages at once.
class PrintDelivery
{
public:
    /// Sets the printer up; to be called before painting begins. @throws PrintError
    explicit PrintDelivery(QPrinter &printer);
    /// Gives the printer back its settings; removes what was not handed over.
    ~PrintDelivery();

    PrintDelivery(const PrintDelivery &) = delete;
    PrintDelivery &operator=(const PrintDelivery &) = delete;

    /// Hands the painted job over. @throws PrintError
    void handOver();

private:
    enum class Way { File, Queue, Direct };

    QString refusal(const QString &cause) const;
    void openTarget();
    void checkComplete();
    void copyToTarget();

    QPrinter &m_printer;
    QString m_fileName; ///< the file that the printer was to print to
    Way m_way;
    /// Only its owner may read it: the pages tell of patients. Held, so that it is known for a dead
    /// one's when the program is killed; the next job then removes it.
    QTemporaryFile m_spool;
    FileReplacement m_target;
};

/// The printer as messages name it.
QString printerWords(const QPrinter &printer);

} // namespace corvane
