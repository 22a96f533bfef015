#include "shared/connection_doctor.h"
#include "shared/reportr.h"
#include "support/suite.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

class tst_connection_doctor : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void timeOuts_data();
    void timeOuts();
    void eachDatabaseHasItsTimeOuts();
    void adviceNamesTheKey_data();
    void adviceNamesTheKey();

private:
    QString write(const QByteArray &settings) const
    {
        QFile file(m_folder.filePath(QStringLiteral("corvane.ini")));
        if (file.open(QIODevice::WriteOnly))
            file.write(settings);
        return file.fileName();
    }

    QTemporaryDir m_folder;
};

void tst_connection_doctor::timeOuts_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<int>("login");
    QTest::addColumn<int>("query");
    QTest::newRow("absent") << QByteArray("[SQLServer]\n") << 15 << 0;
    QTest::newRow("both") << QByteArray("[SQLServer]\nLoginTimeout=5\nQueryTimeout= 600 \n") << 5
                          << 600;
    QTest::newRow("for ever") << QByteArray("[SQLServer]\nLoginTimeout=0\n") << 0 << 0;
    QTest::newRow("no such times")
        << QByteArray("[SQLServer]\nLoginTimeout=-1\nQueryTimeout=10 min\n") << 15 << 0;
    QTest::newRow("another section's") << QByteArray("[HALVERN]\nLoginTimeout=5\n") << 15 << 0;
}

void tst_connection_doctor::timeOuts()
{
    QFETCH(QByteArray, settings);
    QFETCH(int, login);
    QFETCH(int, query);
    const TimeOuts expected{login, query};
    QVERIFY(configuredTimeOuts(write(settings), kMainSection) == expected);
}

void tst_connection_doctor::eachDatabaseHasItsTimeOuts()
{
    Reportr state;
    state.mainTimeOuts = {5, 6};
    state.hvnTimeOuts = {7, 8};
    state.gConnectString = QStringLiteral("main");
    QVERIFY(state.drivers({}).timeOuts == state.mainTimeOuts); // no second database: no text is its
    state.gHvnConnectString = QStringLiteral("second");
    QVERIFY(state.drivers(state.gConnectString).timeOuts == state.mainTimeOuts);
    QVERIFY(state.drivers(state.gHvnConnectString).timeOuts == state.hvnTimeOuts);
}

void tst_connection_doctor::adviceNamesTheKey_data()
{
    QTest::addColumn<FailureCause>("cause");
    QTest::addColumn<QString>("main");
    QTest::addColumn<QString>("second");
    const auto row = [](const char *name, FailureCause cause, const char *main,
                         const char *second) {
        QTest::newRow(name) << cause << QString::fromLatin1(main) << QString::fromLatin1(second);
    };
    row("driver", FailureCause::Provider,
        "Key Provider in section [SQLServer] of corvane.ini says \"P\".", "section [HALVERN]");
    row("server", FailureCause::Server,
        "Key DataSource in section [SQLServer] of corvane.ini says \"H\".",
        "Key Server in section [HALVERN] of corvane.ini says \"H2\".");
    row("port", FailureCause::Port, "HOST,1433", "Key Server in section [HALVERN]");
    row("certificate", FailureCause::Certificate, "Key DataSource in section [SQLServer]",
        "Key Server in section [HALVERN]");
    row("logon", FailureCause::Logon,
        "Key UID in section [SQLServer] of corvane.ini says \"sa\". The password stands scrambled "
        "in key Password.",
        "Key AuthenticationMode in section [HALVERN] of corvane.ini says \"Windows\".");
    row("database", FailureCause::Catalogue,
        "Key InitialCatalog in section [SQLServer] of corvane.ini is empty.",
        "Key DataSource in section [HALVERN] of corvane.ini says \"D\".");
    row("time", FailureCause::TimeOut, "now 15 seconds for a connection and 60 seconds for a query",
        "now 5 seconds for a connection and without end for a query");
    row("lost", FailureCause::Lost, "Run the report again", "Key Server in section [HALVERN]");
}

void tst_connection_doctor::adviceNamesTheKey()
{
    QFETCH(FailureCause, cause);
    const QString file
        = write("[SQLServer]\nProvider=P\nDataSource=H\nUID=sa\nPassword=hidden\nQueryTimeout=60\n"
                "[HALVERN]\nServer=H2\nDataSource=D\nAuthenticationMode=Windows\nPW="
                "hidden\nLoginTimeout=5\n");
    QFETCH(QString, main);
    QFETCH(QString, second);
    for (const auto &[section, words] :
        {std::pair(kMainSection, main), std::pair(kSecondSection, second)}) {
        const QString advice = connectionAdvice(cause, file, section);
        QVERIFY2(advice.contains(words), qPrintable(advice));
        QVERIFY(!advice.contains(u"hidden"));
    }
    QCOMPARE(connectionAdvice(FailureCause::Unknown, file, kMainSection), QString());
}

QTEST_GUILESS_MAIN(tst_connection_doctor)
#include "tst_connection_doctor.moc"
