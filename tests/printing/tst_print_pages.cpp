#include "platform/composer/page_composer.h"
#include "platform/printing/print_error.h"
#include "platform/printing/print_pages.h"
#include "support/hindrances.h"
#include "support/pdf_reader.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

using Settings = std::function<void(QPrinter &)>;

Document report(int pages, Orientation orientation = Orientation::Portrait)
{
    PageComposer composer;
    composer.setOrientation(orientation);
    composer.setFooter(u"|sheet %d|");
    composer.startDocument({QStringLiteral("Daily schedule"), {}, {}, {}, {}, {}});
    for (int page = 1; page <= pages; ++page) {
        if (page > 1)
            composer.newPage();
        composer.writeParagraph(QStringLiteral("Office fiancée Łódź, page %1").arg(page));
    }
    return *composer.endDocument();
}

QString readFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

} // namespace

class tst_print_pages : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void settingsChooseThePages_data();
    void settingsChooseThePages();
    void paperFollowsTheDocument_data();
    void paperFollowsTheDocument();
    void smallerPaperShrinksThePage();
    void textStaysText();
    void stoppingLeavesNothing_data();
    void stoppingLeavesNothing();
    void onlyTheOwnerReadsTheSpool();
    void failuresAreTold_data();
    void failuresAreTold();
    void aFullDiskIsTold();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    PrintResult print(
        const Document &document, const Settings &settings = {}, const PrintOptions &options = {});

    QTemporaryDir m_folder;
    QString m_file;
};

/// A place for temporary files of its own, to see what is left there.
void tst_print_pages::initTestCase()
{
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("tmp")));
    for (const char *variable : {"TMPDIR", "TMP"}) // the second one on Windows
        qputenv(variable, QFile::encodeName(path(QStringLiteral("tmp"))));
}

void tst_print_pages::init()
{
    Suite::init();
    m_file = path(QStringLiteral("paper.pdf"));
    QFile::remove(m_file);
}

PrintResult tst_print_pages::print(
    const Document &document, const Settings &settings, const PrintOptions &options)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(m_file);
    requestPaper(printer, document);
    if (settings)
        settings(printer);
    return printPages(printer, document, options);
}

void tst_print_pages::settingsChooseThePages_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<QString>("pages");

    const auto row = [](const char *name, const Settings &settings, const char *pages) {
        QTest::newRow(name) << settings << QString::fromLatin1(pages);
    };
    row("nothing set: all", {}, "1 2 3 4 5");
    row(
        "from and to",
        [](QPrinter &printer) {
            printer.setPrintRange(QPrinter::PageRange);
            printer.setFromTo(2, 3);
        },
        "2 3");
    row(
        "a list of ranges, partly beyond the report",
        [](QPrinter &printer) {
            printer.setPrintRange(QPrinter::PageRange);
            printer.setPageRanges(QPageRanges::fromString(QStringLiteral("1,3-4,5-9")));
        },
        "1 3 4 5");
    row(
        "the current page", [](QPrinter &printer) { printer.setPrintRange(QPrinter::CurrentPage); },
        "3");
    row(
        "a file has its copies in it, last page first",
        [](QPrinter &printer) {
            printer.setPrintRange(QPrinter::PageRange);
            printer.setFromTo(1, 2);
            printer.setCopyCount(2);
            printer.setCollateCopies(true);
            printer.setPageOrder(QPrinter::LastPageFirst);
        },
        "2 1 2 1");
    row(
        "not collated",
        [](QPrinter &printer) {
            printer.setPrintRange(QPrinter::PageRange);
            printer.setFromTo(1, 2);
            printer.setCopyCount(2);
            printer.setCollateCopies(false);
        },
        "1 1 2 2");
}

void tst_print_pages::settingsChooseThePages()
{
    QFETCH(Settings, settings);
    QFETCH(QString, pages);

    QStringList told;
    const PrintProgress progress = [&told](int page, int count) {
        told += QStringLiteral("%1/%2").arg(page).arg(count);
        return true;
    };
    const PrintResult result = print(report(5), settings, {.currentPage = 2, .progress = progress});
    QCOMPARE(result.outcome, PrintOutcome::Printed);
    QCOMPARE(result.notes, QStringList());
    QStringList printed;
    for (const QString &page :
        test::popplerText(m_file, test::TextOrder::Reader).split(u'\f', Qt::SkipEmptyParts))
        printed += page.section(QStringLiteral("sheet "), 1).simplified();
    QCOMPARE(printed.join(u' '), pages);
    QCOMPARE(result.pageCount, printed.size());
    QCOMPARE(told.size(), printed.size());
    QCOMPARE(told.last(), QStringLiteral("%1/%1").arg(printed.size()));
}

void tst_print_pages::paperFollowsTheDocument_data()
{
    QTest::addColumn<Orientation>("orientation");
    QTest::addColumn<QString>("size");

    QTest::newRow("portrait") << Orientation::Portrait << QStringLiteral("612 x 792 pts (letter)");
    QTest::newRow("landscape") << Orientation::Landscape
                               << QStringLiteral("792 x 612 pts (letter)");
}

void tst_print_pages::paperFollowsTheDocument()
{
    QFETCH(Orientation, orientation);
    QFETCH(QString, size);
    print(report(1, orientation));
    const QString info = test::readerOutput(QStringLiteral("pdfinfo"), {m_file});
    QVERIFY2(info.contains(size), qPrintable(info));
    QVERIFY2(info.contains(QStringLiteral("Daily schedule")), qPrintable(info));
}

void tst_print_pages::smallerPaperShrinksThePage()
{
    const Document document = report(1);
    const PrintResult result
        = print(document, [](QPrinter &printer) { printer.setPageSize(QPageSize(QPageSize::A5)); });
    QCOMPARE(result.notes,
        QStringList(QStringLiteral("The pages were printed at 68 % of their size, to fit the "
                                   "printable area of the paper (A5).")));
    const QString words = test::readerOutput(
        QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), m_file, QStringLiteral("-")});
    QVERIFY2(words.contains(QStringLiteral("width=\"420")), qPrintable(words));
    // One inch of the page becomes 0.68 inch of the paper.
    const auto office
        = QRegularExpression(QStringLiteral("xMin=\"([0-9.]+)\"[^>]*>Office")).match(words);
    QVERIFY2(std::abs(office.captured(1).toDouble() - 72 * 420.0 / 612) < 1, qPrintable(words));
}

void tst_print_pages::textStaysText()
{
    print(report(1));
    QCOMPARE(test::normalised(test::popplerText(m_file, test::TextOrder::Reader)),
        QStringLiteral("Office fiancée Łódź, page 1 sheet 1"));
    const QString fonts = test::readerOutput(QStringLiteral("pdffonts"), {m_file});
    QVERIFY2(fonts.contains(QStringLiteral("LiberationSans")), qPrintable(fonts));
}

void tst_print_pages::stoppingLeavesNothing_data()
{
    QTest::addColumn<int>("stopAt");
    QTest::addColumn<QString>("before");

    QTest::newRow("before the first page") << 1 << QString();
    QTest::newRow("in the middle") << 3 << QString();
    QTest::newRow("an older file stays as it was") << 3 << QStringLiteral("old");
}

void tst_print_pages::stoppingLeavesNothing()
{
    QFETCH(int, stopAt);
    QFETCH(QString, before);
    if (!before.isEmpty()) {
        QFile old(m_file);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write(before.toLatin1());
    }
    const auto progress = [&](int page, int) { return page < stopAt; };
    const PrintResult result = print(report(5), {}, {.currentPage = 0, .progress = progress});
    QCOMPARE(result.outcome, PrintOutcome::Stopped);
    QCOMPARE(readFile(m_file), before);
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files).size(), before.isEmpty() ? 0 : 1);
    QVERIFY(QDir::temp().isEmpty());
}

void tst_print_pages::onlyTheOwnerReadsTheSpool()
{
    int seen = 0;
    QFile::Permissions forOthers;
    const auto progress = [&](int, int) {
        for (const QFileInfo &spooled : QDir::temp().entryInfoList(QDir::Files | QDir::Hidden)) {
            ++seen;
            forOthers |= spooled.permissions() & ~(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
        }
        return true;
    };
    print(report(5), {}, {.currentPage = 0, .progress = progress});
    QVERIFY(seen > 0);
    QCOMPARE(forOthers, QFile::Permissions());
}

void tst_print_pages::failuresAreTold_data()
{
    QTest::addColumn<Settings>("settings");
    QTest::addColumn<bool>("isWhole");
    QTest::addColumn<QString>("words");

    const QString file = path(QStringLiteral("none/paper.pdf"));
    QTest::newRow("a folder that does not exist")
        << Settings([file](QPrinter &printer) { printer.setOutputFileName(file); }) << true
        << QStringLiteral("The report was not printed to the file \"%1\". The folder \"%2\" does not exist. "
                          "Choose another folder.")
               .arg(QDir::toNativeSeparators(file), QDir::toNativeSeparators(path(QStringLiteral("none"))));
    const auto row
        = [](const char *name, const Settings &settings, bool isWhole, const char *words) {
              QTest::newRow(name) << settings << isWhole << QString::fromUtf8(words);
          };
    row(
        "neither printer nor file",
        [](QPrinter &printer) {
            printer.setOutputFileName(QString());
            printer.setOutputFormat(QPrinter::PdfFormat);
        },
        true, "The report was not printed. No printer and no file was chosen. Choose one of them.");
    row(
        "pages that are not there",
        [](QPrinter &printer) {
            printer.setPrintRange(QPrinter::PageRange);
            printer.setFromTo(7, 9);
        },
        true,
        "Nothing was printed. The pages asked for, 7-9, are not among the report's 2. Choose other "
        "pages.");
    row("a report that was stopped", {}, false,
        "The report was not printed. It is not complete. Run the report again and let it finish.");
}

void tst_print_pages::failuresAreTold()
{
    QFETCH(Settings, settings);
    QFETCH(bool, isWhole);
    QFETCH(QString, words);
    Document document = report(2);
    document.isWhole = isWhole;
    try {
        print(document, settings);
        QFAIL("printed");
    } catch (const PrintError &error) {
        QCOMPARE(error.message(), words);
    }
    QVERIFY(!QFile::exists(m_file));
}

/// A limit on the size of files stands for the disk that is full.
void tst_print_pages::aFullDiskIsTold()
{
    const Document document = report(3);
    QString words;
    try {
        const test::FullDisk full(2000);
        print(document);
    } catch (const PrintError &error) {
        words = error.message();
    }
    QCOMPARE(words,
        QStringLiteral(
            "The report was not printed to the file \"%1\". The folder \"%2\" has no room for its "
            "pages. Free some space there.")
            .arg(m_file, QDir::tempPath()));
    QVERIFY(!QFile::exists(m_file));
}

QTEST_MAIN(tst_print_pages)
#include "tst_print_pages.moc"
