#include "platform/pdf/pdf_file.h"

#include "platform/files/write_failure.h"
#include "platform/pdf/pdf_writer.h"

#include <QtCore/QDir>

namespace corvane {

namespace {

/// The container comes in small pieces; so much of it is handed to the system at a time.
constexpr size_t kBlock = 262'144;

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
            writeFailure(m_file.fileName(), m_file.error(), m_file.errorString()));
}

} // namespace corvane
