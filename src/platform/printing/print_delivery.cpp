#include "platform/printing/print_delivery.h"

#include "platform/files/file_hold.h"
#include "platform/messages/system_words.h"
#include "platform/printing/print_error.h"
#ifdef CORVANE_CUPS
#include "platform/printing/cups_job.h"
#endif

#include <QtCore/QDir>
#include <QtPrintSupport/QPrinter>

namespace corvane {

namespace {

constexpr qint64 kTail = 64;
constexpr qint64 kBlock = 1 << 20;

bool printsToFile(const QPrinter &printer)
{
    return printer.outputFormat() == QPrinter::PdfFormat || !printer.outputFileName().isEmpty();
}

} // namespace

QString printerWords(const QPrinter &printer)
{
    return QStringLiteral("the printer \"%1\"").arg(printer.printerName());
}

PrintDelivery::PrintDelivery(QPrinter &printer)
    : m_printer(printer)
    , m_fileName(printer.outputFileName())
    , m_way(Way::Direct)
    // Its ending is not ".pdf", which would change the printer's format.
    , m_spool(temporaryTemplate(QDir::tempPath()))
    , m_target(QStringLiteral("file"), printer.outputFileName())
{
    if (printsToFile(printer)) {
        m_way = Way::File;
        openTarget();
    }
#ifdef CORVANE_CUPS
    if (m_way == Way::Direct)
        m_way = Way::Queue;
#endif
    if (m_way == Way::Direct)
        return;
    removeAbandonedFiles(QDir::tempPath());
    if (!m_spool.open()) {
        throw PrintError(refusal(
            QStringLiteral("No file can be made in the folder \"%1\" (%2). Free some space there.")
                .arg(QDir::toNativeSeparators(QDir::tempPath()), systemWords(m_spool.errorString()))));
    }
    holdOpenFile(m_spool.handle());
    m_printer.setOutputFileName(m_spool.fileName());
}

PrintDelivery::~PrintDelivery()
{
    if (m_way != Way::Direct)
        m_printer.setOutputFileName(m_fileName);
}

void PrintDelivery::handOver()
{
    if (m_way == Way::Direct)
        return;
    checkComplete();
    if (m_way == Way::File)
        copyToTarget();
#ifdef CORVANE_CUPS
    else
        submitToQueue(m_printer, m_spool.fileName());
#endif
}

QString PrintDelivery::refusal(const QString &cause) const
{
    if (m_way == Way::File) {
        return QStringLiteral("The report was not printed to the file \"%1\". %2")
            .arg(QDir::toNativeSeparators(m_fileName), cause);
    }
    return QStringLiteral("The report was not printed on %1. %2")
        .arg(printerWords(m_printer), cause);
}

void PrintDelivery::openTarget()
{
    if (m_fileName.isEmpty())
        throw PrintError(QStringLiteral(
            "The report was not printed. No printer and no file was chosen. Choose one of them."));
    if (!m_target.open())
        throw PrintError(refusal(m_target.cause()));
}

/// The toolkit writes without looking at errors: a file that is cut short lacks its last line.
void PrintDelivery::checkComplete()
{
    const qint64 size = m_spool.size();
    m_spool.seek(std::max<qint64>(size - kTail, 0));
    if (m_spool.read(kTail).contains("%%EOF"))
        return;
    throw PrintError(refusal(
        QStringLiteral("The folder \"%1\" has no room for its pages. Free some space there.")
            .arg(QDir::toNativeSeparators(QDir::tempPath()))));
}

void PrintDelivery::copyToTarget()
{
    m_spool.seek(0);
    for (QByteArray block = m_spool.read(kBlock); !block.isEmpty(); block = m_spool.read(kBlock)) {
        if (!m_target.write(block))
            break;
    }
    if (!m_target.commit())
        throw PrintError(refusal(m_target.cause()));
}

} // namespace corvane
