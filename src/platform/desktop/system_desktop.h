#pragma once

#include "platform/desktop/desktop.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

namespace corvane {

/// The desktop that the user sits at.
class SystemDesktop : public Desktop
{
public:
    /// The window that dialogs stand above while no other dialog is open; may be null.
    void setParentWindow(QWidget *window) { m_parent = window; }

    MessageAnswer message(const QString &text, int flags, const QString &title) override;
    QString openFile(const QString &title, const QString &initialFolder, const QString &filter) override;
    QString saveFile(const SaveFileRequest &request) override;
    bool printDialog(QPrinter &printer, int pageCount) override;
    int openDocument(const QString &path) override;
    bool openAddress(const QUrl &address) override;
    bool showHelpFile(const QString &path, int context) override;

private:
    QWidget *dialogParent() const;

    QPointer<QWidget> m_parent;
};

/// "PDF Files (*.pdf)|*.pdf" as the toolkit's name filters: "PDF Files (*.pdf)". Several patterns of one
/// text are separated by semicolons; a text without a pattern is left out.
QStringList nameFilters(const QString &filter);

} // namespace corvane
