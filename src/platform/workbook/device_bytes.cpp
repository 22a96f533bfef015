#include "platform/workbook/device_bytes.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

constexpr qsizetype kMostGathered = 256 * 1024;

} // namespace

DeviceBytes::DeviceBytes(QIODevice &device)
    : m_device(device)
{
    m_gathered.reserve(kMostGathered);
}

HRESULT DeviceBytes::QueryInterface(REFIID id, void **object)
{
    *object = id == IID_IUnknown || id == IID_ILockBytes ? this : nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG DeviceBytes::Release()
{
    const ULONG left = --m_references;
    if (left == 0)
        delete this;
    return left;
}

/// What was never written reads as zeros.
HRESULT DeviceBytes::ReadAt(ULARGE_INTEGER offset, void *bytes, ULONG size, ULONG *read)
{
    writeGathered();
    const auto at = qint64(offset.QuadPart);
    const qint64 wanted = std::clamp<qint64>(m_size - at, 0, size);
    auto *to = static_cast<char *>(bytes);
    std::memset(to, 0, size_t(wanted));
    if (at < m_device.size())
        m_hasFailed = !m_device.seek(at) || m_device.read(to, wanted) < 0 || m_hasFailed;
    for (const Piece &piece : m_lost) {
        const qint64 from = std::max(at, piece.offset);
        const qint64 end = std::min(at + wanted, piece.offset + piece.bytes.size());
        if (from < end)
            std::memcpy(to + (from - at), piece.bytes.constData() + (from - piece.offset),
                size_t(end - from));
    }
    if (read)
        *read = ULONG(wanted);
    return S_OK;
}

HRESULT DeviceBytes::WriteAt(
    ULARGE_INTEGER offset, const void *bytes, ULONG size, ULONG *written)
{
    const auto at = qint64(offset.QuadPart);
    if (at != gatheredEnd() || m_gathered.size() + qsizetype(size) > kMostGathered) {
        writeGathered();
        m_gatheredAt = at;
    }
    m_gathered.append(static_cast<const char *>(bytes), qsizetype(size));
    m_size = std::max(m_size, gatheredEnd());
    if (written)
        *written = size;
    return S_OK;
}

HRESULT DeviceBytes::Flush()
{
    writeGathered();
    if (m_device.size() < m_size && !m_hasFailed)
        writeDevice(m_size - 1, QByteArrayView("", 1));
    return S_OK;
}

/// The storage only grows here.
HRESULT DeviceBytes::SetSize(ULARGE_INTEGER size)
{
    m_size = std::max(m_size, qint64(size.QuadPart));
    return S_OK;
}

HRESULT DeviceBytes::LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return STG_E_INVALIDFUNCTION;
}

HRESULT DeviceBytes::UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD)
{
    return STG_E_INVALIDFUNCTION;
}

HRESULT DeviceBytes::Stat(STATSTG *status, DWORD)
{
    *status = {};
    status->type = STGTY_LOCKBYTES;
    status->cbSize.QuadPart = ULONGLONG(m_size);
    return S_OK;
}

void DeviceBytes::writeGathered()
{
    writeDevice(m_gatheredAt, m_gathered);
    m_gatheredAt += m_gathered.size();
    m_gathered.resize(0);
}

void DeviceBytes::writeDevice(qint64 offset, QByteArrayView bytes)
{
    m_hasFailed = m_hasFailed || (!bytes.isEmpty() && !m_device.seek(offset));
    while (!bytes.isEmpty() && !m_hasFailed) {
        const qint64 written = m_device.write(bytes.data(), bytes.size());
        m_hasFailed = written <= 0;
        if (m_hasFailed)
            break;
        offset += written;
        bytes = bytes.sliced(written);
    }
    if (!bytes.isEmpty())
        m_lost.push_back({offset, bytes.toByteArray()});
}

} // namespace corvane
