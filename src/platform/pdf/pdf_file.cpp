#include "platform/pdf/pdf_file.h"

#include "platform/pdf/pdf_writer.h"

namespace corvane {

namespace {

/// The container comes in small pieces; so much of it is handed to the system at a time.
constexpr size_t kBlock = 262'144;

} // namespace

PdfFile::PdfFile(FileReplacement &file)
    : Pipeline("pdf file", nullptr)
    , m_file(file)
{
    if (!m_file.open())
        throw PdfError(m_file.failure());
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

void PdfFile::complete()
{
    flush();
    if (!m_file.complete())
        throw PdfError(m_file.failure());
}

void PdfFile::flush()
{
    m_file.write({m_waiting.data(), qsizetype(m_waiting.size())}); // a failure is told when the file is complete
    m_waiting.clear();
}

} // namespace corvane
