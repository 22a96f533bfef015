#include "support/suite.h"

#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

/// The program on a machine or in a session that has no screen.
class tst_program_start : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAScreen_data();
    void withoutAScreen();
};

void tst_program_start::withoutAScreen_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("the version is told") << QStringList(QStringLiteral("--version")) << 0
                                         << QByteArray("Corvane Reporter 1.") << QByteArray();
    QTest::newRow("the options are told") << QStringList(QStringLiteral("--help")) << 0
                                          << QByteArray("--folder <DIR>") << QByteArray();
    QTest::newRow("a window is refused in a sentence")
        << QStringList() << 1 << QByteArray()
        << QByteArray("There is no screen to show windows on");
}

void tst_program_start::withoutAScreen()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, error);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *screen : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(screen));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(CORVANE_REPORTER), arguments);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), status);
    const QByteArray said = program.readAllStandardOutput();
    QVERIFY2(said.contains(output), said);
    const QByteArray complaint = program.readAllStandardError();
    QVERIFY2(complaint.contains(error) && complaint.isEmpty() == error.isEmpty(), complaint);
}

QTEST_GUILESS_MAIN(tst_program_start)
#include "tst_program_start.moc"
