#include "platform/pdf/pdf_writer.h"
#include "support/document_builder.h"
#include "support/hindrances.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <functional>
#include <memory>

using namespace corvane;

namespace {

/// Something that stands in the way while it lives.
using Hindrance = std::function<std::function<void()>(const QString &folder)>;

std::function<void()> none(const QString &)
{
    return [] { };
}

std::function<void()> folderWithTheName(const QString &folder)
{
    QFile::remove(folder + QStringLiteral("/out.pdf"));
    QDir(folder).mkdir(QStringLiteral("out.pdf"));
    return [] { };
}

/// Root may write anywhere, so the attempt is made as a user who may not.
std::function<void()> noRightToTheFolder(const QString &folder)
{
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    return [folder, somebody = std::make_shared<test::Unprivileged>()]() mutable {
        somebody.reset();
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    };
}

std::function<void()> noRoomForTheFile(const QString &)
{
    return [disk = std::make_shared<test::FullDisk>(1000)]() mutable { disk.reset(); };
}

Document someDocument()
{
    test::DocumentBuilder builder;
    builder.paragraph(QStringLiteral("Some text"));
    return builder.finish();
}

} // namespace

Q_DECLARE_METATYPE(Hindrance)

class tst_pdf_failures : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void failuresAreToldAndLeaveNothing_data();
    void failuresAreToldAndLeaveNothing();
    void aLaterTryReplacesTheOldFile();
};

void tst_pdf_failures::failuresAreToldAndLeaveNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isWhole");
    QTest::addColumn<Hindrance>("hindrance");
    QTest::addColumn<QString>("cause");

    const QString usual = QStringLiteral("out.pdf");
    QTest::newRow("a report cut short") << usual << false << Hindrance(none)
        << QStringLiteral("The report is not complete. Run the report again");
    QTest::newRow("the target is a folder") << usual << true << Hindrance(folderWithTheName)
        << QStringLiteral("A folder has this name. Choose another file name.");
    QTest::newRow("the folder is gone") << QStringLiteral("gone/out.pdf") << true << Hindrance(none)
        << QStringLiteral("gone\" does not exist. Choose another folder.");
    QTest::newRow("a name of 300 letters") << QString(300, u'n') << true << Hindrance(none)
        << QStringLiteral("too long. Choose another file name");
    QTest::newRow("no right to the folder") << usual << true << Hindrance(noRightToTheFolder)
        << QStringLiteral("You may not");
    QTest::newRow("no room on the disk") << usual << true << Hindrance(noRoomForTheFile)
        << QStringLiteral("File too large. ");
}

void tst_pdf_failures::failuresAreToldAndLeaveNothing()
{
    QFETCH(QString, name);
    QFETCH(bool, isWhole);
    QFETCH(Hindrance, hindrance);
    QFETCH(QString, cause);
    QTemporaryDir dir;
    QFile old(dir.filePath(QStringLiteral("out.pdf")));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    Document document = someDocument();
    document.isWhole = isWhole;

    QString message;
    const QStringList before = QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    const auto release = hindrance(dir.path());
    try {
        writePdf(document, dir.filePath(name));
    } catch (const PdfError &error) {
        message = error.message();
    }
    release();
    QVERIFY2(message.contains(QDir::toNativeSeparators(name)) && message.contains(cause), qPrintable(message));
    QVERIFY2(message.endsWith(u'.'), qPrintable(message));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), before);
    if (!QFileInfo(old.fileName()).isDir()) {
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("old"));
    }
}

void tst_pdf_failures::aLaterTryReplacesTheOldFile()
{
    QTemporaryDir dir;
    const QString fileName = dir.filePath(QStringLiteral("out.pdf"));
    for (int i = 0; i < 2; ++i)
        writePdf(someDocument(), fileName);
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith("%PDF-1.7"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

QTEST_MAIN(tst_pdf_failures)
#include "tst_pdf_failures.moc"
