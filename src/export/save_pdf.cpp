#include "export/save_pdf.h"

#include "platform/desktop/desktop.h"
#include "platform/pdf/pdf_writer.h"

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

namespace corvane {

namespace {

const QString kTitle = QStringLiteral("Corvane");

/// "Documents" below the program folder, made when missing; the user's own where that fails. A program folder that is
/// gone is not made again: what is saved there would not be found once the network is back.
QString documentsFolder(const QString &programFolder)
{
    const QDir folder(programFolder);
    const QString own = folder.filePath(QStringLiteral("Documents"));
    return QDir(own).exists() || folder.mkdir(QStringLiteral("Documents")) ? own : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

/// Empty, or why there is no file.
QString convert(const Document &document, const QString &fileName)
{
    if (fileName.isEmpty())
        return QStringLiteral("The PDF file was not saved. No file name was chosen.");
    try {
        writePdf(document, fileName);
        return {};
    } catch (const PdfError &error) {
        return error.message();
    }
}

} // namespace

bool mayExport(Desktop &desktop, const DocumentPtr &document)
{
    if (document && document->isWhole)
        return true;
    desktop.message(document
            ? QStringLiteral("This report is incomplete, so it cannot be printed or saved. Run it again with \"Refresh\".")
            : QStringLiteral("There is no report to print or save. Choose one from the list first."),
        MessageFlags::Information, kTitle);
    return false;
}

QString savepdf(Desktop &desktop, const DocumentPtr &document, const QString &programFolder)
{
    if (!mayExport(desktop, document))
        return {};
    const QString fileName = desktop.saveFile({QStringLiteral("Save as..."), documentsFolder(programFolder),
        QStringLiteral("PDF Files (*.pdf)|*.pdf"), QStringLiteral("*.pdf")});
    const MessageAnswer answer = desktop.message(
        QStringLiteral("File has been saved. Do you want to open it in Acrobat Reader?"), MessageFlags::YesNo, kTitle);
    if (answer != MessageAnswer::Yes)
        return {};
    if (const QString failure = convert(*document, fileName); !failure.isEmpty()) {
        // Deliberate: the quote before the file name is never closed.
        desktop.message(QString(u"Failed to convert '" + fileName
                            + u"\r\nIf the pdf file is open, please close it and try again."),
            MessageFlags::OkOnly, kTitle);
        return failure;
    }
    desktop.openDocument(fileName);
    return {};
}

} // namespace corvane
