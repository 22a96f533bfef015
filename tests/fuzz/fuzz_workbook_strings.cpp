#include "fuzz/promise.h"
#include "platform/workbook/compound_file.h"
#include "platform/workbook/record_writer.h"
#include "platform/workbook/shared_strings.h"

#include <QtCore/QtEndian>

using namespace corvane;
using test::promise;

namespace {

class MemoryFile : public CompoundFile
{
public:
    void startStream(const char *) override { }
    void write(QByteArrayView data) override { bytes.append(data); }
    void overwrite(quint32 position, QByteArrayView data) override
    {
        bytes.replace(position, data.size(), data);
    }
    void finish() override { }

    QByteArray bytes;
};

/// Reads records one after another and the texts in them as [MS-XLS] SST tells: behind a break
/// within a text its flag stands again.
class Decoder
{
public:
    explicit Decoder(const QByteArray &stream)
        : m_stream(stream)
    {
        nextRecord(biff::Record::Sst);
        m_at += 8; // how many texts
    }

    /// Where the next text starts: in the stream and in its record.
    std::pair<quint32, quint16> start()
    {
        if (m_at == m_end)
            nextRecord(biff::Record::Continue);
        return {quint32(m_at), quint16(m_at - m_start)};
    }

    QString text()
    {
        const qsizetype length = u16();
        bool wide = flag();
        promise(length == 0 || m_at < m_end, "a text's first letter stands with its length");
        QString text;
        while (text.size() < length) {
            if (m_at == m_end) {
                promise(!text.back().isHighSurrogate(), "a pair stays in one record");
                nextRecord(biff::Record::Continue);
                wide = flag();
            }
            text += QChar(wide ? u16() : u8());
        }
        return text;
    }

    /// The index behind the texts: where every so many of them start.
    void index(const std::vector<std::pair<quint32, quint16>> &starts)
    {
        promise(m_at == m_end, "nothing stands behind the last text");
        nextRecord(biff::Record::ExtSst);
        const size_t step = u16();
        promise(step >= 8, "a bucket has eight texts or more");
        for (size_t text = 0; m_at < m_end; text += step) {
            const quint32 inStream = u16() | quint32(u16()) << 16;
            promise(text < starts.size() && starts[text] == std::pair(inStream, u16()),
                "the index points at texts");
            u16();
        }
        promise(m_at == m_stream.size(), "nothing stands behind the index");
    }

private:
    void nextRecord(biff::Record type)
    {
        m_start = m_at;
        m_end = m_stream.size();
        promise(biff::Record(u16()) == type, "the next record is the one expected");
        const qsizetype size = u16();
        m_end = m_at + size;
        promise(
            size <= biff::kMaxRecordData && m_end <= m_stream.size(), "a record keeps its limit");
    }
    quint8 u8()
    {
        promise(m_at < m_end, "a number stands in one record");
        return quint8(m_stream[m_at++]);
    }
    quint16 u16()
    {
        const quint8 low = u8();
        return quint16(low | u8() << 8);
    }
    bool flag()
    {
        const quint8 flag = u8();
        promise(flag < 2, "texts have no other flags");
        return flag != 0;
    }

    const QByteArray &m_stream;
    qsizetype m_at = 0;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
};

/// Texts as the input tells them: a byte how often, a byte how long, the letters.
std::vector<QByteArray> textsOf(QByteArrayView input)
{
    constexpr qsizetype kMost = 30'000;
    std::vector<QByteArray> texts;
    qsizetype sum = 0;
    while (input.size() >= 2 && sum < kMost) {
        const auto times = quint8(input[0]);
        const qsizetype length = std::min<qsizetype>(quint8(input[1]), input.size() - 2);
        texts.push_back(input.sliced(2, length).toByteArray().repeated(times));
        sum += texts.back().size() + 1;
        input = input.sliced(2 + length);
    }
    return texts;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::vector<QByteArray> texts = textsOf(QByteArrayView(data, qsizetype(size)));
    MemoryFile file;
    RecordWriter out(file);
    SharedStringWriter writer(out, quint32(texts.size()), quint32(texts.size()));
    for (const QByteArray &text : texts)
        writer.add(text);
    writer.finish();
    out.flush();

    Decoder decoder(file.bytes);
    std::vector<std::pair<quint32, quint16>> starts;
    for (const QByteArray &text : texts) {
        QString cell;
        const TextChanges changes = setCellText(cell, text);
        promise(changes == cellTextChanges(text), "the quick look and the slow one agree");
        promise(cell.size() <= biff::kMaxCellText, "a cell's text keeps its limit");
        starts.push_back(decoder.start());
        promise(decoder.text() == cell, "a text is read back");
    }
    decoder.index(starts);
    return 0;
}
