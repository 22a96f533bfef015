// The properties form's rules, without the form: what is read, checked and written, whole files
// compared.

#include "definitions/tabular_definition.h"
#include "editor/edited_definition.h"
#include "shared/run_time_fault.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

std::vector<PrintedColumn> columnsOfSizes(const QStringList &sizes)
{
    std::vector<PrintedColumn> columns;
    for (const QString &size : sizes)
        columns.push_back({{}, size, {}, 0});
    return columns;
}

/// "caption/size/marks/ordinal" of each column.
QString told(const std::vector<PrintedColumn> &columns)
{
    QStringList texts;
    for (const PrintedColumn &column : columns)
        texts += QStringLiteral("%1/%2/%3/%4")
                     .arg(column.caption, column.size, column.marks)
                     .arg(column.ordinal);
    return texts.join(u'\n');
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_page_properties : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void sizesAreRoundedInches_data();
    void sizesAreRoundedInches();
    void twipsAreWhole16BitNumbers_data();
    void twipsAreWhole16BitNumbers();
    void totalsAreHeldAgainstThePage_data();
    void totalsAreHeldAgainstThePage();
    void columnsAreRead_data();
    void columnsAreRead();
    void aResultFieldBeyond32BitsIsTold();
    void columnsChangePlaces();
    void whatTheFileCannotHoldIsNamed_data();
    void whatTheFileCannotHoldIsNamed();
    void savingChangesOnlyWhatItMust_data();
    void savingChangesOnlyWhatItMust();
    void largeDefinitionsAreKeptWhole();
    void otherFilesAreRefused_data();
    void otherFilesAreRefused();

private:
    QString write(const QByteArray &bytes)
    {
        QFile file(m_file);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file to test with");
        return m_file;
    }
    QByteArray read() const
    {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    PageProperties loaded(const QByteArray &bytes)
    {
        return loadPageProperties(TabularDefinition(write(bytes)));
    }

    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(QStringLiteral("report.rpt"));
};

void tst_page_properties::sizesAreRoundedInches_data()
{
    QTest::addColumn<double>("twips");
    QTest::addColumn<QString>("shown");
    QTest::newRow("a whole inch has a blank for its sign") << 1440.0 << text(" 1");
    QTest::newRow("no more decimals than needed") << 2160.0 << text(" 1.5");
    QTest::newRow("rounded to two decimals") << 1000.0 << text(" 0.69");
    QTest::newRow("zero stays zero") << 0.0 << text(" 0");
    QTest::newRow("negative ones are cut, not rounded") << -500.0 << text("-0.34");
    QTest::newRow("a huge one has no exponent") << 1440e9 << text(" 1000000000");
    QTest::newRow("digits without end stay a number")
        << 1e300 << QString(text(" 340282346638528859811704183484516925440"));
}

void tst_page_properties::sizesAreRoundedInches()
{
    QFETCH(double, twips);
    QTEST(columnSizeText(twips), "shown");
}

void tst_page_properties::twipsAreWhole16BitNumbers_data()
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<QString>("twips"); // empty: overflow
    QTest::newRow("as read") << text(" 0.69") << text("994");
    QTest::newRow("as typed") << text("1.5") << text("2160");
    QTest::newRow("no number") << text("wide") << text("0");
    QTest::newRow("negative") << text("-0.34") << text("-490");
    QTest::newRow("the widest") << text("22.75") << text("32760");
    QTest::newRow("beyond it") << text("22.76") << QString();
}

void tst_page_properties::twipsAreWhole16BitNumbers()
{
    QFETCH(QString, size);
    QFETCH(QString, twips);
    const PrintedColumn column{{}, size, {}, 0};
    if (twips.isEmpty())
        QVERIFY_EXCEPTION_THROWN(twipsOf(column), RunTimeFault);
    else
        QCOMPARE(twipsOf(column), twips);
}

void tst_page_properties::totalsAreHeldAgainstThePage_data()
{
    QTest::addColumn<QStringList>("sizes");
    QTest::addColumn<bool>("isLandscape");
    QTest::addColumn<QString>("summary");
    QTest::newRow("exactly upright") << QStringList{text(" 1.1"), text("2.2"), text("4.2")} << false
                                     << text("7.50 of 7.50 inches");
    QTest::newRow("exactly on its side")
        << QStringList{text(" 5"), text("5")} << true << text("10.00 of 10.00 inches");
    QTest::newRow("too wide") << QStringList{text("7.51")} << false
                              << text("7.51 of 7.50 inches: 0.01 inches too wide for the page");
    QTest::newRow("the same on its side")
        << QStringList{text("7.51")} << true << text("7.51 of 10.00 inches");
    QTest::newRow("no columns") << QStringList() << false << text("0.00 of 7.50 inches");
}

void tst_page_properties::totalsAreHeldAgainstThePage()
{
    QFETCH(QStringList, sizes);
    QFETCH(bool, isLandscape);
    QFETCH(QString, summary);
    const auto columns = columnsOfSizes(sizes);
    QCOMPARE(columnSizeSummary(columns, isLandscape), summary);
    QCOMPARE(columnSizesFit(columns, isLandscape), !summary.contains(u"too wide"));
}

void tst_page_properties::columnsAreRead_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("columns");
    const auto row = [](const char *name, const char *keys, const char *columns) {
        QTest::newRow(name) << QByteArray(keys) << text(columns);
    };
    row("three lists of equal length", "Fields=3|0\nHeading=Name|Date;\nSpacing=1440|2160;\n",
        "Name/ 1//3\nDate/ 1.5//0");
    row("short lists leave captions empty and sizes 0", "Fields=1|2|3\nHeading=A;\nSpacing=1440;\n",
        "A/ 1//1\n/ 0//2\n/ 0//3");
    row("the list of fields says how many", "Fields=1\nHeading=A|B|C;\nSpacing=1440|1440|1440;\n",
        "A/ 1//1");
    row("alignment marks are kept apart", "Fields=1|2|3\nSpacing=>1440| < 2160|^x;\n",
        "/ 1/>/1\n/ 1.5/</2\n/ 0/^/3");
    row("widths that are no numbers, or negative", "Fields=1|2|3\nSpacing=wide|-1440|12x;\n",
        "/ 0//1\n/-0.99//2\n/ 0.01//3");
    row("every semicolon goes", "Fields=1|2\nHeading=A;B|C;;\nSpacing=14;40|1440\n",
        "AB/ 1//1\nC/ 1//2");
    row("an empty list of fields has no rows", "Fields=\nHeading=A|B;\nSpacing=1440|1440;\n", "");
    row("empty fields are field 0", "Fields=|x\nHeading=A|B;\n", "A/ 0//0\nB/ 0//0");
}

void tst_page_properties::columnsAreRead()
{
    QFETCH(QByteArray, keys);
    QTEST(told(loaded("[Columns]\n" + keys).columns), "columns");
}

void tst_page_properties::aResultFieldBeyond32BitsIsTold()
{
    try {
        loaded("[Columns]\nFields=1|99999999999\n");
        QFAIL("nothing was thrown");
    } catch (const RunTimeFault &fault) {
        QVERIFY(fault.description().contains(
            u"\"Fields\" of [Columns] names the result field 99999999999"));
    }
}

void tst_page_properties::columnsChangePlaces()
{
    auto columns = loaded("[Columns]\nFields=5|6\nHeading=A|B;\nSpacing=>1440|2160;\n").columns;
    QCOMPARE(changeListOrder(columns, 0, MoveUp), 0);
    QCOMPARE(changeListOrder(columns, 1, MoveDown), 1);
    QCOMPARE(told(columns), text("A/ 1/>/5\nB/ 1.5//6"));
    QCOMPARE(changeListOrder(columns, 0, MoveDown), 1);
    QCOMPARE(told(columns), text("B/ 1.5//6\nA/ 1/>/5"));
    QCOMPARE(columnTexts(columns).spacing, text("2160|>1440;"));
}

void tst_page_properties::whatTheFileCannotHoldIsNamed_data()
{
    QTest::addColumn<PageProperties>("properties");
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QString>("fault"); // place, index and how its words begin; empty: none
    const auto row = [](const char *name, auto change, const QString &fault,
                         ProfileEncoding encoding = ProfileEncoding::Windows1252) {
        PageProperties properties;
        properties.columns = {{text("A"), text("1"), {}, 0}, {text("B"), text("1"), {}, 1}};
        change(properties);
        QTest::newRow(name) << properties << int(encoding) << fault;
    };
    const auto foreign = [](PageProperties &p) { p.header[2] = text("Dvo\u0159\u00e1k"); };
    row("all is well", [](PageProperties &p) { p.header[0] = text("Zo\u00eb \u20ac|x"); }, {});
    row("a letter that the code page lacks", foreign,
        text("0 2 The right header text holds the character \"\u0159\" (U+0159)"));
    row("UTF-8 has them all", foreign, {}, ProfileEncoding::Utf8);
    row(
        "a letter of two units",
        [](PageProperties &p) { p.columns[1].caption = text("\U0001f600"); },
        text("2 1 Column 2, \"\U0001f600\", holds the character \"\U0001f600\" (U+1f600)"));
    row(
        "a pasted line break", [](PageProperties &p) { p.footer[0] = text("a\nb"); },
        text("1 0 The left footer text holds a line break"));
    row(
        "a bar", [](PageProperties &p) { p.columns[0].caption = text("a|b"); },
        text("2 0 Column 1, \"a|b\", holds a bar"));
    row(
        "a semicolon", [](PageProperties &p) { p.columns[1].caption = text("b;"); },
        text("2 1 Column 2, \"b;\", holds a semicolon"));
    row(
        "too wide for any paper", [](PageProperties &p) { p.columns[1].size = text(" 23"); },
        text("3 1 Column 2, \"B\", is 23 inches wide."));
}

void tst_page_properties::whatTheFileCannotHoldIsNamed()
{
    QFETCH(PageProperties, properties);
    QFETCH(int, encoding);
    QFETCH(QString, fault);
    const auto found = findFault(properties, ProfileEncoding(encoding));
    const QString shown = found
        ? QStringLiteral("%1 %2 %3").arg(found->place).arg(found->index).arg(found->text)
        : QString();
    QCOMPARE(shown.isEmpty(), fault.isEmpty());
    QVERIFY2(shown.startsWith(fault), qPrintable(shown));
}

void tst_page_properties::savingChangesOnlyWhatItMust_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const char *before, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after);
    };
    row("nothing, where all keys are there",
        "; \xe9\r\n[Columns]\r\nHeading=A|B;\r\n fields = "
        "1|2\r\nSpacing=1440|>2160;\r\nPageColumns=1\r\n"
        "[Layout]\r\nOrientation=L\r\nPageBreak=Y\r\n[Header]\r\nLText={Date}\r\nCText=\r\nRText="
        "Zo\xeb\r\n"
        "[Footer]\r\nLText=kept\r\nCText=Page %d\r\nRText=\r\n",
        "; \xe9\r\n[Columns]\r\nHeading=A|B;\r\n fields "
        "=1|2\r\nSpacing=1440|>2160;\r\nPageColumns=1\r\n"
        "[Layout]\r\nOrientation=L\r\nPageBreak=Y\r\n[Header]\r\nLText={Date}\r\nCText=\r\nRText="
        "Zo\xeb\r\n"
        "[Footer]\r\nLText=kept\r\nCText=Page %d\r\nRText=\r\n");
    row("absent keys appear, lists are put right",
        "[Data "
        "Source]\nFields=2\n[Columns]\nFields=01|x\nHeading=A\nSpacing=1000;\nPageColumns=1\n\n["
        "Group]\nField=1\n",
        "[Data "
        "Source]\nFields=2\n[Columns]\nFields=1|0\nHeading=A|;\nSpacing=994|0;\nPageColumns=1\n\n["
        "Group]\nField=1\n"
        "[Header]\nLText=\nCText=\nRText=\n[Footer]\nLText=\nCText=\nRText=\n[Layout]\nOrientation="
        "P\nPageBreak=N\n");
    row("without columns their lists stay",
        "[Columns]\nHeading=A|B;\nSpacing=x\nPageColumns=1\n[Layout]\nOrientation=l\nPageBreak=Y "
        "\n[Header]\nLText='a'\n",
        "[Columns]\nHeading=A|B;\nSpacing=x\nPageColumns=1\n[Layout]\nOrientation=P\nPageBreak=N\n["
        "Header]\nLText=a\n"
        "CText=\nRText=\n[Footer]\nLText=\nCText=\nRText=\n");
}

void tst_page_properties::savingChangesOnlyWhatItMust()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    write(before);
    EditedDefinition definition(m_file);
    definition.save(definition.load());
    QCOMPARE(read(), after);
    definition.save(definition.load());
    QCOMPARE(read(), after);
}

void tst_page_properties::largeDefinitionsAreKeptWhole()
{
    QByteArray before = "[Columns]\nFields=1\nHeading=A;\nSpacing=1440;\nPageColumns=1\n[Notes]\n";
    while (before.size() < 10'000'000)
        before += "Key" + QByteArray::number(before.size())
            + "=some words of a note that nobody reads\n";
    write(before);
    EditedDefinition definition(m_file);
    PageProperties properties = definition.load();
    properties.columns[0].caption = text("B");
    QVERIFY(definition.save(properties));
    QCOMPARE(read(),
        before.replace("Heading=A;", "Heading=B;")
            + "[Header]\nLText=\nCText=\nRText=\n[Footer]\nLText=\nCText=\nRText=\n[Layout]"
              "\nOrientation=P\nPageBreak=N\n");
    QVERIFY(!definition.save(properties)); // it is no longer the file that was loaded
}

void tst_page_properties::otherFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("refused");
    QTest::newRow("a tabular definition") << QByteArray("[Columns]\nPageColumns=1\n") << false;
    QTest::newRow("a designed report")
        << QByteArray("<?xml version=\"1.0\"?>\n<Reports></Reports>\n") << true;
    QTest::newRow("a designed report with a definition's lines in it") << QByteArray(
        "<?xml version=\"1.0\"?>\n<Reports><![CDATA[\n[Columns]\nPageColumns=1\n]]></Reports>\n")
                                                                       << true;
    QTest::newRow("a foreign file") << QByteArray("hello\0world", 11) << true;
    QTest::newRow("an empty file") << QByteArray() << true;
}

void tst_page_properties::otherFilesAreRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, refused);
    const QString refusal = editRefusal(write(bytes));
    QCOMPARE(refusal.startsWith(u"Only tabular reports have properties."), refused);
    QCOMPARE(refusal.isEmpty(), !refused);
}

QTEST_APPLESS_MAIN(tst_page_properties)
#include "tst_page_properties.moc"
