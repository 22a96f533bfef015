// The container alone, on devices of which some fill up.

#include "platform/workbook/compound_file.h"
#include "support/suite.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr qsizetype kSector = 512;
constexpr quint32 kMiniSector = 64;
constexpr quint32 kMiniCutoff = 4096;
constexpr quint32 kLastRegular = 0xFFFF'FFFA;

/// To its writer a disk that has no room beyond so many bytes.
class SmallDisk : public QBuffer
{
public:
    explicit SmallDisk(qint64 room = std::numeric_limits<qint64>::max())
        : m_room(room)
    {
        open(QIODevice::ReadWrite);
    }

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        const qint64 fits = std::min(size, m_room - pos());
        return fits > 0 ? QBuffer::writeData(data, fits) : -1;
    }

private:
    qint64 m_room;
};

/// The streams of a compound file's root, read by the book ([MS-CFB] 2): version 3, few enough
/// sectors for the header's own list of FAT sectors unless that is continued.
class ContainerReader
{
public:
    explicit ContainerReader(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        QList<quint32> fatSectors;
        for (int i = 0; i < 109; ++i)
            fatSectors += number(76 + 4 * i);
        for (quint32 more = number(68); more < kLastRegular;
             more = number(place(more) + kSector - 4)) {
            for (qsizetype i = 0; i < 127; ++i)
                fatSectors += number(place(more) + 4 * i);
        }
        for (const quint32 sector : fatSectors) {
            for (qsizetype i = 0; sector < kLastRegular && i < kSector / 4; ++i)
                m_fat += number(place(sector) + 4 * i);
        }
        m_directory = chain(number(48));
        m_mini = chain(number(60));
        m_miniStream = chain(qFromLittleEndian<quint32>(m_directory.constData() + 116));
    }

    QMap<QString, QByteArray> streams() const
    {
        QMap<QString, QByteArray> found;
        for (qsizetype at = 0; at + 128 <= m_directory.size(); at += 128) {
            const char *entry = m_directory.constData() + at;
            constexpr char kStream = 2;
            if (entry[66] != kStream)
                continue;
            const QString name(reinterpret_cast<const QChar *>(entry),
                qFromLittleEndian<quint16>(entry + 64) / 2 - 1);
            const auto start = qFromLittleEndian<quint32>(entry + 116);
            const auto size = qFromLittleEndian<quint32>(entry + 120);
            found[name] = (size < kMiniCutoff ? miniChain(start) : chain(start)).left(size);
        }
        return found;
    }

private:
    static qsizetype place(quint32 sector) { return (qsizetype(sector) + 1) * kSector; }
    quint32 number(qsizetype at) const
    {
        return at + 4 <= m_bytes.size() ? qFromLittleEndian<quint32>(m_bytes.constData() + at) : -1;
    }

    QByteArray chain(quint32 sector) const
    {
        QByteArray all;
        for (; sector < kLastRegular && all.size() < m_bytes.size(); sector = m_fat.value(sector))
            all += m_bytes.mid(place(sector), kSector).leftJustified(kSector, '\0');
        return all;
    }

    QByteArray miniChain(quint32 sector) const
    {
        QByteArray all;
        while (sector < kLastRegular && all.size() < kMiniCutoff) {
            all += m_miniStream.mid(qsizetype(sector) * kMiniSector, kMiniSector);
            sector = qFromLittleEndian<quint32>(m_mini.constData() + qsizetype(4) * sector);
        }
        return all;
    }

    const QByteArray &m_bytes;
    QList<quint32> m_fat;
    QByteArray m_directory;
    QByteArray m_mini;
    QByteArray m_miniStream;
};

QByteArray pattern(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(i * 31 + i / 256);
    return bytes;
}

void writeSome(QIODevice &device, qsizetype longStream)
{
    const auto file = CompoundFile::create(device);
    file->startStream("Workbook");
    const QByteArray bytes = pattern(longStream);
    for (qsizetype at = 0; at < bytes.size(); at += 10'000)
        file->write(QByteArrayView(bytes).sliced(at, std::min<qsizetype>(10'000, bytes.size() - at)));
    file->overwrite(100, "changed");
    file->write("end");
    file->startStream("\005Short");
    file->write(pattern(300));
    file->startStream("Empty");
    file->finish();
}

} // namespace

class tst_compound_file : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void streamsReadBack_data();
    void streamsReadBack();
    void theSameContentsGiveTheSameBytes();
    void aFullDiskIsTold_data();
    void aFullDiskIsTold();
    void aFileThatIsLeftUnfinishedIsNoFault();
};

void tst_compound_file::streamsReadBack_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::newRow("a stream within the small ones") << qsizetype(2000);
    QTest::newRow("some sectors") << qsizetype(100'001);
    QTest::newRow("more than the header lists") << qsizetype(9'000'000);
}

void tst_compound_file::streamsReadBack()
{
    QFETCH(qsizetype, size);
    SmallDisk disk;
    writeSome(disk, size);
    const auto streams = ContainerReader(disk.data()).streams();
    QByteArray expected = pattern(size) + "end";
    expected.replace(100, 7, "changed");
    QCOMPARE(streams.keys(),
        QStringList({QStringLiteral("\005Short"), QStringLiteral("Empty"),
            QStringLiteral("Workbook")}));
    QVERIFY(streams[QStringLiteral("Workbook")] == expected);
    QCOMPARE(streams[QStringLiteral("\005Short")], pattern(300));
    QCOMPARE(streams[QStringLiteral("Empty")], QByteArray());
}

void tst_compound_file::theSameContentsGiveTheSameBytes()
{
    SmallDisk first;
    SmallDisk second;
    writeSome(first, 100'000);
    writeSome(second, 100'000);
    QVERIFY(first.data() == second.data());
}

void tst_compound_file::aFullDiskIsTold_data()
{
    QTest::addColumn<qint64>("room");
    SmallDisk disk;
    writeSome(disk, 1'000'000);
    const qint64 whole = disk.size();
    QTest::newRow("at once") << qint64(0);
    QTest::newRow("in the header") << qint64(100);
    QTest::newRow("in a stream") << qint64(400'000);
    QTest::newRow("in what is written last") << whole - 1;
}

void tst_compound_file::aFullDiskIsTold()
{
    QFETCH(qint64, room);
    SmallDisk disk(room);
    QVERIFY_EXCEPTION_THROWN(writeSome(disk, 1'000'000), CompoundFileError);
}

void tst_compound_file::aFileThatIsLeftUnfinishedIsNoFault()
{
    SmallDisk disk;
    const auto file = CompoundFile::create(disk);
    file->startStream("Workbook");
    file->write(pattern(10'000));
}

QTEST_GUILESS_MAIN(tst_compound_file)
#include "tst_compound_file.moc"
