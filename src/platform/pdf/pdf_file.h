#pragma once

#include <QtCore/QSaveFile>

#include <qpdf/Pipeline.hh>

#include <string>
#include <string_view>

namespace corvane {

/// The file that the container is written to: beside the target until commit() renames it into place,
/// gone when it is not committed. Throws PdfError when it is opened and when it is committed; between
/// them it only remembers a failure, since nothing may be thrown through the container's destructors.
class PdfFile : public Pipeline
{
public:
    explicit PdfFile(const QString &fileName);

    void write(const unsigned char *data, size_t size) override;
    void finish() override;
    void put(std::string_view bytes) { write(reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size()); }
    /// Bytes written so far.
    qint64 size() const { return m_size; }
    void commit();

private:
    QString failure() const;
    void flush();

    QSaveFile m_file;
    std::string m_waiting;
    qint64 m_size = 0;
    QString m_failure;
};

} // namespace corvane
