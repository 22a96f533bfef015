#include "platform/pdf/pdf_file.h"

#include "platform/pdf/pdf_writer.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

/// The container comes in small pieces; so much of it is handed to the system at a time.
constexpr size_t kBlock = 262'144;

/// Why a file cannot be written and what to do, as two sentences.
QString causeOf(const QString &fileName, QFileDevice::FileError error, const QString &systemText)
{
    const QFileInfo target(fileName);
    const QString folder = QDir::toNativeSeparators(target.absolutePath());
    if (target.isDir())
        return QStringLiteral("A folder has this name. Choose another file name.");
    if (!QFileInfo(target.absolutePath()).isDir())
        return QStringLiteral("The folder \"%1\" does not exist. Choose another folder.").arg(folder);
    if (target.exists() && !target.isWritable())
        return QStringLiteral("You may not change this file. Choose another file name or folder.");
    if (!QFileInfo(target.absolutePath()).isWritable())
        return QStringLiteral("You may not write in the folder \"%1\". Choose another folder.").arg(folder);
    if (error == QFileDevice::ResourceError)
        return QStringLiteral("%1. Free some space or choose a folder on another disk.").arg(systemText);
    return QStringLiteral("%1. Choose another file name or folder.").arg(systemText);
}

} // namespace

PdfFile::PdfFile(const QString &fileName)
    : Pipeline("pdf file", nullptr)
    , m_file(fileName)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw PdfError(failure());
    m_waiting.reserve(kBlock);
}

void PdfFile::write(const unsigned char *data, size_t size)
{
    if (m_waiting.size() + size > kBlock)
        flush();
    m_size += qint64(size);
    m_waiting.append(reinterpret_cast<const char *>(data), size);
}

void PdfFile::finish()
{
    flush();
}

void PdfFile::commit()
{
    flush();
    if (m_failure.isEmpty() && !m_file.commit())
        m_failure = failure();
    if (!m_failure.isEmpty())
        throw PdfError(m_failure);
}

void PdfFile::flush()
{
    qint64 done = 0;
    while (m_failure.isEmpty() && done < qint64(m_waiting.size())) {
        const qint64 written = m_file.write(m_waiting.data() + done, qint64(m_waiting.size()) - done);
        if (written <= 0)
            m_failure = failure();
        done += written; // less than asked for when the disk fills up; the next attempt says so
    }
    m_waiting.clear();
}

QString PdfFile::failure() const
{
    return QStringLiteral("The PDF file \"%1\" was not saved. %2")
        .arg(QDir::toNativeSeparators(m_file.fileName()),
            causeOf(m_file.fileName(), m_file.error(), m_file.errorString()));
}

} // namespace corvane
