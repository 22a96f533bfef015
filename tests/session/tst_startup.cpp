#include "session/configuration.h"
#include "session/report_list.h"
#include "session/startup.h"
#include "shared/reportr.h"
#include "shared/scramble.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr auto kHvnMissing = "[HALVERN]\nServer=sqlite:Data\nDataSource=Nowhere\n";

} // namespace

class tst_startup : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void buildsConnectionTexts_data();
    void buildsConnectionTexts();
    void opensBothDatabases();
    void endsInTheRightState_data();
    void endsInTheRightState();
    void neverShowsAPasswordThatDoesNotUnscramble();
    void listsReportsAsTheyAre();

private:
    test::DemoFolder m_demo {20};
};

void tst_startup::buildsConnectionTexts_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("main");
    QTest::addColumn<QString>("second");

    const QByteArray stored = scramblePW(u"se;cret").toLatin1();
    const QByteArray server = "[SQLServer]\nDataSource=HOST\\ONE\nProvider=SQLOLEDB\nInitialCatalog=Clinic\nUID=sa\n";
    const QByteArray second = "[HALVERN]\nServer=OTHER\nDataSource=Hvn\nUID=reader\n";
    const auto row = [](const char *name, const QByteArray &settings, const char *main, const char *hvn) {
        QTest::newRow(name) << settings << QString::fromLatin1(main) << QString::fromLatin1(hvn);
    };
    row("server logon, password stored", server + "Password=" + stored + "\n" + second + "PW=" + stored,
        "Provider=SQLOLEDB;Data Source=HOST\\ONE;Initial Catalog=Clinic;User Id=sa;Password=se;cret; ",
        "PROVIDER=SQLOLEDB;SERVER=OTHER;UID=reader;PWD=se;cret;Database=Hvn");
    row("server logon, no password", server + second,
        "Provider=SQLOLEDB;Data Source=HOST\\ONE;Initial Catalog=Clinic;User Id=sa;Password=; ",
        "PROVIDER=SQLOLEDB;SERVER=OTHER;UID=reader;PWD=;Database=Hvn");
    row("Windows logon", server + "AuthenticationMode=Windows\n" + second + "AuthenticationMode=Windows\n",
        "Provider=SQLOLEDB;Data Source=HOST\\ONE;Initial Catalog=Clinic;Integrated Security=SSPI;",
        "PROVIDER=SQLOLEDB;SERVER=OTHER;Database=Hvn;Integrated Security=SSPI;");
    row("the mode is compared exactly", server + "AuthenticationMode=windows\n" + second + "AuthenticationMode=Windows \n",
        "Provider=SQLOLEDB;Data Source=HOST\\ONE;Initial Catalog=Clinic;User Id=sa;Password=; ",
        "PROVIDER=SQLOLEDB;SERVER=OTHER;UID=reader;PWD=;Database=Hvn");
    row("missing keys are empty", "[SQLServer]\nDataSource=H\n", "Provider=;Data Source=H;Initial Catalog=;User Id=;Password=; ",
        "PROVIDER=SQLOLEDB;SERVER=;UID=;PWD=;Database=");
}

void tst_startup::buildsConnectionTexts()
{
    QFETCH(QByteArray, settings);
    m_demo.write(QStringLiteral("texts/corvane.ini"), settings);
    const QString file = m_demo.file(QStringLiteral("texts/corvane.ini"));
    QTEST(buildConnectString(file), "main");
    QTEST(buildHvnConnectString(file), "second");
}

void tst_startup::opensBothDatabases()
{
    test::RecordingHost host;
    Reportr state;
    state.programFolder = m_demo.path();
    QCOMPARE(connectDatabases(state, host), StartState::Connected);
    QCOMPARE(host.messages, QStringList());
    QVERIFY(state.gConn);
    QCOMPARE(state.gDBName, QStringLiteral("Clinic"));
    QCOMPARE(state.gHvnDBName, QStringLiteral("Halvern"));
    QVERIFY(!state.gHvnConnectString.isEmpty());
    QVERIFY(testConnect(state, host, state.gConnectString, TestedDatabase::Main));
    QVERIFY(!testConnect(state, host, QStringLiteral("Data Source=sqlite:none"), TestedDatabase::Main));
    QVERIFY2(host.messages[0].startsWith(QStringLiteral("|0|Error connecting to Corvane database. ")), qPrintable(host.messages[0]));
    QVERIFY(host.messages[0].endsWith(u']'));
}

void tst_startup::endsInTheRightState_data()
{
    QTest::addColumn<QByteArray>("settings"); // null: no file
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("messages"); // beginnings
    const QString setup = QStringLiteral("Corvane|64|Setup server location and database logon to connect to Corvane Database. "
                                         "Go to Network Setup from Setup menu.");
    const QString main = QStringLiteral("|0|Error connecting to database! ");
    const QString second = QStringLiteral("|0|Error connecting to HVN database. ");
    const auto look = [](const char *key) -> QString { return QStringLiteral("Corvane|64|It is the ") + QString::fromLatin1(key); };
    const QByteArray good = "[SQLServer]\nDataSource=sqlite:../Data\nInitialCatalog=Clinic\n";
    const QByteArray bad = "[SQLServer]\nDataSource=sqlite:../Data\nInitialCatalog=None\n";

    QTest::newRow("no corvane.ini") << QByteArray() << int(StartState::NoConfiguration)
                                    << QStringList(QStringLiteral("Critical Error|16|Corvane initialization file - CORVANE.INI - is missing. Unable to launch Corvane."));
    QTest::newRow("no server: the second is not even tried")
        << QByteArray("[SQLServer]\nInitialCatalog=Clinic\n") + kHvnMissing << int(StartState::NoConnection) << QStringList(setup);
    QTest::newRow("no second database") << good << int(StartState::Connected) << QStringList();
    QTest::newRow("the second fails: the program goes on") << good + kHvnMissing << int(StartState::Connected) << QStringList({second, look("server name: no such place answers. Key Server in section [HALVERN] of corvane.ini says \"sqlite:Data\".")});
    QTest::newRow("main fails") << bad << int(StartState::NoConnection) << QStringList({main, look("database")});
    QTest::newRow("both fail, main first") << bad + kHvnMissing << int(StartState::NoConnection) << QStringList({main, look("database"), second, look("server name")});
    QTest::newRow("no such folder") << QByteArray("[SQLServer]\nDataSource=sqlite:nowhere\nInitialCatalog=Clinic\n")
                                    << int(StartState::NoConnection) << QStringList({main, look("server name: no such place answers. Key DataSource in section [SQLServer] of corvane.ini says \"sqlite:nowhere\".")});
    QTest::newRow("an unknown provider") << QByteArray("[SQLServer]\nDataSource=HOST\nProvider=No Such Driver\n")
                                         << int(StartState::NoConnection) << QStringList({main, look("driver. Key Provider in section [SQLServer] of corvane.ini says \"No Such Driver\".")});
    QTest::newRow("a password of the second that does not unscramble")
        << good + "[HALVERN]\nServer=x\nPW=\x04\n" << int(StartState::Connected) << QStringList({second, look("logon. Key UID in section [HALVERN]")});
}

void tst_startup::endsInTheRightState()
{
    QFETCH(QByteArray, settings);
    QFETCH(QStringList, messages);
    const QString name = QStringLiteral("case/corvane.ini");
    QFile::remove(m_demo.file(name));
    if (!settings.isNull())
        m_demo.write(name, settings);
    test::RecordingHost host;
    Reportr state;
    state.programFolder = m_demo.file(QStringLiteral("case"));
    QTEST(int(connectDatabases(state, host)), "state");
    QCOMPARE(host.messages.size(), messages.size());
    for (int i = 0; i < messages.size(); ++i)
        QVERIFY2(host.messages[i].startsWith(messages[i]), qPrintable(host.messages[i]));
    if (!messages.isEmpty())
        QCOMPARE(state.gHvnConnectString, QString());
    QVERIFY(!QDir(m_demo.file(QStringLiteral("Data"))).exists(QStringLiteral("None.db")));
}

void tst_startup::neverShowsAPasswordThatDoesNotUnscramble()
{
    m_demo.write(QStringLiteral("secret/corvane.ini"), "[SQLServer]\nDataSource=sqlite:../Data\nInitialCatalog=Clinic\nPassword=topsecret\x04\x04\n");
    test::RecordingHost host;
    Reportr state;
    state.programFolder = m_demo.file(QStringLiteral("secret"));
    QCOMPARE(connectDatabases(state, host), StartState::NoConnection);
    QCOMPARE(host.messages.size(), 2);
    QVERIFY(host.messages[0].startsWith(QStringLiteral("|0|Error connecting to database! 5, ")));
    QVERIFY(host.messages[1].contains(QStringLiteral("The password stands scrambled in key Password.")));
    QVERIFY(!host.messages.join(u' ').contains(QStringLiteral("secret")));
    QVERIFY(!state.gConn);
}

void tst_startup::listsReportsAsTheyAre()
{
    m_demo.write(QStringLiteral("list/b.RPT"), "x");
    m_demo.write(QStringLiteral("list/A.rpt"), "x");
    m_demo.write(QStringLiteral("list/c.txt"), "x");
    QDir(m_demo.path()).mkpath(QStringLiteral("list/folder.rpt"));
    QCOMPARE(reportFiles(m_demo.file(QStringLiteral("list"))), QStringList({QStringLiteral("A.rpt"), QStringLiteral("b.RPT")}));
    QCOMPARE(reportFiles(m_demo.file(QStringLiteral("absent"))), QStringList());
    QCOMPARE(reportFolder(m_demo.path()), m_demo.file(QStringLiteral("Reports")));
}

QTEST_MAIN(tst_startup)
#include "tst_startup.moc"
