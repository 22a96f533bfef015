#include "definitions/tabular_definition.h"
#include "platform/composer/page_composer.h"
#include "platform/grid/data_control.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"
#include "support/canned_driver.h"
#include "support/document_dump.h"
#include "support/recording_host.h"
#include "support/suite.h"
#include "tabular/getrs.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QString kConnection = QStringLiteral("canned");

/// One run of getrs over canned rows (fields: key, group, minutes, colour, note).
class Bench
{
public:
    explicit Bench(const QByteArray &definition, QList<QStringList> rows = {})
        : m_path(m_folder.filePath(QStringLiteral("report.rpt")))
    {
        rewrite(definition);
        const QStringList fields {QStringLiteral("key"), QStringLiteral("grp"), QStringLiteral("minutes"),
            QStringLiteral("colour"), QStringLiteral("note")};
        auto owned = std::make_unique<test::CannedDriver>(fields, std::move(rows));
        driver = owned.get();
        state.gConn = std::make_unique<Connection>(kConnection, std::move(owned));
        state.gDBName = QStringLiteral("Clinic");
        adodc1.setConnectionString(kConnection);
    }

    void rewrite(const QByteArray &definition)
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(definition);
    }

    BodyResult run()
    {
        TabularDefinition read(m_path);
        vp.reset();
        vp.startDocument({});
        const TabularRun body {state, host, vp, adodc1, read, style, timings};
        return getrs(body, read.spacing(), read.heading());
    }

    /// The pages' blocks, pages separated by "--".
    QStringList lines()
    {
        run();
        document = vp.endDocument();
        QStringList all;
        for (int page = 0; page < document->pageCount(); ++page) {
            if (page > 0)
                all += QStringLiteral("--");
            all += test::blockTexts(*document, page);
        }
        return all;
    }

    Reportr state;
    test::RecordingHost host;
    test::CannedDriver *driver = nullptr;
    PageComposer vp;
    DataControl adodc1;
    RunTimings timings;
    ValueTextStyle style;
    DocumentPtr document;

private:
    QTemporaryDir m_folder;
    QString m_path;
};

const QByteArray kPlain = "[Data Source]\nRecordSource1=SELECT 1\nFields=2\n"
                          "[Columns]\nFields=0|4\nHeading=Key|Note;\nSpacing=2000|3000;\nPageColumns=1\n";

QByteArray grouped(const QByteArray &more)
{
    return kPlain + "[Group]\nField=1\n" + more;
}

QStringList row(const char *key, const char *group, const char *note = "")
{
    return {QString::fromUtf8(key), QString::fromUtf8(group), QStringLiteral("540"), QStringLiteral("192"), QString::fromUtf8(note)};
}

const QList<QStringList> kThreeGroups {row("1", "A"), row("2", "A"), row("3", "B"), row("4", "A")};

} // namespace

class tst_getrs : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void assemblesTheQuery_data();
    void assemblesTheQuery();
    void writesGroupsAndTotals_data();
    void writesGroupsAndTotals();
    void formatsCells_data();
    void formatsCells();
    void writesNotesBelowTheirRows();
    void startsAGroupOnANewPageWhenThePageIsFull_data();
    void startsAGroupOnANewPageWhenThePageIsFull();
    void runsTheQueryOnce();
    void aRefusedQueryWritesNothing();
    void reportsProgressAndStops();
    void readsFormatWordsAfreshForEachRecord();
    void raisesRunTimeFaults_data();
    void raisesRunTimeFaults();
};

void tst_getrs::assemblesTheQuery_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("query");

    const auto row = [](const char *name, const char *source, const char *query) {
        QTest::newRow(name) << "[Data Source]\n" + QByteArray(source) + "\n[Columns]\nPageColumns=1\n" << QString::fromLatin1(query);
    };
    row("one piece ends in a blank", "RecordSource1=SELECT a", "SELECT a ");
    row("two pieces, each rewritten", "RecordSource1=SELECT a FROM CorvaneDB.dbo.x\nRecordSource2=JOIN [CorvaneDB].dbo.y",
        "SELECT a FROM Clinic.dbo.x JOIN [Clinic].dbo.y ");
    row("placeholders in another case stay", "RecordSource1=corvanedb.dbo.x", "corvanedb.dbo.x ");
    row("the second database stays when there is none", "RecordSource1=HalvernDB.dbo.x", "HalvernDB.dbo.x ");
    row("dates as shown, each time", "RecordSource1='{DATE1}' '{DATE2}' {DATE1}\nGetDates=True",
        "'11/01/2026' '11/30/2026' 11/01/2026 ");
    row("dates only for exactly True", "RecordSource1=d='{DATE1}'\nGetDates=true", "d='{DATE1}' ");
    row("the patient", "RecordSource1=id=<PID>\nGetPatient=True", "id=77 ");
    row("the patient only when asked", "RecordSource1=id=<PID>", "id=<PID> ");
}

void tst_getrs::assemblesTheQuery()
{
    QFETCH(QByteArray, source);
    Bench bench(source);
    bench.state.gPatientID = QStringLiteral("77");
    bench.host.setDates(QDate(2026, 11, 1), QDate(2026, 11, 30));
    bench.run();
    QTEST(bench.driver->queries.value(0), "query");
    QCOMPARE(bench.adodc1.recordSource(), bench.driver->queries.value(0));
}

void tst_getrs::writesGroupsAndTotals_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QList<QStringList>>("rows");
    QTest::addColumn<QString>("lines"); // blocks joined by "/", pages by "--"

    const QByteArray totals = "SubTotal=-1\nGrandTotal=-1\n";
    const auto add = [](const char *name, const QByteArray &definition, const QList<QStringList> &rows, const char *lines) {
        QTest::newRow(name) << definition << rows << QString::fromLatin1(lines);
    };
    add("no group, no caption, no total", kPlain, kThreeGroups, "1|/2|/3|/4|");
    add("the same value again is a group of its own", grouped({}), kThreeGroups, "/A/1|/2|//B/3|//A/4|");
    add("without page breaks one total counts all", grouped(totals), kThreeGroups,
        "/A/1|/2|//B/3|//A/4|//Total|4///Grand Total|4");
    add("with page breaks each group has its total", grouped(totals + "[Layout]\nPageBreak=Y\n"), kThreeGroups,
        "/A/1|/2|//Total|2/--/Key|Note///B/3|//Total|1/--/Key|Note///A/4|//Total|1///Grand Total|4");
    add("page break is exactly Y", grouped("[Layout]\nPageBreak=y\n"), kThreeGroups, "/A/1|/2|//B/3|//A/4|");
    add("the grand total needs the group totals", grouped("GrandTotal=-1\n"), kThreeGroups, "/A/1|/2|//B/3|//A/4|");
    add("only -1 switches a total on", grouped("SubTotal=True\nGrandTotal=-1\n"), kThreeGroups, "/A/1|/2|//B/3|//A/4|");
    add("a grand total of another number prints but never counts", grouped("SubTotal=-1\nGrandTotal=2\n"), kThreeGroups,
        "/A/1|/2|//B/3|//A/4|//Total|4///Grand Total|0");
    add("field 0 is no group and has no totals", kPlain + "[Group]\nField=0\n" + totals, kThreeGroups, "1|/2|/3|/4|");
    add("an empty first group has its caption but breaks no page", grouped("[Layout]\nPageBreak=Y\n"),
        {row("1", ""), row("2", "B"), row("3", "(null)")}, "//1|//B/2|/--/Key|Note////3|");
    add("no rows still print totals of 0", grouped(totals), {}, "/Total|0///Grand Total|0");
}

void tst_getrs::writesGroupsAndTotals()
{
    QFETCH(QByteArray, definition);
    QFETCH(QList<QStringList>, rows);
    Bench bench(definition, rows);
    QTEST(bench.lines().join(u'/'), "lines");
}

void tst_getrs::formatsCells_data()
{
    QTest::addColumn<QByteArray>("columns");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("line");

    const auto add = [](const char *name, const char *columns, const QStringList &values, const char *line) {
        QTest::newRow(name) << QByteArray(columns) << values << QString::fromLatin1(line);
    };
    const QStringList usual {QStringLiteral("k"), QStringLiteral("g"), QStringLiteral("779"), QStringLiteral("126322256"), QStringLiteral("n")};
    const char *formats = "Fields=3\n[Columns]\nFields=02|3|0\nSpacing=2000|2000|2000;\n[ColumnFormat]\n2=MinToTime\n3=ColorToStatus\n";
    add("clock and status words", formats, usual, "0:59 PM|Tentative|k");
    add("a null is an empty cell in every format", formats,
        {QStringLiteral("(null)"), {}, QStringLiteral("(null)"), QStringLiteral("(null)"), {}}, "||");
    add("another word shows the text", "Fields=1\n[Columns]\nFields=2\nSpacing=2000;\n[ColumnFormat]\n2=mintotime\n", usual, "779");
    add("semicolons become commas", "Fields=1\n[Columns]\nFields=0\nSpacing=2000;\n",
        {QStringLiteral("a;b;c"), {}, {}, {}, {}}, "a,b,c");
    add("a bar splits the cell and shifts the rest", "Fields=2\n[Columns]\nFields=0|4\nSpacing=1000|1000|1000;\n",
        {QStringLiteral("a|b"), {}, {}, {}, QStringLiteral("n")}, "a|b|n");
    add("missing items read as field 0", "Fields=2\n[Columns]\nFields=4\nSpacing=1000|1000;\n", usual, "n|k");
}

void tst_getrs::formatsCells()
{
    QFETCH(QByteArray, columns);
    QFETCH(QStringList, values);
    Bench bench("[Data Source]\nRecordSource1=x\n" + columns, {values});
    QTEST(bench.lines().join(u'/'), "line");
}

void tst_getrs::writesNotesBelowTheirRows()
{
    Bench bench(kPlain + "[SubColumn]\nField=4\nIndent=720\n", {row("1", "A", "note one"), row("2", "A", "(null)"), row("3", "A", "x")});
    QCOMPARE(bench.lines().join(u'/'), QStringLiteral("1|note one/note one//2|//3|x/x/"));
    const Page &page = bench.document->pages.front();
    QCOMPARE(page.blockRuns(1)[0].x, 1440 + 720);
    QCOMPARE(page.blockRuns(0)[0].x, 1440 + 80);
}

void tst_getrs::startsAGroupOnANewPageWhenThePageIsFull_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<int>("limit");
    QTest::newRow("portrait") << QByteArray("[Layout]\nOrientation=P\n") << 12960;
    QTest::newRow("exactly L is landscape") << QByteArray("[Layout]\nOrientation=L\n") << 9500;
    QTest::newRow("lower case is portrait") << QByteArray("[Layout]\nOrientation=l\n") << 12960;
}

void tst_getrs::startsAGroupOnANewPageWhenThePageIsFull()
{
    QFETCH(QByteArray, layout);
    QFETCH(int, limit);
    QList<QStringList> rows;
    for (int i = 0; i < 60; ++i)
        rows += row("k", QByteArray::number(i / 3).constData());
    Bench bench(grouped(layout), rows);
    bench.lines();
    qint32 lastCaption = 0;
    for (const Block &block : bench.document->pages.front().blocks) {
        if (block.kind == BlockKind::Caption)
            lastCaption = block.top;
    }
    QVERIFY(lastCaption > limit - 1000);
    QVERIFY(lastCaption < limit + 400); // a blank line comes before the caption
    QCOMPARE(test::blockTexts(*bench.document, 1).first(3), QStringList({QStringLiteral("Key|Note"), QString(), QString()}));
    QCOMPARE(bench.document->outline.size(), 20u);
    QCOMPARE(bench.document->outline.back().page, bench.document->pageCount() - 1);
}

void tst_getrs::runsTheQueryOnce()
{
    Bench bench(kPlain, kThreeGroups);
    bench.run();
    QCOMPARE(bench.driver->queries.size(), 1);
    QCOMPARE(bench.adodc1.rowset()->rowCount(), 4);
    QCOMPARE(bench.timings.rows, 4);
}

void tst_getrs::aRefusedQueryWritesNothing()
{
    Bench bench("[Data Source]\nRecordSource1=SELECT fail\nFields=1\n[Columns]\nSpacing=2000;\n");
    QCOMPARE(bench.run(), BodyResult::QueryRefused);
    QCOMPARE(bench.host.messages, QStringList(QStringLiteral("SQL Error|48|Error in SQL Query. no such table: fail")));
    QVERIFY(bench.vp.endDocument()->pages[0].blocks.empty());
    Bench blank("[Data Source]\nRecordSource1=  \n");
    QCOMPARE(blank.run(), BodyResult::QueryRefused);
    QCOMPARE(blank.host.messages, QStringList(QStringLiteral("SQL Error|48|Error in SQL Query. The query is empty.")));
}

void tst_getrs::reportsProgressAndStops()
{
    QList<int> seen;
    Bench bench(kPlain, kThreeGroups);
    bench.host.onProgress = [&](int percent) { seen += percent; };
    bench.run();
    QCOMPARE(seen, QList<int>({0, 25, 50, 75, 100, 0}));
    bench.host.onProgress = [&](int percent) { bench.host.stop = percent == 50; };
    QVERIFY_EXCEPTION_THROWN(bench.run(), RunStopped);
}

void tst_getrs::readsFormatWordsAfreshForEachRecord()
{
    Bench bench(kPlain, kThreeGroups);
    bench.host.onProgress = [&](int percent) {
        if (percent == 50)
            bench.rewrite(kPlain + "[ColumnFormat]\n0=MinToTime\n");
    };
    QCOMPARE(bench.lines(), QStringList({QStringLiteral("1|"), QStringLiteral("2|"), QStringLiteral("12:03 AM|"), QStringLiteral("12:04 AM|")}));
}

void tst_getrs::raisesRunTimeFaults_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("number");

    const QByteArray one = "[Data Source]\nRecordSource1=x\nFields=1\n[Columns]\nSpacing=2000;\n";
    QTest::newRow("a minute that is no number") << one + "Fields=0\n[ColumnFormat]\n0=MinToTime\n" << QStringLiteral("nine") << 13;
    QTest::newRow("a minute beyond 16 bits") << one + "Fields=0\n[ColumnFormat]\n0=MinToTime\n" << QStringLiteral("32768") << 6;
    QTest::newRow("a colour beyond 32 bits") << one + "Fields=0\n[ColumnFormat]\n0=ColorToStatus\n" << QStringLiteral("2147483648") << 6;
    QTest::newRow("an ordinal beyond 16 bits") << one + "Fields=40000\n" << QStringLiteral("1") << 6;
    QTest::newRow("a field count beyond 16 bits") << QByteArray("[Data Source]\nRecordSource1=x\nFields=99999\n") << QStringLiteral("1") << 6;
    QTest::newRow("a group field beyond 16 bits") << one + "[Group]\nField=70000\n" << QStringLiteral("1") << 6;
    QTest::newRow("an ordinal beyond the fields") << one + "Fields=5\n" << QStringLiteral("1") << 3265;
    QTest::newRow("a note field beyond the fields") << one + "[SubColumn]\nField=9\n" << QStringLiteral("1") << 3265;
}

void tst_getrs::raisesRunTimeFaults()
{
    QFETCH(QByteArray, definition);
    QFETCH(QString, key);
    QFETCH(int, number);
    Bench bench(definition, {{key, QStringLiteral("g"), QStringLiteral("1"), QStringLiteral("1"), QString()}});
    int found = 0;
    try {
        bench.run();
    } catch (const RunTimeFault &fault) {
        found = fault.number();
    } catch (const DatabaseError &error) {
        found = error.number();
    }
    QCOMPARE(found, number);
}

QTEST_MAIN(tst_getrs)
#include "tst_getrs.moc"
