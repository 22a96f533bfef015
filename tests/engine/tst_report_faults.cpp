// What is wrong with a file ends in one sentence with its place.

#include "engine/report_file.h"
#include "platform/engine/report_control.h"
#include "platform/messages/system_words.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QByteArray kStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports>\n";

/// The text stands in line 4.
QByteArray inReport(const QByteArray &text)
{
    return kStart + "<Report name=\"R\">\n" + text + "\n</Report>\n</Reports>\n";
}

/// The text stands in line 4; there are styles "Body" and "Money" and a group "patient".
QByteArray inSection(const QByteArray &text)
{
    return kStart
        + "<Report name=\"R\"><Styles><Style name=\"Body\"/><Style name=\"Money\"/></Styles>"
          "<Groups><Group name=\"patient\" on=\"[id]\"/></Groups><Section kind=\"detail\" "
          "height=\"1in\">\n"
        + text + "\n</Section></Report>\n</Reports>\n";
}

/// Fields one inch wide and a tenth high.
QByteArray field(const QByteArray &element, const QByteArray &attributes)
{
    return inSection("<" + element + " width=\"1in\" height=\"0.1in\" " + attributes + "/>");
}

QByteArray reportNamed(const QByteArray &name, const QByteArray &shown)
{
    return "<Report name=\"" + name + "\"><Section kind=\"detail\" height=\"1in\">"
        + (shown.isEmpty() ? shown
                           : "<Subreport width=\"1in\" height=\"1in\" report=\"" + shown + "\"/>")
        + "</Section></Report>\n";
}

QByteArray chainOfReports(int length)
{
    QByteArray reports = reportNamed("R", "R1");
    for (int i = 1; i <= length; ++i)
        reports += reportNamed("R" + QByteArray::number(i),
            i < length ? "R" + QByteArray::number(i + 1) : QByteArray());
    return kStart + reports + "</Reports>";
}

QByteArray chainOfStyles(int length)
{
    QByteArray styles = "<Style name=\"0\"/>";
    for (int i = 1; i <= length; ++i)
        styles += "<Style name=\"" + QByteArray::number(i) + "\" basedOn=\""
            + QByteArray::number(i - 1) + "\"/>";
    return inReport("<Styles>" + styles + "</Styles><Section kind=\"detail\" height=\"1in\"/>");
}

QString loadFault(const QString &fileName)
{
    ReportControl report;
    try {
        report.load(fileName, QStringLiteral("R"));
    } catch (const ReportError &error) {
        return report.isLoaded() ? QStringLiteral("still loaded") : error.description();
    }
    return QStringLiteral("no fault");
}

} // namespace

class tst_report_faults : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void faultHasItsSentence_data();
    void faultHasItsSentence();
    void pictureFaultHasItsSentence_data();
    void pictureFaultHasItsSentence();
    void pictureBehindALinkIsRefused();
    void fileThatCannotBeRead();

private:
    test::ReportFolder m_folder;
};

void tst_report_faults::faultHasItsSentence_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("sentence"); // behind the file's name
    const auto row = [](const char *claim, const QByteArray &file, const char *sentence) {
        QTest::newRow(claim) << file << QString::fromUtf8(sentence);
    };

    // The file as a whole
    row("neither kind of report", "Dear patient",
        ": This is neither kind of report: it has no \"PageColumns\" in a section [Columns], as a "
        "tabular report has, and does not start with <?xml version=\"1.0\"?> and <Reports>, as a "
        "designed report does.");
    row("an empty file", "",
        ": This is neither kind of report: it has no \"PageColumns\" in a section [Columns], as a "
        "tabular report has, and does not start with <?xml version=\"1.0\"?> and <Reports>, as a "
        "designed report does.");
    row("byte order mark", "\xef\xbb\xbf" + inReport(""),
        ": The file starts with a byte order mark, which hides what kind of report it is. Save it "
        "as UTF-8 without that mark.");
    row("root with an attribute", "<?xml version=\"1.0\"?><Reports a=\"b\"></Reports>",
        ": The root <Reports>, without attributes, must follow the XML declaration at once, within "
        "the first 60 bytes and with no comment before it; else the file is not taken for a "
        "report.");
    row("root with an attribute beside a bare one",
        "<?xml version=\"1.0\"?><Reports a='<Reports>'></Reports>",
        ", line 1, column 35: This is not well-formed XML: Unexpected '<'.");
    row("comment before the root", "<?xml version=\"1.0\"?><!--x--><Reports></Reports>",
        ", line 1, column 22: Only the XML declaration may stand before <Reports>. Move comments "
        "behind it.");
    row("root too late", "<?xml version=\"1.0\"?>" + QByteArray(60, ' ') + "<Reports></Reports>",
        ": The root <Reports>, without attributes, must follow the XML declaration at once, within "
        "the first 60 bytes and with no comment before it; else the file is not taken for a "
        "report.");
    row("another root", "<?xml version=\"1.0\"?><R><Reports></Reports></R>",
        ", line 1, column 22: The root of a designed report is <Reports>, not <R>.");
    row("another encoding", "<?xml version=\"1.0\" encoding=\"Windows-1252\"?><Reports></Reports>",
        ", line 1, column 1: The file says that its encoding is \"Windows-1252\". Save it as UTF-8 "
        "and write encoding=\"UTF-8\".");
    row("bytes that are no UTF-8", inReport("<RecordSource>\xe9</RecordSource>"),
        ", line 4, column 15: Here stands a byte that is no UTF-8. Save the file as UTF-8.");
    row("too large", kStart + QByteArray(qsizetype(16) * 1024 * 1024, ' '),
        ": The file is larger than 16 MiB. Keep its pictures as files beside it.");
    row("document type", "<?xml version=\"1.0\"?><!DOCTYPE Reports><Reports></Reports>",
        ", line 1, column 22: A report may hold no document type and no entities of its own. Take "
        "<!DOCTYPE …> out.");
    row("entity bomb",
        "<?xml version=\"1.0\"?><!DOCTYPE R [<!ENTITY a \"<Reports>\"><!ENTITY b \""
            + QByteArray("&a;").repeated(1000) + "\"><!ENTITY c \""
            + QByteArray("&b;").repeated(1000) + "\">]><Reports>&c;</Reports>",
        ", line 1, column 22: A report may hold no document type and no entities of its own. Take "
        "<!DOCTYPE …> out.");
    row("entity that is not declared", inReport("&lol;"),
        ", line 4, column 6: This is not well-formed XML: Entity 'lol' not declared. It stands in "
        "<Report>, which starts in line 3.");
    row("elements closed in the wrong order", inReport("<Styles><Style name=\"a\"></Styles>"),
        ", line 4, column 34: This is not well-formed XML: Opening and ending tag mismatch. It "
        "stands in <Style>, which starts in line 4.");
    row("file that breaks off", kStart + "<Report name=\"R\">",
        ", line 3, column 18: This is not well-formed XML: Premature end of document. It stands in "
        "<Report>, which starts in line 3.");
    row("10,000 elements in each other",
        kStart + QByteArray("<Report name=\"R\">").repeated(10'000),
        ", line 3, column 1684: More than 100 elements stand in each other.");
    row("too many elements",
        kStart + "<Report name=\"R\">" + QByteArray("<Page/>").repeated(20'000),
        ", line 3, column 140004: The file holds more than 20,000 elements.");
    row("no report", kStart + "</Reports>", ", line 2, column 1: The file holds no <Report>.");
    row("text between reports", kStart + " x<Report name=\"R\"/></Reports>",
        ", line 3, column 2: <Reports> holds no text.");
    row("something else than a report", kStart + "<Report name=\"R\"/>\n<Layout/></Reports>",
        ", line 4, column 1: <Reports> holds only <Report>, not <Layout>.");
    row("report without a name", kStart + "<Report/></Reports>",
        ", line 3, column 1: <Report> lacks the attribute \"name\".");
    row("report with a blank name", kStart + "<Report name=\" \"/></Reports>",
        ", line 3, column 15: name=\" \" of <Report>: it may not be empty.");
    row("two reports of one name", kStart + "<Report name=\"R\"/>\n<Report name=\" R\"/></Reports>",
        ", line 4, column 15: name=\" R\" of <Report>: this name is taken by another report of the "
        "file.");
    row("another report than asked for", kStart + "<Report name=\"Rr\"/></Reports>",
        ": There is no report \"R\" in it; did you mean Rr?");

    row("root with an attribute before a bare one",
        "<?xml version=\"1.0\"?><Reports a=\"\"><Reports></Reports></Reports>",
        ", line 1, column 22: The root <Reports> takes no attributes.");

    // Names and their places
    row("attribute like no other", field("Data", "column=\"a\" zzzzzzzz=\"1in\""),
        ", line 4, column 45: unknown attribute \"zzzzzzzz\" of <Data>; possible are \"column\", "
        "\"hideDuplicates\", \"name\", \"x\", \"y\", \"width\", \"height\", \"visibleWhen\", "
        "\"style\", \"color\", \"background\", \"border\" and 18 others.");
    row("misspelt attribute", field("Data", "column=\"a\" widht=\"1in\""),
        ", line 4, column 45: unknown attribute \"widht\" of <Data>; did you mean width?");
    row("attribute of another element",
        inReport("<Page font=\"Arial\"/><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 7: unknown attribute \"font\" of <Page>; possible are \"paper\", "
        "\"width\", \"height\", \"orientation\", \"left\", \"top\", \"right\", \"bottom\", "
        "\"columns\" and \"columnGap\".");
    row("namespace", inReport("<Page xmlns=\"urn:x\"/>"),
        ", line 4, column 7: unknown attribute \"xmlns\" of <Page>; possible are \"paper\", "
        "\"width\", \"height\", \"orientation\", \"left\", \"top\", \"right\", \"bottom\", "
        "\"columns\" and \"columnGap\".");
    row("misspelt element", inSection("<Lable text=\"x\"/>"),
        ", line 4, column 1: unknown element <Lable> in <Section>; did you mean Label?");
    row("element of another place",
        inReport("<Section kind=\"detail\" height=\"1in\"><Style name=\"x\"/></Section>"),
        ", line 4, column 37: unknown element <Style> in <Section>; possible are \"Label\", "
        "\"Data\", \"Expression\", \"Line\", \"Rectangle\", \"Picture\", \"Barcode\", "
        "\"CheckMark\" and \"Subreport\".");
    row("missing attribute", inSection("<Data column=\"a\" width=\"1in\"/>"),
        ", line 4, column 1: <Data> lacks the attribute \"height\".");
    row("stray text", inSection("<Data column=\"a\" width=\"1in\" height=\"1in\">a &amp; b</Data>"),
        ", line 4, column 43: <Data> holds no text.");
    row("two pages", inReport("<Page/><Page/>"),
        ", line 4, column 8: <Page> may stand in <Report> only once.");
    row("styles behind groups", inReport("<Groups/><Styles/>"),
        ", line 4, column 10: <Styles> stands too late in <Report>; the order is <Page>, <Styles>, "
        "<RecordSource>, <Groups>, <Section>.");
    row("no section", inReport(""),
        ", line 3, column 1: <Report> holds no <Section>; nothing would be printed.");

    // Values
    row("length without a unit", inSection("<Data column=\"a\" width=\"12\" height=\"1in\"/>"),
        ", line 4, column 25: width=\"12\" of <Data>: a length of at most 200in is needed, a "
        "number with in, cm, mm, pt or tw, such as \"1.5in\".");
    row("length that is no number", inSection("<Data column=\"a\" width=\"1.in\" height=\"1in\"/>"),
        ", line 4, column 25: width=\"1.in\" of <Data>: a length of at most 200in is needed, a "
        "number with in, cm, mm, pt or tw, such as \"1.5in\".");
    row("negative length", field("Data", "column=\"a\" x=\"-1in\""),
        ", line 4, column 48: x=\"-1in\" of <Data>: it may not be negative.");
    row("length of miles", field("Data", "column=\"a\" x=\"63360in\""),
        ", line 4, column 48: x=\"63360in\" of <Data>: a length of at most 200in is needed, a "
        "number with in, cm, mm, pt or tw, such as \"1.5in\".");
    row("no width", inSection("<Data column=\"a\" width=\"0in\" height=\"1in\"/>"),
        ", line 4, column 25: width=\"0in\" of <Data>: it must be more than 0.");
    row("flag that is no flag", field("Data", "column=\"a\" bold=\"yes\""),
        ", line 4, column 51: bold=\"yes\" of <Data>: no such value; possible are \"false\" and "
        "\"true\".");
    row("color without #", field("Data", "column=\"a\" color=\"ff0000\""),
        ", line 4, column 52: color=\"ff0000\" of <Data>: a colour is needed, such as \"#1f4e79\".");
    row("misspelt word", field("Data", "column=\"a\" align=\"centre\""),
        ", line 4, column 52: align=\"centre\" of <Data>: no such value; did you mean center?");
    row("letters of no size", field("Data", "column=\"a\" size=\"0\""),
        ", line 4, column 51: size=\"0\" of <Data>: a number from 1 to 400 is needed.");
    row("21 columns", inReport("<Page columns=\"21\"/><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 16: columns=\"21\" of <Page>: a whole number from 1 to 20 is needed.");
    row("empty font", field("Data", "column=\"a\" font=\"\""),
        ", line 4, column 51: font=\"\" of <Data>: it may not be empty.");
    row("long value is shortened",
        field("Data", "column=\"a\" align=\"" + QByteArray(100, 'x') + "\""),
        ", line 4, column 52: align=\"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx…\" of <Data>: no "
        "such value; possible are \"left\", \"center\" and \"right\".");

    // Page
    row("half a paper", inReport("<Page width=\"5in\"/><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 1: <Page> needs both \"width\" and \"height\", or \"paper\".");
    row("two papers",
        inReport("<Page width=\"5in\" height=\"5in\" paper=\"A4\"/><Section kind=\"detail\" "
                 "height=\"1in\"/>"),
        ", line 4, column 39: paper=\"A4\" of <Page>: \"width\" and \"height\" give the paper "
        "already.");
    row("margins that meet",
        inReport("<Page left=\"4in\" right=\"4.4in\"/><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 1: Margins and column gaps leave less than 0.25in of the paper.");

    // Styles
    row("unknown style", field("Data", "column=\"a\" style=\"Mony\""),
        ", line 4, column 52: style=\"Mony\" of <Data>: there is no such style; did you mean "
        "Money?");
    row("unknown style of a condition",
        inSection("<Label text=\"x\" width=\"1in\" height=\"1in\"><When condition=\"True\" "
                  "style=\"Quiet\"/></Label>"),
        ", line 4, column 72: style=\"Quiet\" of <When>: there is no such style; possible are "
        "\"Body\" and \"Money\".");
    row("two styles of one name",
        inReport("<Styles><Style name=\"a\"/><Style name=\"a\"/></Styles><Section kind=\"detail\" "
                 "height=\"1in\"/>"),
        ", line 4, column 39: name=\"a\" of <Style>: this name is taken by another style.");
    row("circle of styles",
        inReport("<Styles><Style name=\"a\" basedOn=\"b\"/><Style name=\"b\" "
                 "basedOn=\"a\"/></Styles><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 34: basedOn=\"b\" of <Style>: these styles are based on each other: a → "
        "b → a.");
    row("21 styles in a row", chainOfStyles(21),
        ", line 4, column 51: basedOn=\"0\" of <Style>: more than 20 styles are based on each "
        "other in a row.");
    row("fault in a style that nothing uses",
        inReport("<Styles><Style name=\"a\" size=\"x\"/></Styles><Section kind=\"detail\" "
                 "height=\"1in\"/>"),
        ", line 4, column 31: size=\"x\" of <Style>: a number from 1 to 400 is needed.");

    // Expressions and formats
    row("expression that does not parse", field("Expression", "value=\"[a] +\""),
        ", line 4, column 52: value=\"[a] +\" of <Expression>: at character 6: a value is "
        "expected, not the end.");
    row("its place behind entities", field("Expression", "value=\"&quot;&lt;&quot; &amp; )\""),
        ", line 4, column 70: value=\"\"<\" & )\" of <Expression>: at character 7: a value is "
        "expected, not \")\".");
    row("sum over an unknown group", field("Expression", "value=\"Sum([a], 'patent')\""),
        ", line 4, column 56: value=\"Sum([a], 'patent')\" of <Expression>: at character 10: there "
        "is no group \"patent\"; did you mean patient?");
    row("group on a sum",
        inReport("<Groups><Group name=\"g\" on=\"Sum([a])\"/></Groups><Section kind=\"detail\" "
                 "height=\"1in\"/>"),
        ", line 4, column 29: on=\"Sum([a])\" of <Group>: rows are grouped before anything is "
        "summed; sums and counts cannot stand here.");
    row("group on the page number",
        inReport("<Groups><Group name=\"g\" on=\"PageNumber\"/></Groups><Section kind=\"detail\" "
                 "height=\"1in\"/>"),
        ", line 4, column 29: on=\"PageNumber\" of <Group>: rows are grouped before they are "
        "placed; page and row numbers cannot stand here.");
    row("format that does not parse", field("Data", "column=\"a\" format=\"0.0;&quot;x\""),
        ", line 4, column 57: format=\"0.0;\"x\" of <Data>: at character 5: the text that starts "
        "here has no closing \".");

    // Groups and sections
    row("two groups of one name",
        inReport("<Groups><Group name=\"g\" on=\"[a]\"/><Group name=\"G\" "
                 "on=\"[b]\"/></Groups><Section kind=\"detail\" height=\"1in\"/>"),
        ", line 4, column 48: name=\"G\" of <Group>: this name is taken by another group.");
    row("header of an unknown group",
        inReport("<Section kind=\"group-header\" group=\"g\" height=\"1in\"/>"),
        ", line 4, column 37: group=\"g\" of <Section>: there is no such group in <Groups>.");
    row("header of another group",
        inReport("<Groups><Group name=\"g\" on=\"[a]\"/></Groups><Section kind=\"group-header\" "
                 "group=\"zzz\" height=\"1in\"/>"),
        ", line 4, column 80: group=\"zzz\" of <Section>: there is no such group in <Groups>; "
        "possible is \"g\".");
    row("header of no group", inReport("<Section kind=\"group-header\" height=\"1in\"/>"),
        ", line 4, column 16: kind=\"group-header\" of <Section>: it needs the attribute \"group\" "
        "with the name of its group.");
    row("detail of a group",
        inReport("<Groups><Group name=\"g\" on=\"[a]\"/></Groups><Section kind=\"detail\" "
                 "group=\"g\" height=\"1in\"/>"),
        ", line 4, column 74: group=\"g\" of <Section>: only headers and footers of groups belong "
        "to a group.");
    row("two page headers",
        inReport("<Section kind=\"page-header\" height=\"1in\"/><Section kind=\"page-header\" "
                 "height=\"1in\"/>"),
        ", line 4, column 58: kind=\"page-header\" of <Section>: there is one already; put these "
        "fields into it.");
    row("page footer on a new page",
        inReport("<Section kind=\"page-footer\" newPage=\"before\" height=\"1in\"/>"),
        ", line 4, column 38: newPage=\"before\" of <Section>: headers and footers of pages stand "
        "where they are and take no such thing.");
    row("page footer taller than the page",
        inReport("<Section kind=\"page-footer\" height=\"12in\"/>"),
        ", line 4, column 37: height=\"12in\" of <Section>: header and footer of the page leave no "
        "room for rows; together they must be less than 9in high.");

    // Fields
    row("field beyond the right margin",
        inSection("<Data column=\"a\" x=\"6in\" width=\"1in\" height=\"0.1in\"/>"),
        ", line 4, column 1: <Data> reaches to 7in from the left margin, but the section is only "
        "6.5in wide.");
    row("field below its section",
        inSection("<Data column=\"a\" y=\"0.5in\" width=\"1in\" height=\"0.6in\"/>"),
        ", line 4, column 1: <Data> reaches down to 1.1in, but the section is only 1in high.");
    row("two fields of one name",
        inSection("<Line name=\"a\" width=\"1in\"/><Line name=\"a\" width=\"1in\"/>"),
        ", line 4, column 41: name=\"a\" of <Line>: this name is taken by another field of the "
        "report.");
    row("line that lies and stands", field("Line", ""),
        ", line 4, column 1: A <Line> has either a \"width\", and lies, or a \"height\", and "
        "stands.");
    row("line of no thickness", inSection("<Line width=\"1in\" thickness=\"0pt\"/>"),
        ", line 4, column 30: thickness=\"0pt\" of <Line>: it must be more than 0.");
    row("text below a QR code", field("Barcode", "type=\"qr\" value=\"[a]\" showText=\"true\""),
        ", line 4, column 69: showText=\"true\" of <Barcode>: QR codes have no text below them; "
        "add a field of its own.");
    row("sub-report of nothing", field("Subreport", ""),
        ", line 4, column 1: A <Subreport> needs the \"report\" that it shows, or a \"name\" by "
        "which the program finds it, such as \"SubreportOne\".");
    row("two links of one name",
        inSection("<Subreport name=\"s\" width=\"1in\" height=\"1in\"><Link name=\"a\" "
                  "value=\"1\"/><Link name=\"a\" value=\"2\"/></Subreport>"),
        ", line 4, column 84: name=\"a\" of <Link>: this name is taken by another link.");
    row("picture from nowhere", field("Picture", ""),
        ", line 4, column 1: A <Picture> has one of \"file\", \"column\" and base64 text in it.");
    row("picture from two places", field("Picture", "file=\"a.png\" column=\"b\""),
        ", line 4, column 1: A <Picture> has one of \"file\", \"column\" and base64 text in it.");

    // Sub-reports
    row("unknown report",
        kStart + reportNamed("R", "Vist") + reportNamed("Visit", "") + "</Reports>",
        ", line 3, column 98: report=\"Vist\" of <Subreport>: there is no such report in this "
        "file; did you mean Visit?");
    row("report in itself", kStart + reportNamed("R", "R") + "</Reports>",
        ", line 3, column 98: report=\"R\" of <Subreport>: a report cannot hold itself: R → R.");
    row("circle of reports",
        kStart + reportNamed("R", "A") + reportNamed("A", "B") + reportNamed("B", "A")
            + "</Reports>",
        ", line 5, column 98: report=\"A\" of <Subreport>: a report cannot hold itself: A → B → "
        "A.");
    row("nine reports in each other", chainOfReports(9),
        ", line 11, column 99: report=\"R9\" of <Subreport>: more than 8 reports stand in each "
        "other.");
    row("fault in a report that is shown",
        kStart + reportNamed("R", "A") + "<Report name=\"A\"/></Reports>",
        ", line 4, column 1: <Report> holds no <Section>; nothing would be printed.");
}

void tst_report_faults::faultHasItsSentence()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, sentence);
    QCOMPARE(
        loadFault(m_folder.write(QStringLiteral("r.rpt"), file)), QString(u"\"r.rpt\"" + sentence));
}

void tst_report_faults::pictureFaultHasItsSentence_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("sentence");
    const auto row = [](const char *claim, const char *path, const QByteArray &text,
                         const char *sentence) {
        const QByteArray attributes = path ? QByteArray("file=\"") + path + '"' : QByteArray();
        QTest::newRow(claim) << attributes << text << QString::fromUtf8(sentence);
    };
    row("missing file", "none.png", "",
        ", line 4, column 43: file=\"none.png\" of <Picture>: there is no such file in the folder "
        "\"FOLDER/\".");
    row("folder above", "../a.png", "",
        ", line 4, column 43: file=\"../a.png\" of <Picture>: a picture must lie in the report's "
        "folder or one below it; write its path from there, with \"/\" between folders.");
    row("folder above in disguise", "a/../../a.png", "",
        ", line 4, column 43: file=\"a/../../a.png\" of <Picture>: a picture must lie in the "
        "report's folder or one below it; write its path from there, with \"/\" between folders.");
    row("absolute path", "/etc/passwd", "",
        ", line 4, column 43: file=\"/etc/passwd\" of <Picture>: a picture must lie in the "
        "report's folder or one below it; write its path from there, with \"/\" between folders.");
    row("drive", "C:a.png", "",
        ", line 4, column 43: file=\"C:a.png\" of <Picture>: a picture must lie in the report's "
        "folder or one below it; write its path from there, with \"/\" between folders.");
    row("backslashes", "..\\a.png", "",
        ", line 4, column 43: file=\"..\\a.png\" of <Picture>: a picture must lie in the report's "
        "folder or one below it; write its path from there, with \"/\" between folders.");
    row("folder in place of a file", "folder", "",
        ", line 4, column 43: file=\"folder\" of <Picture>: the file cannot be read.");
    row("no picture", "text.png", "",
        ", line 4, column 43: file=\"text.png\" of <Picture>: the file is no picture; PNG, JPEG, "
        "GIF and BMP can be shown.");
    row("damaged picture", "damaged.png", "",
        ", line 4, column 43: file=\"damaged.png\" of <Picture>: the file is a damaged picture.");
    row("100 megapixels", "large.png", "",
        ", line 4, column 43: file=\"large.png\" of <Picture>: the file has 10000 × 10000 pixels; "
        "at most 50 million can be shown.");
    row("larger than 32 MiB", "heavy.png", "",
        ", line 4, column 43: file=\"heavy.png\" of <Picture>: the file is larger than 32 MiB. "
        "Make the picture smaller.");
    row("text that is no base64", nullptr, "abc$",
        ", line 4, column 38: The text in <Picture> is not the base64 form of a file.");
    row("base64 of no picture", nullptr, "YWJjZGVm",
        ", line 4, column 38: The text in <Picture> is no picture; PNG, JPEG, GIF and BMP can be "
        "shown.");
}

void tst_report_faults::pictureFaultHasItsSentence()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, text);
    QFETCH(QString, sentence);
    const QByteArray picture = test::smallPicture();
    QImage large(10'000, 10'000, QImage::Format_Mono);
    large.fill(0);
    QVERIFY(large.save(m_folder.path(QStringLiteral("large.png"))));
    m_folder.write(QStringLiteral("text.png"), "abc");
    m_folder.write(QStringLiteral("damaged.png"), picture.first(45));
    m_folder.write(
        QStringLiteral("heavy.png"), picture + QByteArray(qsizetype(32) * 1024 * 1024, ' '));
    QDir().mkdir(m_folder.path(QStringLiteral("folder")));
    const QString path = m_folder.write(QStringLiteral("r.rpt"),
        inSection(
            "<Picture width=\"1in\" height=\"0.1in\" " + attributes + ">" + text + "</Picture>"));
    QCOMPARE(loadFault(path).replace(QDir::toNativeSeparators(m_folder.path({})), QStringLiteral("FOLDER/")),
        QString(u"\"r.rpt\"" + sentence));
}

void tst_report_faults::pictureBehindALinkIsRefused()
{
    const test::ReportFolder elsewhere;
    const QString secret = elsewhere.write(QStringLiteral("secret.png"), test::smallPicture());
    QVERIFY(QFile::link(secret, m_folder.path(QStringLiteral("link.png"))));
    const QString path
        = m_folder.write(QStringLiteral("r.rpt"), field("Picture", "file=\"link.png\""));
    QCOMPARE(loadFault(path),
        QStringLiteral("\"r.rpt\", line 4, column 43: file=\"link.png\" of <Picture>: this leads "
                       "out of the report's "
                       "folder. Put the picture itself there."));
}

void tst_report_faults::fileThatCannotBeRead()
{
    QFile missing(m_folder.path(QStringLiteral("no.rpt")));
    QVERIFY(!missing.open(QIODevice::ReadOnly)); // which gives the system's words
    QCOMPARE(loadFault(missing.fileName()),
        QStringLiteral("\"no.rpt\": The file cannot be read: %1.").arg(systemWords(missing.errorString())));
    QDir().mkdir(m_folder.path(QStringLiteral("folder.rpt")));
    QCOMPARE(loadFault(m_folder.path(QStringLiteral("folder.rpt"))),
        QStringLiteral("\"folder.rpt\": This is a folder, not a report."));
}

QTEST_GUILESS_MAIN(tst_report_faults)
#include "tst_report_faults.moc"
