// What an administrator runs against a real server, as far as it can be run without one.

#include "support/demo_folder.h"
#include "support/suite.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <sqlite3.h>

#include <memory>

using namespace corvane;

namespace {

constexpr int kMostRows = 1'000; // in one INSERT, by the server's own limit

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

Database opened(const QString &file)
{
    sqlite3 *handle = nullptr;
    sqlite3_open(file.toUtf8().constData(), &handle);
    return {handle, &sqlite3_close};
}

QStringList column(sqlite3 *database, const QString &sql)
{
    sqlite3_stmt *handle = nullptr;
    sqlite3_prepare_v2(database, sql.toUtf8().constData(), -1, &handle, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(
        handle, &sqlite3_finalize);
    QStringList values;
    while (sqlite3_step(handle) == SQLITE_ROW)
        values += QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(handle, 0)));
    return values;
}

/// A batch in the words of the embedded database, which stands in for the server here.
QString translated(QString batch)
{
    static const QRegularExpression national(QStringLiteral("([(,] ?)N'"));
    static const QRegularExpression moment(
        QStringLiteral("'(\\d{4}-\\d\\d-\\d\\d)T(\\d\\d:\\d\\d:\\d\\d)'"));
    batch.replace(national, QStringLiteral("\\1'")).replace(moment, QStringLiteral("'\\1 \\2'"));
    batch.replace(QStringLiteral(" 00:00:00'"), QStringLiteral("'"));
    return batch.replace(QStringLiteral(" dbo."), QStringLiteral(" "))
        .replace(QStringLiteral(" nvarchar("), QStringLiteral(" varchar("))
        .replace(QStringLiteral("Latin1_General_CI_AS"), QStringLiteral("NOCASE"))
        .replace(QStringLiteral("Latin1_General_BIN2"), QStringLiteral("BINARY"));
}

} // namespace

class tst_sql_server_kit : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void scriptHoldsTheWholeClinic();
    void comparisonTellsSameFromDifferent();

private:
    int compare(QByteArray *output = nullptr) const
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(CORVANE_SOURCE_DIR "/tests/sql-server/compare-reports"),
            {QStringLiteral(CORVANE_BATCH), m_demo.path()});
        process.waitForFinished(120'000);
        if (output)
            *output = process.readAll();
        return process.exitCode();
    }

    test::DemoFolder m_demo{60};
};

void tst_sql_server_kit::scriptHoldsTheWholeClinic()
{
    QCOMPARE(QProcess::execute(QStringLiteral(CORVANE_DEMO_CLINIC),
                 {m_demo.file(QStringLiteral("script")), QStringLiteral("--sql"),
                     QStringLiteral("--patients"), QStringLiteral("200")}),
        0);
    const test::DemoFolder made(200);
    const QByteArray script = m_demo.read(QStringLiteral("script/clinic.sql"));
    QVERIFY(script.startsWith("\xef\xbb\xbf"
                              "CREATE DATABASE Clinic;\nGO\nUSE Clinic;\n"));
    Database database(nullptr, &sqlite3_close);
    const auto check = [&](const QString &name) {
        const Database original = opened(made.file(QStringLiteral("Data/%1.db").arg(name)));
        const QString dump
            = QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
        const QStringList tables = column(original.get(), dump);
        QVERIFY(tables.size() >= 3);
        QCOMPARE(column(database.get(), dump), tables);
        for (const QString &table : tables) {
            const QString fields = column(original.get(),
                QStringLiteral("SELECT group_concat('quote(' || name || ')', '||') FROM "
                               "pragma_table_info('%1')")
                    .arg(table))
                                       .first();
            const QString rows = u"SELECT " % fields % u" FROM " % table;
            QCOMPARE(column(database.get(), rows), column(original.get(), rows));
        }
        QCOMPARE(column(database.get(),
                     QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'index'")),
            column(original.get(),
                QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'index'")));
    };
    for (const QString &batch : QString::fromUtf8(script.mid(3)).split(QStringLiteral("\nGO\n"))) {
        if (batch.startsWith(u"CREATE DATABASE Halvern"))
            check(QStringLiteral("Clinic"));
        if (batch.startsWith(u"CREATE DATABASE"))
            database = opened(QStringLiteral(":memory:"));
        else if (!batch.startsWith(u"USE ") && !batch.startsWith(u"SET ")) {
            QVERIFY(batch.count(u'\n') <= kMostRows + 20);
            char *words = nullptr;
            sqlite3_exec(
                database.get(), translated(batch).toUtf8().constData(), nullptr, nullptr, &words);
            QVERIFY2(!words, words);
        }
    }
    check(QStringLiteral("Halvern"));
}

void tst_sql_server_kit::comparisonTellsSameFromDifferent()
{
    QByteArray output;
    QVERIFY2(compare(&output) == 0, output.constData());
    QCOMPARE(output.count("\nsame     "), 16);
    const Database clinic = opened(m_demo.file(QStringLiteral("Data/Clinic.db")));
    QCOMPARE(sqlite3_exec(clinic.get(),
                 "UPDATE patient_info SET phone = '555' WHERE id = (SELECT min(id) FROM "
                 "patient_info WHERE active = 1)",
                 nullptr, nullptr, nullptr),
        SQLITE_OK);
    QCOMPARE(compare(&output), 1);
    QVERIFY2(output.contains("\nDIFFERS  Phone list"), output.constData());
    QVERIFY2(output.contains("\nsame     Productivity"), output.constData());
}

QTEST_GUILESS_MAIN(tst_sql_server_kit)
#include "tst_sql_server_kit.moc"
