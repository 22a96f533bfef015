#pragma once

#include <QtCore/QByteArrayView>

#include <exception>
#include <memory>

class QIODevice;

namespace corvane {

/// The container could not be written; its device knows why.
class CompoundFileError : public std::exception
{
public:
    const char *what() const noexcept override { return "compound file"; }
};

/// A new OLE2 compound file ([MS-CFB]), written stream after stream. The one place that knows which
/// library or system service stands behind it. Every member throws CompoundFileError.
class CompoundFile
{
public:
    /// An empty file in `device`, which is open for writing, can seek and lives longer.
    static std::unique_ptr<CompoundFile> create(QIODevice &device);
    virtual ~CompoundFile() = default;

    /// Starts the next stream of the root storage and ends the one before.
    virtual void startStream(const char *name) = 0;
    /// Appends to the stream.
    virtual void write(QByteArrayView bytes) = 0;
    /// Replaces bytes of the stream that were written before; `position` counts from its start.
    virtual void overwrite(quint32 position, QByteArrayView bytes) = 0;
    /// Ends the last stream and writes the directory.
    virtual void finish() = 0;
};

} // namespace corvane
