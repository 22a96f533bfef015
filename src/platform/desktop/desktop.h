#pragma once

#include "platform/messages/message_boxes.h"

#include <QtCore/QString>

class QPrinter;
class QUrl;

namespace corvane {

struct SaveFileRequest {
    QString title;
    QString initialFolder;
    QString filter;           ///< as Desktop::openFile takes it
    QString defaultExtension; ///< "pdf", ".pdf" or "*.pdf"; added to a name typed without one
};

/// What the program asks the desktop for: message boxes, file and print dialogs and the opening of a file in
/// its own program. Free of widgets, so that anything may hold it; tests answer in its place.
class Desktop : public MessageBoxes
{
public:
    /// The path of an existing file, empty when the user cancels.
    /// @param filter "Excel File (*.xls)|*.xls|All files|*.*", pairs of text and pattern; empty: all files
    virtual QString openFile(const QString &title, const QString &initialFolder, const QString &filter) = 0;

    /// The path of a file to write, in a folder that exists; asks before an existing file is taken. Empty
    /// when the user cancels.
    virtual QString saveFile(const SaveFileRequest &request) = 0;

    /// Asks how to print a document of so many pages; the answers stand in the printer, which says beforehand
    /// what the dialog starts with. False when the user cancels.
    virtual bool printDialog(QPrinter &printer, int pageCount) = 0;

    /// Opens a file in the program that belongs to it and does not wait for that program.
    /// @return the shell's code: 42 started, 2 no such file, 31 no program for this kind of file, 5 failed
    virtual int openDocument(const QString &path) = 0;

    /// Opens an address of the web or of mail in the user's own program for it.
    /// @return false where the system has none
    virtual bool openAddress(const QUrl &address) = 0;

    /// Shows a topic of a compiled help file by its context number in the system's own help engine.
    /// @return false where the system has none, as everywhere but on Windows, and when it cannot show the file
    virtual bool showHelpFile(const QString &, int) { return false; }
};

/// The shell's answers to opening a file; more than 32 means that it was started.
namespace OpenCodes {
constexpr int FileNotFound = 2;
constexpr int Failed = 5;
constexpr int NoHandler = 31;
constexpr int Started = 42;
} // namespace OpenCodes

} // namespace corvane
