#include "batch/batch_run.h"

#include "batch/batch_dialogs.h"
#include "batch/console_host.h"
#include "batch/report_name.h"
#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "platform/database/error.h"
#include "platform/pdf/pdf_writer.h"
#include "platform/printing/print_error.h"
#include "platform/printing/print_queue.h"
#include "render/report_run.h"
#include "session/logon.h"
#include "session/patient_search.h"
#include "session/report_list.h"
#include "session/startup.h"
#include "shared/dates.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace corvane {

namespace {

qint64 peakMemoryKiB()
{
#ifdef Q_OS_WIN
    return 0;
#else
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#endif
}

/// Writes the document page by page; nothing stands under the name until commit().
QString writeText(const Document &document, QSaveFile &file)
{
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    QString text;
    for (size_t i = 0; i < document.pages.size(); ++i) {
        text.clear();
        if (i > 0)
            text += u'\f';
        appendPageText(text, document.pages[i]);
        const QByteArray bytes = text.toUtf8();
        if (file.write(bytes) != bytes.size())
            return file.errorString();
    }
    return {};
}

void printNotes(const QStringList &notes)
{
    for (const QString &note : notes)
        printError(note);
}

class BatchJob
{
public:
    BatchJob(const BatchOptions &options, const QDateTime &now, const QLocale &locale)
        : m_options(options)
        , m_host(now, getDateOrder(locale))
        , m_dialogs(m_state, options, now.date(), cellStyle(locale))
        , m_run(m_state, m_host, m_dialogs, locale)
    {
        m_state.programFolder = options.folder;
        m_state.gDateOrder = getDateOrder(locale);
        if (options.recSrcTrue)
            m_state.commandLine = QStringLiteral("RecSrcTrue");
        m_host.setRange(options.from.value_or(now.date()), options.to.value_or(now.date()));
    }

    int run(const QString &password)
    {
        if (connectDatabases(m_state, m_host) != StartState::Connected)
            return ExitStatus::NoConnection;
        if (!logOn(m_state, m_host, m_options.user, password))
            return ExitStatus::Refused;
        const QString path = reportPath();
        if (path.isEmpty())
            return ExitStatus::ReportFailed;
        if (const int status = takePatient(path); status != ExitStatus::Done)
            return status;
        const RunResult result = hasFolder(m_options.report) ? m_run.openReport(path) : m_run.openListed(path);
        if (const auto &fault = m_dialogs.fault()) {
            printError(fault->words);
            return fault->status;
        }
        if (result != RunResult::Done || !m_run.hasWholeDocument())
            return ExitStatus::ReportFailed;
        printNotes(m_run.document()->notes);
        const QString fault = deliver();
        if (!fault.isEmpty()) {
            printError(fault);
            return ExitStatus::ReportFailed;
        }
        if (m_options.timings)
            printTimings();
        return ExitStatus::Done;
    }

private:
    /// The report's file; empty, and the user told, when the list has none of that name.
    QString reportPath() const
    {
        if (hasFolder(m_options.report))
            return QFileInfo(m_options.report).absoluteFilePath();
        const QString folder = reportFolder(m_state.programFolder);
        const QString path = listedReport(folder, m_options.report);
        if (path.isEmpty())
            printError(QStringLiteral("There is no report \"%1\" in \"%2\".").arg(m_options.report, QDir::toNativeSeparators(folder)));
        return path;
    }

    /// Answers the patient search before the run, so that nobody is asked in the middle of it.
    int takePatient(const QString &path)
    {
        if (m_options.patient.isEmpty()) {
            if (getReportType(path) != TabularReport || !TabularDefinition(path).getPatient())
                return ExitStatus::Done;
            printError(kPatientMissing);
            return ExitStatus::Usage;
        }
        try {
            if (choosePatient(m_state, m_options.patient))
                return ExitStatus::Done;
            printError(QStringLiteral("There is no patient \"%1\" that %2 may see.").arg(m_options.patient, m_options.user));
            return ExitStatus::Refused;
        } catch (const DatabaseError &error) {
            printError(QStringLiteral("The patient \"%1\" cannot be looked up: %2").arg(m_options.patient, error.description()));
            return ExitStatus::ReportFailed;
        }
    }

    /// Empty when everything asked for is done; otherwise no file of this run is left, and the sentence says why.
    QString deliver()
    {
        QSaveFile text(m_options.textFile);
        QStringList written;
        QString fault = m_options.textFile.isEmpty() ? QString() : textFault(writeText(*m_run.document(), text));
        if (fault.isEmpty())
            fault = writeBinaries(written);
        if (fault.isEmpty())
            fault = print();
        if (fault.isEmpty() && !m_options.textFile.isEmpty() && !text.commit())
            fault = textFault(text.errorString());
        if (!fault.isEmpty()) {
            for (const QString &file : std::as_const(written))
                QFile::remove(file);
        }
        return fault;
    }

    QString writeBinaries(QStringList &written)
    {
        try {
            if (!m_options.pdfFile.isEmpty()) {
                PdfOptions options;
                options.tagging = m_options.tagged ? PdfTagging::Always : PdfTagging::ShortDocuments;
                m_pdfMs = timed([&] { writePdf(*m_run.document(), m_options.pdfFile, options); });
                written += m_options.pdfFile;
            }
            if (!m_options.xlsFile.isEmpty()) {
                m_run.prepareExcel();
                if (m_run.dataControl().isEmpty())
                    return kNoRowsToSave;
                WorkbookNotes notes;
                m_xlsMs = timed([&] { notes = writeWorkbook(*m_run.dataControl().rowset(), m_options.xlsFile, m_run.workbookOptions()); });
                written += m_options.xlsFile;
                printNotes(notes.sentences());
            }
        } catch (const PdfError &error) {
            return error.message();
        } catch (const WorkbookError &error) {
            return error.message();
        } catch (const DatabaseError &error) {
            return QStringLiteral("The report's rows cannot be read again for the workbook: %1").arg(error.description());
        }
        return {};
    }

    QString print()
    {
        if (m_options.printQueue.isEmpty())
            return {};
        try {
            printNotes(printToQueue(*m_run.document(), m_options.printQueue).notes);
            return {};
        } catch (const PrintError &error) {
            return error.message();
        }
    }

    template <typename Work>
    static qint64 timed(Work work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        return timer.elapsed();
    }

    QString textFault(const QString &cause) const
    {
        return cause.isEmpty() ? QString() : QStringLiteral("\"%1\" cannot be written: %2.").arg(QDir::toNativeSeparators(m_options.textFile), cause);
    }

    void printTimings() const
    {
        const RunTimings &timings = m_run.timings();
        printError(QStringLiteral("query_ms=%1 compose_ms=%2 pdf_ms=%3 xls_ms=%4 rows=%5 pages=%6 peak_rss_kib=%7")
                       .arg(timings.queryMs)
                       .arg(timings.composeMs)
                       .arg(m_pdfMs)
                       .arg(m_xlsMs)
                       .arg(timings.rows)
                       .arg(m_run.document()->pageCount())
                       .arg(peakMemoryKiB()));
    }

    const BatchOptions &m_options;
    Reportr m_state;
    ConsoleHost m_host;
    BatchDialogs m_dialogs;
    ReportRun m_run;
    qint64 m_pdfMs = 0;
    qint64 m_xlsMs = 0;
};

} // namespace

int runBatch(const BatchOptions &options, const QString &password, const QDateTime &now, const QLocale &locale)
{
    return BatchJob(options, now, locale).run(password);
}

} // namespace corvane
