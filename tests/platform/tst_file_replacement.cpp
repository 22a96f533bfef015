// What stands in a folder while a file is replaced, after it, and after it went wrong.

#include "old_file.h"
#include "platform/files/file_hold.h"
#include "platform/files/file_replacement.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <array>

using namespace corvane;

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

class tst_file_replacement : public test::Suite, private test::OldFile
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theOldFileStaysUntilTheNewOneIsComplete();
    void anyNameWillDo();
    void aFolderIsNotReplaced();
    void whoeverComesSecondWaitsForTheHold();
    void whatKilledProgramsLeftGoes();
    void severalFilesComeTogetherOrNotAtAll_data();
    void severalFilesComeTogetherOrNotAtAll();

private:
    QStringList entries() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

void tst_file_replacement::init()
{
    Suite::init();
    renew();
}

void tst_file_replacement::theOldFileStaysUntilTheNewOneIsComplete()
{
    {
        FileReplacement given(s("file"), path("out.txt"));
        QVERIFY(given.open() && given.write("new") && given.complete());
        QCOMPARE(read("out.txt"), QByteArray("old"));
    }
    QCOMPARE(entries(), QStringList(s("out.txt")));
    FileReplacement kept(s("file"), path("out.txt"));
    QVERIFY(kept.open() && kept.write("new") && kept.commit());
    QCOMPARE(read("out.txt"), QByteArray("new"));
    QCOMPARE(entries(), QStringList(s("out.txt")));
}

/// Beyond ASCII, and beyond the 260 characters that Windows takes of a plain name.
void tst_file_replacement::anyNameWillDo()
{
    const QString deep = path("") + QStringLiteral("/%1").arg(QString(60, u'\u0416')).repeated(4);
    QVERIFY(QDir().mkpath(deep));
    const QString name = deep + QStringLiteral("/\u00e4 \u0159 \u6f22.txt");
    for (const char *bytes : {"old", "new"}) {
        FileReplacement file(s("file"), name);
        QVERIFY2(file.open() && file.write(bytes) && file.commit(), qPrintable(file.cause()));
        const FileHold hold(name);
        QVERIFY(hold.isHeld());
        QFile written(name);
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), QByteArray(bytes));
    }
}

void tst_file_replacement::aFolderIsNotReplaced()
{
    FileReplacement file(s("PDF file"), m_folder->path());
    QVERIFY(!file.open());
    QCOMPARE(file.failure(),
        QStringLiteral("The PDF file \"%1\" was not saved. A folder has this name. Choose another "
                       "file name.")
            .arg(QDir::toNativeSeparators(m_folder->path())));
}

void tst_file_replacement::whoeverComesSecondWaitsForTheHold()
{
    {
        const FileHold hold(path("out.txt"));
        QVERIFY(hold.isHeld());
        const FileHold other(path("out.txt"));
        QVERIFY(!other.isHeld());
        QCOMPARE(read("out.txt"), QByteArray("old")); // whoever does not ask is not kept from it
        FileReplacement file(s("file"), path("out.txt"));
        QVERIFY2(file.open() && file.write("new") && file.commit(), qPrintable(file.cause()));
    }
    const FileHold next(path("out.txt"));
    QVERIFY(next.isHeld());
    QCOMPARE(read("out.txt"), QByteArray("new"));
    QVERIFY(FileHold(path("none.txt")).isHeld());
}

void tst_file_replacement::whatKilledProgramsLeftGoes()
{
    write(".corvane-saving-abc123.tmp", "a killed program's");
    write("mine.corvane-saving-abc123.tmp", "a user's");
    write(".corvane-saving-notes.txt", "a user's");
    FileReplacement living(s("file"), path("other.txt"));
    QVERIFY(living.open() && living.write("half"));
    const QStringList before = entries();
    {
        FileReplacement next(s("file"), path("out.txt"));
        QVERIFY(next.open());
    }
    QStringList expected = before;
    expected.removeAll(s(".corvane-saving-abc123.tmp"));
    QCOMPARE(entries(), expected);
    QVERIFY(living.commit());
    QCOMPARE(read("other.txt"), QByteArray("half"));
}

void tst_file_replacement::severalFilesComeTogetherOrNotAtAll_data()
{
    QTest::addColumn<bool>("blocked");
    QTest::newRow("together") << false;
    QTest::newRow("not at all: the last one's name was taken meanwhile") << true;
}

void tst_file_replacement::severalFilesComeTogetherOrNotAtAll()
{
    QFETCH(bool, blocked);
    FileReplacement first(s("file"), path("out.txt"));
    FileReplacement fresh(s("file"), path("fresh.txt"));
    FileReplacement last(s("file"), path("last.txt"));
    const std::array<FileReplacement *, 3> all{&first, &fresh, &last};
    for (FileReplacement *file : all)
        QVERIFY(file->open() && file->write("new"));
    if (blocked)
        QVERIFY(QDir(m_folder->path()).mkpath(s("last.txt/full")));
    const FileReplacement *failed = commitAll(all);
    QCOMPARE(failed, blocked ? &last : nullptr);
    QCOMPARE(read("out.txt"), QByteArray(blocked ? "old" : "new"));
    QCOMPARE(read("fresh.txt"), QByteArray(blocked ? "(none)" : "new"));
    if (blocked)
        QVERIFY2(failed->failure().contains(s("A folder has this name.")),
            qPrintable(failed->failure()));
}

QTEST_GUILESS_MAIN(tst_file_replacement)
#include "tst_file_replacement.moc"
