#include "platform/composer/page_composer.h"
#include "platform/desktop/system_desktop.h"
#include "platform/printing/print_pages.h"
#include "printing/print_server.h"
#include "support/modal_answers.h"
#include "support/suite.h"

#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSpinBox>

using namespace corvane;

/// The system's own dialog in front of a printing system of the test's own.
class tst_print_dialog : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theAnswersStandInThePrinter();
    void cancellingIsTold();
    void cleanupTestCase();

private:
    test::PrintServer m_server;
    SystemDesktop m_desktop;
};

namespace {

DocumentPtr wideReport()
{
    PageComposer composer;
    composer.setOrientation(Orientation::Landscape);
    composer.startDocument({});
    return composer.endDocument();
}

template <typename T> T &part(QDialog &dialog, const char *name)
{
    auto *found = dialog.findChild<T *>(QLatin1StringView(name));
    if (!found)
        qFatal("The print dialog has no %s", name);
    return *found;
}

} // namespace

void tst_print_dialog::initTestCase()
{
    m_server.addQueue(QStringLiteral("Evening"), true);
    m_server.addQueue(QStringLiteral("Morning"), true, test::letterPrinter());
    QCOMPARE(m_server.start(), QString());
}

void tst_print_dialog::cleanupTestCase()
{
    m_server.stop();
}

void tst_print_dialog::theAnswersStandInThePrinter()
{
    QPrinter printer(QPrinter::HighResolution);
    requestPaper(printer, *wideReport());
    test::ModalAnswers answers;
    answers.drive([](QDialog &dialog) {
        QVERIFY(qobject_cast<QPrintDialog *>(&dialog));
        QVERIFY(part<QRadioButton>(dialog, "printAll").isChecked());
        QCOMPARE(part<QSpinBox>(dialog, "to").maximum(), 7);
        part<QComboBox>(dialog, "printers").setCurrentText(QStringLiteral("Morning"));
        part<QRadioButton>(dialog, "printRange").setChecked(true);
        part<QSpinBox>(dialog, "from").setValue(2);
        part<QSpinBox>(dialog, "to").setValue(3);
        part<QSpinBox>(dialog, "copies").setValue(4);
        part<QRadioButton>(dialog, "duplexLong").setChecked(true);
        dialog.accept();
    });
    QVERIFY(m_desktop.printDialog(printer, 7));
    answers.verify();
    QCOMPARE(printer.printerName(), QStringLiteral("Morning"));
    QCOMPARE(printer.printRange(), QPrinter::PageRange);
    QCOMPARE(printer.pageRanges().toString(), QStringLiteral("2-3"));
    QCOMPARE(printer.copyCount(), 4);
    QCOMPARE(printer.duplex(), QPrinter::DuplexLongSide);
    // Nobody changed the paper, so it is still what the document asked for.
    QCOMPARE(printer.pageLayout().pageSize().id(), QPageSize::Letter);
    QCOMPARE(printer.pageLayout().orientation(), QPageLayout::Landscape);
}

void tst_print_dialog::cancellingIsTold()
{
    QPrinter printer(QPrinter::HighResolution);
    test::ModalAnswers answers;
    answers.drive([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QVERIFY(!m_desktop.printDialog(printer, 7));
}

QTEST_MAIN(tst_print_dialog)
#include "tst_print_dialog.moc"
