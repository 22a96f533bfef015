// One broken definition for every kind of finding, the definitions that have none, and the reference.

#include "definitions/checker/definition_check.h"
#include "session/startup.h"
#include "shared/reportr.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <set>

using namespace corvane;

namespace {

using enum FindingKind;

const QByteArray kSound = R"([Data Source]
RecordSource1=SELECT a, b, c, d FROM CorvaneDB.dbo.t
RecordSource2=WHERE d BETWEEN '{DATE1}' AND '{DATE2}' AND p = '<PID>'
GetDates=True
GetPatient=True
Fields=2
Database=
[Columns]
Fields=0|1
Heading=First|Second;
Spacing=2000|>1000;
PageColumns=1
Font=Arial;9
Fontsize=8.5
[Group]
Field=2
SubTotal=-1
GrandTotal=-1
[SubColumn]
Field=3
Indent=720
[ColumnFormat]
1=MinToTime
[Layout]
Orientation=P
PageBreak=Y
[Header]
LText={Date}
[Footer]
CText=Page %d
)";

QString docs()
{
    QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/docs/definition-files.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The fragment of a heading, as pages of this kind are linked to.
QString fragmentOf(const QString &heading)
{
    QString fragment = heading.toLower();
    return fragment.remove(QRegularExpression(QStringLiteral("[^a-z0-9 -]"))).replace(u' ', u'-');
}

QStringList lines(const QString &file, const std::vector<Finding> &findings)
{
    QStringList text;
    for (const Finding &finding : findings)
        text += findingLine(file, finding);
    return text;
}

} // namespace

class tst_definition_check : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatIsWrong_data();
    void findsWhatIsWrong();
    void findsWhatIsWrongWithFiles_data();
    void findsWhatIsWrongWithFiles();
    void findsWhatTheDatabaseRefuses_data();
    void findsWhatTheDatabaseRefuses();
    void knowsTheSecondDatabase();
    void saysWhyAFileIsNotLookedAt();
    void looksAtNoDevice();
    void leavesSoundDefinitionsAlone_data();
    void leavesSoundDefinitionsAlone();
    void demoDefinitionsHaveNoFinding();
    void examplesOfTheReferenceHaveNoFinding();
    void everyKindHasARowAndAnAnchor();

private:
    std::vector<Finding> check(const QByteArray &bytes)
    {
        const QString path = m_folder.filePath(QStringLiteral("t.rpt"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("t.rpt cannot be written");
        file.close();
        return checkDefinition(path);
    }
    void compare(const std::vector<Finding> &findings)
    {
        QFETCH(FindingKind, kind);
        QFETCH(QString, line);
        m_seen.insert(kind);
        QCOMPARE(lines(QStringLiteral("t.rpt"), findings).join(u'\n'), line);
        QVERIFY(std::ranges::any_of(findings, [&](const Finding &finding) { return finding.kind == kind; }));
    }
    /// The demo clinic's connections; nobody needs to be logged on for them.
    Reportr connected()
    {
        Reportr state;
        state.programFolder = m_demo.path();
        test::RecordingHost host;
        if (connectDatabases(state, host) != StartState::Connected)
            qFatal("no connection");
        return state;
    }

    QTemporaryDir m_folder;
    test::DemoFolder m_demo {20};
    std::set<FindingKind> m_seen;
};

void tst_definition_check::findsWhatIsWrong_data()
{
    QTest::addColumn<FindingKind>("kind");
    QTest::addColumn<QByteArray>("sound"); // what the definition has
    QTest::addColumn<QByteArray>("broken");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *claim, FindingKind kind, const QByteArray &sound, const QByteArray &broken, const char *line) {
        QTest::newRow(claim) << kind << sound << broken << QString::fromUtf8(line);
    };
    row("a misspelt section", UnknownSection, "[Layout]\n", "[Layuot]\n",
        "t.rpt:24:1: warning: There is no section [Layuot]; nothing in it is looked at. Did you mean [Layout]?");
    row("a section of nobody's", UnknownSection, "[Layout]\n", "[Colours]\n",
        "t.rpt:24:1: warning: There is no section [Colours]; nothing in it is looked at. The sections are [ColumnFormat], [Data Source], [Columns], [Group], [SubColumn], [Layout], [Header], [Footer].");
    row("a misspelt key", UnknownKey, "GetDates=", "GetDate=True\nGetDates=",
        "t.rpt:4:1: warning: [Data Source] has no key \"GetDate\"; the line is not looked at. Did you mean GetDates?");
    row("a key in the wrong section", UnknownKey, "PageColumns=1", "PageColumns=1\nOrientation=L",
        "t.rpt:13:1: warning: [Columns] has no key \"Orientation\"; the line is not looked at. It belongs to [Layout].");
    row("a key of nobody's", UnknownKey, "[Header]\n", "[Header]\nLogo=x\n",
        "t.rpt:28:1: warning: [Header] has no key \"Logo\"; the line is not looked at. The keys of [Header] are LText, CText, RText.");
    row("a section once more", RepeatedSection, "[Header]\n", "[columns]\nFontsize=9\n[Header]\n",
        "t.rpt:27:1: warning: There is a section [columns] already; nothing in this one is looked at. Move its keys to the first one, in line 8.");
    row("a key once more", RepeatedKey, "Fontsize=8.5", "Fontsize=8.5\nFONTSIZE=9",
        "t.rpt:15:1: warning: FONTSIZE of [Columns] stands here once more; only the first one counts. Remove this line, or the one in line 14.");
    row("a line without equals sign", StrayLine, "[Header]\n", "# a remark\n[Header]\n",
        "t.rpt:27:1: warning: \"# a remark\" is neither a section nor a key of one; the line is not looked at. A key needs an equals sign and a section above it; a comment starts with a semicolon.");
    row("an escape sequence", StrayLine, "[Header]\n", "\033[2Jx\n[Header]\n",
        "t.rpt:27:1: warning: \"\uFFFD[2Jx\" is neither a section nor a key of one; the line is not looked at. A key needs an equals sign and a section above it; a comment starts with a semicolon.");
    row("a key before the first section", StrayLine, "[Data Source]\n", "Fields=2\n[Data Source]\n",
        "t.rpt:1:1: warning: \"Fields=2\" is neither a section nor a key of one; the line is not looked at. A key needs an equals sign and a section above it; a comment starts with a semicolon.");
    row("a blank behind a value", BlanksAround, "PageBreak=Y", "PageBreak=Y ",
        "t.rpt:26:12: warning: Blanks around the value of PageBreak of [Layout] belong to the value. Write \"PageBreak=Y\" without them.");
    row("a blank before a value", BlanksAround, "PageBreak=Y", "PageBreak = Y",
        "t.rpt:26:12: warning: Blanks around the value of PageBreak of [Layout] belong to the value. Write \"PageBreak=Y\" without them.");
    row("blanks around a key", BlanksAround, "Orientation=P", "  Orientation =P",
        "t.rpt:25:3: warning: There are blanks around the key Orientation; they are passed over. Write the key at the start of its line, and the equals sign behind it.");
    row("a value beyond its length", ValueCut, "LText={Date}", "LText=" + QByteArray(8010, 'x'),
        "t.rpt:28:8006: error: The value of LText of [Header] has 8010 characters; what stands behind character 7999 is not read. Write a shorter one.");
    row("another case of True", MisspeltValue, "PageBreak=Y", "PageBreak=y",
        "t.rpt:26:11: warning: \"y\" is no value of PageBreak: groups follow each other. Write Y or N, in exactly this spelling.");
    row("another word for on", MisspeltValue, "PageBreak=Y", "PageBreak=True",
        "t.rpt:26:11: warning: \"True\" is no value of PageBreak: groups follow each other. Write Y or N, in exactly this spelling.");
    row("another database", MisspeltValue, "Database=", "Database=B",
        "t.rpt:7:10: warning: \"B\" is no value of Database: the query runs on the main database. Write A or leave the value out, in exactly this spelling.");
    row("no query", MissingKey, "RecordSource1=SELECT a, b, c, d FROM CorvaneDB.dbo.t\n", "",
        "t.rpt:1:1: error: RecordSource1 of [Data Source] is missing, so there is no query. Write the query there, on one line.");
    row("no count of columns", MissingKey, "Fields=2\n", "",
        "t.rpt:1:1: error: Fields of [Data Source] is missing, so rows have no cells. Write the number of printed columns.");
    row("no widths", MissingKey, "Spacing=2000|>1000;\n", "",
        "t.rpt:8:1: error: Spacing of [Columns] is missing. Write one item for each printed column.");
    row("a word for a number", NoNumber, "Fields=0|1", "Fields=b|1",
        "t.rpt:9:8: error: A field number in Fields of [Columns] is \"b\", which is read as 0. Write digits alone.");
    row("an empty item", NoNumber, "Fields=0|1", "Fields=|1",
        "t.rpt:9:8: error: A field number in Fields of [Columns] is empty, which is read as 0. Write digits alone.");
    row("a unit behind a number", NumberWithMore, "Fontsize=8.5", "Fontsize=8.5pt",
        "t.rpt:14:10: warning: Fontsize of [Columns] is \"8.5pt\", which is read as 8.5. Write digits alone.");
    row("a number with decimals", NumberWithMore, "PageColumns=1", "PageColumns=1.2",
        "t.rpt:12:13: warning: PageColumns of [Columns] is \"1.2\", which is read as 1. Write a whole number.");
    row("a negative field", NumberTooSmall, "Fields=0|1", "Fields=-1|1",
        "t.rpt:9:8: error: A field number in Fields of [Columns] is -1. Write a number of 0 or more.");
    row("no newspaper column", NumberTooSmall, "PageColumns=1", "PageColumns=0",
        "t.rpt:12:13: error: PageColumns of [Columns] is 0. Write a number of 1 or more.");
    row("an indent to the left", NumberTooSmall, "Indent=720", "Indent=-720",
        "t.rpt:21:8: error: Indent of [SubColumn] is -720 and is taken for 0. Write a number of 0 or more.");
    row("more than 16 bits", NumberTooLarge, "Field=3", "Field=70000",
        "t.rpt:20:7: error: Field of [SubColumn] is \"70000\", and the report stops with \"Overflow\". Write a number between -32768 and 32767.");
    row("notes of field 0", GroupFieldZero, "Field=3", "Field=0",
        "t.rpt:20:7: warning: Field of [SubColumn] is 0, which means no notes. Put another field before the one that you want in the query, and write its number; without notes leave the value out.");
    row("a word for a switch", TotalSwitch, "GrandTotal=-1", "GrandTotal=True",
        "t.rpt:18:12: warning: \"True\" is no value of GrandTotal: nothing is counted for \"Grand Total\". Write -1 to switch it on, 0 to switch it off.");
    row("one for a switch", TotalSwitch, "GrandTotal=-1", "GrandTotal=1",
        "t.rpt:18:12: warning: \"1\" is no value of GrandTotal: nothing is counted for \"Grand Total\". Write -1 to switch it on, 0 to switch it off.");
    row("totals without a group", TotalWithoutGroup, "Field=2\nSubTotal=-1\nGrandTotal=-1", "SubTotal=-1",
        "t.rpt:16:10: warning: SubTotal prints nothing, because there are no groups. Name the group field in Field of [Group], 1 or more.");
    row("a grand total alone", GrandTotalAlone, "SubTotal=-1", "SubTotal=0",
        "t.rpt:18:12: warning: GrandTotal prints nothing while SubTotal is off. Write SubTotal=-1 too.");
    row("a huge font", FontSize, "Font=Arial;9", "Font=Arial|200",
        "t.rpt:13:12: error: The size in Font of [Columns] is 200 points, and the report stops. Write a size between 1 and 144.");
    row("a negative font size", FontSize, "Fontsize=8.5", "Fontsize=-9",
        "t.rpt:14:10: error: Fontsize of [Columns] is -9 points, and the report stops. Write a size between 1 and 144.");
    row("a left footer text", FooterLeftText, "CText=Page %d", "LText=For the front desk",
        "t.rpt:30:7: warning: The left footer text \"For the front desk\" is kept but not printed; the database's name stands there. Move it to CText or RText.");
    row("a text around the date", FieldWord, "LText={Date}", "LText=Printed {Date}",
        "t.rpt:28:20: warning: LText of [Header] holds a \"}\": date and time are printed in place of the whole text. Write {Date} alone, or the text without braces.");
    row("the date in another case", FieldWord, "LText={Date}", "LText={date}",
        "t.rpt:28:12: warning: LText of [Header] holds a \"}\": date and time are printed in place of the whole text. Write {Date} alone, or the text without braces.");
    row("a bar in a page text", BarInText, "CText=Page %d", "CText=Page %d|of all",
        "t.rpt:30:14: warning: What stands behind the bar in CText of [Footer] moves to the next part of the line. Write the text without a bar.");
    row("a list that is too short", ListLengths, "Heading=First|Second;", "Heading=First;",
        "t.rpt:10:9: error: Heading of [Columns] has 1 item, but Fields of [Data Source] is 2: columns are left without one. Write as many items as there are columns.");
    row("a list that is too long", ListLengths, "Spacing=2000|>1000;", "Spacing=2000|>1000|500;",
        "t.rpt:11:9: error: Spacing of [Columns] has 3 items, but Fields of [Data Source] is 2: the surplus has no column. Write as many items as there are columns.");
    row("a count that fits no list", ListLengths, "Fields=2\n", "Fields=3\n",
        "t.rpt:6:8: error: Fields of [Data Source] is 3, but each list of [Columns] has 2 items. Write Fields=2.");
    row("no end mark", EndMark, "Spacing=2000|>1000;", "Spacing=2000|>1000",
        "t.rpt:11:19: warning: Spacing of [Columns] does not end in a semicolon. Put one \";\" at its very end.");
    row("an end mark before the end", EndMark, "Heading=First|Second;", "Heading=First;|Second;",
        "t.rpt:10:14: warning: Heading of [Columns] holds a semicolon before its end. Only the one at the very end may stand there.");
    row("an end mark behind fields", EndMark, "Fields=0|1", "Fields=0|1;",
        "t.rpt:9:11: warning: Fields of [Columns] holds a semicolon, which has no place there. Write the field numbers with bars between them and nothing behind the last.");
    row("a width that is no number", ColumnWidth, "2000|", "2 inches|",
        "t.rpt:11:9: error: In Spacing of [Columns] \"2 inches\" is no column width, and the report stops. Write a width in twips, 1440 to the inch, from 1 to 32760; \">\" before it aligns to the right.");
    row("a width below nothing", ColumnWidth, "2000|", "-2000|",
        "t.rpt:11:9: error: In Spacing of [Columns] the column width -2000 is not above 0, and the report stops. Write a width in twips, 1440 to the inch, from 1 to 32760; \">\" before it aligns to the right.");
    row("a width beyond 16 bits", ColumnWidth, "2000|", "40000|",
        "t.rpt:11:9: error: In Spacing of [Columns] the column width 40000 is beyond 32760 twips (22.75 inches), and the report stops. Write a width in twips, 1440 to the inch, from 1 to 32760; \">\" before it aligns to the right.");
    row("columns beyond the page", PageWidth, "2000|", "10000|",
        "t.rpt:11:9: warning: The columns take 11000 twips, more than the page's 10800 twips (7.5 inches), and are narrowed. Write smaller widths, or Orientation=L.");
    row("newspaper columns beyond the page", PageWidth, "PageColumns=1", "PageColumns=4",
        "t.rpt:11:9: warning: 4 newspaper columns take 13080 twips, more than the page's 10800 twips (7.5 inches), and are left out. Write smaller widths or fewer PageColumns.");
    row("a leading zero", FormatKey, "1=MinToTime", "01=MinToTime",
        "t.rpt:23:1: warning: The key 01 is not looked at, because of the zero before the number. Write 1.");
    row("a format for a word", FormatKey, "1=MinToTime", "Time=MinToTime",
        "t.rpt:23:1: warning: \"Time\" is no field number; the line is not looked at. The keys of [ColumnFormat] are the numbers in Fields of [Columns].");
    row("a format in another case", FormatWord, "1=MinToTime", "1=mintotime",
        "t.rpt:23:3: warning: There is no format \"mintotime\"; field 1 is shown as text. Did you mean MinToTime?");
    row("a format of nobody's", FormatWord, "1=MinToTime", "1=Currency",
        "t.rpt:23:3: warning: There is no format \"Currency\"; field 1 is shown as text. Write MinToTime or ColorToStatus, or remove the line.");
    row("a format for a field that is not printed", FormatUnused, "1=MinToTime", "3=MinToTime",
        "t.rpt:23:1: warning: Field 3 has a format but is not printed. Name it in Fields of [Columns], or remove the line.");
    row("a token in another case", UnreplacedToken, "'{DATE2}'", "'{date2}'",
        "t.rpt:3:46: error: Nothing replaces {date2} in this spelling. Write {DATE2}.");
    row("a third date", UnreplacedToken, "'{DATE2}'", "'{DATE3}'",
        "t.rpt:3:46: error: Nothing replaces {DATE3}. The date tokens are {DATE1} and {DATE2}.");
    row("a patient that is not asked for", UnreplacedToken, "GetPatient=True", "GetPatient=False",
        "t.rpt:3:64: error: Nothing replaces <PID> while GetPatient is not True. Write GetPatient=True.");
    row("a patient in another case", UnreplacedToken, "<PID>", "<PID> <pid>",
        "t.rpt:3:70: error: Nothing replaces <pid> in this spelling. Write <PID>.");
    row("a designed report's token", UnreplacedToken, "'{DATE2}'", "{DATE*2}",
        "t.rpt:3:45: error: Nothing replaces {DATE*2}: it is a token of designed reports. A tabular report has {DATE1}, {DATE2} and <PID>.");
    row("a database in another case", UnreplacedToken, "CorvaneDB.dbo", "corvanedb.dbo",
        "t.rpt:2:38: error: No database's name is put in for corvanedb.dbo. Write CorvaneDB.dbo. before the table, in exactly this spelling.");
    row("a database without its owner", UnreplacedToken, "CorvaneDB.dbo.t", "CorvaneDB..t",
        "t.rpt:2:38: error: No database's name is put in for CorvaneDB. Write CorvaneDB.dbo. before the table, in exactly this spelling.");
    row("dates that the query does not use", UnusedAnswer, "WHERE d BETWEEN '{DATE1}' AND '{DATE2}' AND", "WHERE",
        "t.rpt:4:10: warning: A range of dates is asked for, but the query holds neither {DATE1} nor {DATE2}. Put them into the query, or write GetDates=False.");
    row("a patient that the query does not use", UnusedAnswer, " AND p = '<PID>'", "",
        "t.rpt:5:12: warning: A patient is asked for, but the query does not hold <PID>. Put it into the query, or write GetPatient=False.");
    row("a quoted text over both pieces", OpenQuote, "CorvaneDB.dbo.t\n", "CorvaneDB.dbo.t WHERE e = 'not\n",
        "t.rpt:2:64: error: The quoted text that starts here does not end in RecordSource1; a blank gets into it before RecordSource2. Split the query between two words.");
    row("a quoted text without end", OpenQuote, "'<PID>'", "'<PID>",
        "t.rpt:3:63: error: The quoted text that starts here does not end. Put a ' at its end.");
    row("the second database for the main one's tables", OtherDatabase, "Database=", "Database=A",
        "t.rpt:7:10: warning: Database is A, the second database, but the query names tables of CorvaneDB alone. Leave Database out.");
    row("the main database for the second one's tables", OtherDatabase, "CorvaneDB", "HalvernDB",
        "t.rpt:7:10: warning: The query names tables of HalvernDB alone, but runs on the main database. Write Database=A.");
}

void tst_definition_check::findsWhatIsWrong()
{
    QFETCH(QByteArray, sound);
    QFETCH(QByteArray, broken);
    QCOMPARE(kSound.count(sound), 1);
    compare(check(QByteArray(kSound).replace(sound, broken)));
}

void tst_definition_check::findsWhatIsWrongWithFiles_data()
{
    QTest::addColumn<FindingKind>("kind");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *claim, FindingKind kind, const QByteArray &bytes, const QByteArray &line) {
        QTest::newRow(claim) << kind << bytes << QString::fromUtf8(line);
    };
    const QByteArray sound = kSound;
    row("nothing but a comment", EmptyFile, "; to be written\n",
        "t.rpt:1:1: error: The file is empty, comments aside. Start from a definition that works.");
    row("no byte at all", EmptyFile, "",
        "t.rpt:1:1: error: The file is empty, comments aside. Start from a definition that works.");
    row("a foreign text", NotTabular, "Dear Ann,\n",
        "t.rpt:1:1: error: PageColumns of [Columns] is missing, so the file is not taken for a tabular report. Write PageColumns=1.");
    row("no PageColumns", NotTabular, QByteArray(sound).replace("PageColumns=1\n", ""),
        "t.rpt:8:1: error: PageColumns of [Columns] is missing, so the file is not taken for a tabular report. Write PageColumns=1.");
    row("a text in UTF-16", NotText, QByteArray("\xff\xfe[\0C\0", 6),
        "t.rpt:1:1: error: The file is saved as UTF-16, which is not read. Save it as UTF-8 or in the system's code page (ANSI).");
    row("a NUL character", NotText, QByteArray(sound).replace("Page %d", QByteArray("Page\0 %d", 8)),
        "t.rpt:30:11: error: The file holds a NUL character here; nothing behind it is read. Remove it, or look whether it is the right file.");
    row("a designed report", FindingKind::DesignedReport, "<?xml version=\"1.0\"?>\n<Reports>\n  <Report name=\"a\" titel=\"b\"/>\n</Reports>\n",
        "t.rpt:3:20: error: Unknown attribute \"titel\" of <Report>; did you mean title?");
    QByteArray strays;
    for (int line = 31; line < 231; ++line)
        strays += "t.rpt:" + QByteArray::number(line) + ":1: warning: \"x\" is neither a section nor a key of one; the line is not looked at. "
            "A key needs an equals sign and a section above it; a comment starts with a semicolon.\n";
    row("hundreds of stray lines", TooManyFindings, sound + QByteArray("x\n").repeated(300),
        strays + "t.rpt:230:1: warning: There are more findings, which are not listed. Mend these first.");
    row("ten megabytes", LargeFile, sound + ';' + QByteArray(10'000'000, 'x'),
        "t.rpt:1:1: warning: The file has 9.5 MB; a definition has some kilobytes. Look whether it is the right file.");
}

void tst_definition_check::findsWhatIsWrongWithFiles()
{
    QFETCH(QByteArray, bytes);
    compare(check(bytes));
}

void tst_definition_check::findsWhatTheDatabaseRefuses_data()
{
    QTest::addColumn<FindingKind>("kind");
    QTest::addColumn<QByteArray>("sound");
    QTest::addColumn<QByteArray>("broken");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *claim, FindingKind kind, const QByteArray &sound, const QByteArray &broken, const char *line) {
        QTest::newRow(claim) << kind << sound << broken << QString::fromUtf8(line);
    };
    row("a column that is not there", QueryRefused, "last_name FROM", "nothing FROM", 
        "t.rpt:2:15: error: The database refuses the query: no such column: nothing. It was tried with 11/02/2026 for the dates and 0 for the patient.");
    row("a printed field that is not there", NoSuchField, "Fields=0|1", "Fields=2|1", 
        "t.rpt:5:8: error: A field number in Fields of [Columns] is 2, but the result has 2 fields, 0 to 1. Fields are counted from 0 in the order of the SELECT list.");
    row("a group field that is not there", NoSuchField, "[Group]\nField=1", "[Group]\nField=2", 
        "t.rpt:12:7: error: Field of [Group] is 2, but the result has 2 fields, 0 to 1. Fields are counted from 0 in the order of the SELECT list.");
    row("a note field that is not there", NoSuchField, "[SubColumn]\nField=1", "[SubColumn]\nField=2", 
        "t.rpt:14:7: error: Field of [SubColumn] is 2, but the result has 2 fields, 0 to 1. Fields are counted from 0 in the order of the SELECT list.");
    row("a format for a field that is not there", NoSuchField, "1=ColorToStatus", "2=ColorToStatus", 
        "t.rpt:16:1: warning: Field 2 has a format but is not printed. Name it in Fields of [Columns], or remove the line.\n"
        "t.rpt:16:1: error: A key of [ColumnFormat] is 2, but the result has 2 fields, 0 to 1. Fields are counted from 0 in the order of the SELECT list.");
}

void tst_definition_check::findsWhatTheDatabaseRefuses()
{
    QFETCH(QByteArray, sound);
    QFETCH(QByteArray, broken);
    const QByteArray list = test::providerList("[Group]\nField=1\n[SubColumn]\nField=1\n[ColumnFormat]\n1=ColorToStatus\n");
    QCOMPARE(list.count(sound), 1);
    m_demo.write(QStringLiteral("Reports/t.rpt"), QByteArray(list).replace(sound, broken));
    compare(checkDefinition(m_demo.report(QStringLiteral("t.rpt")), connected(), QStringLiteral("11/02/2026")));
}

void tst_definition_check::knowsTheSecondDatabase()
{
    m_seen.insert(NoSecondDatabase);
    const QString report = m_demo.report(QStringLiteral("Claims by payer.rpt"));
    const auto withSecond = [&](const SecondDatabase &second) { return lines(QStringLiteral("t.rpt"), checkDefinition(report, second)); };
    QCOMPARE(withSecond({QStringLiteral("Claims"), true}), QStringList());
    QCOMPARE(withSecond({QStringLiteral("Claims"), false}).join(u'\n'),
        QStringLiteral("t.rpt:8:10: error: Database is A, but there is no second database: the report stays empty, without a message. "
                       "Look at [HALVERN] of corvane.ini, or leave Database out."));
    const QStringList unnamed = withSecond({{}, true});
    QCOMPARE(unnamed.size(), 3); // one for each place of the placeholder
    QCOMPARE(unnamed.front(),
        QStringLiteral("t.rpt:3:168: error: No database's name is put in for HalvernDB, because corvane.ini names no second database. "
                       "Write its name in DataSource of [HALVERN] in corvane.ini."));
}

void tst_definition_check::saysWhyAFileIsNotLookedAt()
{
    m_seen.insert(UnreadableFile);
    const auto line = [](const QString &path) { return lines(QStringLiteral("f"), checkDefinition(path)).join(u'\n'); };
    const QString missing = QDir::toNativeSeparators(QStringLiteral("/no/such.rpt"));
    QCOMPARE(line(missing),
        QStringLiteral("f:1:1: error: The report definition \"%1\" cannot be read: there is no such file. Look at its name and at your rights to it.").arg(missing));
    QVERIFY(line(m_folder.path()).contains(QStringLiteral("is a folder, not a report definition")));
}

void tst_definition_check::looksAtNoDevice()
{
    QVERIFY(lines(QStringLiteral("f"), checkDefinition(QStringLiteral("/dev/zero"))).join(u'\n').contains(QStringLiteral("is no file")));
}

void tst_definition_check::leavesSoundDefinitionsAlone_data()
{
    QTest::addColumn<QByteArray>("sound");
    QTest::addColumn<QByteArray>("other");
    const auto row = [](const char *claim, const QByteArray &sound, const QByteArray &other) { QTest::newRow(claim) << sound << other; };
    row("as it is", "", "");
    row("names in any case", "[Columns]\nFields=", "[COLUMNS]\nfields=");
    row("line ends of another system", "\n[Layout]\n", "\r\n[Layout]\r\n");
    row("a quoted value", "PageBreak=Y", "PageBreak=\"Y\"");
    row("blanks in quotes are meant", "Font=Arial;9", "Font=\" Arial;9\"");
    row("a page text may stand in blanks", "CText=Page %d", "CText=  Page %d ");
    row("a query may end in a blank", "CorvaneDB.dbo.t\n", "CorvaneDB.dbo.t \n");
    row("columns of exactly the page's width", "2000|>1000", "9800|>1000");
    row("a doubled quote ends nothing", "p = '<PID>'", "p = '<PID>' AND q = 'it''s'");
    row("a quote in a comment opens nothing", "SELECT a,", "SELECT /* it's */ a,");
    row("a quote behind two hyphens opens nothing", "p = '<PID>'", "p = '<PID>' -- it's");
    row("a token of another kind", "SELECT a,", "SELECT {fn NOW()} AS a,");
    row("both databases in one query", "CorvaneDB.dbo.t\n", "CorvaneDB.dbo.t, [HalvernDB].dbo.u\n");
    row("no groups, no totals", "Field=2\nSubTotal=-1\nGrandTotal=-1\n", "");
}

void tst_definition_check::leavesSoundDefinitionsAlone()
{
    QFETCH(QByteArray, sound);
    QFETCH(QByteArray, other);
    QCOMPARE(lines(QStringLiteral("t.rpt"), check(sound.isEmpty() ? kSound : QByteArray(kSound).replace(sound, other))), QStringList());
}

void tst_definition_check::demoDefinitionsHaveNoFinding()
{
    const Reportr state = connected();
    const QDir folder(QStringLiteral(CORVANE_SOURCE_DIR "/demo/Reports"));
    const QStringList names = folder.entryList({QStringLiteral("*.rpt")});
    QVERIFY(names.size() >= 9);
    for (const QString &name : names)
        QCOMPARE(lines(name, checkDefinition(folder.filePath(name), state, QStringLiteral("11/02/2026"))), QStringList());
}

/// The examples of the page's sections are one definition together; the complete example is another.
void tst_definition_check::examplesOfTheReferenceHaveNoFinding()
{
    QString together;
    QString complete;
    QString heading;
    for (const QString &line : docs().split(u'\n')) {
        if (line.startsWith(u"## "))
            heading = line.sliced(3);
        else if (line.startsWith(u"    "))
            (heading == u"A complete example" ? complete : together) += line.sliced(4) + u'\n';
    }
    const Reportr state = connected();
    for (const QString &example : {together, complete}) {
        QVERIFY(example.contains(QStringLiteral("[Layout]")));
        m_demo.write(QStringLiteral("Reports/example.rpt"), example.toUtf8());
        const QString path = m_demo.report(QStringLiteral("example.rpt"));
        QCOMPARE(lines(QStringLiteral("example"), checkDefinition(path, state, QStringLiteral("11/02/2026"))), QStringList());
    }
}

/// Runs last: the rows before it say which kinds they had.
void tst_definition_check::everyKindHasARowAndAnAnchor()
{
    QStringList fragments;
    for (const QString &line : docs().split(u'\n')) {
        if (line.startsWith(u"### "))
            fragments += fragmentOf(line.sliced(4));
    }
    for (int kind = 0; kind < kFindingKinds; ++kind) {
        const QString anchor = anchorOf(FindingKind(kind));
        QVERIFY2(m_seen.contains(FindingKind(kind)), qPrintable(anchor + QStringLiteral(" has no row")));
        QVERIFY2(fragments.count(anchor) == 1, qPrintable(anchor + QStringLiteral(" is no heading of the reference")));
    }
}

QTEST_GUILESS_MAIN(tst_definition_check)
#include "tst_definition_check.moc"
