// What stands in a folder while a file is replaced, after it, and after it went wrong.

#include "platform/files/file_hold.h"
#include "platform/files/file_replacement.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <array>
#include <functional>

#include <sys/stat.h>

using namespace corvane;

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

class tst_file_replacement : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theOldFileStaysUntilTheNewOneIsComplete();
    void theNewFileHasTheOldOnesRights();
    void aLinkStaysALink();
    void whatIsNoFileIsRefused();
    void aFolderThatVanishesIsTold();
    void whatKilledProgramsLeftGoes();
    void severalFilesComeTogetherOrNotAtAll_data();
    void severalFilesComeTogetherOrNotAtAll();

private:
    QString path(const char *name) const { return m_folder->filePath(s(name)); }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    QByteArray read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    QStringList entries() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_file_replacement::init()
{
    Suite::init();
    m_folder = std::make_unique<QTemporaryDir>();
    write("out.txt", "old");
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

void tst_file_replacement::theNewFileHasTheOldOnesRights()
{
    const auto modeOf = [this](const char *name) {
        struct stat status
        {
        };
        return ::stat(QFile::encodeName(path(name)).constData(), &status) == 0
            ? status.st_mode & 0777
            : 0;
    };
    const auto replace = [this](const char *name) {
        FileReplacement file(s("file"), path(name));
        QVERIFY(file.open() && file.commit());
    };
    ::chmod(QFile::encodeName(path("out.txt")).constData(), 0640);
    replace("out.txt");
    QCOMPARE(modeOf("out.txt"), mode_t(0640));
    const mode_t mask = ::umask(027);
    replace("fresh.txt");
    ::umask(mask);
    QCOMPARE(modeOf("fresh.txt"), mode_t(0640));
}

void tst_file_replacement::aLinkStaysALink()
{
    QDir(m_folder->path()).mkdir(s("elsewhere"));
    QVERIFY(QFile::rename(path("out.txt"), path("elsewhere/real.txt")));
    QVERIFY(QFile::link(s("elsewhere/real.txt"), path("out.txt")));
    FileReplacement file(s("file"), path("out.txt"));
    QVERIFY(file.open() && file.write("new") && file.commit());
    QVERIFY(QFileInfo(path("out.txt")).isSymbolicLink());
    QCOMPARE(read("elsewhere/real.txt"), QByteArray("new"));
}

void tst_file_replacement::whatIsNoFileIsRefused()
{
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const std::array<std::pair<QString, QString>, 3> rows{{
        {path("pipe"), s("This is a device and not a file. Choose another file name.")},
        {s("/dev/null"), s("This is a device and not a file. Choose another file name.")},
        {m_folder->path(), s("A folder has this name. Choose another file name.")},
    }};
    for (const auto &[name, words] : rows) {
        FileReplacement file(s("PDF file"), name);
        QVERIFY(!file.open());
        QCOMPARE(file.failure(),
            QStringLiteral("The PDF file \"%1\" was not saved. %2").arg(name, words));
    }
}

/// As a network folder does when its server or the cable is gone.
void tst_file_replacement::aFolderThatVanishesIsTold()
{
    QDir(m_folder->path()).mkdir(s("share"));
    FileReplacement file(s("PDF file"), path("share/a.pdf"));
    QVERIFY(file.open() && file.write("new"));
    QVERIFY(QDir(path("share")).removeRecursively());
    QVERIFY(!file.commit());
    QCOMPARE(file.failure(),
        QStringLiteral("The PDF file \"%1\" was not saved. The folder \"%2\" does not exist. "
                       "Choose another folder.")
            .arg(path("share/a.pdf"), path("share")));
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
