#pragma once

#include <QtCore/QtGlobal>

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Objects on their way into an object stream (ISO 32000-1, 7.5.7). Numbers are written to fixed places
/// and objects padded to records of one width, so that the predictor "Up" (7.4.4.4), each record as its
/// difference from the one above, leaves next to nothing to compress.
class ObjectStream
{
public:
    void begin(int number);
    void put(std::string_view text) { m_objects += text; }
    void putNumber(qint64 number);
    /// "n 0 R", always as long as others.
    void putReference(int object);
    void end();

    const std::vector<int> &numbers() const { return m_numbers; }
    /// The stream's own keys, without its length, and its bytes before compression; empty afterwards.
    struct Content {
        std::string dictionary;
        std::string bytes;
    };
    Content take();

private:
    std::vector<int> m_numbers;
    std::vector<size_t> m_offsets;
    std::string m_objects;
    size_t m_width = 0; ///< of a record
};

/// Each record as the difference from the one above, with the byte before it that says so.
std::string predictedUp(std::string_view bytes, size_t width);

} // namespace corvane
