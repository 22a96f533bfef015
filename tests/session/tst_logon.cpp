#include "session/logon.h"
#include "session/startup.h"
#include "shared/reportr.h"
#include "shared/scramble.h"
#include "support/canned_driver.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QString kInvalid = QStringLiteral("Corvane|48|Invalid UID or Password. Try again.");
const QString kNoRights = QStringLiteral("Corvane|48|You do not have access rights to the Reporter. Try another logon or Exit.");

} // namespace

class tst_logon : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void logsOnWhoBelongs_data();
    void logsOnWhoBelongs();
    void readsTheReportersDigit_data();
    void readsTheReportersDigit();
    void noUserIdChangesTheQuery();
    void doublesTheQuotesOfAScrambledPassword();
    void reportsFailures();
    void showsTheNotice_data();
    void showsTheNotice();

private:
    test::DemoFolder m_demo {20};
    Reportr m_state;
};

void tst_logon::initTestCase()
{
    test::RecordingHost host;
    m_state.programFolder = m_demo.path();
    QCOMPARE(connectDatabases(m_state, host), StartState::Connected);
}

void tst_logon::logsOnWhoBelongs_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("accessType"); // -1: refused
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const char *user, const char *password, int accessType, const QString &message = {}) {
        QTest::newRow(name) << QString::fromLatin1(user) << QString::fromLatin1(password) << accessType << message;
    };
    row("full access", "nora", "clinic", 1);
    row("user ids ignore case", "NORA", "clinic", 1);
    row("a higher digit", "admin", "Harbor77", 9);
    row("restricted", "brook", "hinge", 0);
    row("odd but allowed characters", "lab~2", "tilde~{}", 0);
    row("wrong password", "nora", "clinik", -1, kInvalid);
    row("passwords do not ignore case", "nora", "Clinic", -1, kInvalid);
    row("unknown user", "nobody", "clinic", -1, kInvalid);
    row("empty", "", "", -1, kInvalid);
    row("digit 1", "frontdesk", "welcome", -1, kNoRights);
    row("digit 0", "archive", "dusty", -1, kNoRights);
    row("access text too short", "temp", "summer", -1, kNoRights);
    row("no digit", "interim", "bridge", -1, kNoRights);
    row("what the boxes refuse is a wrong password", "quinn", "un\"quoted", -1, kInvalid);
    row("an injection", "nora'--", "x", -1, kInvalid);
    row("a blank", "nora ", "clinic", -1, kInvalid);
}

void tst_logon::logsOnWhoBelongs()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(int, accessType);
    QFETCH(QString, message);
    test::RecordingHost host;
    m_state.loggedOn = false;
    m_state.gUserID.clear();
    m_state.gAccessType = -1;
    QCOMPARE(logOn(m_state, host, user, password), accessType >= 0);
    QCOMPARE(m_state.gAccessType, accessType);
    QCOMPARE(m_state.gUserID, accessType >= 0 ? user : QString());
    QCOMPARE(m_state.loggedOn, accessType >= 0);
    QCOMPARE(host.messages, message.isEmpty() ? QStringList() : QStringList(message));
}

void tst_logon::readsTheReportersDigit_data()
{
    QTest::addColumn<QString>("access");
    QTest::addColumn<int>("digit");
    QTest::newRow("the eighth") << QStringLiteral("00000002") << 2;
    QTest::newRow("what follows does not count") << QStringLiteral("000000019") << 1;
    QTest::newRow("short") << QStringLiteral("2222222") << 0;
    QTest::newRow("no digit") << QStringLiteral("0000000X") << 0;
    QTest::newRow("a digit of another script") << QString::fromUtf8("0000000\u0665") << 0;
}

void tst_logon::readsTheReportersDigit()
{
    QFETCH(QString, access);
    QTEST(reporterAccess(access), "digit");
}

void tst_logon::noUserIdChangesTheQuery()
{
    const QString plain = logonQuery(QStringLiteral("X"), QStringLiteral("p"));
    for (int code = 0; code <= 255; ++code) {
        const bool allowed = code >= 48 && code <= 126 && code != 124;
        QCOMPARE(passesKeyFilter(char16_t(code)), allowed);
        if (!allowed)
            continue;
        const QString id = QStringLiteral("a") + QChar(code) + u'b';
        const QString query = logonQuery(id, QStringLiteral("p"));
        QCOMPARE(query.count(u'\''), plain.count(u'\''));
        QCOMPARE(query, QString(plain).replace(QStringLiteral("'X'"), QString(u'\'' + id + u'\'')));
    }
    for (const char16_t code : {char16_t(0x100), char16_t(0x2019), char16_t(0xff07), char16_t(0xd800)})
        QVERIFY(!passesKeyFilter(code));
    QVERIFY(passesKeyFilter(QStringView()));
    QVERIFY(!passesKeyFilter(u"ab c"));
}

void tst_logon::doublesTheQuotesOfAScrambledPassword()
{
    // With the default constants a double quote at an odd place scrambles to a single quote.
    QCOMPARE(scramblePW(u"\""), QStringLiteral("'"));
    QCOMPARE(logonQuery(QStringLiteral("quinn"), QStringLiteral("\"")),
        QStringLiteral("Select * from passwords Where pswd_user_id = 'quinn' AND pswd_password = ''''"));
}

void tst_logon::reportsFailures()
{
    test::RecordingHost host;
    Reportr lost;
    lost.gConn = std::make_unique<Connection>(QString(), std::make_unique<test::CannedDriver>(QStringList(), QList<QStringList>()));
    QVERIFY(!logOn(lost, host, QStringLiteral("fail"), QStringLiteral("x")));
    QCOMPARE(host.messages, QStringList(QStringLiteral("|0|Error checking password! 1, no such table: fail")));
}

void tst_logon::showsTheNotice_data()
{
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QList<QStringList>>("rows");
    QTest::addColumn<QString>("notice");
    const QString builtIn(kBuiltInNotice);
    const QStringList notice {QStringLiteral("NOTICE")};
    QTest::newRow("the first row's") << notice << QList<QStringList> {{QStringLiteral("One <b>")}, {QStringLiteral("Two")}} << QStringLiteral("One <b>");
    QTest::newRow("empty") << notice << QList<QStringList> {{QString()}} << builtIn;
    QTest::newRow("null") << notice << QList<QStringList> {{QStringLiteral("(null)")}} << builtIn;
    QTest::newRow("no row") << notice << QList<QStringList>() << builtIn;
    QTest::newRow("no such column") << QStringList(QStringLiteral("Other")) << QList<QStringList> {{QStringLiteral("x")}} << builtIn;
}

void tst_logon::showsTheNotice()
{
    QFETCH(QStringList, fields);
    QFETCH(QList<QStringList>, rows);
    Reportr state;
    state.gConn = std::make_unique<Connection>(QString(), std::make_unique<test::CannedDriver>(fields, rows));
    QTEST(GetDBSettings(state), "notice");
}

QTEST_MAIN(tst_logon)
#include "tst_logon.moc"
