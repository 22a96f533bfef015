#include "export/print_document.h"
#include "platform/composer/page_composer.h"
#include "platform/printing/print_error.h"
#include "platform/printing/print_queue.h"
#include "printing/print_server.h"
#include "support/pdf_reader.h"
#include "support/scripted_desktop.h"
#include "support/suite.h"

#include <QtCore/QTemporaryDir>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>

using namespace corvane;

class tst_print_queue : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aJobComesOutAsComposed_data();
    void aJobComesOutAsComposed();
    void theDialogDecides();
    void theDialogsPaperCounts();
    void nothingIsSentWithoutConsent_data();
    void nothingIsSentWithoutConsent();
    void anUnknownPrinterNamesTheOthers();
    void aPrinterThatRefusesIsTold();
    void withoutPrintersAFileIsOffered_data();
    void withoutPrintersAFileIsOffered();
    void cleanupTestCase();

private:
    test::PrintedJob nextJob();

    test::PrintServer m_server;
    test::ScriptedDesktop m_desktop;
};

namespace {

DocumentPtr report(int pages, Orientation orientation = Orientation::Portrait)
{
    PageComposer composer;
    composer.setOrientation(orientation);
    composer.startDocument({QStringLiteral("Daily schedule"), {}, {}, {}, {}, {}});
    for (int page = 1; page <= pages; ++page) {
        if (page > 1)
            composer.newPage();
        composer.writeParagraph(QStringLiteral("This is page %1").arg(page));
    }
    return composer.endDocument();
}

QString textOf(const test::PrintedJob &job)
{
    return test::popplerText(job.fileName).simplified();
}

QString infoOf(const test::PrintedJob &job)
{
    return test::readerOutput(QStringLiteral("pdfinfo"), {job.fileName});
}

const QString kMorning = QStringLiteral("Morning");
const QString kPlain = QStringLiteral("Plain");
const QString kClosed = QStringLiteral("Closed");

} // namespace

void tst_print_queue::initTestCase()
{
    m_server.addQueue(kMorning, true, test::letterPrinter());
    m_server.addQueue(kPlain, true);
    m_server.addQueue(kClosed, false);
    QCOMPARE(m_server.start(), QString());
}

void tst_print_queue::cleanupTestCase()
{
    m_server.stop();
}

test::PrintedJob tst_print_queue::nextJob()
{
    std::optional<test::PrintedJob> job;
    (void)QTest::qWaitFor([&] { return (job = m_server.takeJob()).has_value(); }, 20'000);
    return job.value_or(test::PrintedJob());
}

void tst_print_queue::aJobComesOutAsComposed_data()
{
    QTest::addColumn<QString>("queue");
    QTest::addColumn<Orientation>("orientation");
    QTest::addColumn<QString>("size");

    QTest::newRow("portrait") << kMorning << Orientation::Portrait
                              << QStringLiteral("612 x 792 pts");
    QTest::newRow("landscape") << kMorning << Orientation::Landscape
                               << QStringLiteral("792 x 612 pts");
    QTest::newRow("a printer without a description")
        << kPlain << Orientation::Portrait << QStringLiteral("612 x 792 pts");
}

void tst_print_queue::aJobComesOutAsComposed()
{
    QFETCH(QString, queue);
    QFETCH(Orientation, orientation);
    QFETCH(QString, size);

    const PrintResult result
        = printToQueue(*report(2, orientation), queue, {.copies = 3, .progress = {}});
    QCOMPARE(result.outcome, PrintOutcome::Printed);
    QCOMPARE(result.pageCount, 2);
    QCOMPARE(result.notes, QStringList());
    const test::PrintedJob job = nextJob();
    QCOMPARE(textOf(job), QStringLiteral("This is page 1 This is page 2"));
    QVERIFY2(infoOf(job).contains(size), qPrintable(infoOf(job)));
    QCOMPARE(job.title, QStringLiteral("Daily schedule"));
    QCOMPARE(job.copies, QStringLiteral("3"));
}

void tst_print_queue::theDialogDecides()
{
    m_desktop.printDialogs = {[](QPrinter &printer) {
        printer.setPrinterName(kMorning);
        printer.setPrintRange(QPrinter::PageRange);
        printer.setFromTo(2, 3);
        printer.setCopyCount(2);
        printer.setCollateCopies(true);
        printer.setDuplex(QPrinter::DuplexLongSide);
        printer.setPageOrder(QPrinter::LastPageFirst);
        return true;
    }};
    const std::optional<PrintResult> result = printDocument(m_desktop, report(4));
    QVERIFY(result.has_value());
    QCOMPARE(result->pageCount, 2);
    QCOMPARE(m_desktop.printPageCounts.last(), 4);
    const test::PrintedJob job = nextJob();
    QCOMPARE(textOf(job), QStringLiteral("This is page 3 This is page 2"));
    QCOMPARE(job.copies, QStringLiteral("2"));
    for (const char *option : {"sides=two-sided-long-edge", "Collate", "media=Letter"})
        QVERIFY2(job.options.contains(QLatin1StringView(option)), qPrintable(job.options));
}

void tst_print_queue::theDialogsPaperCounts()
{
    m_desktop.printDialogs = {[](QPrinter &printer) {
        printer.setPrinterName(kMorning);
        printer.setPageSize(QPageSize(QPageSize::A5));
        return true;
    }};
    const std::optional<PrintResult> result = printDocument(m_desktop, report(1));
    QVERIFY(result.has_value());
    // The quarter inch at each side that this printer leaves white counts: 384 of 612 points are
    // left.
    QCOMPARE(result->notes,
        QStringList(QStringLiteral("The pages were printed at 62 % of their size, to fit the "
                                   "printable area of the paper (A5).")));
    const test::PrintedJob job = nextJob();
    QVERIFY2(job.options.contains(QStringLiteral("media=A5")), qPrintable(job.options));
    QVERIFY2(infoOf(job).contains(QStringLiteral("420 x 595 pts")), qPrintable(infoOf(job)));
}

void tst_print_queue::nothingIsSentWithoutConsent_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<bool>("isWhole");

    QTest::newRow("the dialog was cancelled") << false << true;
    QTest::newRow("printing was stopped") << true << true;
    QTest::newRow("the report is not whole") << true << false;
}

void tst_print_queue::nothingIsSentWithoutConsent()
{
    QFETCH(bool, isAccepted);
    QFETCH(bool, isWhole);

    m_desktop.printDialogs.clear();
    if (isWhole) {
        m_desktop.printDialogs = {[isAccepted](QPrinter &printer) {
            printer.setPrinterName(kMorning);
            return isAccepted;
        }};
    }
    Document document = *report(3);
    document.isWhole = isWhole;
    const std::optional<PrintResult> result
        = printDocument(m_desktop, std::make_shared<const Document>(document),
            {.currentPage = 0, .progress = [](int page, int) { return page < 2; }});
    QCOMPARE(result.has_value() && result->outcome == PrintOutcome::Printed, false);
    // Had anything been sent, it would come out before this.
    printToQueue(*report(1), kMorning);
    QCOMPARE(textOf(nextJob()), QStringLiteral("This is page 1"));
}

void tst_print_queue::anUnknownPrinterNamesTheOthers()
{
    try {
        printToQueue(*report(1), QStringLiteral("Evening"));
        QFAIL("printed");
    } catch (const PrintError &error) {
        QCOMPARE(error.message(),
            QStringLiteral("There is no printer \"Evening\" on this computer. Choose one of these: "
                           "Closed, Morning, Plain."));
    }
}

void tst_print_queue::aPrinterThatRefusesIsTold()
{
    m_desktop.messages.clear();
    m_desktop.printDialogs = {[](QPrinter &printer) {
        printer.setPrinterName(kClosed);
        return true;
    }};
    QVERIFY(!printDocument(m_desktop, report(1)).has_value());
    QCOMPARE(m_desktop.messages.size(), 1);
    const QString words = m_desktop.messages[0].text;
    QVERIFY2(
        words.startsWith(QStringLiteral("The report was not printed on the printer \"Closed\".")),
        qPrintable(words));
    QVERIFY2(words.contains(QStringLiteral("not accepting")), qPrintable(words));
}

void tst_print_queue::withoutPrintersAFileIsOffered_data()
{
    QTest::addColumn<MessageAnswer>("answer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("prints");

    QTest::newRow("no") << MessageAnswer::No << QString() << false;
    QTest::newRow("yes") << MessageAnswer::Yes << QStringLiteral("paper.pdf") << true;
    QTest::newRow("yes, but no file") << MessageAnswer::Yes << QString() << false;
}

void tst_print_queue::withoutPrintersAFileIsOffered()
{
    QFETCH(MessageAnswer, answer);
    QFETCH(QString, name);
    QFETCH(bool, prints);

    const QTemporaryDir folder;
    QCOMPARE(m_server.start(test::PrintServer::Queues::None), QString());
    const auto restore = qScopeGuard([this] { QCOMPARE(m_server.start(), QString()); });
    const QString file = name.isEmpty() ? QString() : folder.filePath(name);
    m_desktop.messages.clear();
    m_desktop.answers = {answer};
    if (answer == MessageAnswer::Yes)
        m_desktop.files = {file};
    QCOMPARE(printDocument(m_desktop, report(1)).has_value(), prints);
    QVERIFY(m_desktop.messages.value(0).text.startsWith(
        QStringLiteral("No printer is set up on this computer.")));
    QCOMPARE(!file.isEmpty() && QFile::exists(file), prints);
}

/// As in the batch program: an application without widgets, and no screen.
int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    tst_print_queue suite;
    return QTest::qExec(&suite, argc, argv);
}
#include "tst_print_queue.moc"
