#include "batch/batch_run.h"

#include "batch/batch_dialogs.h"
#include "batch/console_host.h"
#include "batch/report_name.h"
#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "platform/database/error.h"
#include "platform/files/file_replacement.h"
#include "platform/pdf/pdf_writer.h"
#include "platform/printing/print_error.h"
#include "platform/printing/print_queue.h"
#include "platform/process/console.h"
#include "platform/process/process_memory.h"
#include "render/report_run.h"
#include "session/logon.h"
#include "session/patient_search.h"
#include "session/report_list.h"
#include "session/startup.h"
#include "shared/dates.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

/// Everything but the commit. False: the file says why.
bool writeText(const Document &document, FileReplacement &file)
{
    if (!file.open())
        return false;
    QString text;
    for (size_t i = 0; i < document.pages.size(); ++i) {
        text.clear();
        if (i > 0)
            text += u'\f';
        appendPageText(text, document.pages[i]);
        if (!file.write(text.toUtf8()))
            return false;
    }
    return file.complete();
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
            printError(QStringLiteral("There is no report \"%1\" in \"%2\". Check its name and --folder.").arg(m_options.report, QDir::toNativeSeparators(folder)));
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
            printError(QStringLiteral("There is no patient \"%1\" that %2 may see. Check the id.").arg(m_options.patient, m_options.user));
            return ExitStatus::Refused;
        } catch (const DatabaseError &error) {
            printError(QStringLiteral("The patient \"%1\" cannot be looked up: %2").arg(m_options.patient, error.description()));
            return ExitStatus::ReportFailed;
        }
    }

    /// Empty when everything asked for is done; otherwise no file of this run is left, older ones are as they were, and the
    /// sentence says why. So all files are complete before a page is printed, and take their places together after it.
    QString deliver()
    {
        FileReplacement pdf = pdfReplacement(m_options.pdfFile);
        FileReplacement workbook = workbookReplacement(m_options.xlsFile);
        FileReplacement text(QStringLiteral("text file"), m_options.textFile);
        QString fault = writeBinaries(pdf, workbook);
        if (fault.isEmpty() && !m_options.textFile.isEmpty() && !writeText(*m_run.document(), text))
            fault = text.failure();
        if (fault.isEmpty())
            fault = print();
        if (!fault.isEmpty())
            return fault;
        std::vector<FileReplacement *> written;
        for (FileReplacement *file : {&pdf, &workbook, &text}) {
            if (!file->fileName().isEmpty())
                written.push_back(file);
        }
        const FileReplacement *failed = commitAll(written);
        return failed ? failed->failure() : QString();
    }

    QString writeBinaries(FileReplacement &pdf, FileReplacement &workbook)
    {
        try {
            if (!m_options.pdfFile.isEmpty()) {
                PdfOptions options;
                options.tagging = m_options.tagged ? PdfTagging::Always : PdfTagging::ShortDocuments;
                m_pdfMs = timed([&] { writePdf(*m_run.document(), pdf, options); });
            }
            if (!m_options.xlsFile.isEmpty()) {
                m_run.prepareExcel();
                if (m_run.dataControl().isEmpty())
                    return kNoRowsToSave;
                WorkbookNotes notes;
                m_xlsMs = timed([&] { notes = writeWorkbook(*m_run.dataControl().rowset(), workbook, m_run.workbookOptions()); });
                printNotes(notes.sentences());
            }
        } catch (const PdfError &error) {
            return error.message();
        } catch (const WorkbookError &error) {
            return error.message();
        } catch (const DatabaseError &error) {
            return QStringLiteral("The report's rows cannot be read again for the workbook. Run the report again. Cause: %1").arg(error.description());
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
