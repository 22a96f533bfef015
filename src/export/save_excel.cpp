#include "export/save_excel.h"

#include "platform/desktop/desktop.h"
#include "platform/grid/data_control.h"
#include "shared/report_host.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>

namespace corvane {

namespace {

const QString kDefaultTitle;
constexpr int kFirstStarted = 32; ///< of the shell's answers

/// The pointer of a busy program, for as long as this lives.
class Hourglass
{
public:
    explicit Hourglass(ReportHost &host)
        : m_host(host)
    {
        m_host.showHourglass(true);
    }
    ~Hourglass() { m_host.showHourglass(false); }
    Q_DISABLE_COPY_MOVE(Hourglass)

private:
    ReportHost &m_host;
};

/// Whether a file may stand where the user did not expect it to be written.
bool mayReplace(Desktop &desktop, const QString &fileName)
{
    return !QFileInfo::exists(fileName)
        || desktop.message(QStringLiteral("\"%1\" already exists. Do you want to replace it?").arg(QDir::toNativeSeparators(fileName)),
               MessageFlags::YesNo | MessageFlags::Exclamation, kDefaultTitle)
        == MessageAnswer::Yes;
}

QString openFailure(int code)
{
    switch (code) {
    case 0:
        return QStringLiteral("System is low on or out of memory and unable to run application associated with file.");
    case 2:
    case 3:
        return QStringLiteral("File not found. It may have been renamed, moved, or deleted.");
    case 31:
        return QStringLiteral("No association exists with specified file.");
    default:
        return QStringLiteral("Error opening specified file (%1)").arg(code);
    }
}

void openInExcel(Desktop &desktop, ReportHost &host, const QString &fileName)
{
    int code = 0;
    {
        const Hourglass hourglass(host);
        code = desktop.openDocument(fileName);
    }
    if (code < kFirstStarted)
        desktop.message(openFailure(code), MessageFlags::OkOnly, kDefaultTitle);
}

/// Nothing when the user stopped it. @throws WorkbookError
std::optional<WorkbookNotes> saveGrid(ReportHost &host, const Rowset &rows, const QString &fileName, WorkbookOptions options)
{
    const Hourglass hourglass(host);
    const auto emptyPanel = qScopeGuard([&host] { host.showProgress(0); });
    options.progress = [&host, count = rows.rowCount()](qsizetype row) {
        host.showProgress(int(row * 100 / count));
        return !host.stopRequested();
    };
    try {
        return writeWorkbook(rows, fileName, options);
    } catch (const WorkbookStopped &) {
        return std::nullopt;
    }
}

} // namespace

QString SentToExcel(Desktop &desktop, const QString &programFolder)
{
    const SaveFileRequest request {QStringLiteral("Save As Excel File"), programFolder,
        QStringLiteral("Excel File (*.xls)|*.xls"), QStringLiteral("*.xls")};
    for (;;) {
        QString chosen = desktop.saveFile(request);
        if (!chosen.endsWith(QStringLiteral(".xlsx"), Qt::CaseInsensitive))
            return chosen;
        QString fileName = chosen + u".xls";
        desktop.message(QStringLiteral("The file is an Excel 97-2003 workbook, so it is saved as \"%1\".")
                            .arg(QFileInfo(fileName).fileName()),
            MessageFlags::Information, kDefaultTitle);
        if (mayReplace(desktop, fileName))
            return fileName;
    }
}

void SaveExcel(Desktop &desktop, ReportHost &host, const DataControl &fg, const WorkbookOptions &options,
    const QString &programFolder)
{
    if (fg.isEmpty()) {
        desktop.message(kNoRowsToSave, MessageFlags::Information, kDefaultTitle);
        return;
    }
    const QString fileName = SentToExcel(desktop, programFolder);
    const QString cancelled = QStringLiteral("Save to excel file, cancelled.");
    if (fileName.isEmpty()) {
        desktop.message(cancelled, MessageFlags::Exclamation, kDefaultTitle);
        return;
    }
    const auto notes = saveGrid(host, *fg.rowset(), fileName, options);
    if (!notes) {
        desktop.message(cancelled, MessageFlags::Exclamation, kDefaultTitle);
        return;
    }
    desktop.message(QStringLiteral("Save to excel file, successful."), MessageFlags::Exclamation, kDefaultTitle);
    if (const QStringList sentences = notes->sentences(); !sentences.isEmpty())
        desktop.message(sentences.join(u'\n'), MessageFlags::Information, kDefaultTitle);
    const MessageAnswer answer = desktop.message(QStringLiteral("Do you want to open the file in Excel?"),
        MessageFlags::YesNo, QStringLiteral("Open Excel"));
    if (answer == MessageAnswer::Yes)
        openInExcel(desktop, host, fileName);
}

} // namespace corvane
