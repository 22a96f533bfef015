// The morning's paper: the batch program in front of a printing system of the test's own.

#include "printing/print_server.h"
#include "support/demo_folder.h"
#include "support/suite.h"

#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

class tst_batch_print : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void printsOnTheNamedQueue();
};

void tst_batch_print::printsOnTheNamedQueue()
{
    test::PrintServer server;
    server.addQueue(QStringLiteral("Morning"), true, test::letterPrinter());
    QCOMPARE(server.start(), QString());
    const test::DemoFolder demo(60);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
    QProcess batch;
    batch.setProcessEnvironment(environment);
    batch.start(QStringLiteral(CORVANE_BATCH), {QStringLiteral("run"), QStringLiteral("Phone list"), QStringLiteral("--folder"), demo.path(),
                                                   QStringLiteral("--user"), QStringLiteral("nora"), QStringLiteral("--print"), QStringLiteral("Morning")});
    QVERIFY(batch.waitForFinished(60'000));
    QCOMPARE(QString::fromUtf8(batch.readAllStandardError()), QString());
    QCOMPARE(batch.exitCode(), 0);
    std::optional<test::PrintedJob> job;
    QVERIFY(QTest::qWaitFor([&] { return (job = server.takeJob()).has_value(); }, 20'000));
    QProcess text;
    text.start(QStringLiteral("pdftotext"), {job->fileName, QStringLiteral("-")});
    QVERIFY(text.waitForFinished());
    const QString printed = QString::fromUtf8(text.readAllStandardOutput());
    QVERIFY2(printed.contains(QStringLiteral("Abbott")), qPrintable(printed.left(500)));
    server.stop();
}

QTEST_MAIN(tst_batch_print)
#include "tst_batch_print.moc"
