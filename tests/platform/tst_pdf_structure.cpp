#include "platform/composer/page_composer.h"
#include "platform/pdf/pdf_writer.h"
#include "support/document_builder.h"
#include "support/pdf_reader.h"
#include "support/suite.h"

#include <QtCore/QBuffer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;

namespace {

constexpr auto kFormat = u"2500|2500|>1000;";
constexpr auto kHeading = u"Patient|Remark|Minutes";

/// A heading row, a caption, rows with a wrapped and an empty cell, a note between rows and one behind
/// them, over two pages.
DocumentPtr twoPages()
{
    PageComposer composer;
    composer.startDocument({QStringLiteral("Two pages"), {}, {}, {}, {}, QStringLiteral("en-US")});
    composer.setHeader(u"Left|Clinic|Page %d");
    composer.setFooter(u"Database||");
    composer.writeParagraph(u"Dates of Report");
    composer.setTableBorder(TableBorder::AboveAndBelow);
    composer.addTable(kFormat, kHeading, {}, kNoShade, kNoShade, TableFlow::Starts);
    composer.addOutlineEntry(QStringLiteral("Room A"));
    composer.addTable(u"4000;", {}, u"Room A", kNoShade, kCaptionShade, TableFlow::Continues);
    const auto row = [&](const QString &cells) {
        composer.addTable(kFormat, kHeading, cells, kNoShade, kNoShade, TableFlow::Continues);
    };
    row(QStringLiteral("Ann|came late because of the snow on the road|45"));
    composer.writeParagraph(u"A note.");
    composer.writeParagraph({});
    row(QStringLiteral("Bob||30"));
    row(QString(u"Tall|" + QStringLiteral("word\n").repeated(60) + u"end|5"));
    row(QStringLiteral("Cy|last|60"));
    composer.writeParagraph(u"The end.");
    return composer.endDocument();
}

/// Poppler's walk through the structure as one line: types and attributes, texts in quotes.
QString structureOf(const QString &fileName)
{
    return readerOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-struct-text"), fileName})
        .remove(QStringLiteral(" (block)")).remove(QStringLiteral(" (inline)")).simplified();
}

Document decoratedDocument()
{
    DocumentBuilder builder;
    builder.paragraph(QStringLiteral("See the clinic"));
    builder.paragraph(QStringLiteral("Behind"));
    Document &document = builder.document();
    QImage half(2, 2, QImage::Format_ARGB32);
    half.fill(qRgba(255, 0, 0, 128));
    QImage solid(8, 8, QImage::Format_RGB32);
    solid.fill(0xff0000ff);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    solid.save(&buffer, "JPEG");
    document.pictures = {{half, {}}, {solid, jpeg}};
    Page &page = document.pages[0];
    page.pictures = {{1440, 2880, 1440, 1440, 0, QStringLiteral("The seal")}, {4320, 2880, 1440, 1440, 1, {}},
        {7200, 2880, 1440, 1440, 1, {}}};
    page.links = {{1440, 1440, 3000, 240, QStringLiteral("https://clinic.example/a b?q=\u00e9")},
        {1440, 1680, 3000, 240, QStringLiteral("#here")}, {1440, 1920, 3000, 240, QStringLiteral("#nowhere")},
        {1440, 2160, 3000, 240, QStringLiteral("file:///etc/passwd")}};
    document.bookmarks = {{QStringLiteral("here"), 0, Twips(2880)}};
    document.outline = {{QStringLiteral("One"), 0, Twips(1440), 0}, {QStringLiteral("One.one"), 0, Twips(1500), 1},
        {QStringLiteral("Leaps"), 0, Twips(1600), 7}, {QStringLiteral("Two"), 0, Twips(1700), 0}};
    return builder.finish();
}

} // namespace

class tst_pdf_structure : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void aTableGoesOnOverPages();
    void picturesAndLinksHaveTheirPlaces();
    void picturesShowTheirColours();
    void outlineNests();
    void longDocumentsAreTaggedOnRequest_data();
    void longDocumentsAreTaggedOnRequest();
    void sameDocumentSameBytes_data();
    void sameDocumentSameBytes();

private:
    QString write(const Document &document, PdfTagging tagging = PdfTagging::ShortDocuments);

    QTemporaryDir m_dir;
};

QString tst_pdf_structure::write(const Document &document, PdfTagging tagging)
{
    QString fileName = m_dir.filePath(QStringLiteral("out.pdf"));
    PdfOptions options;
    options.tagging = tagging;
    writePdf(document, fileName, options);
    const QString check = readerOutput(QStringLiteral("qpdf"), {QStringLiteral("--check"), fileName});
    if (check.contains(u"No syntax or stream encoding errors") && !check.contains(u"WARNING"))
        return fileName;
    qCritical("%s", qPrintable(check));
    return {};
}

void tst_pdf_structure::aTableGoesOnOverPages()
{
    const DocumentPtr document = twoPages();
    QCOMPARE(document->pageCount(), 2);
    QString found = structureOf(write(*document));
    found.replace(QRegularExpression(QStringLiteral("(word[\" ]+)+")), QStringLiteral("word "));
    const QString th = QStringLiteral("TH: /Scope /Column ");
    QCOMPARE(found,
        QString(u"Document P \"Dates of Report\" Table TR " + th + u"\"Patient\" " + th + u"\"Remark\" " + th
            + u"\"Minutes\" TR TD: /ColSpan 3 H1 \"Room A\" "
              u"TR TD \"Ann\" TD \"came late because of the snow on the road\" TD \"45\" "
              u"TR TD: /ColSpan 3 P \"A note.\" TR TD \"Bob\" TD TD \"30\" "
              u"TR TD \"Tall\" TD \"word end\" TD \"5\" "
              u"TR TD \"Cy\" TD \"last\" TD \"60\" P \"The end.\""));
}

void tst_pdf_structure::picturesAndLinksHaveTheirPlaces()
{
    const QString fileName = write(decoratedDocument());
    const QString structure = structureOf(fileName);
    QVERIFY2(structure.contains(u"P Link \"See the clinic\" Object"), qPrintable(structure));
    QVERIFY2(structure.contains(u"P Link \"Behind\" Object"), qPrintable(structure));
    QVERIFY2(structure.contains(u"Figure"), qPrintable(structure));
    QVERIFY(readerOutput(QStringLiteral("qpdf"), {QStringLiteral("--json"), fileName}).contains(u"\"/Alt\": \"u:The seal\""));

    const QString file = readerOutput(QStringLiteral("qpdf"),
        {QStringLiteral("--qdf"), QStringLiteral("--object-streams=disable"), fileName, QStringLiteral("-")});
    QCOMPARE(file.count(QStringLiteral("/Subtype /Link")), 2); // neither the unknown name nor the file
    QVERIFY(file.contains(u"/URI (https://clinic.example/a%20b?q=%C3%A9)"));
    QVERIFY(file.contains(u"/Dest (here)"));
    QCOMPARE(file.count(QStringLiteral("/DCTDecode")), 1); // placed twice, held once
}

void tst_pdf_structure::picturesShowTheirColours()
{
    const QString picture = m_dir.filePath(QStringLiteral("page"));
    readerOutput(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("72"),
        QStringLiteral("-singlefile"), write(decoratedDocument(), PdfTagging::Never), picture});
    const QImage image(picture + QStringLiteral(".png"));
    const auto near = [](QRgb a, QRgb b) {
        return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b)) < 12;
    };
    QVERIFY(near(image.pixel(108, 180), 0xffff7f7f));
    QVERIFY(near(image.pixel(252, 180), 0xff0000ff));
    QVERIFY(near(image.pixel(396, 180), 0xff0000ff));
    QVERIFY(near(image.pixel(180, 180), 0xffffffff));
}

void tst_pdf_structure::outlineNests()
{
    const QString outline = readerOutput(QStringLiteral("mutool"),
        {QStringLiteral("show"), write(decoratedDocument()), QStringLiteral("outline")});
    QStringList depths;
    for (const QString &line : outline.split(u'\n', Qt::SkipEmptyParts))
        depths << QString::number(line.indexOf(u'"') - line.indexOf(u'\t'));
    QCOMPARE(depths.join(u' '), QStringLiteral("1 2 3 1"));
}

void tst_pdf_structure::longDocumentsAreTaggedOnRequest_data()
{
    QTest::addColumn<int>("pages");
    QTest::addColumn<PdfTagging>("tagging");
    QTest::addColumn<QString>("said");

    QTest::newRow("500 pages") << 500 << PdfTagging::ShortDocuments << QStringLiteral("yes");
    QTest::newRow("501 pages") << 501 << PdfTagging::ShortDocuments << QStringLiteral("no, the document has more than 500 pages");
    QTest::newRow("501 pages, asked for") << 501 << PdfTagging::Always << QStringLiteral("yes");
    QTest::newRow("one page, not wanted") << 1 << PdfTagging::Never << QStringLiteral("no");
}

void tst_pdf_structure::longDocumentsAreTaggedOnRequest()
{
    QFETCH(int, pages);
    QFETCH(PdfTagging, tagging);
    QFETCH(QString, said);
    DocumentBuilder builder;
    for (int i = 0; i < pages; ++i) {
        builder.newPage();
        builder.paragraph(QStringLiteral("x"));
    }
    const QString fileName = write(builder.finish(), tagging);
    const QString custom = readerOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-custom"), fileName});
    QVERIFY2(custom.contains(QRegularExpression(QStringLiteral("Tagged: +%1\n").arg(said))), qPrintable(custom));
    QVERIFY(custom.contains(QRegularExpression(QStringLiteral("Complete: +yes"))));
    const QString info = readerOutput(QStringLiteral("pdfinfo"), {fileName});
    QVERIFY(info.contains(QRegularExpression(QStringLiteral("Tagged: +%1\n").arg(said.left(3).remove(u',')))));
}

void tst_pdf_structure::sameDocumentSameBytes_data()
{
    QTest::addColumn<PdfTagging>("tagging");

    QTest::newRow("tagged") << PdfTagging::Always;
    QTest::newRow("untagged") << PdfTagging::Never;
}

void tst_pdf_structure::sameDocumentSameBytes()
{
    QFETCH(PdfTagging, tagging);
    QByteArray first;
    for (int i = 0; i < 2; ++i) {
        QFile file(write(*twoPages(), tagging));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        if (i == 0)
            first = bytes;
        else
            QVERIFY(bytes == first);
    }
}

QTEST_MAIN(tst_pdf_structure)
#include "tst_pdf_structure.moc"
