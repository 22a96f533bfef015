// The designed demo reports held against plain SQL over the same data, and their PDF against their text.

#include "demo/embedded_file.h"
#include "support/demo_folder.h"
#include "support/pdf_reader.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

QString batchOutput(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("clinic"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CORVANE_BATCH), arguments);
    process.waitForFinished(120'000);
    return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
}

QStringList wordsOf(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return text.split(blanks, Qt::SkipEmptyParts);
}

} // namespace

class tst_demo_designed : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyWordStandsInThePdf_data();
    void everyWordStandsInThePdf();
    void totalsAgreeWithSql_data();
    void totalsAgreeWithSql();

private:
    /// The report's text; its PDF stands beside.
    QString run(const QString &name) const
    {
        const QString text = m_demo.file(QStringLiteral("out.txt"));
        const QString told = batchOutput({QStringLiteral("run"), name, QStringLiteral("--folder"), m_demo.path(), QStringLiteral("--user"), QStringLiteral("nora"),
                QStringLiteral("--patient"), QStringLiteral("1001"), QStringLiteral("--date1"), QStringLiteral("2026-11-01"),
                QStringLiteral("--date2"), QStringLiteral("2026-11-30"), QStringLiteral("--select-all"), QStringLiteral("--text"), text,
                QStringLiteral("--pdf"), m_demo.file(QStringLiteral("out.pdf"))});
        return told.isEmpty() ? QString::fromUtf8(m_demo.read(QStringLiteral("out.txt"))) : told;
    }

    test::DemoFolder m_demo {60};
};

void tst_demo_designed::everyWordStandsInThePdf_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : QDir(m_demo.report({})).entryList({QStringLiteral("*.rpt")})) {
        if (m_demo.read(QStringLiteral("Reports/") + name).contains("<Reports>"))
            QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_demo_designed::everyWordStandsInThePdf()
{
    QFETCH(QString, name);
    const QStringList told = wordsOf(run(name));
    QVERIFY(told.size() > 20);
    QStringList left = wordsOf(test::popplerText(m_demo.file(QStringLiteral("out.pdf"))));
    for (const QString &word : told)
        QVERIFY2(left.removeOne(word), qPrintable(word));
}

void tst_demo_designed::totalsAgreeWithSql_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label"); ///< how the line starts
    QTest::addColumn<int>("cell");
    QTest::addColumn<QString>("sql");
    const auto row = [](const char *claim, const char *name, const char *label, int cell, const char *sql) {
        QTest::newRow(claim) << QString::fromLatin1(name) << QString::fromLatin1(label) << cell << QString::fromLatin1(sql);
    };
    row("sessions", "Provider productivity", "All providers", 1,
        "SELECT COUNT(*) FROM appointments a JOIN providers v ON v.provider_id = a.provider_id "
        "WHERE a.color IN (49152, 12632064) AND a.appt_date BETWEEN '2026-11-01' AND '2026-11-30'");
    row("hours", "Provider productivity", "All providers", 2,
        "SELECT printf('%.1f', SUM(a.duration) / 60.0) FROM appointments a JOIN providers v ON v.provider_id = a.provider_id "
        "WHERE a.color IN (49152, 12632064) AND a.appt_date BETWEEN '2026-11-01' AND '2026-11-30'");
    row("entries", "Patient statement", "", 0, "SELECT COUNT(*) || ' entries' FROM ledger WHERE patient_id = 1001");
    row("charges", "Patient statement", "", 1,
        "SELECT printf('%.2f', SUM(amount)) FROM ledger WHERE patient_id = 1001 AND entry_type = 'Charge'");
    row("balance", "Patient statement", "", 3,
        "SELECT printf('%.2f', SUM(CASE entry_type WHEN 'Charge' THEN amount ELSE -amount END)) FROM ledger WHERE patient_id = 1001");
}

void tst_demo_designed::totalsAgreeWithSql()
{
    QFETCH(QString, name);
    QFETCH(QString, label);
    QFETCH(int, cell);
    QFETCH(QString, sql);
    // The totals are the last line that starts so.
    const QStringList lines = run(name).trimmed().split(u'\n').filter(QRegularExpression(u'^' + label));
    QVERIFY(!lines.isEmpty());
    QCOMPARE(lines.last().split(u'\t').value(cell).remove(u','), test::EmbeddedFile(m_demo.path()).value(sql));
}

QTEST_GUILESS_MAIN(tst_demo_designed)
#include "tst_demo_designed.moc"
