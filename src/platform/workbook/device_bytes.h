#pragma once

#include <QtCore/QByteArray>

#include <atomic>
#include <vector>

#include <qt_windows.h>

#include <objidl.h>

class QIODevice;

namespace corvane {

// The system's interfaces have no virtual destructor: nobody deletes through them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A Qt device as Windows's structured storage writes to one. What comes in order is gathered, for
/// the storage hands over a sector of 512 bytes at a time. The first failure is for good and told by
/// hasFailed() alone: some storages end the program when they do not find what they have written, so
/// from then on it is kept in memory, which whoever looks after each call keeps small.
class DeviceBytes final : public ILockBytes
{
public:
    /// The device is open for reading and writing, can seek and lives longer.
    explicit DeviceBytes(QIODevice &device);

    bool hasFailed() const { return m_hasFailed; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE ReadAt(
        ULARGE_INTEGER offset, void *bytes, ULONG size, ULONG *read) override;
    HRESULT STDMETHODCALLTYPE WriteAt(
        ULARGE_INTEGER offset, const void *bytes, ULONG size, ULONG *written) override;
    HRESULT STDMETHODCALLTYPE Flush() override;
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override;
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override;
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override;
    HRESULT STDMETHODCALLTYPE Stat(STATSTG *status, DWORD flags) override;

private:
    ~DeviceBytes() = default;

    qint64 gatheredEnd() const { return m_gatheredAt + m_gathered.size(); }
    void writeGathered();
    void writeDevice(qint64 offset, QByteArrayView bytes);

    struct Piece
    {
        qint64 offset;
        QByteArray bytes;
    };

    QIODevice &m_device;
    std::atomic<ULONG> m_references = 1;
    qint64 m_size = 0; ///< as the storage sees it; the device may lack the end, which is zeros
    qint64 m_gatheredAt = 0;
    QByteArray m_gathered;
    std::vector<Piece> m_lost; ///< what the device did not take, in the order of writing
    bool m_hasFailed = false;
};

#pragma GCC diagnostic pop

} // namespace corvane
