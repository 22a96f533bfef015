#include "platform/database/rowset.h"
#include "platform/workbook/workbook_writer.h"
#include "support/suite.h"
#include "workbook/hindrances.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

using test::Hindrance;
using test::kUsual;

std::function<void()> none(const QString &)
{
    return [] {};
}

std::function<void()> folderWithTheName(const QString &folder)
{
    QFile::remove(folder + u'/' + kUsual);
    QDir(folder).mkdir(kUsual);
    return [] {};
}

RowsetPtr someRows(int fields = 3, int rows = 20'000)
{
    QStringList names;
    for (int field = 0; field < fields; ++field)
        names += QStringLiteral("f%1").arg(field);
    RowsetBuilder builder(names);
    for (int i = 0; i < fields * rows; ++i)
        builder.add(Value::integer(i));
    return builder.finish();
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void writeOldFile(const QString &name)
{
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("old");
}

/// Whether the old file is as it was; a folder that took its name counts as such.
bool isOld(const QString &name)
{
    QFile file(name);
    return QFileInfo(name).isDir() || (file.open(QIODevice::ReadOnly) && file.readAll() == "old");
}

} // namespace

Q_DECLARE_METATYPE(Hindrance)

class tst_workbook_failures : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void failuresAreToldAndLeaveNothing_data();
    void failuresAreToldAndLeaveNothing();
    void stoppingLeavesNothing_data();
    void stoppingLeavesNothing();
    void aLaterTryReplacesTheOldFile();
};

void tst_workbook_failures::failuresAreToldAndLeaveNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fields");
    QTest::addColumn<Hindrance>("hindrance");
    QTest::addColumn<QString>("cause");

    const auto row = [](const char *tag, const Hindrance &hindrance, const char *cause,
                         const QString &name = kUsual, int fields = 3) {
        QTest::newRow(tag) << name << fields << hindrance << QString::fromLatin1(cause);
    };
    row("more fields than columns", none,
        "The query returns 257 fields, and a sheet holds at most 256 columns.", kUsual, 257);
    row("the target is a folder", folderWithTheName,
        "A folder has this name. Choose another file name.");
    row("the folder is gone", none, "gone\" does not exist. Choose another folder.",
        QStringLiteral("gone/out.xls"));
    row("a name of 300 letters", none, "too long. Choose another file name",
        QString(300, u'n'));
    const QTemporaryDir dir;
    writeWorkbook(*someRows(), dir.filePath(kUsual));
    const qint64 whole = QFileInfo(dir.filePath(kUsual)).size();
    for (const auto &[tag, hindrance, cause] : test::systemHindrances(whole))
        row(tag, hindrance, cause);
}

void tst_workbook_failures::failuresAreToldAndLeaveNothing()
{
    QFETCH(QString, name);
    QFETCH(int, fields);
    QFETCH(Hindrance, hindrance);
    QFETCH(QString, cause);
    QTemporaryDir dir;
    const QString old = dir.filePath(kUsual);
    writeOldFile(old);
    const RowsetPtr rows = someRows(fields);

    QString message;
    const QStringList before = entries(dir.path());
    const auto release = hindrance(dir.path());
    try {
        writeWorkbook(*rows, dir.filePath(name));
    } catch (const WorkbookError &error) {
        message = error.message();
    }
    release();
    QVERIFY2(message.contains(QDir::toNativeSeparators(name)) && message.contains(cause), qPrintable(message));
    QVERIFY2(message.endsWith(u'.'), qPrintable(message));
    QCOMPARE(entries(dir.path()), before);
    QVERIFY(isOld(old));
}

void tst_workbook_failures::stoppingLeavesNothing_data()
{
    QTest::addColumn<int>("rowsDone");
    QTest::newRow("at once") << 0;
    QTest::newRow("while the rows are looked at") << 5'000;
    QTest::newRow("while they are written") << 15'000;
}

void tst_workbook_failures::stoppingLeavesNothing()
{
    QFETCH(int, rowsDone);
    QTemporaryDir dir;
    const QString old = dir.filePath(kUsual);
    writeOldFile(old);
    qsizetype last = 0;
    const auto progress = [&](qsizetype rows) {
        [&] {
            QVERIFY2(rows >= last && rows <= 20'000, "progress goes forward, within the rows");
        }();
        last = rows;
        return rows < rowsDone;
    };
    QVERIFY_EXCEPTION_THROWN(
        writeWorkbook(*someRows(), old, {.progress = progress}), WorkbookStopped);
    QVERIFY(last >= rowsDone);
    QCOMPARE(entries(dir.path()), QStringList(kUsual));
    QVERIFY(isOld(old));
}

void tst_workbook_failures::aLaterTryReplacesTheOldFile()
{
    QTemporaryDir dir;
    const QString fileName = dir.filePath(kUsual);
    writeOldFile(fileName);
    writeWorkbook(*someRows(), fileName);
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(8), QByteArray::fromHex("d0cf11e0a1b11ae1"));
    QCOMPARE(entries(dir.path()), QStringList(kUsual));
}

QTEST_GUILESS_MAIN(tst_workbook_failures)
#include "tst_workbook_failures.moc"
