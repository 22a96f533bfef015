// What of a server's certificate is checked, with certificates that the test makes itself. FreeTDS
// alone checks nothing; the program sets it up so that it does.

#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/suite.h"
#include "support/tds/server.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <sql.h>
#include <sqlext.h>

using namespace corvane;
using namespace corvane::test;

namespace {

enum class Server { Plain, CanEncrypt, Encrypts };

struct Outcome
{
    QString words; ///< empty: connected
    FailureCause cause = FailureCause::Unknown;
};

Outcome outcomeOf(const QString &connectionText)
{
    try {
        Connection::open(connectionText, {{}, 0, {5, 0}});
    } catch (const DatabaseError &error) {
        return {error.description(), error.cause()};
    }
    return {};
}

} // namespace

class tst_tds_certificates : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theDriverAloneChecksNothing();
    void checksCertificateAndHostName_data();
    void checksCertificateAndHostName();
    void neverTellsAnUntrustedServerThePassword();
    void leavesTheSettingsOfTheSurroundings();

private:
    QString file(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    void makeCertificate(const QString &name, const QString &host) const;
    tds::ServerSettings settings(const QString &certificate, Server kind = Server::Encrypts) const;

    QTemporaryDir m_folder;
};

void tst_tds_certificates::makeCertificate(const QString &name, const QString &host) const
{
    const QString path = m_folder.filePath(name);
    const QString command = QStringLiteral("req -x509 -newkey rsa:2048 -nodes -days 30 -keyout "
                                           "%1.key -out %1.pem -subj /CN=%2 -addext "
                                           "subjectAltName=DNS:%2");
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"), command.arg(path, host).split(u' '));
    QVERIFY(openssl.waitForFinished());
    QVERIFY2(openssl.exitCode() == 0, openssl.readAllStandardError());
}

void tst_tds_certificates::initTestCase()
{
    makeCertificate(QStringLiteral("localhost"), QStringLiteral("localhost"));
    makeCertificate(QStringLiteral("another"), QStringLiteral("another.example"));
}

tds::ServerSettings tst_tds_certificates::settings(const QString &certificate, Server kind) const
{
    tds::ServerSettings settings;
    settings.open = [](const QString &) { return tds::Answerer(); };
    if (kind != Server::Plain)
        settings.certificate
            = {m_folder.filePath(certificate + u".pem"), m_folder.filePath(certificate + u".key")};
    settings.requiresEncryption = kind == Server::Encrypts;
    return settings;
}

/// What the program's own settings are for. When this fails, the driver has learned to check.
void tst_tds_certificates::theDriverAloneChecksNothing()
{
    const tds::Server server(settings(QStringLiteral("another")));
    const QByteArray text
        = "Driver={FreeTDS};Server=localhost;Port=" + server.address().section(u',', 1).toLatin1()
        + ";UID=demo;PWD=demo;Database=Clinic;TDS_Version=7.4;Encryption=require";
    SQLHANDLE environment = nullptr;
    SQLHANDLE session = nullptr;
    SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment);
    SQLSetEnvAttr(
        environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &session);
    const SQLRETURN code = SQLDriverConnect(session, nullptr,
        reinterpret_cast<SQLCHAR *>(const_cast<char *>(text.constData())), SQL_NTS, nullptr, 0,
        nullptr, SQL_DRIVER_NOPROMPT);
    SQLDisconnect(session);
    SQLFreeHandle(SQL_HANDLE_DBC, session);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
    QVERIFY(SQL_SUCCEEDED(code));
    QCOMPARE(server.logins().size(), 1);
    QVERIFY(server.logins()[0].isEncrypted);
}

void tst_tds_certificates::checksCertificateAndHostName_data()
{
    QTest::addColumn<int>("server");
    QTest::addColumn<QString>("certificate");
    QTest::addColumn<QString>("keywords");
    QTest::addColumn<bool>("encrypted");
    QTest::addColumn<FailureCause>("cause");
    const QString own = QStringLiteral("localhost");
    const QString another = QStringLiteral("another");
    const QString trust = QStringLiteral("TrustServerCertificate=yes;");
    const auto named
        = [&](const char *name) { return QString(u"ServerCertificate=" + file(name) + u';'); };
    const auto connects = [](const char *name, Server server, const QString &certificate,
                              const QString &keywords, bool encrypted) {
        QTest::newRow(name) << int(server) << certificate << keywords << encrypted
                            << FailureCause::Unknown;
    };
    const auto fails
        = [](const char *name, Server server, const QString &certificate, const QString &keywords,
              FailureCause cause = FailureCause::Certificate) {
              QTest::newRow(name) << int(server) << certificate << keywords << false << cause;
          };
    fails("unknown to this computer", Server::Encrypts, own, {});
    fails("unknown, encrypted for the logon alone", Server::CanEncrypt, own, {});
    fails("unknown, encryption asked for", Server::CanEncrypt, own, QStringLiteral("Encrypt=yes;"));
    connects("named by the connection", Server::Encrypts, own, named("localhost.pem"), true);
    connects("named, encrypted for the logon alone", Server::CanEncrypt, own,
        named("localhost.pem"), true);
    fails("named, for another host", Server::Encrypts, another, named("another.pem"));
    fails("another one is named", Server::Encrypts, own, named("another.pem"));
    fails("the named file is missing", Server::Encrypts, own, named("nothing.pem"));
    connects("the connection says to trust it", Server::Encrypts, another, trust, true);
    connects("the server cannot encrypt", Server::Plain, {}, {}, false);
    fails("encryption is asked for and there is none", Server::Plain, {},
        QStringLiteral("Encrypt=yes;"), FailureCause::Server);
    connects(
        "no encryption, said so", Server::CanEncrypt, own, QStringLiteral("Encrypt=no;"), false);
}

void tst_tds_certificates::checksCertificateAndHostName()
{
    QFETCH(int, server);
    QFETCH(QString, certificate);
    QFETCH(QString, keywords);
    QFETCH(FailureCause, cause);
    const tds::Server loopback(settings(certificate, Server(server)));
    const QString port = loopback.address().section(u',', 1);
    const Outcome outcome = outcomeOf(u"Provider=SQLOLEDB;Data Source=localhost," + port + u';'
        + keywords + u"Initial Catalog=Clinic;User Id=demo;Password=demo; ");
    QCOMPARE(outcome.words.isEmpty(), cause == FailureCause::Unknown);
    QVERIFY2(outcome.cause == cause, qPrintable(outcome.words));
    QCOMPARE(loopback.logins().size(), outcome.words.isEmpty() ? 1 : 0);
    if (outcome.words.isEmpty())
        QTEST(loopback.logins()[0].isEncrypted, "encrypted");
    if (cause == FailureCause::Certificate)
        QVERIFY2(
            outcome.words.contains(u"certificate", Qt::CaseInsensitive), qPrintable(outcome.words));
    QCOMPARE(loopback.refused(), QStringList());
}

/// Also not while it is found out what the failure was.
void tst_tds_certificates::neverTellsAnUntrustedServerThePassword()
{
    const tds::Server server(settings(QStringLiteral("localhost")));
    const QString port = server.address().section(u',', 1);
    const Outcome outcome = outcomeOf(u"Provider=SQLOLEDB;Data Source=localhost," + port
        + u";Initial Catalog=Clinic;User Id=demo;Password=demo; ");
    QCOMPARE(outcome.words,
        QStringLiteral("The certificate of the server \"localhost,%1\" was not accepted: it is not "
                       "trusted on this computer, or it was issued for another name.")
            .arg(port));
    for (const tds::Login &login : server.attempts())
        QVERIFY(login.userName != u"demo" && login.database != u"Clinic");
    QCOMPARE(server.attempts().size(), 1);
}

void tst_tds_certificates::leavesTheSettingsOfTheSurroundings()
{
    qputenv("FREETDSCONF", "/nonexistent/freetds.conf");
    const tds::Server server(settings({}, Server::Plain));
    const Outcome outcome = outcomeOf(u"Provider=SQLOLEDB;Data Source=" + server.address()
        + u";Initial Catalog=Clinic;User Id=demo;Password=demo; ");
    QCOMPARE(outcome.words, QString());
    QCOMPARE(qgetenv("FREETDSCONF"), QByteArray("/nonexistent/freetds.conf"));
    qunsetenv("FREETDSCONF");
}

QTEST_GUILESS_MAIN(tst_tds_certificates)
#include "tst_tds_certificates.moc"
