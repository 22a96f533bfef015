#pragma once

#include <QtCore/QSaveFile>

#include <qpdf/Pipeline.hh>

#include <string>

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
    void commit();

private:
    QString failure() const;
    void flush();

    QSaveFile m_file;
    std::string m_waiting;
    QString m_failure;
};

} // namespace corvane
