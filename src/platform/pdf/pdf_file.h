#pragma once

#include "platform/files/file_replacement.h"

#include <qpdf/Pipeline.hh>

#include <string>
#include <string_view>

namespace corvane {

/// What the container is written to, in blocks. Throws PdfError when the file is opened and when it is complete;
/// between them it only remembers a failure, since nothing may be thrown through the container's destructors.
class PdfFile : public Pipeline
{
public:
    explicit PdfFile(FileReplacement &file);

    void write(const unsigned char *data, size_t size) override;
    void finish() override;
    void put(std::string_view bytes) { write(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size()); }
    /// Bytes written so far.
    qint64 size() const { return m_size; }
    /// To be called once all is written.
    void complete();

private:
    void flush();

    FileReplacement &m_file;
    std::string m_waiting;
    qint64 m_size = 0;
};

} // namespace corvane
