// The schema, the reference's examples and the reader agree: each attribute of the schema reaches
// the model.

#include "engine/report_file.h"
#include "engine/report_schema.h"
#include "engine/report_text.h"
#include "platform/engine/element_table.h"
#include "platform/engine/report_control.h"
#include "support/host_program.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QString kDocs = QStringLiteral(CORVANE_SOURCE_DIR "/docs/");

/// Every element once, with the attributes that it must have.
const QByteArray kSkeleton = R"(<?xml version="1.0" encoding="UTF-8"?>
<Reports><Report name="Main">
<Page/>
<Styles><Style name="Used"/><Style name="Base" size="13" color="#0000dd"/></Styles>
<RecordSource>SELECT 1</RecordSource>
<Groups><Group name="g" on="[a]"/></Groups>
<Section kind="detail" height="3in">
<Label text="t" width="1in" height="1in"><When condition="[c]" style="Used"/></Label>
<Data column="d" width="1in" height="1in" style="Used"/>
<Expression value="[e]" width="1in" height="1in"/>
<Line width="1in"/>
<Rectangle width="1in" height="1in"/>
<Picture column="p" width="1in" height="1in"/>
<Barcode type="code128" value="[b]" width="1in" height="1in"/>
<CheckMark value="[m]" width="1in" height="1in"/>
<Subreport name="SubreportOne" width="1in" height="1in"><Link name="l" value="[k]"/></Subreport>
</Section></Report>
<Report name="Other"><Section kind="detail" height="1in"/></Report></Reports>)";

/// The skeleton with attributes of the first such element set, or taken out where they are empty.
QByteArray edited(const QString &element, const QString &attributes)
{
    QString text = QString::fromUtf8(kSkeleton);
    const QRegularExpression start(u"<" + element + u"(?=[ />])([^>]*?)(/?)>");
    const auto match = start.match(text);
    QString tag = match.captured(1);
    static const QRegularExpression each(QStringLiteral("(\\w+)=\"[^\"]*\""));
    for (auto attribute = each.globalMatch(attributes); attribute.hasNext();)
        tag.remove(QRegularExpression(u" " + attribute.next().captured(1) + u"=\"[^\"]*\""));
    static const QRegularExpression empty(QStringLiteral(" \\w+=\"\""));
    text.replace(match.capturedStart(), match.capturedLength(),
        QString(u'<' + element + tag + u' ' + QString(attributes).remove(empty) + match.captured(2)
            + u'>'));
    return text.toUtf8();
}

QString loaded(const QString &fileName, const QString &name)
{
    ReportControl report;
    try {
        report.load(fileName, name);
    } catch (const ReportError &error) {
        return error.description();
    }
    return test::reportText(report.layout());
}

/// What xmllint says against the schema; empty: all are valid.
QString schemaFaults(const QStringList &fileNames)
{
    const test::ProgramRun lint = test::runHostProgram(QStringLiteral("xmllint"),
        QStringList{QStringLiteral("--noout"), QStringLiteral("--schema"),
            QString(kDocs + QStringLiteral("designed-reports.xsd"))}
            + fileNames);
    return lint.status == 0 ? QString() : QString::fromUtf8(lint.errors);
}

/// The examples of the reference.
QList<QByteArray> referenceExamples()
{
    QFile file(kDocs + QStringLiteral("designed-reports.md"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> examples;
    static const QRegularExpression block(
        QStringLiteral("```xml\n(.*?)```"), QRegularExpression::DotMatchesEverythingOption);
    const QString text = QString::fromUtf8(file.readAll());
    for (auto match = block.globalMatch(text); match.hasNext();)
        examples += match.next().captured(1).trimmed().toUtf8();
    return examples;
}

/// An example as a whole file: parts of a report stand among what they may name.
QByteArray wholeFile(const QByteArray &example)
{
    static const QByteArrayList kParts{"Page", "Styles", "RecordSource", "Groups", "Section"};
    const QByteArray name
        = example.mid(1, example.indexOf('>') - 1).split(' ').front().split('\n').front();
    if (example.startsWith("<?xml"))
        return example;
    const QByteArray start = "<?xml version=\"1.0\"?>\n<Reports>\n";
    if (name == "Report")
        return start + example + "</Reports>";
    QMap<QByteArray, QByteArray> parts{
        {"Styles",
            "<Styles><Style name=\"Body\"/><Style name=\"Caption\"/><Style name=\"Money\"/><Style "
            "name=\"Red\"/>"
            "<Style name=\"Plain\"/></Styles>"},
        {"Groups", "<Groups><Group name=\"patient\" on=\"[id]\"/></Groups>"},
        {"Section",
            "<Section kind=\"detail\" height=\"0.5in\">"
                + (kParts.contains(name) ? QByteArray() : example) + "</Section>"}};
    if (kParts.contains(name))
        parts[name] = example;
    QByteArray body;
    for (const QByteArray &part : kParts)
        body += parts.value(part);
    return start + "<Report name=\"Main\">" + body
        + "</Report><Report name=\"Visits\"><Section kind=\"detail\" height=\"1in\"/>"
        + "</Report></Reports>";
}

QString firstReport(const QString &fileName)
{
    return ReportControl::layoutNames(fileName).front();
}

/// An element of the skeleton, the attributes set there (the one that the row is about comes
/// first), and the words that are new in the model's text then.
struct AttributeRow
{
    QString element;
    QString attributes;
    QString words;
};

QList<AttributeRow> attributeRows()
{
    QList<AttributeRow> rows;
    const auto row = [&](const QString &elements, const char *attributes, const char *words) {
        for (const QString &element : elements.split(u' '))
            rows += AttributeRow{element, QString::fromUtf8(attributes), QString::fromUtf8(words)};
    };
    const QString writing = QStringLiteral("Label Data Expression");
    const QString padded = writing + QStringLiteral(" Style Picture Barcode CheckMark");
    const QString framed = padded + QStringLiteral(" Rectangle");
    const QString coloured = writing + QStringLiteral(" Style Line Barcode CheckMark");
    const QString sized
        = writing + QStringLiteral(" Rectangle Picture Barcode CheckMark Subreport");
    const QString any = sized + QStringLiteral(" Line");

    row(QStringLiteral("Report"), R"(title="Ledger")", "title=Ledger");
    row(QStringLiteral("Page"), R"(paper="A4")", "paperWidth=11906 paperHeight=16838");
    row(QStringLiteral("Page"), R"(orientation="landscape")", "paperWidth=15840 paperHeight=12240");
    row(QStringLiteral("Page"), R"(width="10in" height="20in")",
        "paperWidth=14400 paperHeight=28800");
    row(QStringLiteral("Page"), R"(height="20in" width="10in")",
        "paperWidth=14400 paperHeight=28800");
    row(QStringLiteral("Page"), R"(left="100tw")", "left=100");
    row(QStringLiteral("Page"), R"(top="5pt")", "top=100");
    row(QStringLiteral("Page"), R"(right="2.54cm" left="1in" bottom="100tw")",
        "right=1440 bottom=100");
    row(QStringLiteral("Page"), R"(right="12.7mm")", "right=720");
    row(QStringLiteral("Page"), R"(bottom="0.5in")", "bottom=720");
    row(QStringLiteral("Page"), R"(columns="2")", "columns=2");
    row(QStringLiteral("Page"), R"(columnGap="1in")", "columnGap=1440");
    row(QStringLiteral("Style"), R"(basedOn="Base")", "points=13");
    row(QStringLiteral("Style Data Expression"), R"(format="#,##0.00")", "format=#,##0.00");
    row(QStringLiteral("Group"), R"(name="h")", "name=h");
    row(QStringLiteral("Group"), R"(on="[b] &amp; [c]")", "on=[b c]");
    row(QStringLiteral("Group"), R"(sort="descending")", "sort=2");
    row(QStringLiteral("Group"), R"(keepTogether="whole")", "keepTogether=2");
    row(QStringLiteral("Group Section"), R"(newPage="both")", "newPageBefore=yes newPageAfter=yes");
    row(QStringLiteral("Group"), R"(resetPageNumber="true")", "resetPageNumber=yes");
    row(QStringLiteral("Group"), R"(repeatHeader="true")", "repeatHeader=yes");
    row(QStringLiteral("Group"), R"(outline="[o]")", "outline=[o]");
    row(QStringLiteral("Section"), R"(kind="page-header")", "section kind=1");
    row(QStringLiteral("Section"), R"(group="g" kind="group-footer")", "section kind=4 group=0");
    row(QStringLiteral("Section"), R"(height="3.5in")", "height=5040");
    row(QStringLiteral("Section"), R"(keepTogether="false")", "keepTogether=no");
    row(QStringLiteral("Section"), R"(background="#00aa00")", "background=aa00");
    row(any + QStringLiteral(" Section"), R"(visibleWhen="[v]")", "visibleWhen=[v]");

    row(any, R"(name="SubreportTwo")", "name=SubreportTwo");
    row(any, R"(x="0.5in")", "x=720");
    row(any, R"(y="1.5in")", "y=2160");
    row(any, R"(width="2in")", "width=2880");
    row(sized, R"(height="1.25in")", "height=1800");
    row(QStringLiteral("Line"), R"(height="2in" width="")", "width=10 height=2880");
    row(QStringLiteral("Line"), R"(width="2in" thickness="7tw")", "width=2880 height=7");
    row(QStringLiteral("Line"), R"(thickness="7tw")", "height=7");
    row(writing + QStringLiteral(" When Picture Rectangle Barcode CheckMark Line"),
        R"(style="Base")", "colour=dd");

    row(writing + QStringLiteral(" Style"), R"(font="DejaVu Sans")", "font=DejaVu Sans");
    row(writing + QStringLiteral(" Style"), R"(size="7.5")", "points=7.5");
    row(writing + QStringLiteral(" Style"), R"(bold="true")", "bold=yes");
    row(writing + QStringLiteral(" Style"), R"(italic="true")", "italic=yes");
    row(writing + QStringLiteral(" Style"), R"(underline="true")", "underline=yes");
    row(writing + QStringLiteral(" Style"), R"(align="center")", "horizontal=1");
    row(writing + QStringLiteral(" Style"), R"(verticalAlign="bottom")", "vertical=2");
    row(coloured, R"(color="#00aa00")", " colour=aa00");
    row(framed, R"(background="#00aa00")", "background=aa00");
    row(framed, R"(border="7tw")", "borderLeft=7 borderTop=7 borderRight=7 borderBottom=7");
    row(framed, R"(borderLeft="8tw")", "borderLeft=8");
    row(framed, R"(borderTop="8tw" border="7tw")", "borderLeft=7 borderTop=8 borderRight=7");
    row(framed, R"(borderRight="8tw")", "borderRight=8");
    row(framed, R"(borderBottom="8tw")", "borderBottom=8");
    row(framed, R"(borderColor="#00aa00")", "borderColour=aa00");
    row(padded, R"(padding="9tw")", "padding=9");
    row(writing + QStringLiteral(" Subreport"), R"(canGrow="false")", "canGrow=no");
    row(writing + QStringLiteral(" Subreport"), R"(canShrink="true")", "canShrink=yes");
    row(writing + QStringLiteral(" Picture"), R"(link="[w]")", "link=[w]");
    row(writing + QStringLiteral(" Picture"), R"(bookmark="[w]")", "bookmark=[w]");
    row(QStringLiteral("Data Expression"), R"(hideDuplicates="true")", "hideDuplicates=yes");

    row(QStringLiteral("Label"), R"(text="a&#10;b")", "text=a\nb");
    row(QStringLiteral("Data Picture"), R"(column="phone")", "value=[phone]");
    row(QStringLiteral("Expression Barcode CheckMark"), R"(value="[x] + [y]")", "value=[x y]");
    row(QStringLiteral("Picture"), R"(description="A dot")", "description=A dot");
    row(QStringLiteral("Picture"), R"(fit="stretch")", "fit=1");
    row(QStringLiteral("Barcode"), R"(type="qr")", "barcode=1");
    row(QStringLiteral("Barcode"), R"(showText="true")", "showText=yes");
    row(QStringLiteral("Subreport"), R"(report="Other")", "layoutName=Other");
    row(QStringLiteral("When"), R"(condition="[x] = [y]")", "condition=[x y]");
    row(QStringLiteral("Link"), R"(name="other")", "link-other=[k]");
    row(QStringLiteral("Link"), R"(value="[x] + [y]")", "link-l=[x y]");
    return rows;
}

} // namespace

class tst_report_schema : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void attributeReachesTheModel_data();
    void attributeReachesTheModel();
    void everyAttributeHasItsRow();
    void schemaAndReaderNameTheSame();
    void everyWordMeansSomethingElse();
    void exampleOfTheReferenceLoads_data();
    void exampleOfTheReferenceLoads();
    void referenceShowsEveryAttribute();
    void demoReportLoads_data();
    void demoReportLoads();
    void schemaRefusesWhatTheReaderRefuses();

private:
    test::ReportFolder m_folder;
};

void tst_report_schema::attributeReachesTheModel_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("words");
    for (const AttributeRow &row : attributeRows()) {
        QTest::newRow(qPrintable(QString(row.element + u' ' + row.attributes)))
            << row.element << row.attributes << row.words;
    }
}

void tst_report_schema::attributeReachesTheModel()
{
    QFETCH(QString, element);
    QFETCH(QString, attributes);
    QFETCH(QString, words);
    const QString before = m_folder.write(QStringLiteral("before.rpt"), kSkeleton);
    const QString after = m_folder.write(QStringLiteral("after.rpt"), edited(element, attributes));
    QCOMPARE(schemaFaults({after}), QString());
    const QString was = loaded(before, QStringLiteral("Main"));
    const QString is = loaded(after, QStringLiteral("Main"));
    QVERIFY2(!was.contains(words), qPrintable(was));
    QVERIFY2(is.contains(words), qPrintable(is));
}

void tst_report_schema::everyAttributeHasItsRow()
{
    // A report's name finds it; a style's name and a picture's file have tests of their own.
    QMap<QString, QSet<QString>> told{{QStringLiteral("Report"), {QStringLiteral("name")}},
        {QStringLiteral("Style"), {QStringLiteral("name")}},
        {QStringLiteral("Picture"), {QStringLiteral("file")}}};
    for (const AttributeRow &row : attributeRows())
        told[row.element] += row.attributes.section(u'=', 0, 0);
    const test::Schema schema = test::SchemaReader().read();
    for (auto element = schema.attributes.cbegin(); element != schema.attributes.cend(); ++element)
        QCOMPARE((element.value() - told[element.key()]).values(), QStringList());
}

void tst_report_schema::schemaAndReaderNameTheSame()
{
    const test::Schema schema = test::SchemaReader().read();
    QCOMPARE(schema.attributes.keys(), elementNames());
    for (const QString &element : elementNames()) {
        const QStringList known = elementRule(element)->attributes;
        QCOMPARE(QSet<QString>(known.begin(), known.end()), schema.attributes[element]);
    }
}

void tst_report_schema::everyWordMeansSomethingElse()
{
    const test::Schema schema = test::SchemaReader().read();
    QVERIFY(schema.words.size() > 40);
    for (auto choice = schema.words.begin(); choice != schema.words.end(); ++choice) {
        const QString element = choice.key().section(u' ', 0, 0);
        QMap<QString, QString> texts;
        for (const QString &word : choice.value()) {
            QString attributes = choice.key().section(u' ', 1) + u"=\"" + word + u'"';
            if (word.startsWith(u"group-"))
                attributes += QStringLiteral(" group=\"g\"");
            const QString file
                = m_folder.write(QStringLiteral("word.rpt"), edited(element, attributes));
            const QString text = loaded(file, QStringLiteral("Main"));
            QVERIFY2(text.startsWith(u"report "), qPrintable(text));
            QVERIFY2(!texts.contains(text),
                qPrintable(QString(choice.key() + u": " + word + u" is " + texts[text])));
            texts[text] = word;
        }
    }
}

void tst_report_schema::exampleOfTheReferenceLoads_data()
{
    QTest::addColumn<QByteArray>("example");
    const QList<QByteArray> examples = referenceExamples();
    QVERIFY(examples.size() > 15);
    for (const QByteArray &example : examples)
        QTest::addRow("%d %s", int(examples.indexOf(example)), example.left(40).constData())
            << example;
}

void tst_report_schema::exampleOfTheReferenceLoads()
{
    QFETCH(QByteArray, example);
    m_folder.write(QStringLiteral("logo.png"), test::smallPicture());
    const QString file = m_folder.write(QStringLiteral("example.rpt"), wholeFile(example));
    QCOMPARE(schemaFaults({file}), QString());
    const QString text = loaded(file, firstReport(file));
    QVERIFY2(text.startsWith(u"report "), qPrintable(text));
}

void tst_report_schema::referenceShowsEveryAttribute()
{
    QMap<QString, QSet<QString>> shown;
    for (const QByteArray &example : referenceExamples()) {
        QXmlStreamReader xml(wholeFile(example));
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            for (const QXmlStreamAttribute &attribute : xml.attributes())
                shown[xml.name().toString()] += attribute.name().toString();
        }
    }
    // What fields share is shown with one of them.
    const QStringList fields = elementRule(QStringLiteral("Section"))->children;
    const QStringList shared = elementRule(QStringLiteral("Data"))->attributes;
    QSet<QString> shownWithFields;
    for (const QString &field : fields)
        shownWithFields += shown[field];
    QStringList missing;
    for (const QString &element : elementNames()) {
        for (const QString &attribute : elementRule(element)->attributes) {
            const bool isShared = fields.contains(element) && shared.contains(attribute);
            if (!(isShared ? shownWithFields : shown[element]).contains(attribute))
                missing += element + u' ' + attribute;
        }
    }
    QCOMPARE(missing, QStringList());
}

void tst_report_schema::demoReportLoads_data()
{
    QTest::addColumn<QString>("fileName");
    const QDir folder(QStringLiteral(CORVANE_SOURCE_DIR "/demo/Reports"));
    for (const QString &name : folder.entryList({QStringLiteral("*.rpt")}, QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains("<Reports>"))
            QTest::newRow(qPrintable(name)) << file.fileName();
    }
}

void tst_report_schema::demoReportLoads()
{
    QFETCH(QString, fileName);
    QCOMPARE(schemaFaults({fileName}), QString());
    for (const QString &name : ReportControl::layoutNames(fileName)) {
        const QString text = loaded(fileName, name);
        QVERIFY2(text.startsWith(u"report "), qPrintable(text));
    }
}

void tst_report_schema::schemaRefusesWhatTheReaderRefuses()
{
    const QList<std::pair<QString, QString>> faults{
        {QStringLiteral("Page"), QStringLiteral("columns=\"0\"")},
        {QStringLiteral("Page"), QStringLiteral("left=\"1\"")},
        {QStringLiteral("Style"), QStringLiteral("size=\"0\"")},
        {QStringLiteral("Style"), QStringLiteral("color=\"red\"")},
        {QStringLiteral("Label"), QStringLiteral("style=\"None\"")},
        {QStringLiteral("Label"), QStringLiteral("bold=\"1\"")},
        {QStringLiteral("Group"), QStringLiteral("name=\" \"")}};
    for (const auto &[element, attributes] : faults) {
        const QString file
            = m_folder.write(QStringLiteral("fault.rpt"), edited(element, attributes));
        QVERIFY2(
            !loaded(file, QStringLiteral("Main")).startsWith(u"report "), qPrintable(attributes));
        QVERIFY2(!schemaFaults({file}).isEmpty(), qPrintable(attributes));
    }
}

QTEST_GUILESS_MAIN(tst_report_schema)
#include "tst_report_schema.moc"
