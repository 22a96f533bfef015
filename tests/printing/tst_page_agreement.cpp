#include "platform/composer/page_composer.h"
#include "platform/painting/page_painter.h"
#include "platform/pdf/pdf_writer.h"
#include "platform/printing/print_pages.h"
#include "support/pdf_reader.h"
#include "support/suite.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr int kDpi = 100;
constexpr int kLevels = 32;
constexpr double kMostPercent = 0.5;

bool differs(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) > kLevels || std::abs(qGreen(a) - qGreen(b)) > kLevels
        || std::abs(qBlue(a) - qBlue(b)) > kLevels;
}

/// Share of pixels that differ by more than kLevels in one colour at least.
double percentDiffering(const QImage &a, const QImage &b)
{
    if (a.isNull() || a.size() != b.size())
        return 100;
    qint64 count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += differs(a.pixel(x, y), b.pixel(x, y)) ? 1 : 0;
    }
    return 100.0 * double(count) / (double(a.width()) * a.height());
}

Document table(Orientation orientation)
{
    PageComposer composer;
    composer.setOrientation(orientation);
    composer.setHeader(u"Corvane Clinic|Daily schedule|11/22/2026");
    composer.setFooter(u"confidential||Page %d");
    composer.startDocument({});
    composer.setBold(true);
    composer.setFontSize(14);
    composer.writeParagraph(u"Appointments by provider");
    composer.setFontSize(10);
    composer.setBold(false);
    composer.writeParagraph(u"Sunday, November 22, 2026; all locations");
    const bool isWide = orientation == Orientation::Landscape;
    const QString format = isWide ? QStringLiteral("1500|3000|2600|3200|>1600;")
                                  : QStringLiteral("1200|2400|2200|2200|>1300;");
    composer.setTableBorder(TableBorder::AboveAndBelow);
    composer.addTable(
        format, u"Time|Patient|Status|Reason|Balance;", {}, kNoShade, kNoShade, TableFlow::Starts);
    for (int row = 0; row < (isWide ? 24 : 34); ++row) {
        if (row % 9 == 0) {
            composer.setBold(true);
            composer.addTable(
                format, {}, u"Dr. Ada Whitfield;", kNoShade, kCaptionShade, TableFlow::Continues);
            composer.setBold(false);
        }
        composer.addTable(format, {},
            QStringLiteral(
                "%1:%2 AM|Patient number %3, Łucja|Confirmed by phone|Follow-up visit|%4.50;")
                .arg(8 + row / 6)
                .arg(row % 6 * 10, 2, 10, QLatin1Char('0'))
                .arg(row * 37)
                .arg(row * 113),
            kNoShade, kNoShade, TableFlow::Continues);
    }
    return *composer.endDocument();
}

/// A page of shades under pictures under text.
Document pictures()
{
    Document document = table(Orientation::Portrait);
    QImage gradient(200, 100, QImage::Format_RGB32);
    for (int y = 0; y < gradient.height(); ++y) {
        for (int x = 0; x < gradient.width(); ++x)
            gradient.setPixel(x, y, qRgb(x + 55, 2 * y + 55, 160));
    }
    document.pictures.push_back({gradient, {}});
    document.pages[0].pictures.push_back({1440, 1440, 5760, 2880, 0, {}});
    return document;
}

QImage preview(const Document &document)
{
    const double scale = kDpi / 1440.0;
    QImage image(qRound(document.paperWidth.count() * scale),
        qRound(document.paperHeight.count() * scale), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PagePainter().paint(painter, document, 0, scale, image.rect());
    return image;
}

} // namespace

class tst_page_agreement : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void allThreeShowTheSamePage_data();
    void allThreeShowTheSamePage();
    void picturesStandBetweenShadesAndText();

private:
    QImage rendered(const QString &pdf);
    QImage printed(const Document &document);

    QTemporaryDir m_folder;
};

QImage tst_page_agreement::rendered(const QString &pdf)
{
    const QString image = m_folder.filePath(QStringLiteral("page"));
    const QString output = test::readerOutput(QStringLiteral("pdftoppm"),
        {QStringLiteral("-r"), QString::number(kDpi), QStringLiteral("-png"),
            QStringLiteral("-singlefile"), pdf, image});
    if (!output.isEmpty())
        qWarning("%s", qPrintable(output));
    return QImage(image + QStringLiteral(".png"));
}

QImage tst_page_agreement::printed(const Document &document)
{
    const QString fileName = m_folder.filePath(QStringLiteral("paper.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(fileName);
    requestPaper(printer, document);
    printPages(printer, document);
    return rendered(fileName);
}

void tst_page_agreement::allThreeShowTheSamePage_data()
{
    QTest::addColumn<Document>("document");

    QTest::newRow("portrait table with shades and bold") << table(Orientation::Portrait);
    QTest::newRow("landscape table") << table(Orientation::Landscape);
}

void tst_page_agreement::allThreeShowTheSamePage()
{
    QFETCH(Document, document);
    const QString fileName = m_folder.filePath(QStringLiteral("file.pdf"));
    writePdf(document, fileName);
    const QImage screen = preview(document);
    const QImage file = rendered(fileName);
    const QImage paper = printed(document);

    const double fileAndPaper = percentDiffering(file, paper);
    const double screenAndFile = percentDiffering(screen, file);
    const double screenAndPaper = percentDiffering(screen, paper);
    qInfo("differing: file and paper %.3f %%, screen and file %.3f %%, screen and paper %.3f %%",
        fileAndPaper, screenAndFile, screenAndPaper);
    QVERIFY(fileAndPaper <= kMostPercent);
    QVERIFY(screenAndFile <= kMostPercent);
    QVERIFY(screenAndPaper <= kMostPercent);
}

void tst_page_agreement::picturesStandBetweenShadesAndText()
{
    const QImage screen = preview(pictures());
    const QImage paper = printed(pictures());
    QVERIFY(percentDiffering(screen, paper) <= kMostPercent);
    for (const QImage &page : {screen, paper}) {
        // The upper left corner, the caption's shade below the title, and the lower right corner.
        QVERIFY(!differs(page.pixel(103, 103), qRgb(57, 58, 160)));
        QVERIFY(!differs(page.pixel(400, 170), qRgb(55 + 150, 55 + 70, 160)));
        QVERIFY(!differs(page.pixel(497, 297), qRgb(253, 252, 160)));
        int dark = 0;
        for (int y = 102; y < 120; ++y) {
            for (int x = 102; x < 340; ++x)
                dark += qBlue(page.pixel(x, y)) < 80 ? 1 : 0;
        }
        QVERIFY(dark > 300); // the title's letters
    }
}

QTEST_MAIN(tst_page_agreement)
#include "tst_page_agreement.moc"
