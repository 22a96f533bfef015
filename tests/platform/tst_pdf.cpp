#include "platform/composer/page_composer.h"
#include "platform/pdf/pdf_writer.h"
#include "support/document_builder.h"
#include "support/pdf_reader.h"
#include "support/suite.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;

namespace {

const QString kSans = QStringLiteral("Liberation Sans");
const QString kDejaVu = QStringLiteral("DejaVu Sans");

FontFacePtr fixtureFace(const char *fileName)
{
    constexpr int kAnySize = 100;
    const QString path = QStringLiteral(CORVANE_SOURCE_DIR "/tests/platform/data/") + QLatin1String(fileName);
    return std::make_shared<const FontFace>(QRawFont(path, kAnySize, QFont::PreferNoHinting));
}

/// A page as a report has it: caption, heading row, rows with an empty cell, page header and footer.
Document reportDocument(int pages = 3)
{
    DocumentBuilder builder;
    const quint16 plain = builder.style();
    builder.setStyle(kSans, 14, true, 0xff204080);
    builder.newPage();
    builder.paragraph(QStringLiteral("Appointments (all rooms)"));
    builder.setStyle(kSans, 10);
    const std::vector<qint32> places {1440, 4000, 7000};
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            builder.newPage();
        for (int i = 0; i < 40; ++i)
            builder.row({QStringLiteral("Row %1.%2").arg(page).arg(i), i % 3 == 0 ? QString() : QStringLiteral("O'Neill \\ (Zoë)"),
                QStringLiteral("08:%1").arg(i)}, places);
    }
    builder.document().header = {QStringLiteral("Left head"), QStringLiteral("Clinic"), QStringLiteral("Page %d"), plain, plain};
    builder.document().footer = {QStringLiteral("Printed now"), {}, QStringLiteral("ada"), plain, plain};
    builder.document().outline = {{QStringLiteral("Room A"), 0, Twips(1440), 0}, {QStringLiteral("Zoë's (room)"), 2, Twips(2880), 0}};
    return builder.finish();
}

} // namespace

class tst_pdf : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void lettersExtractAsTyped_data();
    void lettersExtractAsTyped();
    void halvesOfALigatureKeepTheirOrder();
    void composedTextReadsAsTheDocumentSays();
    void pagesReadInOrder();
    void oneFaceHoldsMoreGlyphsThanCodes();
    void fontsAreEmbeddedSubsets_data();
    void fontsAreEmbeddedSubsets();
    void aFontOfManyRunsIsEmbeddedOnce();
    void wordsStandWhereTheDocumentHasThem();
    void shadesAndRulesShowTheirColours();
    void describesItself();
    void outlineLeadsToItsPages();
    void sameDocumentSameBytes_data();
    void sameDocumentSameBytes();
    void oddPagesAreWritten_data();
    void oddPagesAreWritten();

private:
    /// The document as a file that qpdf finds no fault with; empty after a failure.
    QString write(const Document &document, const PdfOptions &options = {});

    QTemporaryDir m_dir;
};

QString tst_pdf::write(const Document &document, const PdfOptions &options)
{
    QString fileName = m_dir.filePath(QStringLiteral("out.pdf"));
    writePdf(document, fileName, options);
    const QString check = readerOutput(QStringLiteral("qpdf"), {QStringLiteral("--check"), fileName});
    if (check.contains(u"No syntax or stream encoding errors") && !check.contains(u"WARNING"))
        return fileName;
    qCritical("%s", qPrintable(check));
    return {};
}

void tst_pdf::lettersExtractAsTyped_data()
{
    QTest::addColumn<FontFacePtr>("face");
    QTest::addColumn<QString>("kind"); // who set the line
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("poppler"); // where poppler turns letters or blanks round; empty: as typed

    FontLibrary library;
    const FontFacePtr sans = library.face(kSans, false);
    const FontFacePtr dejaVu = library.face(kDejaVu, false);
    const QString plain = QStringLiteral("plain");
    const QString shaped = QStringLiteral("shaped");
    const QString glyphs = QStringLiteral("glyphs");
    QTest::newRow("brackets and backslashes") << sans << plain << QStringLiteral("a(b)) \\c\\ ((d <e>/f%") << QString();
    QTest::newRow("Latin letters beyond ASCII") << sans << plain << QStringLiteral("Zoë Łukasz Ňěmec ÿþ «ñ»") << QString();
    QTest::newRow("two characters of one glyph") << sans << plain << QStringLiteral("x\u00b7y\u2219z \u2126 \u00b5") << QString();
    QTest::newRow("quotes, dashes, currency") << sans << plain << QStringLiteral("“a” – ‘b’ — € • …") << QString();
    QTest::newRow("ligatures") << dejaVu << shaped << QStringLiteral("office affluent fjord flags") << QString();
    QTest::newRow("combining marks") << dejaVu << shaped << QStringLiteral("e\u0301tude a\u030angstrom x\u0304y") << QString();
    QTest::newRow("Greek and Cyrillic") << dejaVu << shaped << QStringLiteral("Αθήνα Москва") << QString();
    QTest::newRow("Arabic") << dejaVu << shaped << QStringLiteral("مرحبا بالعالم") << QString();
    QTest::newRow("Arabic ligature of two letters") << dejaVu << shaped << QStringLiteral("السلام عليكم")
                                                    << QStringLiteral("السالم عليكم");
    QTest::newRow("left to right and right to left") << dejaVu << shaped << QStringLiteral("Room 12 שלום end") << QStringLiteral("Room 12 שלוםend");
    QTest::newRow("Hebrew") << dejaVu << shaped << QStringLiteral("שלום עולם") << QString();
    QTest::newRow("Devanagari") << library.face(QStringLiteral("Noto Sans Devanagari"), false) << shaped << QStringLiteral("नमस्ते दुनिया") << QString();
    QTest::newRow("Thai") << dejaVu << shaped << QStringLiteral("สวัสดีชาวโลก") << QString();
    QTest::newRow("Chinese, Japanese, Korean") << dejaVu << shaped << QStringLiteral("臨床報告 ひらがな 한국어") << QString();
    QTest::newRow("no font has it") << dejaVu << shaped << QString(u"a" + QString::fromUcs4(U"\U0010f0f0") + u"b") << QString();
    QTest::newRow("supplementary plane") << dejaVu << glyphs << QStringLiteral("𝔸𝔹 ok 𝕏") << QString();
    QTest::newRow("Chinese, CFF keyed by CID") << fixtureFace("cid-keyed.otf") << glyphs << QStringLiteral("臨床報告書 天地玄黄 A") << QString();
    QTest::newRow("CFF keyed by name") << fixtureFace("name-keyed.otf") << glyphs << QStringLiteral("Clinic Report é 123") << QString();
    QTest::newRow("pictures, nothing to embed") << fixtureFace("pictures.ttf") << glyphs << QStringLiteral("😀👍") << QString();
}

void tst_pdf::lettersExtractAsTyped()
{
    QFETCH(FontFacePtr, face);
    QFETCH(QString, kind);
    QFETCH(QString, text);
    DocumentBuilder builder;
    builder.setStyle(face, 12);
    if (kind == u"plain")
        builder.paragraph(text);
    else if (kind == u"shaped")
        builder.shapedParagraph(text);
    else
        builder.glyphParagraph(text);
    const QString fileName = write(builder.finish());
    QVERIFY(!fileName.isEmpty());
    QFETCH(QString, poppler);
    QCOMPARE(normalised(popplerText(fileName, TextOrder::Reader)), normalised(poppler.isEmpty() ? text : poppler));
    QCOMPARE(normalised(mupdfText(fileName)), normalised(text));
}

void tst_pdf::halvesOfALigatureKeepTheirOrder()
{
    const QString text = QStringLiteral("שלום");
    DocumentBuilder builder;
    builder.setStyle(kDejaVu, 12);
    builder.glyphParagraph(text);
    builder.document().pages[0].shaped[0].xOffsets = {300, 163, 163, 0};
    QCOMPARE(normalised(popplerText(write(builder.finish()), TextOrder::Reader)), normalised(text));
}

/// White space is normalised, since readers see lines and places where the document has cells.
void tst_pdf::composedTextReadsAsTheDocumentSays()
{
    PageComposer composer;
    composer.startDocument({});
    for (const char16_t *words : {u"Zoë office ffi|e\u0301tude a\u030angstrom and more words than fit", u"Αθήνα|Москва",
             u"สวัสดีชาวโลก|臨床報告書", u"한국어|Łukasz Ňěmec"})
        composer.addTable(u"2000|2000;", u"First|Second", words, kNoShade, kNoShade, TableFlow::Continues);
    composer.writeParagraph(u"All of it.");
    const DocumentPtr document = composer.endDocument();
    QCOMPARE(document->notes, QStringList());
    const QString fileName = write(*document);
    QCOMPARE(normalised(popplerText(fileName)), normalised(documentText(*document)));
    QCOMPARE(normalised(mupdfText(fileName)), normalised(documentText(*document)));
}

void tst_pdf::pagesReadInOrder()
{
    const Document document = reportDocument();
    const QString fileName = write(document);
    QString expected;
    for (int i = 0; i < document.pageCount(); ++i) {
        expected += QStringLiteral("Left head Clinic Page %1 ").arg(i + 1);
        appendPageText(expected, document.pages[size_t(i)]);
        expected += QStringLiteral("Printed now ada ");
    }
    QCOMPARE(normalised(popplerText(fileName)), normalised(expected));
    QCOMPARE(normalised(mupdfText(fileName)), normalised(expected));
}

void tst_pdf::oneFaceHoldsMoreGlyphsThanCodes()
{
    DocumentBuilder builder;
    builder.setStyle(kDejaVu, 8);
    QString text;
    for (char16_t c = 0x21; c < 0x580; ++c) {
        const bool isLetter = QChar(c).isLetter() && !QChar(c).isMark();
        if (!isLetter || builder.document().faces[1]->rawFont().glyphIndexesForString(QChar(c)).value(0) == 0)
            continue;
        text += QChar(c);
        if (text.size() % 40 == 0)
            text += u' ';
    }
    const QStringList lines = text.split(u' ');
    for (qsizetype i = 0; i < lines.size(); ++i)
        i % 8 != 7 ? builder.glyphParagraph(lines[i]) : builder.paragraph(QStringLiteral("plain between"));
    const Document document = builder.finish();
    const QString fileName = write(document);
    QCOMPARE(normalised(popplerText(fileName)), normalised(documentText(document)));
    QCOMPARE(normalised(mupdfText(fileName)), normalised(documentText(document)));

    const QString plain = readerOutput(QStringLiteral("qpdf"),
        {QStringLiteral("--qdf"), QStringLiteral("--object-streams=disable"), QStringLiteral("--stream-data=preserve"),
            fileName, QStringLiteral("-")});
    QCOMPARE(plain.count(QStringLiteral("/FontFile2 ")), 1); // however many fonts share it
    QVERIFY2(plain.count(QStringLiteral("/Subtype /Type0")) >= 3, qPrintable(plain.left(500)));
}

void tst_pdf::fontsAreEmbeddedSubsets_data()
{
    QTest::addColumn<FontFacePtr>("face");
    QTest::addColumn<QString>("row"); // name, type, embedded, subset, with characters

    FontLibrary library;
    QTest::newRow("TrueType") << library.face(kSans, false)
                              << QStringLiteral("[A-Z]{6}\\+LiberationSans +CID TrueType +Custom +yes yes yes");
    QTest::newRow("bold") << library.face(kSans, true)
                          << QStringLiteral("[A-Z]{6}\\+LiberationSans-Bold +CID TrueType +Custom +yes yes yes");
    QTest::newRow("CFF keyed by CID") << fixtureFace("cid-keyed.otf")
                                      << QStringLiteral("[A-Z]{6}\\+NotoSansCJKjp-Regular\\S* +CID Type 0C \\(OT\\) +Custom +yes yes yes");
    QTest::newRow("CFF keyed by name") << fixtureFace("name-keyed.otf")
                                       << QStringLiteral("[A-Z]{6}\\+Cantarell-Regular\\S* +CID Type 0C \\(OT\\) +Custom +yes yes yes");
    QTest::newRow("pictures") << fixtureFace("pictures.ttf") << QStringLiteral(" +Type 3 +Custom +yes no  yes");
}

void tst_pdf::fontsAreEmbeddedSubsets()
{
    QFETCH(FontFacePtr, face);
    QFETCH(QString, row);
    DocumentBuilder builder;
    builder.setStyle(face, 12);
    builder.glyphParagraph(QStringLiteral("A B 天 😀"));
    const QString fileName = write(builder.finish());
    const QString fonts = readerOutput(QStringLiteral("pdffonts"), {fileName});
    QVERIFY2(fonts.contains(QRegularExpression(row)), qPrintable(fonts));
    QVERIFY2(QFileInfo(fileName).size() < 12'000, "a whole font was embedded");
}

void tst_pdf::aFontOfManyRunsIsEmbeddedOnce()
{
    DocumentBuilder builder;
    for (int i = 0; i < 5; ++i)
        builder.shapedParagraph(QStringLiteral("office %1 ﷲ").arg(i)); // the last letter is another font's
    const QString fonts = readerOutput(QStringLiteral("pdffonts"), {write(builder.finish())});
    QCOMPARE(fonts.count(QStringLiteral("CID TrueType")), 2);
}

void tst_pdf::wordsStandWhereTheDocumentHasThem()
{
    DocumentBuilder builder;
    builder.row({QStringLiteral("first"), QStringLiteral("second")}, {1441, 7203});
    builder.setStyle(kDejaVu, 12);
    builder.shapedParagraph(QStringLiteral("affluent"));
    const Document document = builder.finish();
    const QString boxes = readerOutput(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), write(document), QStringLiteral("-")});
    for (const TextRun &run : document.pages[0].runs) {
        const QString word = document.pages[0].runText(run).toString();
        const QRegularExpression box(QStringLiteral("xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"([0-9.]+)\" yMax=\"([0-9.]+)\">") + word);
        const QRegularExpressionMatch match = box.match(boxes);
        QVERIFY2(match.hasMatch(), qPrintable(boxes));
        const double x = run.x / 20.0;
        const double baseline = run.y / 20.0;
        QVERIFY(std::abs(match.captured(1).toDouble() - x) < 0.02);
        QVERIFY(match.captured(2).toDouble() < baseline && match.captured(4).toDouble() > baseline);
        QVERIFY(match.captured(4).toDouble() - match.captured(2).toDouble() < 16);
    }
}

void tst_pdf::shadesAndRulesShowTheirColours()
{
    DocumentBuilder builder;
    builder.setStyle(kSans, 10, false, 0xff00aa00);
    builder.paragraph(QStringLiteral("MMMMMMMM"));
    builder.rect(1440, 2880, 1440, 1440, 0xffff0000);
    builder.rect(4320, 2880, 1440, 1440, 0xffff0000);
    builder.rect(7200, 2880, 1440, 1440, 0xfffff4c0);
    const QString fileName = write(builder.finish());
    const QString picture = m_dir.filePath(QStringLiteral("page"));
    readerOutput(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("72"),
        QStringLiteral("-singlefile"), fileName, picture});
    const QImage image(picture + QStringLiteral(".png"));
    QCOMPARE(image.size(), QSize(612, 792));
    QCOMPARE(image.pixel(100, 180), 0xffff0000);
    QCOMPARE(image.pixel(250, 180), 0xffff0000);
    QCOMPARE(image.pixel(400, 180), 0xfffff4c0);
    QCOMPARE(image.pixel(180, 180), 0xffffffff);
    int greenest = 0;
    for (int x = 72; x < 140; ++x) {
        const QRgb pixel = image.pixel(x, 80); // stems of letters, softened at their sides
        greenest = std::max(greenest, qGreen(pixel) - std::max(qRed(pixel), qBlue(pixel)));
    }
    QVERIFY2(greenest > 100, qPrintable(QString::number(greenest)));
}

void tst_pdf::describesItself()
{
    Document document = reportDocument();
    document.info.title = QStringLiteral("Räume <1> & \x01 mehr");
    document.info.user = QStringLiteral("Łada");
    const QString fileName = write(document);
    const QString info = readerOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-isodates"), fileName});
    for (const char *line : {"Title: +Räume <1> & . mehr", "Author: +Łada", "Subject: +test.rpt, 01/01/2026 to 01/31/2026",
             "Creator: +Corvane Reporter\n", "Producer: +Corvane Reporter 1.0\n", "CreationDate: +2026-11-22T09:05:00-05",
             "Pages: +3\n", "Page size: +612 x 792 pts", "PDF version: +1.7"})
        QVERIFY2(info.contains(QRegularExpression(QString::fromUtf8(line))), qPrintable(info));

    const QString xmp = readerOutput(QStringLiteral("pdfinfo"), {QStringLiteral("-meta"), fileName});
    for (const char *part : {"xml:lang=\"x-default\">Räume &lt;1&gt; &amp;   mehr<", "<rdf:li>Łada<", "<rdf:li>en-US<",
             "<pdf:Producer>Corvane Reporter 1.0<", "<xmp:CreateDate>2026-11-22T09:05:00-05:00<"})
        QVERIFY2(xmp.contains(QString::fromUtf8(part)), qPrintable(xmp));
    const QString catalog = readerOutput(QStringLiteral("mutool"), {QStringLiteral("show"), fileName, QStringLiteral("trailer/Root")});
    QVERIFY2(catalog.contains(u"/Lang (en-US)"), qPrintable(catalog));
}

void tst_pdf::outlineLeadsToItsPages()
{
    const QString outline = readerOutput(QStringLiteral("mutool"),
        {QStringLiteral("show"), write(reportDocument()), QStringLiteral("outline")});
    const QStringList lines = outline.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].contains(u"\"Room A\"") && lines[0].contains(u"#page=1"), qPrintable(outline));
    QVERIFY2(lines[1].contains(QStringLiteral("\"Zoë's (room)\"")) && lines[1].contains(u"#page=3"), qPrintable(outline));
}

void tst_pdf::sameDocumentSameBytes_data()
{
    QTest::addColumn<PdfTagging>("tagging");
    QTest::newRow("tagged") << PdfTagging::Always;
    QTest::newRow("untagged") << PdfTagging::Never;
}

void tst_pdf::sameDocumentSameBytes()
{
    QFETCH(PdfTagging, tagging);
    QByteArray first;
    for (const int threads : {1, 2, 4}) { // built each time: nothing may depend on addresses either
        PdfOptions options;
        options.tagging = tagging;
        options.threads = threads;
        Document document = reportDocument(60);
        QImage noise(1200, 1200, QImage::Format_RGB32); // takes longer than the pages that come behind it
        for (int i = 0; i < noise.width() * noise.height(); ++i) {
            const quint32 n(i); // wraps, as a signed number must not
            noise.setPixel(i % noise.width(), i / noise.width(), qRgb(int(n * 7919 >> 3), int(n * 104'729 >> 5), int(n * 31)));
        }
        document.pictures.push_back({noise, {}});
        document.pages.front().pictures.push_back({1440, 9000, 2000, 2000, 0, QStringLiteral("noise")});
        QFile file(write(document, options));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        if (first.isEmpty())
            first = bytes;
        QVERIFY2(bytes == first, qPrintable(QStringLiteral("%1 threads").arg(threads)));
    }
}

void tst_pdf::oddPagesAreWritten_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("pages");

    QTest::newRow("no page gives a blank one") << 0 << 0;
    QTest::newRow("a page without anything") << 0 << 1;
    QTest::newRow("200 columns") << 200 << 1;
    QTest::newRow("more pages than a node of the tree holds") << 1 << 300;
}

void tst_pdf::oddPagesAreWritten()
{
    QFETCH(int, columns);
    QFETCH(int, pages);
    DocumentBuilder builder;
    builder.setStyle(kSans, 1);
    std::vector<qint32> places;
    QStringList cells;
    for (int i = 0; i < columns; ++i) {
        places.push_back(720 + i * 50);
        cells << QStringLiteral("c%1").arg(i);
    }
    for (int i = 0; i < pages; ++i) {
        builder.newPage();
        if (columns > 0)
            builder.row(cells, places);
    }
    const Document document = builder.finish();
    const QString fileName = write(document);
    const QString info = readerOutput(QStringLiteral("pdfinfo"), {fileName});
    QVERIFY2(info.contains(QRegularExpression(QStringLiteral("Pages: +%1\n").arg(std::max(pages, 1)))), qPrintable(info));
    QCOMPARE(normalised(popplerText(fileName)), normalised(documentText(document)));
    QCOMPARE(normalised(mupdfText(fileName)), normalised(documentText(document)));
}

QTEST_MAIN(tst_pdf)
#include "tst_pdf.moc"
