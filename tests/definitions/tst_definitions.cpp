#include "definitions/query_template.h"
#include "definitions/report_kind.h"
#include "shared/report_host.h"
#include "shared/run_time_fault.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

class tst_definitions : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheKind_data();
    void tellsTheKind();
    void saysWhyAFileCannotBeRead();
    void rewritesDatabaseNames_data();
    void rewritesDatabaseNames();
    void replacesOneDate_data();
    void replacesOneDate();

private:
    QTemporaryDir m_folder;
};

void tst_definitions::tellsTheKind_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("listed");

    const QByteArray declaration = "<?xml version=\"1.0\"?>\n";
    const auto row = [](const char *name, const QByteArray &bytes, int kind, int listed) {
        QTest::newRow(name) << bytes << kind << listed;
    };
    row("tabular", "[Columns]\nPageColumns=1\n", 1, 1);
    row("designed", declaration + "<Reports>\n", 2, 2);
    row("the order of the marks does not matter", "<Reports><?xml version=\"1.0\"", 2, 2);
    row("root behind byte 60", declaration + "<!-- " + QByteArray(40, 'x') + " --><Reports>", 0, 2);
    row("root ends at byte 60", "<?xml version=\"1.0\"" + QByteArray(60 - 19 - 9, ' ') + "<Reports>", 2, 2);
    row("root ends at byte 61", "<?xml version=\"1.0\"" + QByteArray(61 - 19 - 9, ' ') + "<Reports>", 0, 2);
    row("root with an attribute", declaration + "<Reports a=\"1\">", 0, 2);
    row("blanks are text for the list only", "[Columns]\nPageColumns=  \n", 0, 1);
    row("neither", "hello", 0, 2);
    row("empty", "", 0, 2);
    row("designed wins over tabular", declaration + "<Reports>\n[Columns]\nPageColumns=1\n", 2, 1);
}

void tst_definitions::tellsTheKind()
{
    QFETCH(QByteArray, bytes);
    const QString path = m_folder.filePath(QStringLiteral("any.rpt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    QTEST(getReportType(path), "kind");
    QTEST(listedReportType(path), "listed");
    QCOMPARE(unreadableReason(path), QString());
}

void tst_definitions::saysWhyAFileCannotBeRead()
{
    const QString missing = m_folder.filePath(QStringLiteral("missing.rpt"));
    QCOMPARE(getReportType(missing), 0);
    QVERIFY(unreadableReason(missing).contains(QStringLiteral("there is no such file")));
    QVERIFY(unreadableReason(m_folder.path()).contains(QStringLiteral("is a folder")));
    // Nobody can tell what is behind a link to itself, as nobody can of a share whose connection is gone.
    const QString circle = m_folder.filePath(QStringLiteral("circle.rpt"));
    if (QFile::link(circle, circle) && QFileInfo(circle).isSymbolicLink())
        QVERIFY2(unreadableReason(circle).endsWith(QStringLiteral(". If it is on the network, check the connection.")), qPrintable(unreadableReason(circle)));
}

void tst_definitions::rewritesDatabaseNames_data()
{
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("rewritten");

    const auto row = [](const char *name, const char *second, const char *sql, const char *rewritten) {
        QTest::newRow(name) << QString::fromLatin1(second) << QString::fromLatin1(sql) << QString::fromLatin1(rewritten);
    };
    row("plain and bracketed", "", "CorvaneDB.dbo.Patients, [CorvaneDB].dbo.Patients", "Clinic2.dbo.Patients, [Clinic2].dbo.Patients");
    row("every occurrence", "", "CorvaneDB.dbo.a CorvaneDB.dbo.b", "Clinic2.dbo.a Clinic2.dbo.b");
    row("another case stays", "", "corvanedb.dbo.a CORVANEDB].dbo.b", "corvanedb.dbo.a CORVANEDB].dbo.b");
    row("another schema stays", "", "CorvaneDB.sales.a", "CorvaneDB.sales.a");
    row("no second database, no rewrite", "", "HalvernDB.dbo.a [HalvernDB].dbo.b", "HalvernDB.dbo.a [HalvernDB].dbo.b");
    row("the second database", "Hvn", "HalvernDB.dbo.a [HalvernDB].dbo.b CorvaneDB.dbo.c", "Hvn.dbo.a [Hvn].dbo.b Clinic2.dbo.c");
}

void tst_definitions::rewritesDatabaseNames()
{
    QFETCH(QString, second);
    QFETCH(QString, sql);
    QTEST(fixDBNames(sql, {QStringLiteral("Clinic2"), second}), "rewritten");
}

void tst_definitions::replacesOneDate_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("replaced"); // "!" for a type mismatch

    const auto row = [](const char *name, const char *sql, const char *token, const char *date, const char *replaced) {
        QTest::newRow(name) << QString::fromLatin1(sql) << QString::fromLatin1(token) << QString::fromLatin1(date)
                            << QString::fromLatin1(replaced);
    };
    row("the first only", "a {DATE1} b {DATE1}", "{DATE1}", "3/1/2024", "a 2024/03/01 b {DATE1}");
    row("no token, no change", "a", "{DATE1}", "nonsense", "a");
    row("seven characters go whatever the token", "a {D12}xy b", "{D12}", "3/1/2024", "a 2024/03/01 b");
    row("a token at the very end", "a {D}", "{D}", "3/1/2024", "a 2024/03/01");
    row("not a date", "a {DATE1}", "{DATE1}", "soon", "!");
}

void tst_definitions::replacesOneDate()
{
    QFETCH(QString, sql);
    QFETCH(QString, token);
    QFETCH(QString, date);
    QString found;
    try {
        found = ParseSQL(sql, token, date);
    } catch (const RunTimeFault &fault) {
        QCOMPARE(fault.number(), 13);
        found = QStringLiteral("!");
    }
    QTEST(found, "replaced");
}

QTEST_MAIN(tst_definitions)
#include "tst_definitions.moc"
