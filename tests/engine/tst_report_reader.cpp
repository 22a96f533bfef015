// What a sound file becomes.

#include "engine/report_file.h"
#include "engine/report_text.h"
#include "platform/engine/report_control.h"
#include "platform/engine/report_source.h"
#include "platform/engine/xml_tree.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QByteArray kStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Reports>\n";
const QByteArray kDetail = "<Section kind=\"detail\" height=\"1in\"/>";

QByteArray reportNamed(const QByteArray &name, const QByteArray &text)
{
    return "<Report name=\"" + name + "\">" + text + "</Report>\n";
}

} // namespace

class tst_report_reader : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void namesKeepTheFilesOrder();
    void namesAreReadThoughLaterReportsAreBroken();
    void fileWithoutNamesSaysWhy();
    void onlyWhatIsAskedForIsCompiled();
    void loadGivesTheRecordSource();
    void failedLoadEmptiesTheControl();
    void stylesBuildOnEachOther();
    void fieldsOwnLookWinsOverItsStyle();
    void conditionChangesOnlyWhatItsStyleSays();
    void pictureOfTheFolderIsLoaded();
    void sameReportMayBeShownTwice();
    void columnsNarrowDetailsOnly();
    void placesAreThoseOfAnEditor_data();
    void placesAreThoseOfAnEditor();

private:
    ReportLayout load(const QByteArray &text)
    {
        ReportControl report;
        report.load(m_folder.write(QStringLiteral("r.rpt"), kStart + text + "</Reports>"),
            QStringLiteral("R"));
        return report.layout();
    }
    Field onlyField(const QByteArray &styles, const QByteArray &field)
    {
        return load(reportNamed("R",
                        styles + "<Section kind=\"detail\" height=\"1in\">" + field + "</Section>"))
            .sections.front()
            .fields.front();
    }

    test::ReportFolder m_folder;
};

void tst_report_reader::namesKeepTheFilesOrder()
{
    const QString file = m_folder.write(QStringLiteral("r.rpt"),
        kStart + reportNamed(" Main ", kDetail) + "<!-- x -->"
            + reportNamed("SubreportOne", "<Report name=\"inner\"/>") + "</Reports>");
    QCOMPARE(ReportControl::layoutNames(file),
        QStringList({QStringLiteral(" Main "), QStringLiteral("SubreportOne")}));
    ReportControl report;
    report.load(file, QStringLiteral("Main"));
    QCOMPARE(report.layout().name, QStringLiteral("Main"));
}

void tst_report_reader::namesAreReadThoughLaterReportsAreBroken()
{
    const QString file = m_folder.write(
        QStringLiteral("r.rpt"), kStart + reportNamed("A", kDetail) + "<Report name=\"B\"><Sec");
    QCOMPARE(
        ReportControl::layoutNames(file), QStringList({QStringLiteral("A"), QStringLiteral("B")}));
    ReportControl report;
    QVERIFY_EXCEPTION_THROWN(report.load(file, QStringLiteral("A")), ReportError);
}

void tst_report_reader::fileWithoutNamesSaysWhy()
{
    const auto fault = [&](const QByteArray &text) {
        try {
            ReportControl::layoutNames(m_folder.write(QStringLiteral("r.rpt"), text));
        } catch (const ReportError &error) {
            return error.description();
        }
        return QString();
    };
    QCOMPARE(fault(kStart + "<Report/></Reports>"),
        QStringLiteral("\"r.rpt\", line 2, column 1: The file holds no <Report> with a \"name\"."));
    QCOMPARE(fault(kStart + "</Report>"),
        QStringLiteral("\"r.rpt\", line 3, column 10: This is not well-formed XML: Opening and "
                       "ending tag mismatch. It "
                       "stands in <Reports>, which starts in line 2."));
}

void tst_report_reader::onlyWhatIsAskedForIsCompiled()
{
    const QByteArray broken = reportNamed(
        "B", "<Section kind=\"detail\" height=\"1in\"><Expression value=\"(\"/></Section>");
    QCOMPARE(load(reportNamed("R", kDetail) + broken).sections.size(), size_t(1));
}

void tst_report_reader::loadGivesTheRecordSource()
{
    ReportControl report;
    report.load(
        m_folder.write(QStringLiteral("r.rpt"),
            kStart
                + reportNamed("R",
                    "<RecordSource>\n  SELECT 1 &lt; 2<!-- x --><![CDATA[ & 3]]>\n</RecordSource>"
                        + kDetail)
                + "</Reports>"),
        QStringLiteral("R"));
    QCOMPARE(report.dataSource().recordSource, QStringLiteral("SELECT 1 < 2 & 3"));
    QCOMPARE(report.dataSource().connectionString, QString());
}

void tst_report_reader::failedLoadEmptiesTheControl()
{
    ReportControl report;
    report.load(
        m_folder.write(QStringLiteral("r.rpt"), kStart + reportNamed("R", kDetail) + "</Reports>"),
        QStringLiteral("R"));
    report.dataSource().connectionString = QStringLiteral("x");
    QVERIFY_EXCEPTION_THROWN(
        report.load(m_folder.path(QStringLiteral("none.rpt")), QStringLiteral("R")), ReportError);
    QVERIFY(!report.isLoaded());
    QCOMPARE(report.dataSource().connectionString, QString());
}

void tst_report_reader::stylesBuildOnEachOther()
{
    const Field field = onlyField(
        "<Styles><Style name=\"C\" basedOn=\"B\" size=\"12\"/><Style name=\"B\" basedOn=\"A\" "
        "size=\"11\" "
        "bold=\"true\"/><Style name=\"A\" size=\"9\" bold=\"false\" italic=\"true\"/></Styles>",
        "<Label text=\"x\" width=\"1in\" height=\"1in\" style=\"C\"/>");
    QCOMPARE(field.look.points, 12.0);
    QVERIFY(field.look.bold && field.look.italic && !field.look.underline);
}

void tst_report_reader::fieldsOwnLookWinsOverItsStyle()
{
    const Field field = onlyField("<Styles><Style name=\"A\" border=\"1pt\" background=\"#ff0000\" "
                                  "align=\"right\"/></Styles>",
        "<Label text=\"x\" width=\"1in\" height=\"1in\" style=\"A\" borderTop=\"0pt\" "
        "background=\"none\"/>");
    QCOMPARE(field.look.border, (Border{Twips(20), Twips(0), Twips(20), Twips(20)}));
    QVERIFY(!field.look.background);
    QCOMPARE(field.look.horizontal, HorizontalAlignment::Right);
}

void tst_report_reader::conditionChangesOnlyWhatItsStyleSays()
{
    const Field field = onlyField("<Styles><Style name=\"Red\" color=\"#ff0000\"/></Styles>",
        "<Data column=\"a\" width=\"1in\" height=\"1in\" bold=\"true\" format=\"0.0\"><When "
        "condition=\"[a] &lt; 0\" "
        "style=\"Red\"/></Data>");
    QCOMPARE(field.conditionalLooks.size(), size_t(1));
    FieldLook expected = field.look;
    expected.colour = 0xffff0000;
    QCOMPARE(field.conditionalLooks.front().look, expected);
}

void tst_report_reader::pictureOfTheFolderIsLoaded()
{
    m_folder.write(QStringLiteral("a.png"), test::smallPicture());
    const QByteArray frame = " width=\"1in\" height=\"1in\"";
    QCOMPARE(
        onlyField({}, "<Picture file=\"./a.png\"" + frame + "/>").picture, test::smallPicture());
    QCOMPARE(onlyField({},
                 "<Picture" + frame + ">\n" + test::smallPicture().toBase64().insert(20, "\r\n ")
                     + "\n</Picture>")
                 .picture,
        test::smallPicture());
}

void tst_report_reader::sameReportMayBeShownTwice()
{
    const QByteArray twice
        = QByteArray("<Subreport name=\"s\" report=\"A\" width=\"1in\" height=\"1in\"/>")
              .repeated(2);
    const ReportLayout layout
        = load(reportNamed("R", "<Section kind=\"detail\" height=\"1in\">" + twice + "</Section>")
            + reportNamed("A", kDetail));
    QCOMPARE(layout.sections.front().fields.size(), size_t(2));
}

void tst_report_reader::columnsNarrowDetailsOnly()
{
    const QByteArray page
        = "<Page columns=\"3\" columnGap=\"0.25in\"/>"; // leaves 2 inches to a column
    const QByteArray line = "<Line width=\"6.5in\"/>";
    QCOMPARE(load(reportNamed("R",
                      page + "<Section kind=\"page-header\" height=\"1in\">" + line + "</Section>"))
                 .sections.size(),
        size_t(1));
    QVERIFY_EXCEPTION_THROWN(
        load(reportNamed(
            "R", page + "<Section kind=\"detail\" height=\"1in\">" + line + "</Section>")),
        ReportError);
    load(reportNamed(
        "R", page + "<Section kind=\"detail\" height=\"1in\"><Line width=\"2in\"/></Section>"));
}

void tst_report_reader::placesAreThoseOfAnEditor_data()
{
    QTest::addColumn<QByteArray>("text"); // behind the root's line
    QTest::addColumn<int>("unit");
    QTest::addColumn<FilePlace>("place");
    const auto row = [](const char *claim, const char *text, int unit, FilePlace place) {
        QTest::newRow(claim) << QByteArray(text) << unit << place;
    };
    row("the first letter", "<Report name=\"abc\"/>", 0, {3, 15});
    row("behind a named entity", "<Report name=\"a&lt;c\"/>", 2, {3, 20});
    row("behind a number beyond 16 bits", "<Report name=\"&#x1F600;c\"/>", 2, {3, 24});
    row("in single quotes behind blanks", "<Report  name = 'abc'/>", 1, {3, 19});
    row("after a line break of two bytes", "<Report name=\"a\r\nbc\"/>", 3, {4, 2});
    row("behind text", "x<Report name=\"abc\"/>", 0, {3, 16});
    row("behind a comment and text", "<!-- <Report --> x <Report name=\"abc\"/>", 0, {3, 34});
}

void tst_report_reader::placesAreThoseOfAnEditor()
{
    QFETCH(QByteArray, text);
    QFETCH(int, unit);
    QFETCH(FilePlace, place);
    const ReportSource source
        = ReportSource::fromBytes(QStringLiteral("r.rpt"), kStart + text + "</Reports>");
    const XmlElement root = readXmlTree(source);
    const FilePlace found
        = source.placeOf(offsetInValue(source, root.children.front().attributes.front(), unit));
    QCOMPARE(std::pair(found.line, found.column), std::pair(place.line, place.column));
}

QTEST_GUILESS_MAIN(tst_report_reader)
#include "tst_report_reader.moc"
