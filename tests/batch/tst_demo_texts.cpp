// Every demo report as text, compared with files that a person has read. CORVANE_RENEW=1 writes them anew;
// read the difference before committing it.

#include "support/demo_folder.h"
#include "support/print_date.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr int kPatients = 60;
const QString kExpectations = QStringLiteral(CORVANE_SOURCE_DIR "/tests/expectations");

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

} // namespace

class tst_demo_texts : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void reportsReadAsReviewed_data();
    void reportsReadAsReviewed();
    void everyReportIsReviewed();

private:
    QStringList reports() const { return QDir(m_demo.report({})).entryList({QStringLiteral("*.rpt")}); }

    test::DemoFolder m_demo {kPatients};
};

void tst_demo_texts::reportsReadAsReviewed_data()
{
    QTest::addColumn<QString>("report");
    for (const QString &report : reports())
        QTest::newRow(qPrintable(report)) << report;
}

void tst_demo_texts::reportsReadAsReviewed()
{
    QFETCH(QString, report);
    const QString text = m_demo.file(QStringLiteral("out.txt"));
    QProcess batch;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
    batch.setProcessEnvironment(environment);
    batch.start(QStringLiteral(CORVANE_BATCH),
        {QStringLiteral("run"), report, QStringLiteral("--folder"), m_demo.path(), QStringLiteral("--user"), QStringLiteral("nora"),
            QStringLiteral("--from"), QStringLiteral("2026-10-01"), QStringLiteral("--to"), QStringLiteral("2026-11-30"),
            QStringLiteral("--patient"), QStringLiteral("1001"), QStringLiteral("--date1"), QStringLiteral("2026-11-02"),
            QStringLiteral("--date2"), QStringLiteral("2026-11-04"), QStringLiteral("--select"), QStringLiteral("ANC"), QStringLiteral("--text"), text});
    QVERIFY(batch.waitForFinished(120'000));
    QCOMPARE(QString::fromUtf8(batch.readAllStandardError()), QString());
    QCOMPARE(batch.exitCode(), 0);
    const QString expected = QDir(kExpectations).filePath(QFileInfo(report).completeBaseName() + u".txt");
    const QString found = test::withoutPrintDate(QString::fromUtf8(readFile(text)));
    if (qEnvironmentVariableIsSet("CORVANE_RENEW")) {
        QFile file(expected);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(found.toUtf8()) > 0);
    }
    QCOMPARE(found.split(u'\n'), QString::fromUtf8(readFile(expected)).split(u'\n'));
}

void tst_demo_texts::everyReportIsReviewed()
{
    QStringList expected;
    for (const QString &report : reports())
        expected += QFileInfo(report).completeBaseName() + u".txt";
    QCOMPARE(QDir(kExpectations).entryList({QStringLiteral("*.txt")}), expected);
}

QTEST_MAIN(tst_demo_texts)
#include "tst_demo_texts.moc"
