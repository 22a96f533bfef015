// What the program asks of Windows itself: opening documents, help, one window per session, version information.

#include "platform/desktop/document_opener.h"
#include "platform/desktop/help_file.h"
#include "platform/process/single_instance.h"
#include "platform/process/version_information.h"
#include "shared/legal_notice.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

const QString kClasses = QStringLiteral("HKEY_CURRENT_USER\\Software\\Classes");
const QString kEnding = QStringLiteral(".corvane-test");

} // namespace

class tst_windows_system : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void documentsOpenInTheirProgram_data();
    void documentsOpenInTheirProgram();
    void documentsWithoutAProgramHaveACode();
    void helpThatCannotBeShownIsTold();
    void aFolderHasOneWindowInASession();
    void theLegalNoticeIsTheVersionInformations();

private:
    QString made(const QString &name) const;

    QTemporaryDir m_folder;
};

QString tst_windows_system::made(const QString &name) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write("report") > 0 ? file.fileName() : QString();
}

void tst_windows_system::documentsOpenInTheirProgram_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("march");
    QTest::newRow("blanks and accents") << QStringLiteral("M\u00e4rz & \u010derven (2)");
    QTest::newRow("a name is never an option") << QStringLiteral("--help");
}

/// The program registered for the kind copies the document, so that it shows which one it was given.
void tst_windows_system::documentsOpenInTheirProgram()
{
    QFETCH(QString, name);
    const QString copy = QDir::toNativeSeparators(m_folder.filePath(QStringLiteral("copy")));
    QFile::remove(copy);
    QSettings classes(kClasses, QSettings::NativeFormat);
    classes.setValue(kEnding + QStringLiteral("/."), QStringLiteral("CorvaneTest"));
    const QString command = QStringLiteral("cmd.exe /c copy \"%1\" \"") + copy + u'"';
    classes.setValue(QStringLiteral("CorvaneTest/shell/open/command/."), command);
    classes.sync();
    QCOMPARE(openWithItsProgram(made(name + kEnding)), 42);
    QTRY_COMPARE_WITH_TIMEOUT(QFileInfo(copy).size(), 6, 30'000);
    classes.remove(kEnding);
    classes.remove(QStringLiteral("CorvaneTest"));
}

void tst_windows_system::documentsWithoutAProgramHaveACode()
{
    QCOMPARE(openWithItsProgram(made(QStringLiteral("report.opened-by-nothing"))), 31);
    QCOMPARE(openWithItsProgram(m_folder.filePath(QStringLiteral("absent.pdf"))), 2);
}

void tst_windows_system::helpThatCannotBeShownIsTold()
{
    QVERIFY(!showCompiledHelp(nullptr, m_folder.filePath(QStringLiteral("absent.chm")), 229));
}

void tst_windows_system::aFolderHasOneWindowInASession()
{
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("Other")));
    {
        const SingleInstance first(m_folder.path());
        QVERIFY(first.isFirst());
        QVERIFY(!SingleInstance(m_folder.path().toUpper()).isFirst());
        QVERIFY(SingleInstance(m_folder.filePath(QStringLiteral("Other"))).isFirst());
    }
    QVERIFY(SingleInstance(m_folder.path()).isFirst());
}

void tst_windows_system::theLegalNoticeIsTheVersionInformations()
{
    QFile words(QStringLiteral(CORVANE_SOURCE_DIR "/resources/legal-notice.txt"));
    QVERIFY(words.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(versionComments(), QString::fromUtf8(words.readAll()).trimmed());
    QCOMPARE(legalNotice(), versionComments());
}

QTEST_MAIN(tst_windows_system)
#include "tst_windows_system.moc"
