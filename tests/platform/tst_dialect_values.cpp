#include "database_files.h"
#include "platform/database/embedded/embedded_driver.h"
#include "platform/database/error.h"
#include "support/postgres_server.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

struct Case
{
    QString name;
    QString dialect;
    QString postgres;
    QString value;
};

QString valuesFile()
{
    return QStringLiteral(CORVANE_SOURCE_DIR "/tests/platform/data/dialect_values.txt");
}

QStringList readLines()
{
    QFile file(valuesFile());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n')
                                          : QStringList();
}

/// A line that is not indented names a case; the indented ones behind it are its parts.
std::vector<Case> readCases()
{
    std::vector<Case> cases;
    for (const QString &line : readLines()) {
        const qsizetype colon = line.indexOf(u':');
        const QString content = line.mid(colon + 1).trimmed();
        if (line.startsWith(u"  dialect:"))
            cases.back().dialect = cases.back().postgres = content;
        else if (line.startsWith(u"  postgres:"))
            cases.back().postgres = content;
        else if (line.startsWith(u"  value:"))
            cases.back().value = line.mid(colon + 2);
        else if (!line.isEmpty() && !line.startsWith(u'#'))
            cases.push_back({line, {}, {}, {}});
    }
    return cases;
}

} // namespace

/// What statements of the dialect give, against a server that is really there.
class tst_dialect_values : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void values_data();
    void values();

private:
    QStringList serverAnswers();
    QString embeddedAnswer(const QString &sql);
    void renew();

    QTemporaryDir m_folder;
    std::unique_ptr<Driver> m_driver;
    test::PostgresServer m_server;
    std::vector<Case> m_cases = readCases();
    QStringList m_answers;
};

void tst_dialect_values::initTestCase()
{
    const QString file = m_folder.filePath(QStringLiteral("clinic.db"));
    test::writeDatabase(file,
        "CREATE TABLE patients(id int, last_name varchar(30), first_name varchar(30), ssn char(9),"
        " balance decimal(10,2), born date, active bit);"
        "INSERT INTO patients VALUES(1,'O''Neil','Ann','123456789',12.5,'1980-02-29',1),"
        "(2,'Smith',NULL,'000123456',5,'1975-11-01',0),"
        "(3,'Zo\xc3\xab','Bob','987654321',-0.25,NULL,1);"
        "CREATE TABLE appts(id int, patient_id int, day date, at datetime, start_min smallint,"
        " code varchar(10));"
        "INSERT INTO appts VALUES(10,1,'2026-10-31','2026-10-31 08:30:00',510,'A1'),"
        "(11,1,'2026-11-01','2026-11-01',0,'B2'),"
        "(12,2,'2026-11-02','2026-11-02 12:59:00',779,'A3'),"
        "(13,3,'2027-01-05','2027-01-05 23:59:59.500',1439,'50%');"
        "CREATE TABLE rooms(id int, name varchar(20));"
        "INSERT INTO rooms VALUES(1,'North'),(2,'South');");
    ConnectionText text;
    text.dataSource = QStringLiteral("sqlite:.");
    text.catalogue = QStringLiteral("clinic");
    m_driver = openEmbedded(text, {m_folder.path()});
    QVERIFY(m_cases.size() > 40);
    QCOMPARE(m_server.start(), QString());
    QCOMPARE(m_server.loadTables(QStringLiteral("clinic"), file), QString());
    m_answers = serverAnswers();
    QCOMPARE(size_t(m_answers.size()), m_cases.size());
    if (qEnvironmentVariableIsSet("CORVANE_RENEW"))
        renew();
}

/// All questions go to one client, each answer announced by a line of its own.
QStringList tst_dialect_values::serverAnswers()
{
    const QString mark = QStringLiteral("== answer");
    QString script = QStringLiteral("SET search_path = dbo;\n");
    for (const Case &c : m_cases)
        script += u"\\echo " % mark % u'\n' % c.postgres % u"\n;\n";
    QProcess client;
    client.start(QStringLiteral("psql"),
        {QStringLiteral("--no-psqlrc"), QStringLiteral("--quiet"), QStringLiteral("--no-align"),
            QStringLiteral("--tuples-only"), QStringLiteral("--field-separator= | "),
            QStringLiteral("--record-separator= / "), QStringLiteral("--pset=null=NULL"),
            u"--host=" + m_server.socketFolder(), QStringLiteral("--port=%1").arg(m_server.port()),
            u"--username=" + QString::fromLatin1(test::PostgresServer::kUser),
            QStringLiteral("--dbname=clinic")});
    client.write(script.toUtf8());
    client.closeWriteChannel();
    if (!client.waitForFinished() || !client.readAllStandardError().isEmpty())
        return {};
    QStringList answers = QString::fromUtf8(client.readAllStandardOutput()).split(mark + u'\n');
    answers.removeFirst();
    for (QString &answer : answers)
        answer.chop(answer.endsWith(u'\n') ? 1 : 0);
    return answers;
}

QString tst_dialect_values::embeddedAnswer(const QString &sql)
try {
    const RowsetPtr rowset = m_driver->query(sql);
    const ValueTextStyle style{QStringLiteral("yyyy-MM-dd"), QStringLiteral("HH:mm:ss")};
    QStringList rows;
    for (qsizetype row = 0; row < rowset->rowCount(); ++row) {
        QStringList cells;
        for (int field = 0; field < rowset->fieldCount(); ++field) {
            const Value value = rowset->value(row, field);
            cells += value.isNull() ? QStringLiteral("NULL") : valueText(value, style);
        }
        rows += cells.join(u" | ");
    }
    return rows.join(u" / ");
} catch (const DatabaseError &error) {
    return QStringLiteral("%1: %2").arg(error.number()).arg(error.description());
}

/// Writes the server's answers into the file and leaves all else in it as it is.
void tst_dialect_values::renew()
{
    QStringList lines = readLines();
    size_t index = 0;
    for (QString &line : lines)
        if (line.startsWith(u"  value:")) {
            m_cases[index].value = m_answers[qsizetype(index)];
            line = u"  value: " % m_cases[index++].value;
        }
    QFile file(valuesFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(lines.join(u'\n').toUtf8());
}

void tst_dialect_values::values_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("answer");
    for (size_t i = 0; i < m_cases.size(); ++i)
        QTest::newRow(m_cases[i].name.toUtf8().constData())
            << m_cases[i].dialect << m_cases[i].value << m_answers[qsizetype(i)];
}

void tst_dialect_values::values()
{
    QFETCH(QString, sql);
    QFETCH(QString, written);
    QFETCH(QString, answer);
    QCOMPARE(written, answer);
    QCOMPARE(embeddedAnswer(sql), answer);
}

QTEST_GUILESS_MAIN(tst_dialect_values)
#include "tst_dialect_values.moc"
