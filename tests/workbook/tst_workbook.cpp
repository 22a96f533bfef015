#include "platform/database/rowset.h"
#include "platform/workbook/workbook_writer.h"
#include "support/suite.h"
#include "support/workbook_reader.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;
using test::ReadCell;
using test::ReadWorkbook;

namespace {

constexpr qsizetype kMostText = 32'767;
constexpr int kRowsPerSheet = 65'535;

/// A value and the cell that both readers find for it; an empty type is no cell.
struct Case
{
    const char *name;
    Value value;
    const char *type;
    QString text;
};

Value text(const char *utf8)
{
    return Value::text(utf8, quint32(strlen(utf8)));
}

Value decimal(const char *digits)
{
    return Value::decimal(digits, quint32(strlen(digits)));
}

Value day(int year, int month, int dayOfMonth)
{
    return Value::date(QDate(1970, 1, 1).daysTo(QDate(year, month, dayOfMonth)));
}

Value moment(const char *iso)
{
    return Value::dateTime(QDateTime::fromString(QString::fromLatin1(iso) + u'Z', Qt::ISODateWithMs)
                               .toMSecsSinceEpoch());
}

const std::vector<Case> &cases()
{
    static const QByteArray longText
        = QByteArray(kMostText - 1, 'x') + "\xF0\x9F\x98\x80" + QByteArray(8'000, 'y');
    const auto plain = [](const char *name, const char *utf8) {
        return Case{name, text(utf8), "text", QString::fromUtf8(utf8)};
    };
    const auto number = [](const char *name, Value value, const char *digits) {
        return Case{name, value, "number", QString::fromLatin1(digits)};
    };
    const auto asText = [](const char *name, Value value, const char *words) {
        return Case{name, value, "text", QString::fromLatin1(words)};
    };
    const auto date = [](const char *name, Value value, const char *iso) {
        return Case{name, value, "date", QString::fromLatin1(iso)};
    };
    static const std::vector<Case> all{
        plain("a text", "Abbott"),
        plain("leading zeros stay", "00123"),
        plain("a text that looks like a formula", "=1+1"),
        plain("a text that starts with plus", "+49 30 1234"),
        plain("a text that starts with minus", "-x"),
        plain("a text that starts with at", "@SUM(A1)"),
        plain("a text that starts with an apostrophe", "'tis"),
        plain("a text that looks like a date", "1/2/2024"),
        plain("Latin-1", "Ærø Zoë"),
        plain("Greek and Cyrillic", "Ωμέγα Жук"),
        plain("beyond the basic plane", "\xF0\x9D\x94\xB8 \xF0\x9F\x98\x80 \xF0\xA0\x80\x80"),
        plain("right to left", "שלום مرحبا"),
        plain("lines stay", "one\ntwo\n\nthree"),
        plain("a tab stays", "one\ttwo"),
        plain("blanks at both ends", "  two  "),
        {"CR LF becomes the cell's line feed", text("one\r\ntwo\rthree"), "text",
            QStringLiteral("one\ntwo\nthree")},
        {"control characters are replaced", text("a\001b\177c\302\205d"), "text",
            QStringLiteral("a\uFFFDb\uFFFDc\uFFFDd")},
        {"a long text is cut in front of a surrogate pair",
            Value::text(longText.data(), quint32(longText.size())), "text",
            QString(kMostText - 1, u'x')},
        {"null is no cell", Value(), "", {}},
        number("zero", Value::integer(0), "0"),
        number("a negative number", Value::integer(-42), "-42"),
        number("a number beyond 30 bits", Value::integer(536'870'912), "536870912"),
        number("15 digits", Value::integer(999'999'999'999'999), "999999999999999"),
        asText("16 digits", Value::integer(1'234'567'890'123'456), "1234567890123456"),
        number("many zeros at the end", Value::integer(1'200'000'000'000'000'000), "1.2e+18"),
        number("a decimal", decimal("-12.3400"), "-12.34"),
        number("a decimal of 15 digits", decimal("1234567890123.45"), "1234567890123.45"),
        number("zeros do not count", decimal("00.0123456789012345000"), "0.0123456789012345"),
        asText("a decimal of 16 digits", decimal("12345678901234.5600"), "12345678901234.56"),
        number("a decimal of a tenth", decimal("0.1"), "0.1"),
        number("a real", Value::real(0.1 + 0.2), "0.3"),
        number("a large real", Value::real(1.5e300), "1.5e+300"),
        asText("not a number", Value::real(std::numeric_limits<double>::quiet_NaN()), "nan"),
        asText("an infinity", Value::real(-std::numeric_limits<double>::infinity()), "-inf"),
        number("no negative zero", Value::real(-0.0), "0"),
        {"true", Value::boolean(true), "boolean", QStringLiteral("1")},
        {"false", Value::boolean(false), "boolean", QStringLiteral("0")},
        date("a date", day(2024, 10, 4), "2024-10-04"),
        date("a leap day", day(2000, 2, 29), "2000-02-29"),
        date("the first date that readers agree on", day(1900, 3, 1), "1900-03-01"),
        asText("the day before it", day(1900, 2, 28), "02/28/1900"),
        asText("a date before 1900", day(1899, 12, 31), "12/31/1899"),
        date("the last date", day(9999, 12, 31), "9999-12-31"),
        date("a date with a time", moment("2024-10-04T13:30:59.250"), "2024-10-04T13:30:59.250"),
        date("midnight", moment("2024-10-04T00:00:00.000"), "2024-10-04"),
        asText("an early date with a time", moment("1875-05-01T08:15:00.000"),
            "05/01/1875 8:15:00 AM"),
        {"a time", Value::time(81'000'000), "time", QStringLiteral("22:30:00.000")},
        {"bytes", Value::bytes("\x00\xAB\xff", 3), "text", QStringLiteral("0x00ABFF")},
    };
    return all;
}

RowsetPtr caseRows()
{
    RowsetBuilder builder({QStringLiteral("Case"), QStringLiteral("Value")});
    for (const Case &item : cases()) {
        builder.addText(item.name);
        builder.add(item.value);
    }
    return builder.finish();
}

/// Repeated names, types by column, and a column of each kind of format.
RowsetPtr columnRows()
{
    RowsetBuilder builder(
        {QStringLiteral("Name"), QStringLiteral("name"), QString(), QStringLiteral("Total"),
            QStringLiteral("Day"), QStringLiteral("When"), QStringLiteral("Number")});
    const char *totals[] = {"12.5000", "3.25", "-1000"};
    for (int i = 0; i < 3; ++i) {
        builder.add(text("Zo\xC3\xAB with a longer name"));
        builder.add(text("y"));
        builder.add(Value());
        builder.add(decimal(totals[i]));
        builder.add(moment("2024-10-04T00:00:00.000"));
        builder.add(i == 0 ? moment("2024-10-04T13:30:00.000") : moment("2024-10-05T00:00:00.000"));
        builder.add(Value::integer(i == 0 ? 123'456'789'012 : i));
    }
    return builder.finish();
}

/// Texts of many lengths, narrow and wide in turn, so that breaks between records fall on every
/// kind of place.
RowsetPtr textRows()
{
    const QString wide = QString::fromUtf8("Жук😀Ω漢");
    RowsetBuilder builder({QStringLiteral("Text")});
    for (int i = 0; i < 600; ++i) {
        const QString unit = i % 3 == 0 ? QStringLiteral("abcdefg")
            : i % 3 == 1                ? wide
                                        : QStringLiteral("é");
        const QString words
            = QString(QString::number(i) + unit.repeated(i % 97 + (i % 50 == 1 ? 2'000 : 0)));
        builder.addText(words.toUtf8());
    }
    return builder.finish();
}

RowsetPtr manyRows()
{
    RowsetBuilder builder({QStringLiteral("Row"), QStringLiteral("Words")});
    for (int i = 0; i < kRowsPerSheet + 2; ++i) {
        builder.add(Value::integer(i));
        builder.add(i > kRowsPerSheet - 4 && i % 2 == 0 ? text("even") : Value());
    }
    return builder.finish();
}

RowsetPtr wideRow()
{
    QStringList names;
    for (int i = 0; i < 256; ++i)
        names += QStringLiteral("f%1").arg(i);
    RowsetBuilder builder(names);
    for (int i = 0; i < 256; ++i)
        builder.add(Value::integer(i));
    return builder.finish();
}

enum Book { Values, Columns, Texts, Sheets, Wide, Empty };

} // namespace

class tst_workbook : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void valuesReadBack_data();
    void valuesReadBack();
    void notesCountWhatWasChanged();
    void columnsKeepOrderNamesAndFormats();
    void textsSurviveRecordBreaks();
    void rowsGoOnOnAFurtherSheet();
    void headingsAreFrozenBoldAndFilterable();
    void propertiesReadBack();
    void theWidestAndTheEmptyRowsetOpen();

private:
    void write(
        const RowsetPtr &rows, const char *name, const QString &sheetName = QStringLiteral("Rows"));
    QList<const ReadWorkbook *> both(Book book) const { return {&m_office[book], &m_xlrd[book]}; }

    QTemporaryDir m_folder;
    QStringList m_files;
    QList<WorkbookNotes> m_notes;
    QList<ReadWorkbook> m_office;
    QList<ReadWorkbook> m_xlrd;
};

void tst_workbook::initTestCase()
{
    write(caseRows(), "values");
    write(columnRows(), "columns");
    write(textRows(), "texts");
    write(manyRows(), "sheets", QStringLiteral("Appointments: by [day] and room 1/2"));
    write(wideRow(), "wide");
    write(RowsetBuilder({QStringLiteral("Name")}).finish(), "empty");
    QString fault;
    m_office = test::readWithOfficeSuite(m_files, m_folder.path(), fault);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    m_xlrd = test::readWithXlrd(m_files, fault);
    QVERIFY2(fault.isEmpty(), qPrintable(fault));
    QCOMPARE(m_xlrd.size(), m_office.size());
}

void tst_workbook::write(const RowsetPtr &rows, const char *name, const QString &sheetName)
{
    m_files += m_folder.filePath(QString::fromLatin1(name) + QStringLiteral(".xls"));
    m_notes += writeWorkbook(*rows, m_files.last(),
        {.title = QStringLiteral("Zoë's schedule"),
            .author = QStringLiteral("Jürgen Ωmega"),
            .writtenAt = QDateTime(QDate(2024, 10, 4), QTime(13, 30), Qt::UTC),
            .sheetName = sheetName});
}

void tst_workbook::valuesReadBack_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    int row = 1;
    for (const Case &item : cases())
        QTest::newRow(item.name) << row++ << QString::fromLatin1(item.type) << item.text;
}

void tst_workbook::valuesReadBack()
{
    QFETCH(int, row);
    QFETCH(QString, type);
    for (const ReadWorkbook *book : both(Values)) {
        QCOMPARE(book->at(row, 0).value, QString::fromUtf8(QTest::currentDataTag()));
        const ReadCell cell = book->at(row, 1);
        QCOMPARE(cell.type, type);
        QTEST(cell.value, "value");
    }
}

void tst_workbook::notesCountWhatWasChanged()
{
    const WorkbookNotes &notes = m_notes[Values];
    QCOMPARE(notes.cutCells, (WorkbookNote{1, QStringLiteral("Rows!B19")}));
    QCOMPARE(notes.replacedCharacters, (WorkbookNote{1, QStringLiteral("Rows!B18")}));
    QCOMPARE(notes.textNumbers.count, 4);
    QCOMPARE(notes.textDates, (WorkbookNote{3, QStringLiteral("Rows!B42")}));
    QCOMPARE(notes.hexCells.count, 1);
    QCOMPARE(notes.sentences().size(), 5);
    QCOMPARE(notes.sentences()[0],
        QStringLiteral(
            "The text in Rows!B19 was cut after 32,767 characters, the most that a cell holds."));
    QCOMPARE(m_notes[Columns].sentences(), QStringList());
}

void tst_workbook::columnsKeepOrderNamesAndFormats()
{
    const char *headings[] = {"Name", "name", "", "Total", "Day", "When", "Number"};
    for (const ReadWorkbook *book : both(Columns)) {
        for (int column = 0; column < 7; ++column)
            QCOMPARE(book->at(0, column).value, QString::fromLatin1(headings[column]));
        QCOMPARE(book->at(1, 0),
            (ReadCell{QStringLiteral("text"), QStringLiteral("Zoë with a longer name")}));
        QCOMPARE(book->at(3, 3), (ReadCell{QStringLiteral("number"), QStringLiteral("-1000")}));
    }
    const QMap<QString, QString> &formats = m_xlrd[Columns].formats;
    QCOMPARE(formats[QStringLiteral("Rows!0,0")], QStringLiteral("@ bold"));
    QCOMPARE(formats[QStringLiteral("Rows!1,0")], QStringLiteral("@"));
    QCOMPARE(formats[QStringLiteral("Rows!3,3")], QStringLiteral("0.00"));
    QCOMPARE(formats[QStringLiteral("Rows!1,4")], QStringLiteral("MM/dd/yyyy").toLower());
    QCOMPARE(formats[QStringLiteral("Rows!2,5")], QStringLiteral("mm/dd/yyyy h:mm:ss AM/PM"));
    QCOMPARE(formats[QStringLiteral("Rows!1,6")], QStringLiteral("0"));
    QCOMPARE(formats[QStringLiteral("Rows!2,6")], QStringLiteral("General"));
    // 22 letters and one more; "name" and the filter's button; at least six; "-1000.00" as "Total"
    // with the button.
    QVERIFY2(
        m_xlrd[Columns].facts[0].contains(QStringLiteral(" 5888,2048,1536,2304,2816,5888,3328")),
        qPrintable(m_xlrd[Columns].facts[0]));
}

void tst_workbook::textsSurviveRecordBreaks()
{
    const RowsetPtr rows = textRows();
    for (const ReadWorkbook *book : both(Texts)) {
        for (int row = 0; row < rows->rowCount(); ++row)
            QCOMPARE(book->at(row + 1, 0).value, QString::fromUtf8(rows->value(row, 0).data()));
    }
}

void tst_workbook::rowsGoOnOnAFurtherSheet()
{
    for (const ReadWorkbook *book : both(Sheets)) {
        QCOMPARE(book->sheets,
            QStringList({QStringLiteral("Appointments by day and room 1"),
                QStringLiteral("Appointments by day and roo (2)")}));
        for (int sheet = 0; sheet < 2; ++sheet) {
            QCOMPARE(book->at(0, 0, sheet).value, QStringLiteral("Row"));
            QCOMPARE(book->at(0, 1, sheet).value, QStringLiteral("Words"));
        }
        QCOMPARE(book->at(kRowsPerSheet, 0).value, QString::number(kRowsPerSheet - 1));
        QCOMPARE(book->at(1, 0, 1).value, QString::number(kRowsPerSheet));
        QCOMPARE(book->at(2, 1, 1).value, QStringLiteral("even"));
        int numbers = 0;
        for (const ReadCell &cell : book->cells)
            numbers += cell.type == u"number" ? 1 : 0;
        QCOMPARE(numbers, kRowsPerSheet + 2);
    }
}

void tst_workbook::headingsAreFrozenBoldAndFilterable()
{
    const QStringList filters = m_office[Sheets].facts.filter(QStringLiteral("filter "));
    QCOMPARE(filters.size(), 2);
    QVERIFY2(
        filters[0].contains(QStringLiteral(".A1:")) && filters[1].endsWith(QStringLiteral(".B3")),
        qPrintable(filters.join(u'\n')));
    const QStringList facts = m_xlrd[Sheets].facts;
    QVERIFY2(facts[0].startsWith(QStringLiteral("sheet Appointments by day and room 1 65536 2 1 ")),
        qPrintable(facts[0]));
    QCOMPARE(facts
                 .filter(QRegularExpression(
                     QStringLiteral("^name _FilterDatabase [01] hidden .*\\$A\\$1:\\$B\\$")))
                 .size(),
        2);
}

void tst_workbook::propertiesReadBack()
{
    const QStringList facts = m_office[Values].facts;
    QVERIFY2(facts.contains(QStringLiteral("title Zoë's schedule")), qPrintable(facts.join(u'\n')));
    QVERIFY2(facts.contains(QStringLiteral("initial-creator Jürgen Ωmega")),
        qPrintable(facts.join(u'\n')));
    QVERIFY2(!facts.filter(QStringLiteral("creation-date 2024-10-04T13:30:00")).isEmpty(),
        qPrintable(facts.join(u'\n')));
}

void tst_workbook::theWidestAndTheEmptyRowsetOpen()
{
    for (const ReadWorkbook *book : both(Wide)) {
        QCOMPARE(book->at(0, 255).value, QStringLiteral("f255"));
        QCOMPARE(book->at(1, 255).value, QStringLiteral("255"));
        QCOMPARE(book->cells.size(), 512);
    }
    for (const ReadWorkbook *book : both(Empty)) {
        QCOMPARE(book->cells.size(), 1);
        QCOMPARE(book->at(0, 0).value, QStringLiteral("Name"));
    }
}

QTEST_GUILESS_MAIN(tst_workbook)
#include "tst_workbook.moc"
