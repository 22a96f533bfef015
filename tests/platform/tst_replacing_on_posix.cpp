// Rights, links, devices and folders, as POSIX has them.

#include "old_file.h"
#include "platform/files/file_replacement.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <sys/stat.h>

using namespace corvane;

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

class tst_replacing_on_posix : public test::Suite, private test::OldFile
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theNewFileHasTheOldOnesRights();
    void aLinkStaysALink();
    void whatIsNoFileIsRefused();
    void aFolderThatVanishesIsTold();
    void aFolderOutOfReachIsTold();
};

void tst_replacing_on_posix::init()
{
    Suite::init();
    renew();
}

void tst_replacing_on_posix::theNewFileHasTheOldOnesRights()
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

void tst_replacing_on_posix::aLinkStaysALink()
{
    QDir(m_folder->path()).mkdir(s("elsewhere"));
    QVERIFY(QFile::rename(path("out.txt"), path("elsewhere/real.txt")));
    QVERIFY(QFile::link(s("elsewhere/real.txt"), path("out.txt")));
    FileReplacement file(s("file"), path("out.txt"));
    QVERIFY(file.open() && file.write("new") && file.commit());
    QVERIFY(QFileInfo(path("out.txt")).isSymbolicLink());
    QCOMPARE(read("elsewhere/real.txt"), QByteArray("new"));
}

void tst_replacing_on_posix::whatIsNoFileIsRefused()
{
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    for (const QString &name : {path("pipe"), s("/dev/null")}) {
        FileReplacement file(s("PDF file"), name);
        QVERIFY(!file.open());
        QCOMPARE(file.failure(),
            QStringLiteral("The PDF file \"%1\" was not saved. This is a device and not a file. "
                           "Choose another file name.")
                .arg(name));
    }
}

/// As a network folder does when its server or the cable is gone. Other systems keep a folder in which
/// a file is open.
void tst_replacing_on_posix::aFolderThatVanishesIsTold()
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

/// A folder of which the system tells nothing, as of a share whose connection is gone.
void tst_replacing_on_posix::aFolderOutOfReachIsTold()
{
    QVERIFY(QFile::link(s("share"), path("share")));
    FileReplacement file(s("PDF file"), path("share/a.pdf"));
    QVERIFY(!file.open());
    QCOMPARE(file.failure(),
        QStringLiteral("The PDF file \"%1\" was not saved. The folder \"%2\" cannot be reached: Too "
                       "many levels of symbolic links. Choose another folder.")
            .arg(path("share/a.pdf"), path("share")));
}

QTEST_GUILESS_MAIN(tst_replacing_on_posix)
#include "tst_replacing_on_posix.moc"
