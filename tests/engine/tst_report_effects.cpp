// Each attribute of a designed report changes the document: one small report is laid out twice, without and
// with it.

#include "engine/layout_fixture.h"
#include "engine/report_schema.h"
#include "support/document_dump.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

using Attributes = QMap<QString, QString>;
using Report = QMap<QString, Attributes>; ///< by element; the field under test is one of the elements

const QString kDot = QStringLiteral("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGOQ96sEAAF2AOe2j1NWAAAAAElFTkSuQmCC");

/// "name=value;name=value".
Attributes attributesOf(const QString &text)
{
    Attributes attributes;
    for (const QString &pair : text.split(u';', Qt::SkipEmptyParts))
        attributes[pair.section(u'=', 0, 0)] = pair.section(u'=', 1);
    return attributes;
}

Report plainReport()
{
    const QString frame = QStringLiteral("width=2in;height=0.4in;");
    Report report;
    report[QStringLiteral("Style")] = attributesOf(QStringLiteral("name=S"));
    report[QStringLiteral("Group")] = attributesOf(QStringLiteral("name=g;on=[g]"));
    report[QStringLiteral("Section")] = attributesOf(QStringLiteral("kind=detail;height=1in"));
    report[QStringLiteral("Label")] = attributesOf(frame + u"text=words");
    report[QStringLiteral("Data")] = attributesOf(frame + u"column=n");
    report[QStringLiteral("Expression")] = attributesOf(frame + u"value=[n]");
    report[QStringLiteral("Line")] = attributesOf(QStringLiteral("width=2in"));
    report[QStringLiteral("Rectangle")] = attributesOf(frame);
    report[QStringLiteral("Picture")] = attributesOf(frame);
    report[QStringLiteral("Barcode")] = attributesOf(frame + u"type=code128;value='A1'");
    report[QStringLiteral("CheckMark")] = attributesOf(frame + u"value=True");
    report[QStringLiteral("Subreport")] = attributesOf(frame + u"report=Visits");
    report[QStringLiteral("When")] = attributesOf(QStringLiteral("condition=[n] > 2;style=B"));
    report[QStringLiteral("Link")] = attributesOf(QStringLiteral("name=l;value=[n]"));
    return report;
}

QString tag(const Report &report, const QString &element, const QString &content = {})
{
    QString text = u'<' + element;
    const Attributes &attributes = report[element];
    for (auto attribute = attributes.cbegin(); attribute != attributes.cend(); ++attribute)
        text += QString(u' ' + attribute.key() + u"=\"" + attribute.value().toHtmlEscaped() + u'"');
    return content.isEmpty() ? QString(text + u"/>") : QString(text + u'>' + content + u"</" + element + u'>');
}

/// The whole report with one field of this kind in its detail and a label below it.
QString reportText(const Report &report, const QString &field)
{
    QString content;
    if (field == u"Picture" && !report[field].contains(QStringLiteral("column")))
        content = kDot;
    if (field == u"Subreport")
        content = tag(report, QStringLiteral("Link"));
    if (report[QStringLiteral("When")].contains(QStringLiteral("in")) && field != u"Subreport")
        content += tag({{QStringLiteral("When"), [&] { Attributes when = report[QStringLiteral("When")]; when.remove(QStringLiteral("in")); return when; }()}}, QStringLiteral("When"));
    return tag(report, QStringLiteral("Page")) + u"<Styles><Style name=\"B\" color=\"#0000dd\" border=\"1pt\" font=\"Times New Roman\"/>"
        u"<Style name=\"C\" color=\"#00dd00\"/>"
        + tag(report, QStringLiteral("Style")) + u"</Styles><Groups>" + tag(report, QStringLiteral("Group"))
        + u"</Groups><Section kind=\"group-header\" group=\"g\" height=\"0.3in\"><Label text=\"head\" width=\"1in\" height=\"0.2in\"/></Section>"
        + tag(report, QStringLiteral("Section"),
            tag(report, field, content) + u"<Label text=\"below\" y=\"0.8in\" width=\"1in\" height=\"0.15in\"/>")
        + u"<Section kind=\"page-footer\" height=\"0.3in\"><Expression value=\"PageNumber\" width=\"1in\" height=\"0.2in\"/></Section>";
}

/// Everything that a document draws and says.
QString everything(const Document &document)
{
    QStringList lines = test::dump(document);
    lines += QStringLiteral("%1 %2x%3").arg(document.info.title).arg(document.paperWidth.count()).arg(document.paperHeight.count());
    for (const Page &page : document.pages) {
        for (const TextRun &run : page.runs) {
            const TextStyle &style = document.styleOf(page, run);
            const FontFace &face = *document.faces[style.face];
            lines += QStringLiteral("run %1 %2 %3 %4").arg(face.family(), face.styleName()).arg(style.size.count()).arg(style.colour, 0, 16);
        }
        for (const FilledRect &rect : page.rects)
            lines += QStringLiteral("rect %1 %2 %3 %4 %5").arg(rect.x).arg(rect.y).arg(rect.width).arg(rect.height).arg(rect.colour, 0, 16);
        for (const PlacedPicture &picture : page.pictures)
            lines += QStringLiteral("picture %1 %2 %3 %4 %5").arg(picture.x).arg(picture.y).arg(picture.width).arg(picture.height).arg(picture.description);
        for (const LinkArea &link : page.links)
            lines += QStringLiteral("link %1 %2 %3").arg(link.x).arg(link.y).arg(link.target);
    }
    for (const OutlineEntry &entry : document.outline)
        lines += QStringLiteral("outline %1 %2 %3").arg(entry.title).arg(entry.page).arg(entry.depth);
    for (const Bookmark &bookmark : document.bookmarks)
        lines += QStringLiteral("bookmark %1 %2").arg(bookmark.name).arg(bookmark.page);
    return (lines + document.notes).join(u'\n');
}

/// `given` and `attributes` as "Element name=value;…", several elements separated by " / ".
struct EffectRow {
    QString element;
    QString attributes; ///< the first is the one that the row is about
    QString given;
};

QList<EffectRow> effectRows()
{
    QList<EffectRow> rows;
    const auto row = [&](const char *elements, const char *attributes, const char *given = "") {
        for (const QString &element : QString::fromLatin1(elements).split(u' '))
            rows += EffectRow {element, QString::fromLatin1(attributes), QString::fromLatin1(given).replace(QStringLiteral("@"), element)};
    };
    row("Page", "paper=A4");
    row("Page", "orientation=landscape");
    row("Page", "width=10in;height=12in");
    row("Page", "height=12in;width=8.5in");
    for (const char *side : {"left=0.5in", "top=0.5in", "bottom=3in"})
        row("Page", side);
    row("Page", "right=2in", "Page columns=2");
    row("Page", "columns=2");
    row("Page", "columnGap=1in", "Page columns=2");
    row("Group", "on=[n]");
    row("Group", "sort=descending");
    row("Group", "keepTogether=whole");
    row("Group", "newPage=before");
    row("Group", "resetPageNumber=true");
    row("Group", "repeatHeader=true");
    row("Group", "outline='x'");
    row("Section", "kind=report-footer");
    row("Section", "height=1.5in");
    row("Section", "keepTogether=false", "Page bottom=1.4in");
    row("Section", "newPage=after");
    row("Section", "background=#00aa00");
    row("Section Label Data Expression Line Rectangle Picture Barcode CheckMark Subreport", "visibleWhen=[n] > 3");
    row("Label Data Expression Line Rectangle Picture Barcode CheckMark Subreport", "x=0.5in");
    row("Label Data Expression Line Rectangle Picture Barcode CheckMark Subreport", "y=0.1in");
    row("Label Data Expression", "width=1in", "@ border=1pt");
    row("Line", "width=0.3in");
    row("Rectangle Picture Barcode CheckMark", "width=0.3in", "@ border=1pt / Picture fit=stretch");
    row("Subreport", "width=1.5in"); // its sections' background
    row("Label Data Expression", "height=0.3in", "@ border=1pt");
    row("Line", "height=0.2in;width=");
    row("Rectangle Picture Barcode CheckMark", "height=0.3in", "@ border=1pt");
    row("Subreport", "height=0.3in", "Subreport canGrow=false");
    row("Line", "thickness=3pt");
    row("Label Data Expression Rectangle Picture Barcode CheckMark Line", "style=B");
    const char *const written = "Label Data Expression Style";
    row(written, "font=Times New Roman");
    row(written, "size=14");
    row(written, "bold=true");
    row(written, "italic=true");
    row(written, "underline=true");
    row(written, "align=center");
    row(written, "verticalAlign=bottom");
    row("Label Data Expression Style Line Barcode CheckMark", "color=#00aa00");
    const char *const framed = "Label Data Expression Style Rectangle Picture Barcode CheckMark";
    row(framed, "background=#00aa00");
    row(framed, "border=3pt");
    for (const char *side : {"borderLeft=3pt", "borderTop=3pt", "borderRight=3pt", "borderBottom=3pt"})
        row(framed, side);
    row(framed, "borderColor=#00aa00", "@ border=1pt");
    row("Label Data Expression Style Picture Barcode CheckMark", "padding=4pt");
    row("Style", "basedOn=B");
    row("Style Data Expression", "format=0.00");
    row("Label", "canGrow=false", "Label width=0.3in;height=0.2in;text=some words that need many lines");
    row("Data", "canGrow=false", "Data width=0.3in;height=0.2in;column=long");
    row("Expression", "canGrow=false", "Expression width=0.3in;height=0.2in;value=[long]");
    row("Subreport", "canGrow=false");
    row("Label Data Expression", "canShrink=true", "@ border=1pt");
    row("Subreport", "canShrink=true", "Subreport height=0.7in");
    row("Label Data Expression Picture", "link='https://clinic.example'");
    row("Label Data Expression Picture", "bookmark='b' & [n]");
    row("Data", "hideDuplicates=true", "Data column=g");
    row("Expression", "hideDuplicates=true", "Expression value=[g]");
    row("Label", "text=other");
    row("Data", "column=g");
    row("Picture", "column=n");
    row("Expression", "value=[g]");
    row("Barcode", "value='B2'");
    row("CheckMark", "value=False");
    row("Picture", "description=A dot");
    row("Picture", "fit=stretch");
    row("Barcode", "type=qr");
    row("Barcode", "showText=true", "Barcode height=0.6in");
    row("Subreport", "report=Other");
    row("When", "condition=[n] > 4");
    row("When", "style=C");
    row("Link", "value=[g]");
    return rows;
}

QString fieldOf(const QString &element)
{
    static const QStringList kFields {QStringLiteral("Label"), QStringLiteral("Data"), QStringLiteral("Expression"), QStringLiteral("Line"),
        QStringLiteral("Rectangle"), QStringLiteral("Picture"), QStringLiteral("Barcode"), QStringLiteral("CheckMark"), QStringLiteral("Subreport")};
    if (kFields.contains(element))
        return element;
    return element == u"Link" ? QStringLiteral("Subreport") : QStringLiteral("Data");
}

} // namespace

class tst_report_effects : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void changesTheDocument_data();
    void changesTheDocument();
    void everyAttributeHasItsRow();

private:
    QString laidOut(const Report &report, const QString &element)
    {
        test::LayoutFixture fixture;
        QString table = QStringLiteral("n|g|long");
        for (int i = 0; i < 30; ++i) {
            table += QStringLiteral("\n%1|%2|a long text that needs many lines").arg(i + 1).arg(i / 5 + 1);
            fixture.answer(QStringLiteral("visits %1").arg(i + 1), QStringLiteral("v\nvisit %1\nsecond\nthird").arg(i + 1));
            fixture.answer(QStringLiteral("others %1").arg(i + 1), QStringLiteral("v\nother %1").arg(i + 1));
        }
        const QString sub = QStringLiteral("<Report name=\"%1\"><Page width=\"2in\" height=\"9in\" left=\"0in\" right=\"0in\" top=\"0in\" bottom=\"0in\"/>"
                                           "<RecordSource>%2 {LINK*l}</RecordSource><Section kind=\"detail\" height=\"0.2in\" background=\"#eeeeee\">"
                                           "<Data column=\"v\" width=\"1in\" height=\"0.2in\"/></Section></Report>");
        try {
            QString text = reportText(report, fieldOf(element));
            const QString others = sub.arg(QStringLiteral("Visits"), QStringLiteral("visits")) + sub.arg(QStringLiteral("Other"), QStringLiteral("others"));
            return everything(*fixture.render(text, table, others).document);
        } catch (const ReportError &error) {
            return QStringLiteral("refused: ") + error.description();
        }
    }
};

void tst_report_effects::changesTheDocument_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QString>("given");
    for (const EffectRow &row : effectRows())
        QTest::newRow(qPrintable(QString(row.element + u' ' + row.attributes))) << row.element << row.attributes << row.given;
}

void tst_report_effects::changesTheDocument()
{
    QFETCH(QString, element);
    QFETCH(QString, attributes);
    QFETCH(QString, given);
    Report before = plainReport();
    for (const QString &part : given.split(QStringLiteral(" / "), Qt::SkipEmptyParts))
        before[part.section(u' ', 0, 0)].insert(attributesOf(part.section(u' ', 1)));
    if (element == u"Style")
        before[QStringLiteral("Data")][QStringLiteral("style")] = QStringLiteral("S");
    if (element == u"When")
        before[element][QStringLiteral("in")] = QStringLiteral("yes");
    Report after = before;
    after[element].insert(attributesOf(attributes));
    after[element].removeIf([](const auto &attribute) { return attribute.value().isEmpty(); });
    const QString was = laidOut(before, element);
    const QString is = laidOut(after, element);
    QVERIFY2(!was.startsWith(u"refused"), qPrintable(was));
    QVERIFY2(!is.startsWith(u"refused"), qPrintable(is));
    QVERIFY(was != is);
}

void tst_report_effects::everyAttributeHasItsRow()
{
    // Names only find things; a picture's file and a section's group have tests of their own, a report's title too.
    QMap<QString, QSet<QString>> told {{QStringLiteral("Picture"), {QStringLiteral("file")}}, {QStringLiteral("Section"), {QStringLiteral("group")}},
        {QStringLiteral("Report"), {QStringLiteral("title")}}};
    for (const EffectRow &row : effectRows())
        told[row.element] += row.attributes.section(u'=', 0, 0);
    const test::Schema schema = test::SchemaReader().read();
    QVERIFY(schema.attributes.size() > 15);
    for (auto element = schema.attributes.cbegin(); element != schema.attributes.cend(); ++element) {
        QSet<QString> missing = element.value() - told[element.key()];
        missing.remove(QStringLiteral("name"));
        QVERIFY2(missing.isEmpty(), qPrintable(QString(element.key() + u": " + missing.values().join(u' '))));
    }
}

QTEST_MAIN(tst_report_effects)
#include "tst_report_effects.moc"
