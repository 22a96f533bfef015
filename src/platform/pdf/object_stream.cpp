#include "platform/pdf/object_stream.h"

#include <array>
#include <charconv>

namespace corvane {

namespace {

constexpr size_t kDigits = 7; ///< of a number with blanks before it; longer ones take their room
constexpr size_t kEntry = 16; ///< of the index: number and offset
/// Records are multiples of it. It holds whole entries of the index and whole references of a list, so
/// that each has its like above it.
constexpr size_t kUnit = 48;
constexpr size_t kWidest = 8 * kUnit; ///< of objects that are a record; longer ones are lists

void appendPadded(std::string &out, qint64 number, size_t width)
{
    std::array<char, 24> digits {};
    const char *end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const auto length = size_t(end - digits.data());
    out.append(width > length ? width - length : 0, ' ');
    out.append(digits.data(), length);
}

void padTo(std::string &bytes, size_t multiple)
{
    bytes.append((multiple - bytes.size() % multiple) % multiple, ' ');
}

} // namespace

void ObjectStream::begin(int number)
{
    m_numbers.push_back(number);
    m_offsets.push_back(m_objects.size());
}

void ObjectStream::putNumber(qint64 number)
{
    appendPadded(m_objects, number, kDigits);
}

void ObjectStream::putReference(int object)
{
    putNumber(object);
    m_objects += " 0 R";
}

/// The first object decides on the width: a stream takes objects of one kind.
void ObjectStream::end()
{
    m_objects += ' ';
    if (m_width == 0)
        m_width = m_objects.size() > kWidest ? kUnit : (m_objects.size() + kUnit - 1) / kUnit * kUnit;
    padTo(m_objects, m_width);
}

ObjectStream::Content ObjectStream::take()
{
    std::string bytes;
    bytes.reserve(m_numbers.size() * kEntry + m_width + m_objects.size());
    for (size_t i = 0; i < m_numbers.size(); ++i) {
        appendPadded(bytes, m_numbers[i], kDigits);
        bytes += ' ';
        appendPadded(bytes, qint64(m_offsets[i]), kDigits);
        bytes += ' ';
    }
    padTo(bytes, m_width);
    std::string dictionary = "/Type/ObjStm/N " + std::to_string(m_numbers.size()) + "/First "
        + std::to_string(bytes.size()) + "/DecodeParms<</Predictor 12/Columns " + std::to_string(m_width) + ">>";
    bytes += m_objects;
    Content content {std::move(dictionary), predictedUp(bytes, m_width)};
    *this = {};
    return content;
}

std::string predictedUp(std::string_view bytes, size_t width)
{
    std::string out((bytes.size() + width - 1) / width * (width + 1), '\2');
    size_t at = 0;
    for (size_t row = 0; row < bytes.size(); row += width) {
        ++at;
        const size_t length = std::min(width, bytes.size() - row);
        for (size_t i = row; i < row + length; ++i)
            out[at++] = char(bytes[i] - (row == 0 ? '\0' : bytes[i - width]));
    }
    return out;
}

} // namespace corvane
