// What a neighbour on the same machine could see of corvane-batch, and what its messages could give away.

#include "shared/scramble.h"
#include "support/demo_folder.h"
#include "support/suite.h"

#include <QtCore/QProcess>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr int kPatience = 30'000;

QByteArray systemFile(qint64 process, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(process).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_batch_secrets : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void aRunningProcessShowsNoPassword();
    void noMessageShowsAConnectionsPassword_data();
    void noMessageShowsAConnectionsPassword();

private:
    test::DemoFolder m_demo {20};
};

void tst_batch_secrets::aRunningProcessShowsNoPassword()
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("not-for-neighbours"));
    process.setProcessEnvironment(environment);
    // It waits for the password on standard input, which stays open.
    process.start(QStringLiteral(CORVANE_BATCH), {QStringLiteral("run"), QStringLiteral("Phone list"), QStringLiteral("--folder"),
        m_demo.path(), QStringLiteral("--user"), QStringLiteral("nora"), QStringLiteral("--password-stdin")});
    QVERIFY(process.waitForStarted());
    const qint64 id = process.processId();
    QVERIFY(QTest::qWaitFor(
        [id] {
            const QByteArray shown = systemFile(id, "environ");
            return shown.contains("CORVANE_PASSWORD=") && !shown.contains("not-for-neighbours");
        },
        kPatience));
    const QRegularExpression coreLimit(QStringLiteral("Max core file size +0 +0 "));
    QVERIFY(coreLimit.match(QString::fromLatin1(systemFile(id, "limits"))).hasMatch());
    process.write("clinic\n");
    QVERIFY(process.waitForFinished(kPatience));
    QCOMPARE(process.exitCode(), 0);
}

void tst_batch_secrets::noMessageShowsAConnectionsPassword_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::newRow("a folder that is not there") << QByteArray("Provider=SQLOLEDB\nDataSource=sqlite:nowhere\n");
    QTest::newRow("a server that does not answer") << QByteArray("Provider=SQLOLEDB\nDataSource=127.0.0.1,1\nLoginTimeout=2\n");
    QTest::newRow("another driver") << QByteArray("Provider=PostgreSQL Unicode\nDataSource=127.0.0.1\nLoginTimeout=2\n");
    QTest::newRow("no such provider") << QByteArray("Provider=Nobody\nDataSource=x\n");
}

void tst_batch_secrets::noMessageShowsAConnectionsPassword()
{
    QFETCH(QByteArray, place);
    const QByteArray clear = "Zq7;hid'den";
    const QByteArray stored = scramblePW(QString::fromLatin1(clear)).toLatin1();
    m_demo.write(QStringLiteral("secret/corvane.ini"),
        "[SQLServer]\n" + place + "InitialCatalog=Clinic\nUID=demo\nPassword=" + stored + "\n");
    const QString folder = m_demo.file(QStringLiteral("secret"));
    for (const QStringList &command : {QStringList {QStringLiteral("doctor")},
             QStringList {QStringLiteral("run"), QStringLiteral("Phone list"), QStringLiteral("--user"), QStringLiteral("nora")}}) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(CORVANE_BATCH), command + QStringList {QStringLiteral("--folder"), folder});
        QVERIFY(process.waitForFinished(kPatience));
        QVERIFY(process.exitCode() != 0);
        const QByteArray shown = process.readAll();
        QVERIFY(!shown.isEmpty());
        for (const QByteArray &secret : {clear, stored, QByteArray("Zq7"), QByteArray("den"), QByteArray("PWD="), QByteArray("Password=")})
            QVERIFY2(!shown.contains(secret), shown.constData());
    }
}

QTEST_MAIN(tst_batch_secrets)
#include "tst_batch_secrets.moc"
