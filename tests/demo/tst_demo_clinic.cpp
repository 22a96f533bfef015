#include "demo/embedded_file.h"
#include "shared/scramble.h"
#include "support/suite.h"

#include <QtCore/QDirIterator>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>

using namespace corvane;

namespace {

struct Outcome
{
    int status = -1;
    QString errors;
};

Outcome run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(CORVANE_DEMO_CLINIC), arguments);
    if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(bytes) == bytes.size();
}

/// Every file below the folder, by its path from there.
QMap<QString, QByteArray> filesOf(const QString &folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator all(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next();
        files.insert(QDir(folder).relativeFilePath(path), contents(path));
    }
    return files;
}

QString sourcePath(const char *path)
{
    return QStringLiteral(CORVANE_SOURCE_DIR) + QString::fromUtf8(path);
}

} // namespace

class tst_demo_clinic : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sameNumberSameBytes();
    void ownFilesAreReplacedAndOthersStay();
    void sizeOfTheDefaultClinic();
    void specialCases_data();
    void specialCases();
    void nothingContradicts_data();
    void nothingContradicts();
    void valuesKeepTheirDeclaredType();
    void usersAreThoseOfTheReadme();
    void configurationNamesBothDatabases();
    void wrongArguments_data();
    void wrongArguments();
    void placesThatCannotBeWritten_data();
    void placesThatCannotBeWritten();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir m_folder;
    std::unique_ptr<test::EmbeddedFile> m_small;
    std::unique_ptr<test::EmbeddedFile> m_default;
};

void tst_demo_clinic::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const Outcome small = run({path("small"), QStringLiteral("--patients"), QStringLiteral("200")});
    QCOMPARE(small.errors, QString());
    QCOMPARE(small.status, 0);
    QCOMPARE(run({path("made/on/the/way")}).status, 0);
    m_small = std::make_unique<test::EmbeddedFile>(path("small"));
    m_default = std::make_unique<test::EmbeddedFile>(path("made/on/the/way"));
}

void tst_demo_clinic::sameNumberSameBytes()
{
    QCOMPARE(run({QStringLiteral("--patients=200"), path("again")}).status, 0);
    QCOMPARE(run({QStringLiteral("--patients=201"), path("other")}).status, 0);
    const auto first = filesOf(path("small"));
    QStringList expected{QStringLiteral("Data/Clinic.db"), QStringLiteral("Data/Halvern.db"),
        QStringLiteral("corvane.ini")};
    for (const QString &report : QDir(sourcePath("/demo/Reports")).entryList(QDir::Files)) {
        const QString name = u"Reports/" + report;
        QCOMPARE(first.value(name), contents(sourcePath("/demo/") + name));
        expected += name;
    }
    std::ranges::sort(expected);
    QCOMPARE(first.keys(), expected);
    QVERIFY(first == filesOf(path("again")));
    QVERIFY(
        first.value(QStringLiteral("Data/Clinic.db")) != contents(path("other/Data/Clinic.db")));
}

void tst_demo_clinic::ownFilesAreReplacedAndOthersStay()
{
    const QMap<QString, QByteArray> others{{QStringLiteral("Data/Mine.db"), "mine"},
        {QStringLiteral("Reports/My own.rpt"), "[Columns]"}, {QStringLiteral("notes.txt"), "n"}};
    for (auto other = others.begin(); other != others.end(); ++other)
        QVERIFY(write(path("used/") + other.key(), other.value()));
    QVERIFY(write(path("used/corvane.ini"), "old"));
    QVERIFY(write(path("used/Reports/Phone list.rpt"), "old"));
    QVERIFY(write(path("used/Data/Clinic.db"), "old"));
    QCOMPARE(run({path("used"), QStringLiteral("--patients=200")}).status, 0);
    auto expected = filesOf(path("small"));
    expected.insert(others);
    QVERIFY(filesOf(path("used")) == expected);
}

void tst_demo_clinic::sizeOfTheDefaultClinic()
{
    const auto count = [&](const QString &table) {
        return m_default->value(u"SELECT count(*) FROM " + table).toInt();
    };
    QCOMPARE(count(QStringLiteral("Clinic.patient_info")), 5'000);
    QCOMPARE(count(QStringLiteral("Clinic.passwords")), 12);
    const int appointments = count(QStringLiteral("Clinic.appointments"));
    QVERIFY2(appointments >= 59'000 && appointments <= 61'000,
        qPrintable(QString::number(appointments)));
    QStringList weekDays;
    for (QDate day(2026, 1, 1); day <= QDate(2027, 6, 30); day = day.addDays(1)) {
        if (day.dayOfWeek() <= Qt::Friday)
            weekDays += day.toString(Qt::ISODate);
    }
    QCOMPARE(m_default->column(
                 QStringLiteral("SELECT DISTINCT appt_date FROM Clinic.appointments ORDER BY 1")),
        weekDays);
}

void tst_demo_clinic::specialCases_data()
{
    QTest::addColumn<QString>("from"); // table and condition that some rows must meet
    const auto some = [](const char *claim, const char *from) {
        QTest::newRow(claim) << QString::fromUtf8(from);
    };
    for (const char *name : {"O''Neill", "D''Angelo", "Dvořák", "Díaz"}) {
        QTest::addRow("last name %s", name)
            << QStringLiteral("patient_info WHERE last_name = '%1'").arg(QString::fromUtf8(name));
    }
    some("first name Zoë", "patient_info WHERE first_name = 'Zoë'");
    some("first name Łukasz", "patient_info WHERE first_name = 'Łukasz'");
    some("double last name", "patient_info WHERE last_name LIKE '_%-_%'");
    some("no middle initial", "patient_info WHERE middle_init IS NULL");
    some("empty middle initial", "patient_info WHERE middle_init = ''");
    some("middle initial", "patient_info WHERE length(middle_init) = 1");
    some("no ssn", "patient_info WHERE ssn IS NULL");
    some("empty ssn", "patient_info WHERE ssn = ''");
    some("short ssn", "patient_info WHERE length(ssn) BETWEEN 1 AND 8");
    some("account with leading zeros", "patient_info WHERE acctnbr LIKE '00%'");
    some("inactive patient", "patient_info WHERE active = 0");
    some("balance with cents", "patient_info WHERE typeof(balance) = 'real'");
    some("nothing owed", "patient_info WHERE balance = 0");
    some("patient without provider", "patient_info WHERE provider_id IS NULL");
    some("patient without incident",
        "patient_info p WHERE NOT EXISTS (SELECT 1 FROM incident_hx i WHERE i.patient_id = p.id)");
    some("earlier incident", "incident_hx WHERE closed IS NOT NULL");
    some("patient of a restricted user",
        "patient_info p JOIN incident_hx i ON i.patient_id = p.id WHERE p.provider_id = 'brook'");
    some("patient shared with a restricted user",
        "patientaccess a JOIN patient_info p ON p.id = a.patientid JOIN incident_hx i ON "
        "i.patient_id = p.id"
        " AND i.incident_nbr = p.incident_nbr WHERE a.providerid = 'brook' AND p.provider_id <> "
        "'brook'");
    for (const int color : {192, 193, 194, 195, 49152, 12632064, 16711680, 16711681, 126322256})
        QTest::addRow("status %d", color)
            << QStringLiteral("appointments WHERE color = %1").arg(color);
    for (const int minute : {0, 720, 779})
        QTest::addRow("minute %d", minute)
            << QStringLiteral("appointments WHERE start_min = %1").arg(minute);
    some("group of three or more",
        "(SELECT 1 FROM appointments WHERE color = 12632064 GROUP BY provider_id, appt_date, "
        "start_min"
        " HAVING count(DISTINCT patient_id) >= 3)");
    some("no room", "appointments WHERE room IS NULL");
    some("no note", "appointments WHERE note IS NULL");
    some("empty note", "appointments WHERE note = ''");
    some("note with semicolon", "appointments WHERE note LIKE '%;%'");
    some("note with bar", "appointments WHERE note LIKE '%|%'");
    some("note over several lines", "appointments WHERE length(note) > 400");
    some("note with Japanese", "appointments WHERE note LIKE '%日本語%'");
    some("note with Arabic", "appointments WHERE note LIKE '%العربية%'");
    some("booked at midnight", "appointments WHERE length(booked_at) = 10");
    some("booked in the day", "appointments WHERE length(booked_at) = 19");
    for (const char *type : {"Charge", "Payment", "Adjustment"})
        QTest::addRow("ledger %s", type)
            << QStringLiteral("ledger WHERE entry_type = '%1'").arg(QString::fromUtf8(type));
    some("payer with apostrophe", "Clinic.payers WHERE name LIKE '%''%'");
    for (const char *state : {"Paid", "Denied", "Open", "Rejected"})
        QTest::addRow("claim %s", state)
            << QStringLiteral("claims WHERE status = '%1'").arg(QString::fromUtf8(state));
    some("paper claim", "claims WHERE electronic = 0");
    some("claim without answer", "claims WHERE allowed IS NULL");
    some("notice", "settings WHERE length(Notice) > 0");
    some("short screen access", "passwords WHERE length(pswd_screen_access) < 8");
    some("no right", "passwords WHERE substr(pswd_screen_access, 8, 1) = '1'");
    some("higher digit", "passwords WHERE substr(pswd_screen_access, 8, 1) > '3'");
    some("restricted provider",
        "passwords u JOIN providers v ON v.provider_id = u.pswd_user_id WHERE "
        "u.pswd_type_of_access = 0"
        " AND substr(u.pswd_screen_access, 8, 1) >= '2'");
    some("quote in a stored password", "passwords WHERE pswd_password LIKE '%''%'");
    some("user id without case, password exact",
        "passwords WHERE pswd_user_id = 'NORA' AND pswd_password <> upper(pswd_password)");
}

void tst_demo_clinic::specialCases()
{
    QFETCH(QString, from);
    for (const auto *clinic : {m_small.get(), m_default.get()}) {
        const QString count = clinic->value(u"SELECT count(*) FROM " + from);
        QVERIFY2(count.toInt() > 0, qPrintable(count));
    }
}

void tst_demo_clinic::nothingContradicts_data()
{
    QTest::addColumn<QString>("from"); // table and condition that no row may meet
    const auto none = [](const char *claim, const char *from) {
        QTest::newRow(claim) << QString::fromUtf8(from);
    };
    none("balances add up",
        "(SELECT p.id FROM patient_info p LEFT JOIN ledger l ON l.patient_id = p.id GROUP BY p.id "
        "HAVING abs("
        "p.balance - total(CASE l.entry_type WHEN 'Charge' THEN l.amount ELSE -l.amount END)) > "
        "0.001)");
    none("amounts have two decimals", "ledger WHERE amount <> round(amount, 2) OR amount < 0");
    none("appointments refer to somebody",
        "appointments a LEFT JOIN patient_info p ON p.id = a.patient_id LEFT JOIN providers v"
        " ON v.provider_id = a.provider_id WHERE p.id IS NULL OR v.provider_id IS NULL");
    none("claims refer to a patient and a payer",
        "claims c LEFT JOIN patient_info p ON p.acctnbr = c.acctnbr LEFT JOIN Halvern.payers y"
        " ON y.payer_id = c.payer_id WHERE p.id IS NULL OR y.name IS NULL");
    none("payments are the paid claims'",
        "claims c LEFT JOIN payments m ON m.claim_id = c.claim_id"
        " WHERE (c.status = 'Paid') <> (m.amount > 0 AND m.amount < c.billed)");
    none("account numbers are unique",
        "(SELECT 1 FROM patient_info GROUP BY acctnbr HAVING count(*) > 1)");
    none("dates are canonical",
        "appointments WHERE appt_date NOT GLOB '202[67]-[01][0-9]-[0-3][0-9]' OR booked_at LIKE "
        "'%00:00:00'"
        " OR julianday(booked_at) IS NULL OR booked_at >= appt_date");
    none("nobody has a number that could be real",
        "patient_info WHERE length(ssn) > 6 AND ssn NOT GLOB "
        "'9[0-9][0-9][0-9][0-9][0-9][0-9][0-9][0-9]'");
    none("only groups share a name",
        "appointments WHERE (color = 12632064) <> (group_name IS NOT NULL)");
    // The reports that count rows stop at 32,767; these are what they count over all dates.
    none("claims can be counted", "(SELECT count(*) AS n FROM claims) WHERE n > 32767");
    none("appointments of a provider can be counted",
        "(SELECT count(*) AS n FROM appointments GROUP BY provider_id) WHERE n > 32767");
    none("groups and absences can be counted",
        "(SELECT count(*) AS n FROM appointments WHERE color IN (192, 193, 194, 12632064)) WHERE n "
        "> 32767");
}

void tst_demo_clinic::nothingContradicts()
{
    QFETCH(QString, from);
    for (const auto *clinic : {m_small.get(), m_default.get()})
        QCOMPARE(clinic->value(u"SELECT count(*) FROM " + from), QStringLiteral("0"));
}

void tst_demo_clinic::valuesKeepTheirDeclaredType()
{
    for (const char *schema : {"Clinic", "Halvern"}) {
        const QString name = QString::fromUtf8(schema);
        QCOMPARE(m_default->value(QStringLiteral("PRAGMA %1.integrity_check").arg(name)),
            QStringLiteral("ok"));
        QCOMPARE(m_default->value(QStringLiteral(
                     "SELECT count(*) FROM %1.sqlite_schema s,"
                     " pragma_table_info(s.name, '%1') c WHERE s.type = 'table' AND"
                     " lower(c.type) NOT GLOB 'varchar([0-9]*)' AND lower(c.type) NOT IN"
                     " ('integer', 'smallint', 'bit', 'date', 'datetime', 'decimal(10,2)')")
                                      .arg(name)),
            QStringLiteral("0"));
    }
}

/// Rows of the README's table of users: id, password, 8th digit, type of access.
static QList<QStringList> readmeUsers()
{
    static const QRegularExpression row(
        QStringLiteral("^\\| `(\\S+)` \\| `(\\S+)` \\| (\\S+) \\| (\\d+) \\|"),
        QRegularExpression::MultilineOption);
    QList<QStringList> users;
    auto matches = row.globalMatch(QString::fromUtf8(contents(sourcePath("/demo/README.md"))));
    while (matches.hasNext())
        users += matches.next().capturedTexts().sliced(1);
    return users;
}

void tst_demo_clinic::usersAreThoseOfTheReadme()
{
    const QList<QStringList> users = readmeUsers();
    QCOMPARE(users.size(), 12);
    for (const QStringList &user : users) {
        const auto admitted
            = [](QChar c) { return (c >= u'0' && c <= u'{') || c == u'}' || c == u'~'; };
        QVERIFY2(std::ranges::all_of(user[0], admitted), qPrintable(user[0]));
        QCOMPARE(std::ranges::all_of(user[1], admitted), user[0] != u"quinn");
        const QString sql
            = QStringLiteral("SELECT iif(length(pswd_screen_access) < 8, 'none',"
                             " substr(pswd_screen_access, 8, 1)) || '|' || pswd_type_of_access"
                             " FROM passwords WHERE pswd_user_id = '%1' AND pswd_password = '%2'");
        const QString stored = scramblePW(user[1]).replace(u'\'', QStringLiteral("''"));
        QCOMPARE(
            m_default->column(sql.arg(user[0], stored)), QStringList(user[2] + u'|' + user[3]));
    }
}

void tst_demo_clinic::configurationNamesBothDatabases()
{
    const QString text = QString::fromLatin1(contents(path("small/corvane.ini")));
    QCOMPARE(text.count(u'\n'), text.count(QStringLiteral("\r\n")));
    const QString main = text.section(QStringLiteral("[SQLServer]\r\n"), 1, 1).section(u'[', 0, 0);
    const QString second = text.section(QStringLiteral("[HALVERN]\r\n"), 1, 1).section(u'[', 0, 0);
    const auto valueOf = [](const QString &section, const char *key) {
        const QString start = u'\n' + QString::fromUtf8(key) + u'=';
        return QString(u'\n' + section).section(start, 1, 1).section(u'\r', 0, 0);
    };
    QCOMPARE(valueOf(main, "Provider"), QStringLiteral("SQLOLEDB"));
    QCOMPARE(valueOf(main, "DataSource"), QStringLiteral("sqlite:Data"));
    QCOMPARE(valueOf(main, "InitialCatalog"), QStringLiteral("Clinic"));
    QCOMPARE(unscramblePW(valueOf(main, "Password")), QStringLiteral("demo"));
    QCOMPARE(valueOf(second, "Server"), QStringLiteral("sqlite:Data"));
    QCOMPARE(valueOf(second, "DataSource"), QStringLiteral("Halvern"));
    QCOMPARE(unscramblePW(valueOf(second, "PW")), QStringLiteral("demo"));
}

void tst_demo_clinic::wrongArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString folder = path("never");
    QTest::newRow("none") << QStringList();
    QTest::newRow("an empty folder name") << QStringList{QString()};
    QTest::newRow("two folders") << QStringList{folder, folder};
    QTest::newRow("an unknown option") << QStringList{folder, QStringLiteral("--doctors=3")};
    for (const char *number : {"0", "-5", "50001", "many", "12.5", "", "99999999999"}) {
        QTest::addRow("--patients=%s", number)
            << QStringList{folder, u"--patients=" + QString::fromUtf8(number)};
    }
}

void tst_demo_clinic::wrongArguments()
{
    QFETCH(QStringList, arguments);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.status, 2);
    QVERIFY(outcome.errors.startsWith(QStringLiteral("corvane-demo-clinic: ")));
    QVERIFY(outcome.errors.contains(QStringLiteral("Usage:")));
    QVERIFY(!QFileInfo::exists(path("never")));
}

void tst_demo_clinic::placesThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("file"); // stands where a folder belongs
    QTest::addColumn<QString>("folder"); // stands where a file belongs
    QTest::newRow("the target is a file") << QStringLiteral("target") << QString();
    QTest::newRow("a folder on the way is a file") << QStringLiteral("") << QString();
    QTest::newRow("Data is a file") << QStringLiteral("target/Data") << QString();
    QTest::newRow("Reports is a file") << QStringLiteral("target/Reports") << QString();
    QTest::newRow("corvane.ini is a folder") << QString() << QStringLiteral("target/corvane.ini");
    QTest::newRow("the last report is a folder")
        << QString() << QStringLiteral("target/Reports/Unpaid claims.rpt");
}

void tst_demo_clinic::placesThatCannotBeWritten()
{
    QFETCH(QString, file);
    QFETCH(QString, folder);
    const QTemporaryDir place;
    const QString root = place.filePath(QStringLiteral("place"));
    const QString wrong = QDir::cleanPath(root + u'/' + (folder.isEmpty() ? file : folder));
    if (folder.isEmpty())
        QVERIFY(write(wrong, "in the way"));
    else
        QVERIFY(QDir().mkpath(wrong));
    const auto before = filesOf(place.path());
    const Outcome outcome = run({root + u"/target", QStringLiteral("--patients=1")});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.startsWith(QStringLiteral("corvane-demo-clinic: ")),
        qPrintable(outcome.errors));
    QVERIFY2(outcome.errors.contains(QDir::toNativeSeparators(wrong)), qPrintable(outcome.errors));
    QVERIFY(filesOf(place.path()) == before);
}

QTEST_GUILESS_MAIN(tst_demo_clinic)
#include "tst_demo_clinic.moc"
