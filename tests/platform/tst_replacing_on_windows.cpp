// Rights and sharing, as Windows has them.

#include "old_file.h"
#include "platform/files/file_replacement.h"
#include "platform/files/native_path.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <thread>

#include <qt_windows.h>

#include <aclapi.h>
#include <sddl.h>

using namespace corvane;

namespace {

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Has a file open as another program would.
class OtherProgram
{
public:
    OtherProgram(const QString &name, DWORD access, DWORD share)
        : m_handle(CreateFileW(
            nativePath(name).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr))
    {
    }
    ~OtherProgram() { CloseHandle(m_handle); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

/// The file's access list in the system's own notation.
QString accessOf(const QString &name)
{
    PSECURITY_DESCRIPTOR rights = nullptr;
    wchar_t *text = nullptr;
    GetNamedSecurityInfoW(nativePath(name).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
        nullptr, nullptr, nullptr, nullptr, &rights);
    ConvertSecurityDescriptorToStringSecurityDescriptorW(
        rights, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr);
    const QString access = QString::fromWCharArray(text);
    LocalFree(text);
    LocalFree(rights);
    return access;
}

void setAccess(const QString &name, const wchar_t *text)
{
    PSECURITY_DESCRIPTOR rights = nullptr;
    QVERIFY(ConvertStringSecurityDescriptorToSecurityDescriptorW(
        text, SDDL_REVISION_1, &rights, nullptr));
    QVERIFY(SetFileSecurityW(nativePath(name).c_str(), DACL_SECURITY_INFORMATION, rights));
    LocalFree(rights);
}

QString inUse(const QString &name)
{
    return QStringLiteral("The file \"%1\" was not saved. The file is open in another program. "
                          "Close it there or choose another file name.")
        .arg(QDir::toNativeSeparators(name));
}

} // namespace

class tst_replacing_on_windows : public test::Suite, private test::OldFile
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theNewFileHasTheOldOnesRights();
    void aFileThatIsOpenElsewhereIsTold();
    void whoeverLooksForAMomentIsWaitedFor();
    void whatIsBeingWrittenIsNotTakenForAbandoned();
    void namesAreWhatTheSystemTakesThemFor();
};

void tst_replacing_on_windows::init()
{
    Suite::init();
    renew();
}

void tst_replacing_on_windows::theNewFileHasTheOldOnesRights()
{
    setAccess(path("out.txt"), L"D:P(A;;FA;;;OW)(A;;FA;;;BA)");
    const QString before = accessOf(path("out.txt"));
    write("plain.txt", "");
    QVERIFY(accessOf(path("plain.txt")) != before);
    FileReplacement file(s("file"), path("out.txt"));
    QVERIFY(file.open() && file.write("new") && file.commit());
    QCOMPARE(accessOf(path("out.txt")), before);
    QCOMPARE(read("out.txt"), QByteArray("new"));
}

void tst_replacing_on_windows::aFileThatIsOpenElsewhereIsTold()
{
    FileReplacement late(s("file"), path("out.txt"));
    QVERIFY(late.open() && late.write("new"));
    {
        const OtherProgram viewer(path("out.txt"), GENERIC_READ, FILE_SHARE_READ);
        QVERIFY(viewer.isOpen());
        FileReplacement early(s("file"), path("out.txt"));
        QVERIFY(!early.open());
        QCOMPARE(early.failure(), inUse(path("out.txt")));
        QVERIFY(!late.commit());
        QCOMPARE(late.failure(), inUse(path("out.txt")));
        FileReplacement fixed(s("file"), path("out.txt"), SavePlace::Fixed);
        QVERIFY(!fixed.open());
        QCOMPARE(fixed.cause(),
            s("The file is open in another program. Close it there and try again."));
    }
    QCOMPARE(read("out.txt"), QByteArray("old"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList(s("out.txt")));
    FileReplacement again(s("file"), path("out.txt"));
    QVERIFY(again.open() && again.write("new") && again.commit());
    QCOMPARE(read("out.txt"), QByteArray("new"));
}

/// As a virus scanner looks at what has just been written.
void tst_replacing_on_windows::whoeverLooksForAMomentIsWaitedFor()
{
    FileReplacement file(s("file"), path("out.txt"));
    QVERIFY(file.open() && file.write("new"));
    auto scanner = std::make_unique<OtherProgram>(path("out.txt"), GENERIC_READ, FILE_SHARE_READ);
    const std::jthread ends([&] {
        Sleep(200);
        scanner.reset();
    });
    QVERIFY2(file.commit(), qPrintable(file.cause()));
    QCOMPARE(read("out.txt"), QByteArray("new"));
}

/// Whoever writes it lets others read it, but not take it away.
void tst_replacing_on_windows::whatIsBeingWrittenIsNotTakenForAbandoned()
{
    write(".corvane-saving-open00.tmp", "somebody's");
    {
        const OtherProgram spool(
            path(".corvane-saving-open00.tmp"), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        removeAbandonedFiles(m_folder->path());
        QVERIFY(QFile::exists(path(".corvane-saving-open00.tmp")));
    }
    {
        const OtherProgram indexer(path(".corvane-saving-open00.tmp"), GENERIC_READ, kShareAll);
        removeAbandonedFiles(m_folder->path());
    }
    QVERIFY(!QFile::exists(path(".corvane-saving-open00.tmp")));
}

/// "nul" leads to a device from any folder, and a blank at a name's end is none of it.
void tst_replacing_on_windows::namesAreWhatTheSystemTakesThemFor()
{
    FileReplacement device(s("file"), path("nul"));
    QVERIFY(!(device.open() && device.write("new") && device.commit()));
    FileReplacement blank(s("file"), path("out.txt "));
    QVERIFY2(blank.open() && blank.write("new") && blank.commit(), qPrintable(blank.cause()));
    QCOMPARE(read("out.txt"), QByteArray("new"));
}

QTEST_GUILESS_MAIN(tst_replacing_on_windows)
#include "tst_replacing_on_windows.moc"
