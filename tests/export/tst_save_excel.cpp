#include "export/save_excel.h"
#include "platform/database/connection.h"
#include "platform/grid/data_control.h"
#include "support/canned_driver.h"
#include "support/recording_host.h"
#include "support/scripted_desktop.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

using Message = test::ScriptedDesktop::Message;

const Message kCancelled {QStringLiteral("Save to excel file, cancelled."), 48, {}};
const Message kSaved {QStringLiteral("Save to excel file, successful."), 48, {}};
const Message kQuestion {QStringLiteral("Do you want to open the file in Excel?"), 4, QStringLiteral("Open Excel")};

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// A data control with these rows of one column.
DataControl grid(const QStringList &cells)
{
    QList<QStringList> rows;
    for (const QString &cell : cells)
        rows += QStringList(cell);
    Connection connection(s("text"), std::make_unique<test::CannedDriver>(QStringList(s("name")), rows));
    DataControl control;
    control.setConnectionString(s("text"));
    control.setRecordSource(s("SELECT"));
    control.refresh(&connection, {});
    return control;
}

} // namespace

class tst_save_excel : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void savesAndOffersToOpen_data();
    void savesAndOffersToOpen();
    void cancelling();
    void anEmptyGridIsRefused();
    void namesThatEndInXlsx_data();
    void namesThatEndInXlsx();
    void tellsWhatCouldNotBeKept();
    void aFailureIsTheCallers();
    void stopsOnRequest();

private:
    QString file(const char *name) const { return m_folder.filePath(s(name)); }
    void save(test::ScriptedDesktop &desktop, const DataControl &rows = grid({s("Ann"), s("Bo")}))
    {
        SaveExcel(desktop, m_host, rows, {}, m_folder.path());
        QVERIFY(!m_host.hourglass);
    }

    QTemporaryDir m_folder;
    test::RecordingHost m_host;
};

void tst_save_excel::savesAndOffersToOpen_data()
{
    QTest::addColumn<bool>("yes");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("failure");
    QTest::newRow("no: it stays closed") << false << 0 << QString();
    QTest::newRow("started") << true << 42 << QString();
    QTest::newRow("32 is no failure") << true << 32 << QString();
    QTest::newRow("no memory") << true << 0 << s("System is low on or out of memory and unable to run application associated with file.");
    QTest::newRow("no file") << true << 2 << s("File not found. It may have been renamed, moved, or deleted.");
    QTest::newRow("no path") << true << 3 << s("File not found. It may have been renamed, moved, or deleted.");
    QTest::newRow("no program for it") << true << 31 << s("No association exists with specified file.");
    QTest::newRow("anything else") << true << 5 << s("Error opening specified file (5)");
}

void tst_save_excel::savesAndOffersToOpen()
{
    QFETCH(bool, yes);
    QFETCH(int, code);
    QFETCH(QString, failure);
    test::ScriptedDesktop desktop;
    desktop.files = {file("rows.xls")};
    desktop.answers = {yes ? MessageAnswer::Yes : MessageAnswer::No};
    desktop.openCode = code;
    save(desktop);
    const SaveFileRequest &request = desktop.saveRequests[0];
    QCOMPARE(request.title, s("Save As Excel File"));
    QCOMPARE(request.initialFolder, m_folder.path());
    QCOMPARE(request.filter, s("Excel File (*.xls)|*.xls"));
    QCOMPARE(request.defaultExtension, s("*.xls"));
    QList<Message> expected {kSaved, kQuestion};
    if (!failure.isEmpty())
        expected += Message {failure, 0, {}};
    QCOMPARE(desktop.messages, expected);
    QCOMPARE(desktop.openedDocuments, yes ? QStringList(file("rows.xls")) : QStringList());
    QFile written(file("rows.xls"));
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.read(4), QByteArray("\xd0\xcf\x11\xe0"));
}

void tst_save_excel::cancelling()
{
    test::ScriptedDesktop desktop;
    desktop.files = {QString()};
    save(desktop);
    QCOMPARE(desktop.messages, QList<Message>({kCancelled}));
}

void tst_save_excel::anEmptyGridIsRefused()
{
    test::ScriptedDesktop desktop;
    save(desktop, DataControl());
    save(desktop, grid({}));
    QCOMPARE(desktop.messages.size(), 2);
    QVERIFY(desktop.messages[0].text.startsWith(s("There are no rows to save.")));
    QVERIFY(desktop.saveRequests.isEmpty());
}

void tst_save_excel::namesThatEndInXlsx_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("replace");
    QTest::newRow("nothing there yet") << false << false;
    QTest::newRow("an older one is replaced") << true << true;
    QTest::newRow("an older one stays, another name is asked for") << true << false;
}

void tst_save_excel::namesThatEndInXlsx()
{
    QFETCH(bool, exists);
    QFETCH(bool, replace);
    const QTemporaryDir folder;
    const QString name = folder.filePath(s("rows.XLSX"));
    const QString written = name + s(".xls");
    QFile old(written);
    if (exists)
        QVERIFY(old.open(QIODevice::WriteOnly));
    old.close(); // Windows replaces no file that is open
    test::ScriptedDesktop desktop;
    desktop.files = {name};
    if (exists)
        desktop.answers = {replace ? MessageAnswer::Yes : MessageAnswer::No};
    if (exists && !replace)
        desktop.files.push_back(folder.filePath(s("other.xls")));
    desktop.answers.push_back(MessageAnswer::No);
    save(desktop);
    QVERIFY2(desktop.messages[0].text.contains(s("\"rows.XLSX.xls\"")), qPrintable(desktop.messages[0].text));
    QVERIFY(!QFile::exists(name));
    QCOMPARE(QFileInfo(written).size() > 0, !exists || replace);
    QCOMPARE(QFile::exists(folder.filePath(s("other.xls"))), exists && !replace);
}

void tst_save_excel::tellsWhatCouldNotBeKept()
{
    test::ScriptedDesktop desktop;
    desktop.files = {file("long.xls")};
    desktop.answers = {MessageAnswer::No};
    save(desktop, grid({QString(40'000, u'x')}));
    QCOMPARE(desktop.messages.size(), 3);
    QCOMPARE(desktop.messages[1].flags, int(MessageFlags::Information));
    QVERIFY2(desktop.messages[1].text.contains(s("32,767")), qPrintable(desktop.messages[1].text));
}

void tst_save_excel::aFailureIsTheCallers()
{
    test::ScriptedDesktop desktop;
    desktop.files = {file("none/rows.xls")};
    QVERIFY_EXCEPTION_THROWN(SaveExcel(desktop, m_host, grid({s("Ann")}), {}, m_folder.path()), WorkbookError);
    QVERIFY(!m_host.hourglass);
    QCOMPARE(desktop.messages, QList<Message>());
}

void tst_save_excel::stopsOnRequest()
{
    test::ScriptedDesktop desktop;
    desktop.files = {file("stopped.xls")};
    m_host.stop = true;
    const auto go = qScopeGuard([this] { m_host.stop = false; });
    save(desktop);
    QCOMPARE(desktop.messages, QList<Message>({kCancelled}));
    QVERIFY(!QFile::exists(file("stopped.xls")));
    QCOMPARE(m_host.progress, 0);
}

QTEST_MAIN(tst_save_excel)
#include "tst_save_excel.moc"
