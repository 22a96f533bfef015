#pragma once

#include <QtCore/QtGlobal>

#include <memory>
#include <string_view>
#include <vector>

class Buffer;
struct libdeflate_compressor;

namespace corvane {

/// Deflates whole blocks at level 6 (zlib format, RFC 1950). Knows nothing of the PDF around it: each
/// thread of a CompressionQueue has one.
class Compressor
{
public:
    Compressor();
    ~Compressor();
    Q_DISABLE_COPY_MOVE(Compressor)

    /// The compressed bytes in a buffer of just their size.
    std::shared_ptr<Buffer> compress(std::string_view bytes);

private:
    libdeflate_compressor *m_compressor;
    std::vector<char> m_scratch;
};

} // namespace corvane
