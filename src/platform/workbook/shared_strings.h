#pragma once

#include "platform/workbook/cell_text.h"

#include <QtCore/QByteArrayView>

#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace corvane {

class RecordWriter;

/// Numbers the texts of a workbook's cells, in the order in which new ones come.
/// Equal texts share a number as long as the table has room; when it is full, and for long texts,
/// each cell gets a number of its own. That bounds the memory: a million texts in the table, four
/// bytes for every cell.
class SharedStrings
{
public:
    static constexpr size_t kTableTexts = 1 << 20;

    /// Room for the numbers of so many cells; memory is used only when they come.
    explicit SharedStrings(size_t cells, size_t tableTexts = kTableTexts);

    /// Whether the bytes of a text outlive the table.
    enum class Storage { Lasting, Copied };
    /// Notes the next cell's text and what has to be changed about it.
    TextChanges add(QByteArrayView utf8, Storage storage);

    /// The numbers of all cells in the order of add().
    std::span<const quint32> cells() const { return m_cells; }
    quint32 count() const { return m_count; }

private:
    struct Text
    {
        const char *data;
        quint32 size;
        quint32 hash;
    };

    quint32 *slotOf(QByteArrayView utf8, quint32 hash);
    void growSlots();
    const char *kept(QByteArrayView utf8);
    TextChanges changesOf(quint32 number) const;

    std::vector<quint32> m_cells;
    size_t m_tableTexts;
    quint32 m_count = 0;
    std::vector<Text> m_texts; ///< of the table
    std::vector<quint32> m_numbers; ///< of the table's texts
    std::vector<quint32> m_slots; ///< index into m_texts plus one; 0 is free
    std::unordered_map<quint32, TextChanges> m_changes; ///< by number, only where there are some
    std::vector<std::unique_ptr<char[]>> m_copies;
    size_t m_copyRoom = 0;
};

/// Writes the texts of a workbook one after another as SST record and its Continue records
/// ([MS-XLS] SST, XLUnicodeRichExtendedString) and the index to them (ExtSST).
class SharedStringWriter
{
public:
    SharedStringWriter(RecordWriter &out, quint32 cells, quint32 texts);
    void add(QByteArrayView utf8);
    void finish();

private:
    struct Place
    {
        quint32 inStream;
        quint16 inRecord;
    };

    void continueRecord();

    RecordWriter &m_out;
    quint32 m_perBucket;
    quint32 m_added = 0;
    std::vector<Place> m_places;
    QString m_text;
};

} // namespace corvane
