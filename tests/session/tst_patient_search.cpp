#include "platform/database/error.h"
#include "session/logon.h"
#include "session/patient_search.h"
#include "session/startup.h"
#include "shared/reportr.h"
#include "support/canned_driver.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QSet>
#include <QtTest/QtTest>

#include <sqlite3.h>

using namespace corvane;

namespace {

/// Ids that a statement of the library's own gives on the demo's main database.
QSet<QString> idsBySqlite(const QString &file, const QByteArray &sql)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    QSet<QString> ids;
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK
        && sqlite3_prepare_v2(database, sql.constData(), -1, &statement, nullptr) == SQLITE_OK) {
        while (sqlite3_step(statement) == SQLITE_ROW)
            ids += QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, 0)));
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return ids;
}

} // namespace

class tst_patient_search : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void buildsTheQuery_data();
    void buildsTheQuery();
    void joinsNamesAndNumbers_data();
    void joinsNamesAndNumbers();
    void showsEachUserTheirOwn_data();
    void showsEachUserTheirOwn();
    void searchesTheMainDatabaseWhateverIsOpen();
    void choosesOnlyWhoMayBeSeen();

private:
    test::DemoFolder m_demo;
    Reportr m_state;
};

void tst_patient_search::initTestCase()
{
    test::RecordingHost host;
    m_state.programFolder = m_demo.path();
    QCOMPARE(connectDatabases(m_state, host), StartState::Connected);
}

void tst_patient_search::buildsTheQuery_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("access");
    QTest::addColumn<QString>("query"); // empty: none

    const auto row = [](const char *name, int mode, const char *text, int access, const char *query) {
        QTest::newRow(name) << mode << QString::fromLatin1(text) << access << QString::fromLatin1(query);
    };
    row("last name", 0, "O'N", 1,
        "Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info Where last_name Like 'O''N%' Order by last_name, first_name, middle_init");
    row("first name", 1, "", 9,
        "Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info Where first_name Like '%' Order by first_name, last_name, middle_init");
    row("account number", 2, "A1", 1,
        "Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info Where acctnbr Like 'A1%' Order by acctnbr");
    row("social security number, wildcards kept", 3, "%_", 1,
        "Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info Where ssn Like '%_%' Order by ssn");
    row("restricted, by last name", 0, "O'N", 0,
        "SELECT id, last_name, first_name, middle_init, acctnbr, ssn From patient_info, incident_hx, patientaccess "
        "WHERE patient_info.id = incident_hx.patient_id AND patient_info.id = patientaccess.patientid AND patientaccess.patientid = "
        "incident_hx.patient_id AND patient_info.incident_nbr = incident_hx.incident_nbr AND patientaccess.providerid = 'brook' AND "
        "last_name Like 'O''N%' UNION Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info, incident_hx "
        "Where patient_info.id = incident_hx.patient_id AND patient_info.provider_id = 'brook' AND last_name Like 'O''N%' "
        "Order by last_name, first_name");
    row("restricted, by account", 2, "1", -1,
        "SELECT id, last_name, first_name, middle_init, acctnbr, ssn From patient_info, incident_hx, patientaccess "
        "WHERE patient_info.id = incident_hx.patient_id AND patient_info.id = patientaccess.patientid AND patientaccess.patientid = "
        "incident_hx.patient_id AND patient_info.incident_nbr = incident_hx.incident_nbr AND patientaccess.providerid = 'brook' AND "
        "acctnbr Like '1%' UNION Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info, incident_hx "
        "Where patient_info.id = incident_hx.patient_id AND patient_info.provider_id = 'brook' AND acctnbr Like '1%' Order by acctnbr");
    row("no such mode", 4, "x", 1, "");
    row("no mode", -1, "x", 1, "");
}

void tst_patient_search::buildsTheQuery()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    QFETCH(int, access);
    QTEST(patientQuery(mode, text, qint16(access), QStringLiteral("brook")).value_or(QString()), "query");
}

void tst_patient_search::joinsNamesAndNumbers_data()
{
    QTest::addColumn<QStringList>("values"); // id, last, first, middle, account, ssn
    QTest::addColumn<QString>("shown");

    const auto row = [](const char *name, const QStringList &values, const char *shown) {
        QTest::newRow(name) << values << QString::fromUtf8(shown);
    };
    const auto s = [](const char *text) { return QString::fromUtf8(text); };
    row("with a middle initial", {s("7"), s("O'Neill"), s("Ann"), s("Q"), s("A1"), s("123456789")}, "7|O'Neill, Ann Q.|A1|123-45-6789");
    row("without one", {s("7"), s("Novák"), s("Bo"), s(""), s("A1"), s("")}, "7|Novák, Bo|A1|");
    row("nulls are empty", {s("7"), s("(null)"), s("(null)"), s("(null)"), s("(null)"), s("(null)")}, "7|, ||");
    row("a short number is padded", {s("7"), s("a"), s("b"), s(""), s(""), s("12345")}, "7|a, b||000-01-2345");
    row("a long one keeps its digits", {s("7"), s("a"), s("b"), s(""), s(""), s("1234567890")}, "7|a, b||1234-56-7890");
    row("no number shows as stored", {s("7"), s("a"), s("b"), s(""), s(""), s("12-34")}, "7|a, b||12-34");
    row("blanks are none", {s("7"), s("a"), s("b"), s(""), s(""), s("   ")}, "7|a, b||");
}

void tst_patient_search::joinsNamesAndNumbers()
{
    QFETCH(QStringList, values);
    test::CannedDriver driver({QStringLiteral("id"), QStringLiteral("last_name"), QStringLiteral("first_name"),
                                  QStringLiteral("middle_init"), QStringLiteral("acctnbr"), QStringLiteral("ssn")},
        {values});
    PatientReader reader(driver.query(QStringLiteral("x")));
    const PatientRow &row = reader.read(0);
    QTEST(QString(row.id + u'|' + row.name + u'|' + row.account + u'|' + row.ssn), "shown");
    QVERIFY_EXCEPTION_THROWN(PatientReader(test::CannedDriver({QStringLiteral("id")}, {}).query(QStringLiteral("x"))), DatabaseError);
}

void tst_patient_search::showsEachUserTheirOwn_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("independent");
    const QByteArray own = "SELECT id FROM patient_info p WHERE last_name IS NOT NULL AND EXISTS (SELECT 1 FROM incident_hx i WHERE i.patient_id = p.id) "
                           "AND (provider_id = '@' OR EXISTS (SELECT 1 FROM patientaccess a JOIN incident_hx i ON i.patient_id = p.id AND "
                           "i.incident_nbr = p.incident_nbr WHERE a.patientid = p.id AND a.providerid = '@'))";
    QTest::newRow("full access") << QStringLiteral("nora") << QStringLiteral("clinic") << QByteArray("SELECT id FROM patient_info WHERE last_name IS NOT NULL");
    QTest::newRow("restricted") << QStringLiteral("brook") << QStringLiteral("hinge") << QByteArray(own).replace('@', "brook");
    QTest::newRow("restricted, another") << QStringLiteral("dvorak") << QStringLiteral("Vltava") << QByteArray(own).replace('@', "dvorak");
    QTest::newRow("no provider sees nobody") << QStringLiteral("lab~2") << QStringLiteral("tilde~{}") << QByteArray("SELECT 1 WHERE 0");
}

void tst_patient_search::showsEachUserTheirOwn()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QByteArray, independent);
    test::RecordingHost host;
    QVERIFY(logOn(m_state, host, user, password));
    PatientDatabase database(m_state);
    PatientReader reader(database.open(*patientQuery(ByLastName, QStringLiteral("%"), m_state.gAccessType, m_state.gUserID)));
    QSet<QString> found;
    for (qsizetype row = 0; row < reader.count(); ++row)
        found += reader.read(row).id;
    QCOMPARE(found.size(), reader.count()); // nobody twice
    QCOMPARE(found, idsBySqlite(m_demo.file(QStringLiteral("Data/Clinic.db")), independent));
    if (user == u"brook")
        QVERIFY(!found.isEmpty());
}

void tst_patient_search::searchesTheMainDatabaseWhateverIsOpen()
{
    const QString query = *patientQuery(ByLastName, {}, 1, {});
    m_state.openConn(m_state.gHvnConnectString);
    QVERIFY(PatientDatabase(m_state).open(query)->rowCount() > 0);
    QCOMPARE(m_state.gConn->connectionText(), m_state.gHvnConnectString);
    m_state.closeConn();
    QVERIFY(PatientDatabase(m_state).open(query)->rowCount() > 0);
    m_state.openConn(m_state.gConnectString);
}

void tst_patient_search::choosesOnlyWhoMayBeSeen()
{
    test::RecordingHost host;
    QVERIFY(logOn(m_state, host, QStringLiteral("brook"), QStringLiteral("hinge")));
    const QString file = m_demo.file(QStringLiteral("Data/Clinic.db"));
    const QSet<QString> own = idsBySqlite(file, "SELECT id FROM patient_info WHERE provider_id = 'brook'");
    const QSet<QString> foreign = idsBySqlite(file,
        "SELECT id FROM patient_info WHERE provider_id <> 'brook' AND id NOT IN (SELECT patientid FROM patientaccess WHERE providerid = 'brook')");
    QVERIFY(!own.isEmpty() && !foreign.isEmpty());
    QVERIFY(choosePatient(m_state, *own.begin()));
    QCOMPARE(m_state.gPatientID, *own.begin());
    QVERIFY(m_state.gPatientText.contains(QStringLiteral(", ")));
    for (const QString &id : {*foreign.begin(), QStringLiteral("0"), QStringLiteral("' OR 1=1 --"), QStringLiteral("%")})
        QVERIFY(!choosePatient(m_state, id));
    QCOMPARE(m_state.gPatientID, *own.begin());
}

QTEST_MAIN(tst_patient_search)
#include "tst_patient_search.moc"
