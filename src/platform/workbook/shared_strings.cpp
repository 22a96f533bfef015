#include "platform/workbook/shared_strings.h"

#include "platform/workbook/record_writer.h"

#include <QtCore/QHashFunctions>

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

/// Longer texts are rarely the same.
constexpr qsizetype kLongestInTable = 255;
constexpr size_t kCopyBlock = 1 << 16;
/// Most buckets of the index and fewest texts of one; [MS-XLS] ExtSST, dsst.
constexpr quint32 kMostBuckets = 128;
constexpr quint32 kLeastPerBucket = 8;
constexpr quint32 kMostPerBucket = 65'535;
/// What one record can hold; texts beyond them are found by reading on.
constexpr size_t kMostPlaces = (biff::kMaxRecordData - 2) / 8;
constexpr qsizetype kTextHeader = 3;

/// How much of the text goes into so much room. A surrogate pair stays in one record: some readers
/// decode each record by itself.
qsizetype fitting(QStringView text, qsizetype room)
{
    if (text.size() <= room)
        return text.size();
    return room > 0 && text[room - 1].isHighSurrogate() ? room - 1 : room;
}

} // namespace

SharedStrings::SharedStrings(size_t cells, size_t tableTexts)
    : m_tableTexts(tableTexts)
    , m_slots(1024)
{
    m_cells.reserve(cells);
}

TextChanges SharedStrings::add(QByteArrayView utf8, Storage storage)
{
    if (utf8.size() > kLongestInTable) {
        m_cells.push_back(m_count++);
        return cellTextChanges(utf8);
    }
    const auto hash = quint32(qHashBits(utf8.data(), size_t(utf8.size())));
    quint32 *slot = slotOf(utf8, hash);
    if (*slot != 0) {
        m_cells.push_back(m_numbers[*slot - 1]);
        return changesOf(m_cells.back());
    }
    const TextChanges changes = cellTextChanges(utf8);
    if (m_texts.size() < m_tableTexts) {
        const char *data = storage == Storage::Lasting ? utf8.data() : kept(utf8);
        m_texts.push_back({data, quint32(utf8.size()), hash});
        m_numbers.push_back(m_count);
        *slot = quint32(m_texts.size());
        if (changes.any())
            m_changes.emplace(m_count, changes);
        if (m_texts.size() * 2 > m_slots.size())
            growSlots();
    }
    m_cells.push_back(m_count++);
    return changes;
}

quint32 *SharedStrings::slotOf(QByteArrayView utf8, quint32 hash)
{
    for (size_t at = hash;; ++at) {
        quint32 &slot = m_slots[at & (m_slots.size() - 1)];
        if (slot == 0)
            return &slot;
        const Text &text = m_texts[slot - 1];
        const bool isSame = text.hash == hash && text.size == quint32(utf8.size())
            && (text.size == 0 || std::memcmp(text.data, utf8.data(), text.size) == 0);
        if (isSame)
            return &slot;
    }
}

void SharedStrings::growSlots()
{
    m_slots.assign(m_slots.size() * 2, 0);
    for (size_t i = 0; i < m_texts.size(); ++i) {
        size_t at = m_texts[i].hash;
        while (m_slots[at & (m_slots.size() - 1)] != 0)
            ++at;
        m_slots[at & (m_slots.size() - 1)] = quint32(i + 1);
    }
}

const char *SharedStrings::kept(QByteArrayView utf8)
{
    const auto size = size_t(utf8.size());
    if (size == 0)
        return "";
    if (size > m_copyRoom) {
        m_copies.push_back(std::make_unique_for_overwrite<char[]>(kCopyBlock));
        m_copyRoom = kCopyBlock;
    }
    char *copy = m_copies.back().get() + (kCopyBlock - m_copyRoom);
    std::memcpy(copy, utf8.data(), size);
    m_copyRoom -= size;
    return copy;
}

TextChanges SharedStrings::changesOf(quint32 number) const
{
    if (m_changes.empty())
        return {};
    const auto found = m_changes.find(number);
    return found == m_changes.end() ? TextChanges() : found->second;
}

SharedStringWriter::SharedStringWriter(RecordWriter &out, quint32 cells, quint32 texts)
    : m_out(out)
    , m_perBucket(std::clamp(texts / kMostBuckets + 1, kLeastPerBucket, kMostPerBucket))
{
    m_out.begin(biff::Record::Sst);
    m_out.u32(cells);
    m_out.u32(texts);
}

/// Length and flag stay in one record with the first character; after a break between characters
/// the Continue record begins with the flag again.
void SharedStringWriter::add(QByteArrayView utf8)
{
    setCellText(m_text, utf8);
    const quint8 flag = RecordWriter::widthFlag(m_text);
    constexpr qsizetype kLongestCharacter = 4;
    if (m_out.room() < kTextHeader + kLongestCharacter)
        continueRecord();
    if (m_added++ % m_perBucket == 0 && m_places.size() < kMostPlaces)
        m_places.push_back({m_out.position(), quint16(m_out.position() - m_out.recordStart())});
    m_out.u16(quint16(m_text.size()));
    m_out.u8(flag);
    QStringView rest = m_text;
    for (;;) {
        const qsizetype fits = fitting(rest, m_out.room() / (flag != 0 ? 2 : 1));
        m_out.characters(rest.first(fits), flag);
        rest = rest.sliced(fits);
        if (rest.isEmpty())
            return;
        continueRecord();
        m_out.u8(flag);
    }
}

void SharedStringWriter::finish()
{
    m_out.end();
    m_out.begin(biff::Record::ExtSst);
    m_out.u16(quint16(m_perBucket));
    for (const Place &place : m_places) {
        m_out.u32(place.inStream);
        m_out.u16(place.inRecord);
        m_out.u16(0);
    }
    m_out.end();
}

void SharedStringWriter::continueRecord()
{
    m_out.end();
    m_out.begin(biff::Record::Continue);
}

} // namespace corvane
