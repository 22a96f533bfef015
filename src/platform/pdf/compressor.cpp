#include "platform/pdf/compressor.h"

#include <libdeflate.h>
#include <qpdf/Buffer.hh>

#include <cstring>
#include <new>

namespace corvane {

namespace {

constexpr int kLevel = 6;

} // namespace

Compressor::Compressor()
    : m_compressor(libdeflate_alloc_compressor(kLevel))
{
    if (!m_compressor)
        throw std::bad_alloc();
}

Compressor::~Compressor()
{
    libdeflate_free_compressor(m_compressor);
}

std::shared_ptr<Buffer> Compressor::compress(std::string_view bytes)
{
    const size_t bound = libdeflate_zlib_compress_bound(m_compressor, bytes.size());
    if (m_scratch.size() < bound)
        m_scratch.resize(bound);
    const size_t size = libdeflate_zlib_compress(
        m_compressor, bytes.data(), bytes.size(), m_scratch.data(), m_scratch.size());
    auto buffer = std::make_shared<Buffer>(size);
    std::memcpy(buffer->getBuffer(), m_scratch.data(), size);
    return buffer;
}

} // namespace corvane
