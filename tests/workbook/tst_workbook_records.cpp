#include "platform/database/rowset.h"
#include "platform/workbook/shared_strings.h"
#include "platform/workbook/workbook_writer.h"
#include "support/suite.h"
#include "support/workbook_reader.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QtEndian>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

struct Record
{
    int type;
    quint32 position;
    QByteArray data;
};

template <typename Number> Number at(const QByteArray &data, qsizetype offset)
{
    return offset + qsizetype(sizeof(Number)) <= data.size()
        ? qFromLittleEndian<Number>(data.constData() + offset)
        : Number(-1);
}

std::vector<Record> recordsOf(const QByteArray &stream)
{
    std::vector<Record> records;
    for (qsizetype position = 0; position + 4 <= stream.size();) {
        const auto length = at<quint16>(stream, position + 2);
        records.push_back(
            {at<quint16>(stream, position), quint32(position), stream.mid(position + 4, length)});
        position += 4 + length;
    }
    return records;
}

/// Two sheets, texts of several records, every kind of cell.
RowsetPtr someRows()
{
    RowsetBuilder builder({QStringLiteral("Text"), QStringLiteral("Number")});
    for (int i = 0; i < 65'540; ++i) {
        if (i < 2'000)
            builder.addText(
                QString(QString::number(i) + QString::fromUtf8(i % 2 == 0 ? " Жук" : " beetle"))
                    .toUtf8());
        else
            builder.add(Value());
        builder.add(i % 3 == 0 ? Value::integer(i)
                : i % 3 == 1   ? Value::real(i + 0.5)
                               : Value::boolean(true));
    }
    return builder.finish();
}

// Record types by their names in [MS-XLS].
enum Type {
    Eof = 0x0A,
    ExternSheet = 0x17,
    Lbl = 0x18,
    Font = 0x31,
    Continue = 0x3C,
    Pane = 0x41,
    CodePage = 0x42,
    ColInfo = 0x7D,
    BoundSheet = 0x85,
    AutoFilterInfo = 0x9D,
    Obj = 0x5D,
    Xf = 0xE0,
    DrawingGroup = 0xEB,
    Drawing = 0xEC,
    Sst = 0xFC,
    LabelSst = 0xFD,
    ExtSst = 0xFF,
    SupBook = 0x1AE,
    Dimensions = 0x200,
    Row = 0x208,
    Window2 = 0x23E,
    Style = 0x293,
    Format = 0x41E,
    Bof = 0x809,
    Window1 = 0x3D,
    Selection = 0x1D
};

} // namespace

class tst_workbook_records : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theSameRowsGiveTheSameBytes();
    void recordsFillTheStreamAndFitTheirLimit();
    void recordsComeInTheirOrder_data();
    void recordsComeInTheirOrder();
    void sheetsStartWhereTheListSays();
    void theIndexOfTextsPointsAtTexts();
    void drawingsAreAsLongAsTheySay();
    void aFullTableOnlyRepeatsTexts();

private:
    QByteArray m_stream;
    std::vector<Record> m_records;
};

void tst_workbook_records::initTestCase()
{
    const QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("book.xls"));
    writeWorkbook(*someRows(), file);
    QString fault;
    m_stream = test::containerStream(file, QStringLiteral("Workbook"), fault);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    m_records = recordsOf(m_stream);
}

void tst_workbook_records::theSameRowsGiveTheSameBytes()
{
    const QTemporaryDir dir;
    QList<QByteArray> files;
    for (const char *name : {"a.xls", "b.xls"}) {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        writeWorkbook(*someRows(), file.fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        files += file.readAll();
    }
    QVERIFY(files[0] == files[1]);
    // The root's entry of the directory ([MS-CFB]) has no times, which would differ from second to
    // second.
    const qsizetype root = 512 + 512 * qsizetype(at<quint32>(files[0], 48));
    QCOMPARE(files[0].mid(root + 100, 16), QByteArray(16, '\0'));
}

void tst_workbook_records::recordsFillTheStreamAndFitTheirLimit()
{
    const Record &last = m_records.back();
    QCOMPARE(last.type, int(Eof));
    QCOMPARE(qsizetype(last.position) + 4, m_stream.size());
    for (const Record &record : m_records)
        QVERIFY2(record.data.size() <= 8224, qPrintable(QString::number(record.position)));
    QCOMPARE(std::count_if(m_records.begin(), m_records.end(),
                 [](const Record &r) { return r.type == Font; }),
        5);
    QVERIFY(std::count_if(m_records.begin(), m_records.end(), [](const Record &r) {
        return r.type == Xf;
    }) > 16);
    QVERIFY(std::count_if(m_records.begin(), m_records.end(), [](const Record &r) {
        return r.type == Continue;
    }) >= 2);
}

void tst_workbook_records::recordsComeInTheirOrder_data()
{
    QTest::addColumn<int>("substream");
    QTest::addColumn<QList<int>>("order");
    QTest::newRow("globals") << 0
                             << QList<int>{Bof, CodePage, Window1, Font, Format, Xf, Style,
                                    BoundSheet, SupBook, ExternSheet, Lbl, DrawingGroup, Sst,
                                    ExtSst, Eof};
    const QList<int> sheet{Bof, ColInfo, AutoFilterInfo, Dimensions, Row, LabelSst, Drawing, Obj,
        Window2, Pane, Selection, Eof};
    QTest::newRow("first sheet") << 1 << sheet;
    QTest::newRow("second sheet") << 2 << sheet;
}

/// Each type's first record stands behind the first of the type before it.
void tst_workbook_records::recordsComeInTheirOrder()
{
    QFETCH(int, substream);
    QFETCH(QList<int>, order);
    auto from = m_records.begin();
    for (int i = 0; i < substream; ++i)
        from = std::next(
            std::find_if(from, m_records.end(), [](const Record &r) { return r.type == Eof; }));
    auto last = from;
    for (const int type : order) {
        const auto found = std::find_if(
            from, m_records.end(), [type](const Record &r) { return r.type == type; });
        QVERIFY2(found != m_records.end() && found >= last, qPrintable(QString::number(type, 16)));
        last = found;
    }
    QVERIFY(std::none_of(std::next(from), last, [](const Record &r) { return r.type == Bof; }));
}

void tst_workbook_records::sheetsStartWhereTheListSays()
{
    QList<quint32> listed;
    QList<quint32> found;
    for (const Record &record : m_records) {
        if (record.type == BoundSheet)
            listed += at<quint32>(record.data, 0);
        if (record.type == Bof && at<quint16>(record.data, 2) == 0x0010)
            found += record.position;
    }
    QCOMPARE(found.size(), 2);
    QCOMPARE(listed, found);
}

void tst_workbook_records::theIndexOfTextsPointsAtTexts()
{
    const auto index = std::find_if(
        m_records.begin(), m_records.end(), [](const Record &r) { return r.type == ExtSst; });
    const int perBucket = at<quint16>(index->data, 0);
    // Two headings, then the rows' texts, all different.
    for (int bucket = 1; 2 + 8 * bucket < index->data.size(); ++bucket) {
        const auto position = at<quint32>(index->data, 2 + 8 * bucket);
        const auto inRecord = at<quint16>(index->data, 6 + 8 * bucket);
        const int number = bucket * perBucket - 2;
        QCOMPARE(int(at<quint16>(m_stream, position)),
            int(QString::number(number).size()) + (number % 2 == 0 ? 4 : 7));
        const int type = at<quint16>(m_stream, qsizetype(position) - inRecord);
        QVERIFY(type == Sst || type == Continue);
    }
}

void tst_workbook_records::drawingsAreAsLongAsTheySay()
{
    QByteArray drawing;
    int objects = 0;
    for (const Record &record : m_records) {
        if (record.type == DrawingGroup)
            QCOMPARE(qsizetype(at<quint32>(record.data, 4)) + 8, record.data.size());
        if (record.type == Drawing)
            drawing += record.data;
        objects += record.type == Obj ? 1 : 0;
    }
    QCOMPARE(objects, 4);
    const qsizetype first = qsizetype(at<quint32>(drawing, 4)) + 8;
    QCOMPARE(first * 2, drawing.size());
    QCOMPARE(int(at<quint16>(drawing, first + 2)), 0xF002);
}

void tst_workbook_records::aFullTableOnlyRepeatsTexts()
{
    SharedStrings texts(6, 2);
    for (const char *text : {"a", "b", "a", "c", "c", "b"})
        texts.add(QByteArrayView(text), SharedStrings::Storage::Copied);
    const std::vector<quint32> expected{0, 1, 0, 2, 3, 1};
    QVERIFY(
        std::equal(expected.begin(), expected.end(), texts.cells().begin(), texts.cells().end()));
    QCOMPARE(texts.count(), 4u);
}

QTEST_GUILESS_MAIN(tst_workbook_records)
#include "tst_workbook_records.moc"
