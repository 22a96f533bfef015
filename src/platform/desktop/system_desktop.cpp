#include "platform/desktop/system_desktop.h"

#include "platform/controls/icons.h"
#include "platform/desktop/document_opener.h"
#include "platform/desktop/help_file.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtGui/QDesktopServices>
#include <QtPrintSupport/QPrintDialog>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QStyle>

namespace corvane {

namespace {

constexpr int kIconMask = 0x70;

QString programName()
{
    return QStringLiteral("Corvane Reporter");
}

QMessageBox::Icon iconOf(int flags)
{
    switch (flags & kIconMask) {
    case MessageFlags::Critical:
        return QMessageBox::Critical;
    case MessageFlags::Exclamation:
        return QMessageBox::Warning;
    case MessageFlags::Information:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButtons buttonsOf(int flags)
{
    switch (flags & MessageFlags::ButtonMask) {
    case MessageFlags::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case MessageFlags::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    default:
        return QMessageBox::Ok;
    }
}

/// A box that was closed without a button has the most harmless answer.
MessageAnswer answerOf(int pressed, int flags)
{
    if (!MessageFlags::ask(flags))
        return MessageAnswer::Ok;
    if (pressed == QMessageBox::Yes)
        return MessageAnswer::Yes;
    const bool canCancel = (flags & MessageFlags::ButtonMask) == MessageFlags::YesNoCancel;
    return canCancel && pressed != QMessageBox::No ? MessageAnswer::Cancel : MessageAnswer::No;
}

/// Sets the box's kind, which it also speaks, and the program's own drawing for it: where no desktop theme is
/// set, the toolkit's own are small pictures of another age. Setting a pixmap would lose the kind.
void setSign(QMessageBox &box, QMessageBox::Icon kind)
{
    box.setIcon(kind);
    const QString name = kind == QMessageBox::Critical ? QStringLiteral("critical")
        : kind == QMessageBox::Warning                 ? QStringLiteral("warning")
        : kind == QMessageBox::Information             ? QStringLiteral("information")
                                                       : QString();
    auto *sign = box.findChild<QLabel *>(QStringLiteral("qt_msgboxex_icon_label"));
    if (name.isEmpty() || !sign)
        return;
    const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
    sign->setPixmap(icon(name, box.palette()).pixmap(QSize(size, size), box.devicePixelRatio()));
}

/// "*.pdf", ".pdf" and "pdf" all mean "pdf".
QString suffixOf(const QString &extension)
{
    return extension.sliced(extension.lastIndexOf(u'.') + 1);
}

void setUp(QFileDialog &dialog, const QString &initialFolder, const QString &filter)
{
    if (!initialFolder.isEmpty() && QDir(initialFolder).exists())
        dialog.setDirectory(initialFolder);
    if (const QStringList filters = nameFilters(filter); !filters.isEmpty())
        dialog.setNameFilters(filters);
}

QString firstFile(const QFileDialog &dialog)
{
    return QDir::toNativeSeparators(dialog.selectedFiles().value(0));
}

} // namespace

MessageAnswer SystemDesktop::message(const QString &text, int flags, const QString &title)
{
    QMessageBox box(dialogParent());
    box.setWindowTitle(title.isEmpty() ? programName() : title);
    box.setTextFormat(Qt::PlainText);
    box.setText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n'));
    setSign(box, iconOf(flags));
    const QMessageBox::StandardButtons buttons = buttonsOf(flags);
    box.setStandardButtons(buttons);
    // Where there is a way back, Enter takes it: the other two each give something up.
    box.setDefaultButton(buttons & QMessageBox::Cancel ? QMessageBox::Cancel : MessageFlags::ask(flags) ? QMessageBox::Yes : QMessageBox::Ok);
    if ((flags & MessageFlags::SystemModal) != 0) {
        box.setWindowModality(Qt::ApplicationModal);
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
    }
    return answerOf(box.exec(), flags);
}

QString SystemDesktop::openFile(const QString &title, const QString &initialFolder, const QString &filter)
{
    QFileDialog dialog(dialogParent(), title);
    dialog.setFileMode(QFileDialog::ExistingFile);
    setUp(dialog, initialFolder, filter);
    return dialog.exec() == QDialog::Accepted ? firstFile(dialog) : QString();
}

QString SystemDesktop::saveFile(const SaveFileRequest &request)
{
    QFileDialog dialog(dialogParent(), request.title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(suffixOf(request.defaultExtension));
    setUp(dialog, request.initialFolder, request.filter);
    while (dialog.exec() == QDialog::Accepted) {
        QString path = firstFile(dialog);
        const QDir folder = QFileInfo(path).absoluteDir();
        if (folder.exists())
            return path;
        message(QStringLiteral("The folder %1 does not exist.\nChoose an existing folder.")
                    .arg(QDir::toNativeSeparators(folder.path())),
            MessageFlags::Exclamation, request.title);
    }
    return {};
}

bool SystemDesktop::printDialog(QPrinter &printer, int pageCount)
{
    QPrintDialog dialog(&printer, dialogParent());
    dialog.setOptions(QPrintDialog::PrintToFile | QPrintDialog::PrintPageRange | QPrintDialog::PrintCurrentPage
        | QPrintDialog::PrintCollateCopies | QPrintDialog::PrintShowPageSize);
    dialog.setMinMax(1, pageCount);
    dialog.setFromTo(1, pageCount);
    dialog.setPrintRange(QPrintDialog::AllPages);
    return dialog.exec() == QDialog::Accepted;
}

int SystemDesktop::openDocument(const QString &path)
{
    return openWithItsProgram(path);
}

bool SystemDesktop::openAddress(const QUrl &address)
{
    return QDesktopServices::openUrl(address);
}

bool SystemDesktop::showHelpFile(const QString &path, int context)
{
    return showCompiledHelp(m_parent, path, context);
}

QWidget *SystemDesktop::dialogParent() const
{
    if (QWidget *dialog = QApplication::activeModalWidget())
        return dialog;
    return m_parent;
}

QStringList nameFilters(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = parts[i + 1].trimmed().replace(u';', u' ');
        const QString text = parts[i].section(u'(', 0, 0).trimmed();
        filters += text + QStringLiteral(" (") + patterns + u')';
    }
    return filters;
}

} // namespace corvane
