#include "database_files.h"
#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

class tst_embedded_driver : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void kindsByDeclaration_data();
    void kindsByDeclaration();
    void bigAndOddValues();
    void fieldsOfTheSameName();
    void failedConnections_data();
    void failedConnections();
    void emptyQueriesFail();
    void filesBesideTheCatalogue();
    void tooManyFiles();
    void failureInTheMiddleOfTheRows();
    void brokenPagesAreFound();
    void filesStayAsTheyAre();
    void connectionsDoNotSeeEachOthersFolder();

private:
    ConnectionText textFor(
        const QString &catalogue, const QString &folder = QStringLiteral("data")) const;
    QString folderWith(const QString &name) const;

    QTemporaryDir m_program;
};

namespace {

struct Failure
{
    int number = 0;
    QString words;
    FailureCause cause = FailureCause::Unknown;
};

template <typename Action> Failure failureOf(Action action)
{
    try {
        action();
    } catch (const DatabaseError &error) {
        return {error.number(), error.description(), error.cause()};
    }
    return {};
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

ConnectionText tst_embedded_driver::textFor(const QString &catalogue, const QString &folder) const
{
    ConnectionText text;
    text.provider = QStringLiteral("SQLOLEDB");
    text.dataSource = u"sqlite:" + folder;
    text.catalogue = catalogue;
    return text;
}

QString tst_embedded_driver::folderWith(const QString &name) const
{
    QDir(m_program.path()).mkpath(name);
    return m_program.filePath(name) + u'/';
}

void tst_embedded_driver::initTestCase()
{
    const QString data = folderWith(QStringLiteral("data"));
    test::writeDatabase(data + QStringLiteral("Clinic.db"),
        "CREATE TABLE visits(id int, name varchar(20)); INSERT INTO visits "
        "VALUES(1,'first'),(2,'second');"
        "CREATE TABLE odd(id int, big text, nul varchar(20), raw image, none int);"
        "INSERT INTO odd VALUES(1, replace(hex(zeroblob(524288)),'0','x'), 'a'||char(0)||'b', "
        "x'00ff', NULL);"
        "CREATE TABLE counts(n int);"
        "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM s WHERE i<1000) INSERT INTO "
        "counts SELECT -i FROM s;"
        "INSERT INTO counts VALUES(-9223372036854775807 - 1); INSERT INTO counts VALUES(-5);");
    test::writeDatabase(data + QStringLiteral("Second.db"),
        "CREATE TABLE rooms(id int); INSERT INTO rooms VALUES(7);");
    test::writeDatabase(data + QStringLiteral("two words [x].db"),
        "CREATE TABLE t(id int); INSERT INTO t VALUES(8);");
}

void tst_embedded_driver::kindsByDeclaration_data()
{
    QTest::addColumn<QString>("declaration");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("value");
    const auto add = [](const char *declaration, const char *stored, const char *value) {
        QTest::addRow("%s holds %s", declaration, stored) << QString::fromLatin1(
            declaration) << QString::fromLatin1(stored) << QString::fromLatin1(value);
    };
    add("int", "-5", "Integer -5");
    add("bigint", "9223372036854775807", "Integer 9223372036854775807");
    add("smallint", "'abc'", "Text abc");
    add("tinyint", "1.5", "Real 1.5");
    add("bit", "1", "Boolean True");
    add("boolean", "0", "Boolean False");
    add("decimal(10, 2)", "12.5", "Decimal 12.5");
    add("numeric(18, 4)", "-7", "Decimal -7");
    add("money", "0.1 + 0.2", "Decimal 0.3");
    add("money", "123456789.0125", "Decimal 123456789.0125");
    add("decimal(38, 0)", "1e20", "Decimal 100000000000000000000");
    add("decimal(9, 2)", "'n/a'", "Text n/a");
    add("float", "2", "Real 2");
    add("real", "0.25", "Real 0.25");
    add("double precision", "0.25", "Real 0.25");
    add("varchar(10)", "'abc'", "Text abc");
    add("NVARCHAR(4000)", "12", "Text 12");
    add("char(3)", "''", "Text ");
    add("text", "NULL", "Null");
    add("date", "'2026-11-01'", "Date 11/01/2026");
    add("date", "'0001-01-01'", "Date 01/01/0001");
    add("date", "'2026-11-01 08:30:00'", "DateTime 11/01/2026 8:30:00 AM");
    add("date", "'2026-02-30'", "Text 2026-02-30");
    add("date", "''", "Text ");
    add("datetime", "'2026-11-01'", "DateTime 11/01/2026");
    add("datetime2(3)", "'2026-11-01 08:30:00.123'", "DateTime 11/01/2026 8:30:00 AM");
    add("smalldatetime", "'2026-11-01T08:30:00'", "DateTime 11/01/2026 8:30:00 AM");
    add("datetime", "'2026-11-01 25:00:00'", "Text 2026-11-01 25:00:00");
    add("datetime", "45000", "Integer 45000");
    add("time", "'23:59:59'", "Time 11:59:59 PM");
    add("time(0)", "'08:30'", "Time 8:30:00 AM");
    add("time", "'8h'", "Text 8h");
    add("blob", "x'414243'", "Bytes ABC");
    add("varbinary(8)", "'abc'", "Bytes abc");
    add("uniqueidentifier", "'6F9619FF'", "Text 6F9619FF");
    add("geography", "'x'", "Text x");
}

void tst_embedded_driver::kindsByDeclaration()
{
    QFETCH(QString, declaration);
    QFETCH(QString, stored);
    QFETCH(QString, value);
    const QTemporaryDir folder;
    test::writeDatabase(folder.filePath(QStringLiteral("K.db")),
        QStringLiteral("CREATE TABLE t(v %1); INSERT INTO t VALUES(%2)")
            .arg(declaration, stored)
            .toUtf8());
    const auto driver = openEmbedded(textFor(QStringLiteral("K"), folder.path()), {});
    QCOMPARE(test::described(*driver->query(QStringLiteral("SELECT v FROM t"))), value);
    // Sorted and through a subquery the kind is the same.
    QCOMPARE(test::described(*driver->query(
                 QStringLiteral("SELECT x.w FROM (SELECT v AS w FROM t) x ORDER BY x.w"))),
        value);
}

void tst_embedded_driver::bigAndOddValues()
{
    const auto driver = openEmbedded(textFor(QStringLiteral("Clinic")), {m_program.path()});
    const auto rowset
        = driver->query(QStringLiteral("SELECT big, nul, raw, none, nul + '!' FROM odd"));
    QCOMPARE(rowset->value(0, 0).data(), QByteArrayView(QByteArray(1 << 20, 'x')));
    QCOMPARE(rowset->value(0, 1).data(), QByteArrayView("a\0b", 3));
    QCOMPARE(rowset->value(0, 2).kind(), ValueKind::Bytes);
    QCOMPARE(rowset->value(0, 2).data(), QByteArrayView("\0\xff", 2));
    QVERIFY(rowset->value(0, 3).isNull());
    const auto failure = failureOf([&] { driver->query(u"SELECT 'a" % QChar(u'\0') % u"b'"); });
    QVERIFY2(failure.words.contains(u"NUL character"), qPrintable(failure.words));
}

void tst_embedded_driver::fieldsOfTheSameName()
{
    const auto driver = openEmbedded(textFor(QStringLiteral("Clinic")), {m_program.path()});
    const auto rowset = driver->query(QStringLiteral(
        "SELECT a.name, b.name, a.id AS name FROM visits a, visits b WHERE a.id = 1 AND b.id = 2"));
    QCOMPARE(rowset->fieldNames(), QStringList(3, QStringLiteral("name")));
    QCOMPARE(test::described(*rowset), QStringLiteral("Text first | Text second | Integer 1"));
    QCOMPARE(rowset->fieldIndex(u"NAME"), 0);
}

void tst_embedded_driver::failedConnections_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("catalogue");
    QTest::addColumn<FailureCause>("cause");
    QTest::addColumn<QString>("words");

    const QString broken = folderWith(QStringLiteral("broken"));
    writeBytes(broken + QStringLiteral("Text.db"), QByteArray(4096, 'x'));
    writeBytes(broken + QStringLiteral("Empty.db"), {});
    QByteArray schema = bytesOf(m_program.filePath(QStringLiteral("data/Clinic.db")));
    schema.replace(100, 200, QByteArray(200, '\xee'));
    writeBytes(broken + QStringLiteral("Schema.db"), schema);
    QDir().mkpath(broken + QStringLiteral("Folder.db"));
    test::writeDatabase(broken + QStringLiteral("main.db"), "CREATE TABLE t(id int)");

    const auto add = [](const char *name, const char *folder, const char *catalogue,
                         FailureCause cause, const char *words) {
        QTest::newRow(name) << QString::fromLatin1(folder) << QString::fromLatin1(catalogue)
                            << cause << QString::fromLatin1(words);
    };
    add("no such folder", "nowhere", "Clinic", FailureCause::Server,
        "folder of the databases does not exist");
    add("the folder is a file", "data/Clinic.db", "Clinic", FailureCause::Server, "does not exist");
    add("no such file", "data", "Missing", FailureCause::Catalogue,
        "There is no database Missing.db in the folder");
    add("no catalogue", "data", "", FailureCause::Catalogue, "names no database");
    add("a path as catalogue", "broken", "../data/Clinic", FailureCause::Catalogue,
        "cannot be the name of a database");
    add("not a database", "broken", "Text", FailureCause::Catalogue,
        "Text.db cannot be read: file is not a database");
    add("an empty file", "broken", "Empty", FailureCause::Catalogue,
        "Empty.db cannot be read: file is not a database");
    add("broken schema", "broken", "Schema", FailureCause::Catalogue, "Schema.db cannot be read: ");
    add("a folder of that name", "broken", "Folder", FailureCause::Catalogue,
        "There is no database Folder.db");
    add("a name of SQLite's own", "broken", "Main", FailureCause::Catalogue,
        "\"Main\" cannot be the name of a database");
}

void tst_embedded_driver::failedConnections()
{
    QFETCH(QString, folder);
    QFETCH(QString, catalogue);
    QFETCH(FailureCause, cause);
    QFETCH(QString, words);
    const auto failure
        = failureOf([&] { openEmbedded(textFor(catalogue, folder), {m_program.path()}); });
    QVERIFY2(failure.words.contains(words), qPrintable(failure.words));
    QCOMPARE(failure.cause, cause);
    QCOMPARE(failure.number, kConnectionError);
    QVERIFY(!QFileInfo::exists(m_program.filePath(QStringLiteral("nowhere"))));
    QVERIFY(!QFileInfo::exists(m_program.filePath(QStringLiteral("data/Missing.db"))));
}

void tst_embedded_driver::emptyQueriesFail()
{
    const auto driver = openEmbedded(textFor(QStringLiteral("Clinic")), {m_program.path()});
    for (const char16_t *sql : {u"", u" \r\n", u"-- only this", u";"})
        QVERIFY(!failureOf([&] { driver->query(QString::fromUtf16(sql)); }).words.isEmpty());
}

void tst_embedded_driver::filesBesideTheCatalogue()
{
    const QString folder = folderWith(QStringLiteral("beside"));
    QFile::copy(
        m_program.filePath(QStringLiteral("data/Clinic.db")), folder + QStringLiteral("Clinic.db"));
    QFile::copy(m_program.filePath(QStringLiteral("data/two words [x].db")),
        folder + QStringLiteral("two words [x].db"));
    writeBytes(folder + QStringLiteral("Broken.db"), QByteArray(4096, 'x'));
    writeBytes(folder + QStringLiteral("notes.txt"), "no database");

    const auto driver = openEmbedded(
        textFor(QStringLiteral("Clinic"), QStringLiteral("beside")), {m_program.path()});
    QCOMPARE(test::described(*driver->query(QStringLiteral(
                 "SELECT t.id, v.id FROM [two words [x]]].dbo.t t, visits v WHERE v.id = 1"))),
        QStringLiteral("Integer 8 | Integer 1"));
    const auto failure
        = failureOf([&] { driver->query(QStringLiteral("SELECT * FROM BROKEN.dbo.t")); });
    QCOMPARE(failure.words,
        QStringLiteral("The database BROKEN cannot be read: file is not a database."));
    // A file that comes later belongs to the next connection.
    test::writeDatabase(folder + QStringLiteral("Later.db"), "CREATE TABLE t(id int)");
    QVERIFY(failureOf([&] {
        driver->query(QStringLiteral("SELECT * FROM Later.dbo.t"));
    }).words.contains(u"no such table: Later.t"));
}

void tst_embedded_driver::tooManyFiles()
{
    const QString folder = folderWith(QStringLiteral("many"));
    for (int i = 0; i < 15; ++i)
        test::writeDatabase(folder + QStringLiteral("D%1.db").arg(i, 2, 10, QChar(u'0')),
            "CREATE TABLE t(id int); INSERT INTO t VALUES(1)");
    const auto driver
        = openEmbedded(textFor(QStringLiteral("D14"), QStringLiteral("many")), {m_program.path()});
    QCOMPARE(test::described(
                 *driver->query(QStringLiteral("SELECT a.id, b.id FROM D14.dbo.t a, D00.dbo.t b"))),
        QStringLiteral("Integer 1 | Integer 1"));
    const auto failure
        = failureOf([&] { driver->query(QStringLiteral("SELECT * FROM d13.dbo.t")); });
    QVERIFY2(failure.words.contains(u"too many databases"), qPrintable(failure.words));
}

void tst_embedded_driver::failureInTheMiddleOfTheRows()
{
    const auto driver = openEmbedded(textFor(QStringLiteral("Clinic")), {m_program.path()});
    const auto failure
        = failureOf([&] { driver->query(QStringLiteral("SELECT ABS(n) FROM counts")); });
    QCOMPARE(failure.words, QStringLiteral("integer overflow"));
    QCOMPARE(failure.number, 1);
    // The connection is none the worse for it.
    QCOMPARE(driver->query(QStringLiteral("SELECT n FROM counts"))->rowCount(), 1002);
}

void tst_embedded_driver::brokenPagesAreFound()
{
    const QString folder = folderWith(QStringLiteral("pages"));
    const QString path = folder + QStringLiteral("Clinic.db");
    test::writeDatabase(path,
        "CREATE TABLE visits(id int, name varchar(200));"
        "WITH RECURSIVE s(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM s WHERE i<5000) INSERT INTO "
        "visits SELECT i, hex(zeroblob(90)) FROM s;");
    QByteArray bytes = bytesOf(path);
    bytes.replace(bytes.size() / 2, 40'000, QByteArray(40'000, '\x5a'));
    writeBytes(path, bytes);
    const auto driver = openEmbedded(
        textFor(QStringLiteral("Clinic"), QStringLiteral("pages")), {m_program.path()});
    const auto failure
        = failureOf([&] { driver->query(QStringLiteral("SELECT id, name FROM visits")); });
    QCOMPARE(failure.words, QStringLiteral("database disk image is malformed"));
    QCOMPARE(failure.number, 11);

    writeBytes(path, bytes.first(bytes.size() / 4));
    QVERIFY(!failureOf([&] {
        driver->query(QStringLiteral("SELECT id, name FROM visits"));
    }).words.isEmpty());
    QVERIFY(!failureOf([&] {
        openEmbedded(textFor(QStringLiteral("Clinic"), QStringLiteral("pages")), {m_program.path()})
            ->query(QStringLiteral("SELECT id, name FROM visits"));
    }).words.isEmpty());
}

void tst_embedded_driver::filesStayAsTheyAre()
{
    const QDir folder(m_program.filePath(QStringLiteral("data")));
    const QStringList filesBefore = folder.entryList(QDir::Files);
    const QByteArray before = bytesOf(folder.filePath(QStringLiteral("Clinic.db")));
    {
        const auto driver = openEmbedded(textFor(QStringLiteral("Clinic")), {m_program.path()});
        driver->query(QStringLiteral("SELECT DISTINCT name FROM visits ORDER BY name"));
        for (const char16_t *sql : {u"DELETE FROM visits", u"SELECT 1; DELETE FROM visits",
                 u"PRAGMA query_only=0", u"ATTACH 'x.db' AS x", u"VACUUM INTO 'x.db'",
                 u"WITH x AS (SELECT 1 AS a) DELETE FROM visits"})
            QVERIFY2(!failureOf([&] { driver->query(QString::fromUtf16(sql)); }).words.isEmpty(),
                qPrintable(QString::fromUtf16(sql)));
    }
    QCOMPARE(folder.entryList(QDir::Files), filesBefore);
    QCOMPARE(bytesOf(folder.filePath(QStringLiteral("Clinic.db"))), before);
}

void tst_embedded_driver::connectionsDoNotSeeEachOthersFolder()
{
    const auto connection = Connection::open(
        QStringLiteral("Provider=Anything;Data Source=SQLITE:data\\;Initial Catalog=Second"),
        {m_program.path()});
    QCOMPARE(test::described(*connection->openRowset(QStringLiteral("SELECT * FROM rooms"))),
        QStringLiteral("Integer 7"));
    // Letters that mean something in a URI; Windows has no question marks in names.
#ifdef Q_OS_WIN
    const QString odd = QStringLiteral("sub folder %41#");
#else
    const QString odd = QStringLiteral("sub folder %41?#");
#endif
    const QString other = folderWith(odd);
    test::writeDatabase(
        other + QStringLiteral("One.db"), "CREATE TABLE t(id int); INSERT INTO t VALUES(5)");
    const auto driver = openEmbedded(
        textFor(QStringLiteral("One"), odd), {m_program.path()});
    QCOMPARE(test::described(*driver->query(QStringLiteral("SELECT * FROM One..t"))),
        QStringLiteral("Integer 5"));
    QVERIFY(!failureOf([&] {
        driver->query(QStringLiteral("SELECT * FROM Second.dbo.rooms"));
    }).words.isEmpty());
}

QTEST_GUILESS_MAIN(tst_embedded_driver)
#include "tst_embedded_driver.moc"
