#include "database_files.h"
#include "platform/database/embedded/embedded_driver.h"
#include "platform/database/error.h"
#include "support/suite.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

/// Statements of the server run over a tiny clinic: what they return shows translation and meaning.
class tst_dialect : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void names_data();
    void names() { compare(); }
    void queries_data();
    void queries() { compare(); }
    void texts_data();
    void texts() { compare(); }
    void quotedTextAndComments_data();
    void quotedTextAndComments() { compare(); }
    void sums_data();
    void sums() { compare(); }
    void dateFunctions_data();
    void dateFunctions() { compare(); }
    void conversions_data();
    void conversions() { compare(); }
    void dateLiterals_data();
    void dateLiterals();
    void dateLiteralsKeptAsText_data();
    void dateLiteralsKeptAsText() { compare(); }
    void resultKinds_data();
    void resultKinds() { compare(); }
    void failures_data();
    void failures();
    void fieldNames();
    void deepNestingIsRefused();
    void longSelections();

private:
    QString run(const QString &sql, int dateOrder = 0);
    void compare();
    static void addColumns();
    static void addCase(const char *name, const char *sql, const char *result);

    QTemporaryDir m_folder;
    std::unique_ptr<Driver> m_drivers[3];
};

void tst_dialect::initTestCase()
{
    test::writeDatabase(m_folder.filePath(QStringLiteral("Clinic.db")),
        "CREATE TABLE patients(id int, last_name varchar(30) COLLATE NOCASE, first_name "
        "varchar(30),"
        " ssn char(9), balance decimal(10,2), born date, active bit, [Full Name] nvarchar(60));"
        "INSERT INTO patients VALUES(1,'O''Neil','Ann','123456789',12.5,'1980-02-29',1,'O''Neil, "
        "Ann'),"
        "(2,'Smith',NULL,'000123456',5,'1975-11-01',0,'Smith'),(3,'Zo\xc3\xab','Bo','987654321',-0."
        "25,NULL,1,'Zo\xc3\xab, Bo');"
        "CREATE TABLE appts(id int, patient_id int, day date, at datetime, start_min smallint, "
        "start_time time,"
        " code varchar(10), day_text varchar(10));"
        "INSERT INTO appts VALUES(10,1,'2026-10-31','2026-10-31 "
        "08:30:00',510,'08:30:00','A1','10/31/2026'),"
        "(11,1,'2026-11-01','2026-11-01',0,'00:00:00','B2','11/01/2026'),"
        "(12,2,'2026-11-02','2026-11-02 12:59:00',779,'12:59:00','A[1]','11/02/2026'),"
        "(13,3,'2027-01-05','2027-01-05 23:59:59.500',1439,'23:59:59','50%','01/05/2027');"
        "CREATE VIEW latest AS SELECT patient_id, day FROM appts;"
        "CREATE TABLE loose(id int, v); INSERT INTO loose VALUES(0,1),(11,'2026-11-01'),"
        "(12,2.5),(13,' 7 '),(14,'abc'),(15,9223372036854775807);");
    test::writeDatabase(m_folder.filePath(QStringLiteral("Second.db")),
        "CREATE TABLE rooms(id int, name varchar(20)); INSERT INTO rooms "
        "VALUES(1,'North'),(2,'South');"
        "CREATE TABLE patients(id int); INSERT INTO patients VALUES(99);");
    QDateTime now(QDate(2026, 11, 22), QTime(14, 3, 5, 250), Qt::UTC);
    ConnectionText text;
    text.dataSource = QStringLiteral("sqlite:.");
    text.catalogue = QStringLiteral("Clinic");
    for (int order = 0; order < 3; ++order)
        m_drivers[order] = embedded::open(text, {m_folder.path(), order}, [now] { return now; });
}

QString tst_dialect::run(const QString &sql, int dateOrder)
{
    try {
        return test::described(*m_drivers[dateOrder]->query(sql));
    } catch (const DatabaseError &error) {
        return QStringLiteral("%1: %2").arg(error.number()).arg(error.description());
    }
}

void tst_dialect::compare()
{
    QFETCH(QString, sql);
    QFETCH(QString, result);
    QCOMPARE(run(sql), result);
}

void tst_dialect::addCase(const char *name, const char *sql, const char *result)
{
    QTest::newRow(name) << QString::fromUtf8(sql) << QString::fromUtf8(result);
}

void tst_dialect::addColumns()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("result");
}

void tst_dialect::names_data()
{
    addColumns();
    constexpr auto kThree = "Integer 3";
    addCase("bare", "SELECT count(*) FROM patients", kThree);
    addCase("three parts", "SELECT COUNT(*) FROM Clinic.dbo.patients", kThree);
    addCase("brackets everywhere", "SELECT COUNT(*) FROM [Clinic].[dbo].[patients]", kThree);
    addCase("brackets in part", "SELECT COUNT(*) FROM [Clinic].dbo.patients", kThree);
    addCase("schema only", "SELECT COUNT(*) FROM dbo.patients", kThree);
    addCase("schema left out", "SELECT COUNT(*) FROM Clinic..patients", kThree);
    addCase("any case", "SELECT COUNT(*) FROM CLINIC.DBO.PATIENTS", kThree);
    addCase("the catalogue comes before the others", "SELECT MAX(id) FROM patients", kThree);
    addCase("another catalogue", "SELECT id FROM Second.dbo.patients", "Integer 99");
    addCase("two catalogues",
        "SELECT p.last_name, r.name FROM Clinic.dbo.patients p, [Second].dbo.rooms r WHERE p.id = "
        "r.id ORDER BY r.id",
        "Text O'Neil | Text North / Text Smith | Text South");
    addCase("columns in full",
        "SELECT dbo.patients.id, Clinic.dbo.patients.ssn FROM Clinic.dbo.patients WHERE "
        "patients.id = 1",
        "Integer 1 | Text 123456789");
    addCase("a name with a blank",
        "SELECT [Full Name], p.[Full Name] FROM patients p WHERE \"Full Name\" LIKE 'Sm%'",
        "Text Smith | Text Smith");
    addCase("lock hints", "SELECT COUNT(*) FROM Clinic.dbo.patients WITH (NOLOCK)", kThree);
    addCase("lock hints behind an alias",
        "SELECT COUNT(*) FROM patients p WITH (NOLOCK, READPAST) JOIN appts a (NOLOCK) ON "
        "a.patient_id = p.id",
        "Integer 4");
}

void tst_dialect::queries_data()
{
    addColumns();
    addCase("TOP", "SELECT TOP 2 id FROM appts ORDER BY id DESC", "Integer 13 / Integer 12");
    addCase("TOP in parentheses",
        "SELECT DISTINCT TOP (1) patient_id FROM appts ORDER BY patient_id", "Integer 1");
    addCase(
        "TOP in a subquery", "SELECT COUNT(*) FROM (SELECT TOP 2 id FROM appts) x", "Integer 2");
    addCase("TOP in a scalar subquery",
        "SELECT id, (SELECT TOP 1 a.code FROM appts a WHERE a.patient_id = p.id ORDER BY a.id "
        "DESC) FROM patients p WHERE id = 1",
        "Integer 1 | Text B2");
    addCase("TOP in both parts of a union",
        "SELECT TOP 1 id FROM appts UNION ALL SELECT TOP 2 id FROM patients",
        "Integer 10 / Integer 1 / Integer 2");
    addCase("union in order",
        "SELECT id FROM patients WHERE id > 1 UNION SELECT id FROM rooms ORDER BY id",
        "Integer 1 / Integer 2 / Integer 3");
    addCase("a union's part in parentheses", "(SELECT id FROM rooms) UNION ALL (SELECT 7)",
        "Integer 1 / Integer 2 / Integer 7");
    addCase("group and having",
        "SELECT patient_id, COUNT(*) AS n FROM appts GROUP BY patient_id HAVING COUNT(*) > 1",
        "Integer 1 | Integer 2");
    addCase("left join",
        "SELECT p.id, r.name FROM patients AS p LEFT OUTER JOIN rooms r ON r.id = p.id WHERE p.id "
        "> 1 ORDER BY 1",
        "Integer 2 | Text South / Integer 3 | Null");
    addCase("joins in parentheses",
        "SELECT COUNT(*) FROM (patients p INNER JOIN appts a ON a.patient_id = p.id) CROSS JOIN "
        "rooms",
        "Integer 8");
    addCase("exists and in",
        "SELECT id FROM patients p WHERE EXISTS (SELECT * FROM appts a WHERE a.patient_id = p.id "
        "AND a.code = 'B2') AND NOT id IN (2, 3)",
        "Integer 1");
    addCase("in a subquery",
        "SELECT id FROM patients WHERE id NOT IN (SELECT patient_id FROM appts WHERE start_min > "
        "600)",
        "Integer 1");
    addCase("common table",
        "WITH busy (pid, n) AS (SELECT patient_id, COUNT(*) FROM appts GROUP BY patient_id) SELECT "
        "n FROM busy WHERE pid = 1;",
        "Integer 2");
    addCase("ranks",
        "SELECT id, ROW_NUMBER() OVER (PARTITION BY patient_id ORDER BY at DESC) FROM appts WHERE "
        "patient_id = 1 ORDER BY id",
        "Integer 10 | Integer 2 / Integer 11 | Integer 1");
    addCase("alias with equals sign", "SELECT total = start_min + 1 FROM appts WHERE id = 10",
        "Integer 511");
    addCase("case with a value",
        "SELECT CASE patient_id WHEN 1 THEN 'one' ELSE 'other' END FROM appts WHERE id IN (11, 12)",
        "Text one / Text other");
    addCase("case nested",
        "SELECT CASE WHEN id = 1 THEN CASE WHEN active = 1 THEN 'a' ELSE 'b' END + 'x' WHEN "
        "first_name IS NULL THEN '-' END FROM patients",
        "Text ax / Text - / Null");
    addCase("IIF", "SELECT IIF(active = 1 AND id > 0, 'yes', 'no') FROM patients WHERE id < 3",
        "Text yes / Text no");
    addCase("ISNULL, COALESCE, NULLIF",
        "SELECT ISNULL(first_name, '-'), COALESCE(NULL, first_name, last_name), NULLIF(last_name, "
        "'Smith') FROM patients WHERE id = 2",
        "Text - | Text Smith | Null");
    addCase(
        "not equal in both ways", "SELECT id FROM patients WHERE id <> 1 AND id != 2", "Integer 3");
    addCase(
        "not less, not greater", "SELECT id FROM patients WHERE id !< 2 AND id !> 2", "Integer 2");
    addCase("declared collation",
        "SELECT id FROM patients WHERE last_name = 'SMITH' OR first_name = 'ANN'", "Integer 2");
    addCase("collation by name",
        "SELECT id FROM patients WHERE first_name COLLATE Latin1_General_CI_AS = 'ANN'",
        "Integer 1");
    addCase("bit against a word", "SELECT id FROM patients WHERE active = 'False'", "Integer 2");
    addCase("expression against a quoted number",
        "SELECT id FROM appts WHERE start_min + 1 = '511'", "Integer 10");
    addCase("a text column against a number", "SELECT id FROM patients WHERE ssn = 123456",
        "Integer 2");
    addCase("LIKE", "SELECT id FROM patients WHERE last_name LIKE '%NEI_'", "Integer 1");
    addCase("LIKE with a set",
        "SELECT id FROM patients WHERE last_name LIKE '[A-P]%' AND ssn LIKE '[^0]%'", "Integer 1");
    addCase("LIKE with a quoted bracket", "SELECT id FROM appts WHERE code LIKE 'A[[]1%'",
        "Integer 12");
    addCase("LIKE with an escape",
        "SELECT id FROM appts WHERE code LIKE '50!%' ESCAPE '!' AND code NOT LIKE 'A%'",
        "Integer 13");
    addCase("LIKE a column",
        "SELECT id FROM patients WHERE [Full Name] LIKE last_name + ', [A-C]%'",
        "Integer 1 / Integer 3");
    addCase("bits", "SELECT 6 & 3 + 1, (6 | 1) % 4", "Integer 3 | Integer 3");
    addCase("precedence",
        "SELECT id FROM patients WHERE NOT id = 1 AND id < 3 OR id = 3 ORDER BY id",
        "Integer 2 / Integer 3");
}

void tst_dialect::texts_data()
{
    addColumns();
    addCase("LEN counts no blanks at the end",
        "SELECT LEN(' ab  '), LEN(last_name), LEN(NULL) FROM patients WHERE id = 3",
        "Integer 3 | Integer 3 | Null");
    addCase("CHARINDEX",
        "SELECT CHARINDEX('N', 'O''Neil nun'), CHARINDEX('n', 'nan', 2), CHARINDEX('x', 'abc')",
        "Integer 3 | Integer 3 | Integer 0");
    addCase("SUBSTRING",
        "SELECT SUBSTRING('abcdef', 2, 3), SUBSTRING('abc', 0, 2), SUBSTRING(last_name, 3, 9) FROM "
        "patients WHERE id = 3",
        "Text bcd | Text a | Text \xc3\xab");
    addCase("LEFT and RIGHT",
        "SELECT LEFT('abc', 2), RIGHT(last_name, 2), RIGHT('a', 5), LEFT('', 3) FROM patients "
        "WHERE id = 3",
        "Text ab | Text o\xc3\xab | Text a | Text ");
    addCase("REPLICATE", "SELECT REPLICATE('ab', 3), REPLICATE('a', -1)", "Text ababab | Null");
    addCase("STR",
        "SELECT '[' + STR(3.14159, 6, 2) + ']', STR(12), STR(12345, 3), STR(-2.5, 5, 1), "
        "STR(1.005, 5, 2)",
        "Text [  3.14] | Text         12 | Text *** | Text  -2.5 | Text  1.01");
    addCase("UPPER and LOWER beyond ASCII",
        "SELECT UPPER(last_name), LOWER('\xc3\x84"
        "B') FROM patients WHERE id = 3",
        "Text ZO\xc3\x8b | Text \xc3\xa4"
        "b");
    addCase("trims", "SELECT LTRIM('  a '), RTRIM(' a  ') + '.'", "Text a  | Text  a.");
    addCase("REPLACE, CONCAT, CHAR",
        "SELECT REPLACE(ssn, '123', 'x'), CONCAT(id, NULL, '-', last_name), CHAR(65) FROM patients "
        "WHERE id = 2",
        "Text 000x456 | Text 2-Smith | Text A");
    addCase("of what is no text: as CONVERT gives it",
        "SELECT LEFT(at, 11), LEN(balance), UPPER(day), CONCAT(start_time, '') FROM appts a JOIN "
        "patients p ON p.id = a.patient_id WHERE a.id = 10 AND at LIKE 'Oct%'",
        "Text Oct 31 2026 | Integer 5 | Text 2026-10-31 | Text 08:30:00.0000000");
    addCase("REPLACE finds in any case", "SELECT REPLACE('O''Neil', 'N', 'x')", "Text O'xeil");
    addCase("ISNULL keeps the first one's length and kind",
        "SELECT ISNULL(first_name, REPLICATE('x', 40)), ISNULL(active, 5), ISNULL(NULL, 'abc'), "
        "ISNULL(born, '') FROM patients WHERE id = 2",
        "Text xxxxxxxxxxxxxxxxxxxxxxxxxxxxxx | Boolean False | Text abc | Date 11/01/1975");
    addCase("null arguments",
        "SELECT LEFT(first_name, 1), UPPER(first_name), SUBSTRING(first_name, 1, 1) FROM patients "
        "WHERE id = 2",
        "Null | Null | Null");
}

void tst_dialect::quotedTextAndComments_data()
{
    addColumns();
    addCase("words in quotes",
        "SELECT 'SELECT TOP 5 ISNULL(a+b) FROM Clinic.dbo.x WITH (NOLOCK) -- GETDATE()'",
        "Text SELECT TOP 5 ISNULL(a+b) FROM Clinic.dbo.x WITH (NOLOCK) -- GETDATE()");
    addCase("doubled quotes", "SELECT 'it''s [dbo].[x]', N'\xc3\xa4''b'",
        "Text it's [dbo].[x] | Text \xc3\xa4'b");
    addCase("line comment", "SELECT 1 -- , 'two\n , 3 -- EXEC x", "Integer 1 | Integer 3");
    addCase("block comment, nested", "SELECT /* ' /* [ */ @x ; */ 1", "Integer 1");
    addCase("comment marks in quotes", "SELECT '/* no', '-- no', 'no */'",
        "Text /* no | Text -- no | Text no */");
    addCase("quotes in a name", "SELECT 1 AS [it's a ]] name], 2 AS \"a \"\"b\"\"\"",
        "Integer 1 | Integer 2");
    addCase("a date in quotes alone", "SELECT '11/01/2026', '2026/11/01'",
        "Text 11/01/2026 | Text 2026/11/01");
}

void tst_dialect::sums_data()
{
    addColumns();
    addCase("texts join", "SELECT last_name + ', ' + first_name FROM patients WHERE id = 1",
        "Text O'Neil, Ann");
    addCase("null gives null",
        "SELECT last_name + ', ' + first_name, 1 + NULL FROM patients WHERE id = 2", "Null | Null");
    addCase("numbers add",
        "SELECT start_min + 30, 1 + 2 * 3 - 4, start_min - 10 FROM appts WHERE id = 10",
        "Integer 540 | Integer 3 | Integer 500");
    addCase("text that is a number adds",
        "SELECT '12' + 5, 5.5 + ' 1.5 ', '1' + '2' + 3, 3 + '1' + '2'",
        "Integer 17 | Decimal 7 | Integer 15 | Integer 6");
    addCase("date plus days", "SELECT day + 1, at + 0.5, day - 31 FROM appts WHERE id = 10",
        "Date 11/01/2026 | DateTime 10/31/2026 8:30:00 PM | Date 09/30/2026");
    addCase(
        "date less date", "SELECT CONVERT(int, at - day) FROM appts WHERE id = 12", "Integer 1");
    addCase("sums in a subquery's columns",
        "SELECT x.n + 1, x.t + '!' FROM (SELECT start_min AS n, code AS t FROM appts WHERE id = "
        "10) x",
        "Integer 511 | Text A1!");
    addCase("long chain of unknown types", "SELECT v + v + v + v + v FROM loose WHERE id = 0",
        "Integer 5");
    addCase("values of no declared type add and subtract as what they are",
        "SELECT v + 1, v - 1 FROM loose WHERE id IN (11, 12, 13) ORDER BY id",
        "Text 2026-11-02 | Text 2026-10-31 / Real 3.5 | Real 1.5 / Integer 8 | Real 6");
    addCase("beyond whole numbers they are real", "SELECT v + 1, v - (-1) FROM loose WHERE id = 15",
        "Real 9.22337203685478e+18 | Real 9.22337203685478e+18");
    addCase("a bracketed sum inside",
        "SELECT (last_name + '-') + (code + '/' + CAST(start_min AS varchar)) FROM patients p JOIN "
        "appts a ON a.patient_id = p.id WHERE a.id = 12",
        "Text Smith-A[1]/779");
    addCase("negative signs", "SELECT 5 - -3, -(-2), - 1 + 2", "Integer 8 | Integer 2 | Integer 1");
    addCase("whole numbers divide whole", "SELECT 7 / 2, 7 / 2.0, 7 % 4",
        "Integer 3 | Decimal 3.5 | Integer 3");
    addCase("a whole decimal divides like a decimal",
        "SELECT balance / 2 FROM patients WHERE id = 2", "Decimal 2.5");
    addCase("average of whole numbers",
        "SELECT AVG(start_min), AVG(balance) FROM appts a JOIN patients p ON p.id = a.patient_id "
        "WHERE a.id IN (10, 12)",
        "Integer 644 | Decimal 8.75");
    addCase("aggregate of a sum",
        "SELECT SUM(start_min + 1), MAX(last_name + '') FROM appts a JOIN patients p ON p.id = "
        "a.patient_id",
        "Integer 2732 | Text Zo\xc3\xab");
    addCase("ROUND", "SELECT ROUND(2.345, 2), ROUND(-2.5, 0), ROUND(1250, -2), ROUND(2.789, 1, 1)",
        "Decimal 2.35 | Decimal -3 | Integer 1300 | Decimal 2.7");
}

void tst_dialect::dateFunctions_data()
{
    addColumns();
    addCase("GETDATE", "SELECT GETDATE(), CURRENT_TIMESTAMP",
        "DateTime 11/22/2026 2:03:05 PM | DateTime 11/22/2026 2:03:05 PM");
    addCase("DATEADD keeps the month's end",
        "SELECT DATEADD(month, 1, '01/31/2026'), DATEADD(yy, 1, born) FROM patients WHERE id = 1",
        "DateTime 02/28/2026 | Date 02/28/1981");
    addCase("DATEADD by parts of a day",
        "SELECT DATEADD(mi, 45, at), DATEADD(hh, -9, at), DATEADD(wk, 1, day), DATEADD(q, -1, day) "
        "FROM appts WHERE id = 10",
        "DateTime 10/31/2026 9:15:00 AM | DateTime 10/30/2026 11:30:00 PM | Date 11/07/2026 | Date "
        "07/31/2026");
    addCase("first of the month",
        "SELECT DATEADD(mm, DATEDIFF(mm, 0, at), 0) FROM appts WHERE id = 13",
        "DateTime 01/01/2027");
    addCase("DATEDIFF counts boundaries",
        "SELECT DATEDIFF(day, at, '11/02/2026'), DATEDIFF(year, '12/31/2025', '01/01/2026'), "
        "DATEDIFF(hh, '10:59', '11:01'), DATEDIFF(n, at, day) FROM appts WHERE id = 10",
        "Integer 2 | Integer 1 | Integer 1 | Integer -510");
    addCase("weeks begin on Sunday",
        "SELECT DATEDIFF(wk, '10/31/2026', '11/01/2026'), DATEDIFF(wk, '11/01/2026', '11/07/2026')",
        "Integer 1 | Integer 0");
    addCase("DATEPART",
        "SELECT DATEPART(yyyy, at), DATEPART(qq, at), DATEPART(m, at), DATEPART(dy, at), "
        "DATEPART(d, at), DATEPART(hh, at), DATEPART(mi, at), DATEPART(ss, at), DATEPART(ms, at) "
        "FROM appts WHERE id = 13",
        "Integer 2027 | Integer 1 | Integer 1 | Integer 5 | Integer 5 | Integer 23 | Integer 59 | "
        "Integer 59 | Integer 500");
    addCase("weekday and weeks",
        "SELECT DATEPART(dw, '11/01/2026'), DATEPART(week, '01/03/2026'), DATEPART(week, "
        "'01/04/2026'), DATEPART(iso_week, '01/01/2027')",
        "Integer 1 | Integer 1 | Integer 2 | Integer 53");
    addCase("DATENAME",
        "SELECT DATENAME(month, day), DATENAME(dw, day), DATENAME(dd, day) FROM appts WHERE id = "
        "11",
        "Text November | Text Sunday | Text 1");
    addCase("YEAR, MONTH, DAY",
        "SELECT YEAR(at), MONTH(day), DAY('11/30/2026'), YEAR(born) FROM appts, patients WHERE "
        "appts.id = 13 AND patients.id = 3",
        "Integer 2027 | Integer 1 | Integer 30 | Null");
    addCase("a column of written dates",
        "SELECT DATEADD(day, 1, day_text) FROM appts WHERE id = 13", "DateTime 01/06/2027");
}

void tst_dialect::conversions_data()
{
    addColumns();
    const auto style = [](const char *name, int number, const char *text) {
        addCase(name,
            QStringLiteral("SELECT CONVERT(varchar(40), at, %1) FROM appts WHERE id = 13")
                .arg(number)
                .toUtf8(),
            QByteArray("Text ").append(text));
    };
    style("style 0", 0, "Jan  5 2027 11:59PM");
    style("style 1", 1, "01/05/27");
    style("style 100", 100, "Jan  5 2027 11:59PM");
    style("style 101", 101, "01/05/2027");
    style("style 102", 102, "2027.01.05");
    style("style 103", 103, "05/01/2027");
    style("style 104", 104, "05.01.2027");
    style("style 105", 105, "05-01-2027");
    style("style 106", 106, "05 Jan 2027");
    style("style 107", 107, "Jan 05, 2027");
    style("style 108", 108, "23:59:59");
    style("style 109", 109, "Jan  5 2027 11:59:59:500PM");
    style("style 110", 110, "01-05-2027");
    style("style 111", 111, "2027/01/05");
    style("style 112", 112, "20270105");
    style("style 113", 113, "05 Jan 2027 23:59:59:500");
    style("style 114", 114, "23:59:59:500");
    style("style 120", 120, "2027-01-05 23:59:59");
    style("style 121", 121, "2027-01-05 23:59:59.500");
    style("style 126", 126, "2027-01-05T23:59:59.500");
    style("style 23", 23, "2027-01-05");
    addCase("no style",
        "SELECT CONVERT(varchar, at), CAST(day AS varchar(10)), CAST(start_time AS varchar) FROM "
        "appts WHERE id = 11",
        "Text Nov  1 2026 12:00AM | Text 2026-11-01 | Text 00:00:00.0000000");
    addCase("a date has no time to show",
        "SELECT CONVERT(varchar(30), day, 120), CONVERT(varchar(30), day, 100) FROM appts WHERE id "
        "= 11",
        "Text 2026-11-01 | Text Nov  1 2026");
    addCase("cut and filled to the length",
        "SELECT CONVERT(varchar(5), at, 108), CAST('abc' AS char(5)) + '|', CAST('Zo\xc3\xab!' AS "
        "varchar(3)), CONVERT(varchar(2), 123) FROM appts WHERE id = 10",
        "Text 08:30 | Text abc  | | Text Zo\xc3\xab | Text *");
    addCase("numbers to text",
        "SELECT CAST(balance AS varchar(10)), CONVERT(varchar, 12), CAST(1.50 AS varchar(9)) FROM "
        "patients WHERE id = 1",
        "Text 12.50 | Text 12 | Text 1.50");
    addCase("amounts of money",
        "SELECT CONVERT(varchar, CAST(-1234567.891 AS money), 1), CAST(CAST(12.5 AS money) AS "
        "varchar), CONVERT(varchar(12), CAST('$1,234.5' AS money) * 2, 2), CAST(12.5 AS money) / 3",
        "Text -1,234,567.89 | Text 12.50 | Text 2469.0000 | Decimal 4.1666");
    addCase("reals to text",
        "SELECT CAST(CAST(1234567 AS float) AS varchar), CAST(0.1e0 AS varchar), CONVERT(varchar, "
        "2.5e0, 1)",
        "Text 1.23457e+006 | Text 0.1 | Text 2.5000000e+000");
    addCase("times with their digits",
        "SELECT CAST(CAST(at AS datetime2) AS varchar(40)), CAST(CAST(at AS time(0)) AS "
        "varchar(20)), CONVERT(varchar(30), CAST(at AS datetime2(1)), 121) FROM appts WHERE id = "
        "13",
        "Text 2027-01-05 23:59:59.5000000 | Text 23:59:59 | Text 2027-01-05 23:59:59.5");
    addCase("text to numbers",
        "SELECT CAST('12' AS int), CONVERT(int, 12.9), CAST(' 2.5' AS float), CAST('2.345' AS "
        "decimal(9, 2)), CAST('' AS int)",
        "Integer 12 | Integer 12 | Real 2.5 | Decimal 2.35 | Integer 0");
    addCase("bits", "SELECT CAST(5 AS bit), CAST('false' AS bit), CONVERT(bit, 0)",
        "Boolean True | Boolean False | Boolean False");
    addCase("text to dates",
        "SELECT CAST('11/01/2026 14:30' AS datetime), CONVERT(datetime, '01/11/2026', 103), "
        "CAST('20261101' AS date), CONVERT(date, 'Nov 1, 2026')",
        "DateTime 11/01/2026 2:30:00 PM | DateTime 11/01/2026 | Date 11/01/2026 | Date 11/01/2026");
    addCase("dates to dates",
        "SELECT CAST(at AS date), CONVERT(date, GETDATE()), CONVERT(time, at), CONVERT(datetime, "
        "CONVERT(varchar(10), at, 120)) FROM appts WHERE id = 12",
        "Date 11/02/2026 | Date 11/22/2026 | Time 12:59:00 PM | DateTime 11/02/2026");
    addCase("dates and numbers",
        "SELECT CAST(day AS int), CAST(0 AS datetime), CONVERT(float, at) FROM appts WHERE id = 12",
        "Integer 46326 | DateTime 01/01/1900 | Real 46326.5409722222");
    addCase("midnight by way of numbers",
        "SELECT CAST(FLOOR(CAST(at AS float)) AS datetime) FROM appts WHERE id = 12",
        "DateTime 11/02/2026");
}

void tst_dialect::dateLiterals_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<int>("dateOrder");
    QTest::addColumn<QString>("result");
    const auto add = [](const char *name, int order, const char *condition, const char *result) {
        QTest::newRow(name) << QString::fromLatin1(condition) << order
                            << QString::fromLatin1(result);
    };
    constexpr auto kInvalid
        = "241: Conversion failed when converting date and/or time from character string.";
    add("month first", 0, "day = '11/01/2026'", "Integer 11");
    add("day first", 1, "day = '01/11/2026'", "Integer 11");
    add("year first", 2, "day = '2026/11/01'", "Integer 11");
    add("single digits", 0, "day = '11/1/2026'", "Integer 11");
    add("two-digit year", 1, "day = '1/11/26'", "Integer 11");
    add("two-digit year first", 2, "day = '26/11/1'", "Integer 11");
    add("four digits first are the year in any order", 1, "day = '2026-11-01'", "Integer 11");
    add("eight digits", 0, "day = '20261101'", "Integer 11");
    add("month by name", 1, "day = 'November 1, 2026'", "Integer 11");
    add("literal on the left", 0, "'11/01/2026' = day", "Integer 11");
    add("in parentheses and with N", 0, "(day) = (N'11/01/2026')", "Integer 11");
    add("between, date column", 0, "day BETWEEN '10/31/2026' AND '11/02/2026'",
        "Integer 10 / Integer 11 / Integer 12");
    add("between, day first", 1, "day BETWEEN '31/10/2026' AND '02/11/2026'",
        "Integer 10 / Integer 11 / Integer 12");
    add("between, date-time column", 0, "at BETWEEN '10/31/2026' AND '11/02/2026'",
        "Integer 10 / Integer 11");
    add("not between", 2, "at NOT BETWEEN '2026/10/31' AND '2026/11/03'", "Integer 13");
    add("with a time of day", 0, "at >= '11/02/2026 12:59' AND at < '11/02/2026 1:00 PM'",
        "Integer 12");
    add("in a list", 0, "day IN ('11/01/2026', '01/05/2027')", "Integer 11 / Integer 13");
    add("not in a list", 1, "day NOT IN ('01/11/2026', '05/01/2027')", "Integer 10 / Integer 12");
    add("against an aggregate", 0,
        "(SELECT MAX(x.day) FROM appts x WHERE x.id = appts.id) = '11/01/2026'", "Integer 11");
    add("against ISNULL with a default", 0, "ISNULL(day, '12/31/2099') <= '10/31/2026'",
        "Integer 10");
    add("against a sum", 0, "day + 1 = '11/02/2026'", "Integer 11");
    add("against a function", 0, "DATEADD(day, 1, '10/31/2026') = day", "Integer 11");
    add("against something unknown", 0,
        "(SELECT v FROM loose l WHERE l.id = appts.id) = '11/01/2026'", "Integer 11");
    add("by a view's column", 0, "id = (SELECT 9 + COUNT(*) FROM latest WHERE day <= '11/01/2026')",
        "Integer 11");
    add("by a derived table's column", 0,
        "id IN (SELECT q.k FROM (SELECT id AS k, day AS d FROM appts) q WHERE q.d > '01/01/2027')",
        "Integer 13");
    add("by all columns of a derived table", 0,
        "id IN (SELECT q.id FROM (SELECT * FROM appts) q WHERE q.day > '01/01/2027')",
        "Integer 13");
    add("against a date made into text", 0, "day = CONVERT(varchar(10), at, 101)",
        "Integer 10 / Integer 11 / Integer 12 / Integer 13");
    add("against a number of days", 0, "day < 46326", "Integer 10 / Integer 11");
    add("time column", 0, "start_time <= '8:30 AM'", "Integer 10 / Integer 11");
    add("empty text is the first day of 1900", 0, "day = ''", "");
    add("no such day", 0, "day = '02/30/2026'", kInvalid);
    add("month 13", 1, "day = '11/13/2026'", kInvalid);
    add("half-typed", 0, "day = '__/__/____'", kInvalid);
    add("no date beside a date", 0, "day = 'abc'", kInvalid);
    add("no such day beside something unknown", 0, "(SELECT v FROM loose) = '02/30/2026'",
        kInvalid);
    add("no such day in a date function", 0, "DATEDIFF(day, '02/30/2026', day) = 1", kInvalid);
}

void tst_dialect::dateLiterals()
{
    QFETCH(QString, condition);
    QFETCH(int, dateOrder);
    QFETCH(QString, result);
    QCOMPARE(run(u"SELECT id FROM appts WHERE " + condition + u" ORDER BY id", dateOrder), result);
}

void tst_dialect::dateLiteralsKeptAsText_data()
{
    addColumns();
    addCase(
        "beside a text column", "SELECT id FROM appts WHERE day_text = '11/01/2026'", "Integer 11");
    addCase("beside a converted date",
        "SELECT id FROM appts WHERE CONVERT(varchar(10), at, 101) = '11/02/2026'", "Integer 12");
    addCase("in a joined text", "SELECT 'on ' + '11/01/2026'", "Text on 11/01/2026");
    addCase("as the default of a text",
        "SELECT ISNULL(first_name, '11/01/2026') FROM patients WHERE id = 2", "Text 11/01/2026");
    addCase("between two literals",
        "SELECT id FROM rooms WHERE '11/01/2026' < '11/02/2026' AND id = 1", "Integer 1");
    addCase(
        "an account number with dashes", "SELECT id FROM patients WHERE ssn = '12-34-5678'", "");
}

void tst_dialect::resultKinds_data()
{
    addColumns();
    addCase("columns", "SELECT * FROM patients WHERE id = 1",
        "Integer 1 | Text O'Neil | Text Ann | Text 123456789 | Decimal 12.5 | Date 02/29/1980 | "
        "Boolean True | Text O'Neil, Ann");
    addCase("aggregates keep their column's kind",
        "SELECT MIN(day), MAX(at), SUM(start_min), MAX(start_time) FROM appts",
        "Date 10/31/2026 | DateTime 01/05/2027 11:59:59 PM | Integer 2728 | Time 11:59:59 PM");
    addCase("sums of decimals stay exact",
        "SELECT SUM(balance), SUM(balance) + 0.1 FROM patients WHERE id <> 2",
        "Decimal 12.25 | Decimal 12.35");
    addCase("case and its like",
        "SELECT CASE WHEN id = 1 THEN born END, ISNULL(born, '01/01/1900'), COALESCE(active, 0) "
        "FROM patients WHERE id = 3",
        "Null | Date 01/01/1900 | Integer 1");
    addCase("through subqueries and sorting",
        "SELECT q.d, q.n FROM (SELECT MAX(day) AS d, patient_id AS n FROM appts GROUP BY "
        "patient_id) q ORDER BY q.d DESC",
        "Date 01/05/2027 | Integer 3 / Date 11/02/2026 | Integer 2 / Date 11/01/2026 | Integer 1");
    addCase("through a common table and a star",
        "WITH q AS (SELECT MAX(at) AS t FROM appts) SELECT * FROM q",
        "DateTime 01/05/2027 11:59:59 PM");
    addCase("behind a star",
        "SELECT r.*, DATEADD(d, 1, day) FROM rooms r, appts WHERE r.id = 1 AND appts.id = 11",
        "Integer 1 | Text North | Date 11/02/2026");
    addCase(
        "union", "SELECT NULL AS d UNION ALL SELECT MAX(day) FROM appts", "Null / Date 01/05/2027");
    addCase("a scalar subquery", "SELECT (SELECT MAX(day) FROM appts)", "Date 01/05/2027");
    addCase("a text that looks like a date stays a text",
        "SELECT CONVERT(varchar(10), day, 120), MAX('2026-11-01') FROM appts WHERE id = 11",
        "Text 2026-11-01 | Text 2026-11-01");
}

void tst_dialect::failures_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("words");
    const auto add = [](const char *sql, const char *words) {
        QTest::newRow(sql) << QString::fromLatin1(sql) << QString::fromLatin1(words);
    };
    add("EXEC sp_help", "does not support EXEC (character 1 ");
    add("IF  EXISTS (SELECT * FROM sys.objects)  EXEC [x]", "does not support IF (character 1 ");
    add("INSERT INTO patients VALUES (1)", "does not support INSERT ");
    add("UPDATE patients SET id = 1", "does not support UPDATE ");
    add("DELETE FROM patients", "does not support DELETE ");
    add("DROP TABLE patients", "does not support DROP ");
    add("DECLARE @x int", "does not support DECLARE ");
    add("SELECT 1; SELECT 2", "several statements in one query (character 11 ");
    add("SELECT 1 SELECT 2", "several statements in one query (character 10 ");
    add("SELECT 1; DROP TABLE patients", "does not support DROP (character 11 ");
    add("SELECT 1\nGO\nSELECT 2", "does not support GO ");
    add("SELECT id INTO #t FROM patients", "does not support INTO (character 11 ");
    add("SELECT * FROM #t", "temporary tables, here #t (character 15 ");
    add("SELECT * FROM patients WHERE id = @id", "variables, here @id (character 35 ");
    add("SELECT * FROM patients p OUTER APPLY (SELECT 1) x",
        "does not support OUTER APPLY (character 26 ");
    add("SELECT * FROM patients p CROSS APPLY f(p.id) x", "does not support CROSS APPLY ");
    add("SELECT * FROM patients PIVOT (SUM(id) FOR id IN ([1])) x", "does not support PIVOT ");
    add("SELECT id FROM patients FOR XML AUTO", "does not support FOR XML (character 25 ");
    add("SELECT id FROM patients OPTION (RECOMPILE)", "does not support OPTION (");
    add("SELECT TOP 10 PERCENT id FROM patients", "does not support TOP PERCENT (character 8 ");
    add("SELECT TOP 1 WITH TIES id FROM patients ORDER BY id", "does not support TOP WITH TIES ");
    add("SELECT id FROM patients ORDER BY id OFFSET 1 ROWS", "does not support OFFSET ");
    add("SELECT id FROM patients GROUP BY id WITH ROLLUP", "does not support WITH ROLLUP ");
    add("SELECT id FROM patients WHERE id = ANY (SELECT 1)",
        "does not support a comparison with ANY ");
    add("SELECT FORMAT(born, 'd') FROM patients",
        "does not support the function FORMAT (character 8 ");
    add("SELECT dbo.fnAge(born) FROM patients", "does not support the function dbo.fnAge ");
    add("SELECT * FROM srv.Clinic.dbo.patients",
        "does not support names with a linked server (character 15 ");
    add("SELECT * FROM sys.objects", "does not support the schema sys ");
    add("SELECT * FROM fnRooms(1)", "does not support table-valued functions ");
    add("SELECT id FROM patients WHERE id *= 1", "does not support the outer join *= ");
    add("SELECT CAST(id AS xml) FROM patients", "does not support the type xml ");
    add("SELECT DATEADD(nanosecond, 1, born) FROM patients",
        "does not support the part of a date nanosecond ");
    add("SELECT ISNULL(id) FROM patients", "ISNULL takes 2 arguments, not 1 (character 8 ");
    add("SELECT 'abc", "Unclosed quotation mark (character 8 ");
    add("SELECT [abc FROM x", "Unclosed quotation mark (character 8 ");
    add("SELECT 1 /* abc", "Missing end comment mark '*/' (character 10 ");
    add("SELECT 1 ~ 2", "does not support the character ~ (character 10 ");
    add("SELECT id, FROM patients", "Incorrect syntax near 'FROM' (character 12 ");
    add("SELECT id FROM patients WHERE", "The query ends too early.");
    add("SELECT id FROM patients WHERE id = 1)", "Incorrect syntax near ')' (character 37 ");
    add("SELECT CONVERT(char('i'), 1)", "Incorrect syntax near ''i'' (character 21 ");
    add("SELECT id FROM", "The query ends too early.");
    add("hello", "Incorrect syntax near 'hello' (character 1 ");
    add("-- nothing", "The query holds no statement.");
    add("SELECT id FROM nowhere", "no such table: nowhere");
    add("SELECT nothing FROM patients", "no such column: nothing");
    add("SELECT [nothing] FROM patients", "no such column: nothing");
    add("SELECT * FROM Third.dbo.patients", "no such table: Third.patients");
    add("SELECT nosuch(id) FROM patients", "does not support the function NOSUCH (character 8 ");
    add("SELECT CAST('abc' AS int)", "converting the text value 'abc' to data type int");
    add("SELECT v + 1 FROM loose WHERE id = 14", "converting the text value 'abc' to data type number");
    add("SELECT 1 - v FROM loose WHERE id = 14", "converting the text value 'abc' to data type number");
    add("SELECT last_name + 1 FROM patients",
        "converting the text value 'O'Neil' to data type int");
    add("SELECT CONVERT(varchar, at, 999) FROM appts", "999 is not a valid style number");
    add("SELECT DATEADD(year, 9999, at) FROM appts", "caused an overflow");
    add("SELECT DATEADD(day, -9223372036854775807 - 1, at) FROM appts", "caused an overflow");
    add("SELECT DATEADD(month, 1e300, at) FROM appts", "caused an overflow");
    add("SELECT DATEADD(day, 1, code) FROM appts", "Conversion failed when converting date");
}

void tst_dialect::failures()
{
    QFETCH(QString, sql);
    QFETCH(QString, words);
    try {
        m_drivers[0]->query(sql);
        QFAIL("the statement must be refused");
    } catch (const DatabaseError &error) {
        QVERIFY2(error.description().contains(words), qPrintable(error.description()));
        QVERIFY(error.number() != 0);
    }
}

void tst_dialect::fieldNames()
{
    const auto rowset
        = m_drivers[0]->query(QStringLiteral("SELECT p.ID, last_name AS [Last Name], p.ssn Number, "
                                             "'x' AS 'quoted', total = 1, COUNT(*), r.* "
                                             "FROM patients p, rooms r"));
    const QStringList expected{QStringLiteral("ID"), QStringLiteral("Last Name"),
        QStringLiteral("Number"), QStringLiteral("quoted"), QStringLiteral("total"), QString(),
        QStringLiteral("id"), QStringLiteral("name")};
    QCOMPARE(rowset->fieldNames(), expected);
}

void tst_dialect::deepNestingIsRefused()
{
    for (const auto &[open, close] :
        {std::pair(u"(", u")"), std::pair(u"- ", u""), std::pair(u"ABS(", u")")}) {
        const QString deep = u"SELECT " % QString::fromUtf16(open).repeated(5000) % u'1'
            % QString::fromUtf16(close).repeated(5000);
        QVERIFY(run(deep).contains(u"levels of nesting"));
    }
    const QString moderate = u"SELECT " % QString(15, u'(') % u'1' % QString(15, u')');
    QCOMPARE(run(moderate), QStringLiteral("Integer 1"));
}

/// Everything marked in a selection list may come as one condition for each value.
void tst_dialect::longSelections()
{
    QStringList conditions;
    for (int i = 0; i < 5000; ++i)
        conditions += QStringLiteral("id = %1").arg(i * 2);
    QCOMPARE(run(u"SELECT id FROM appts WHERE " % conditions.join(u" OR ") % u" ORDER BY id"),
        QStringLiteral("Integer 10 / Integer 12"));
    QCOMPARE(run(u"SELECT id FROM appts WHERE NOT (NOT " % conditions.join(u" AND NOT ")
                 % u") ORDER BY id"),
        QStringLiteral("Integer 10 / Integer 12"));
}

QTEST_GUILESS_MAIN(tst_dialect)
#include "tst_dialect.moc"
