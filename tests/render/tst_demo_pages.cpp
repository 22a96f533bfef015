// What every demo report draws, and where, to the twip: the same on every system. tests/expectations/pages.digests has a line
// per page with a digest of its operations. CORVANE_RENEW=1 writes it anew; CORVANE_PAGES=FOLDER keeps the operations
// themselves, to compare those of two systems or two versions.

#include "render/report_run.h"
#include "session/logon.h"
#include "session/patient_search.h"
#include "session/startup.h"
#include "support/demo_folder.h"
#include "support/document_dump.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

constexpr int kPatients = 60;

QString expectations()
{
    return QStringLiteral(CORVANE_SOURCE_DIR "/tests/expectations/pages.digests");
}

} // namespace

class tst_demo_pages : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void drawsWhatItDrewEverywhere_data();
    void drawsWhatItDrewEverywhere();
    void cleanupTestCase();

private:
    QStringList reports() const { return QDir(m_demo.report({})).entryList({QStringLiteral("*.rpt")}); }
    DocumentPtr run(const QString &report);
    static QStringList pageLines(const QString &name, const Document &document);

    test::DemoFolder m_demo{kPatients};
    QStringList m_expected;
    QStringList m_found;
};

void tst_demo_pages::initTestCase()
{
    QFile file(expectations());
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_expected = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

DocumentPtr tst_demo_pages::run(const QString &report)
{
    Reportr state;
    state.programFolder = m_demo.path();
    test::RecordingHost host;
    host.from = {QStringLiteral("10/01/2026"), QDate(2026, 10, 1)};
    host.to = {QStringLiteral("11/30/2026"), QDate(2026, 11, 30)};
    host.answerPatient = [&] { choosePatient(state, QStringLiteral("1001")); };
    host.answerDates = DateAnswers{QDate(2026, 11, 2), QDate(2026, 11, 4)};
    host.answerSelection = [](const QString &request) {
        return SelectionAnswers{SelectionToken::parseRequest(request).marker(), {QStringLiteral("ANC")}};
    };
    if (connectDatabases(state, host) != StartState::Connected || !logOn(state, host, QStringLiteral("nora"), QStringLiteral("clinic")))
        return {};
    ReportRun run{state, host, host, QLocale::c()};
    return run.openListed(m_demo.report(report)) == RunResult::Done ? run.document() : nullptr;
}

/// "Phone list 1: 99 operations 0123456789abcdef", pages from 1.
QStringList tst_demo_pages::pageLines(const QString &name, const Document &document)
{
    QFile kept(qEnvironmentVariable("CORVANE_PAGES") + u'/' + name + QStringLiteral(".txt"));
    const bool isKept = qEnvironmentVariableIsSet("CORVANE_PAGES") && kept.open(QIODevice::WriteOnly);
    QStringList lines;
    for (int page = 0; page < document.pageCount(); ++page) {
        const QStringList drawn = test::operations(document, page);
        const QByteArray text = drawn.join(u'\n').toUtf8();
        const QByteArray digest = QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().left(16);
        lines += QStringLiteral("%1 %2: %3 operations %4").arg(name).arg(page + 1).arg(drawn.size()).arg(QString::fromLatin1(digest));
        if (isKept)
            kept.write(text + "\n\f");
    }
    return lines;
}

void tst_demo_pages::drawsWhatItDrewEverywhere_data()
{
    QTest::addColumn<QString>("report");
    for (const QString &report : reports())
        QTest::newRow(qPrintable(report)) << report;
}

void tst_demo_pages::drawsWhatItDrewEverywhere()
{
    QFETCH(QString, report);
    const DocumentPtr document = run(report);
    QVERIFY(document && document->isWhole);
    const QString name = QFileInfo(report).completeBaseName();
    const QStringList found = pageLines(name, *document);
    m_found += found;
    if (!qEnvironmentVariableIsSet("CORVANE_RENEW"))
        QCOMPARE(found, m_expected.filter(QRegularExpression(u'^' + QRegularExpression::escape(name) + QStringLiteral(" \\d+: "))));
}

void tst_demo_pages::cleanupTestCase()
{
    if (!qEnvironmentVariableIsSet("CORVANE_RENEW"))
        return;
    QFile file(expectations());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write((m_found.join(u'\n') + u'\n').toUtf8()) > 0);
}

QTEST_MAIN(tst_demo_pages)
#include "tst_demo_pages.moc"
