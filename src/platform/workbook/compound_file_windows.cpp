#include "platform/workbook/compound_file.h"

#include "platform/workbook/device_bytes.h"

#include <QtCore/QString>

namespace corvane {

namespace {

struct ReleaseObject
{
    void operator()(IUnknown *object) const { object->Release(); }
};
template <typename Interface> using Held = std::unique_ptr<Interface, ReleaseObject>;

/// For as long as a file is written, on the thread that writes it.
class ComLibrary
{
public:
    ComLibrary()
        : m_isReady(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
    {
    }
    ~ComLibrary()
    {
        if (m_isReady)
            CoUninitialize();
    }
    Q_DISABLE_COPY_MOVE(ComLibrary)

private:
    bool m_isReady; ///< false also when the thread has it in another way, which serves as well
};

/// On the system's structured storage.
class SystemCompoundFile : public CompoundFile
{
public:
    explicit SystemCompoundFile(QIODevice &device);

    void startStream(const char *name) override;
    void write(QByteArrayView bytes) override;
    void overwrite(quint32 position, QByteArrayView bytes) override;
    void finish() override;

private:
    void endStream();
    void seek(qint64 offset, DWORD from);
    void check(HRESULT result) const;

    // Released from the last to the first: the stream, the storage, what it writes to, the library.
    ComLibrary m_library;
    Held<DeviceBytes> m_bytes;
    Held<IStorage> m_storage;
    Held<IStream> m_stream;
};

SystemCompoundFile::SystemCompoundFile(QIODevice &device)
    : m_bytes(new DeviceBytes(device))
{
    IStorage *storage = nullptr;
    check(StgCreateDocfileOnILockBytes(
        m_bytes.get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &storage));
    m_storage.reset(storage);
}

void SystemCompoundFile::startStream(const char *name)
{
    endStream();
    IStream *stream = nullptr;
    check(m_storage->CreateStream(QString::fromLatin1(name).toStdWString().c_str(),
        STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0, &stream));
    m_stream.reset(stream);
}

void SystemCompoundFile::write(QByteArrayView bytes)
{
    ULONG written = 0;
    check(m_stream->Write(bytes.data(), ULONG(bytes.size()), &written));
    if (qsizetype(written) != bytes.size())
        throw CompoundFileError();
}

void SystemCompoundFile::overwrite(quint32 position, QByteArrayView bytes)
{
    seek(position, STREAM_SEEK_SET);
    write(bytes);
    seek(0, STREAM_SEEK_END);
}

void SystemCompoundFile::finish()
{
    endStream();
    // The same contents are to give the same bytes, whenever they are written.
    constexpr FILETIME kNoTime{};
    check(m_storage->SetElementTimes(nullptr, &kNoTime, &kNoTime, &kNoTime));
    check(m_storage->Commit(STGC_DEFAULT));
    m_storage.reset();
    check(m_bytes->Flush());
}

void SystemCompoundFile::endStream()
{
    m_stream.reset();
    check(S_OK);
}

void SystemCompoundFile::seek(qint64 offset, DWORD from)
{
    LARGE_INTEGER place;
    place.QuadPart = offset;
    check(m_stream->Seek(place, from, nullptr));
}

/// The system tells nobody what goes wrong while it releases a stream.
void SystemCompoundFile::check(HRESULT result) const
{
    if (FAILED(result) || m_bytes->hasFailed())
        throw CompoundFileError();
}

} // namespace

std::unique_ptr<CompoundFile> CompoundFile::create(QIODevice &device)
{
    return std::make_unique<SystemCompoundFile>(device);
}

} // namespace corvane
