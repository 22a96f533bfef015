#include "shared/code_page.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringDecoder>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

/// A tabular report: "Section/Key" to value, in the files' own spelling.
using Definition = QMap<QString, QString>;

QString decoded(const QByteArray &bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? fromWindows1252(bytes) : text;
}

Definition parsed(const QString &text)
{
    Definition definition;
    QString section;
    for (const QString &line : text.split(QStringLiteral("\r\n"))) {
        if (line.startsWith(u'['))
            section = line.sliced(1).chopped(1);
        else if (line.contains(u'=') && !line.startsWith(u';'))
            definition.insert(section + u'/' + line.section(u'=', 0, 0), line.section(u'=', 1));
    }
    return definition;
}

QMap<QString, QByteArray> reportFiles()
{
    QMap<QString, QByteArray> files;
    const QDir folder(QStringLiteral(CORVANE_SOURCE_DIR "/demo/Reports"));
    for (const QString &name : folder.entryList({QStringLiteral("*.rpt")}, QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            files.insert(name, file.readAll());
    }
    return files;
}

QMap<QString, Definition> definitions()
{
    QMap<QString, Definition> result;
    const auto files = reportFiles();
    for (auto file = files.begin(); file != files.end(); ++file) {
        if (!file.value().contains("<Reports>"))
            result.insert(file.key(), parsed(decoded(file.value())));
    }
    return result;
}

/// The SELECT list's items; commas inside brackets or quotes do not count.
QStringList selectList(const QString &sql)
{
    static const QRegularExpression start(QStringLiteral("^SELECT (TOP \\d+ )?"));
    QStringList items{QString()};
    int depth = 0;
    bool quoted = false;
    const QString list = QString(sql).remove(start).section(QStringLiteral(" FROM "), 0, 0);
    for (const QChar c : list) {
        quoted ^= c == u'\'';
        depth += quoted ? 0 : int(c == u'(') - int(c == u')');
        if (c == u',' && depth == 0 && !quoted)
            items += QString();
        else
            items.last() += c;
    }
    return items;
}

} // namespace

class tst_demo_reports : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyIsUsed_data();
    void everyKeyIsUsed();
    void onlyKnownKeys();
    void everyReportIsSound_data();
    void everyReportIsSound();
    void filesArePlainText();
    void referenceNamesEveryKey();
};

static const QStringList kKeys{QStringLiteral("Data Source/RecordSource1"),
    QStringLiteral("Data Source/RecordSource2"), QStringLiteral("Data Source/GetDates"),
    QStringLiteral("Data Source/GetPatient"), QStringLiteral("Data Source/Fields"),
    QStringLiteral("Data Source/Database"), QStringLiteral("Columns/Fields"),
    QStringLiteral("Columns/Heading"), QStringLiteral("Columns/Spacing"),
    QStringLiteral("Columns/PageColumns"), QStringLiteral("Columns/Font"),
    QStringLiteral("Columns/Fontsize"), QStringLiteral("Group/Field"),
    QStringLiteral("Group/SubTotal"), QStringLiteral("Group/GrandTotal"),
    QStringLiteral("SubColumn/Field"), QStringLiteral("SubColumn/Indent"),
    QStringLiteral("Layout/Orientation"), QStringLiteral("Layout/PageBreak"),
    QStringLiteral("Header/LText"), QStringLiteral("Header/CText"), QStringLiteral("Header/RText"),
    QStringLiteral("Footer/LText"), QStringLiteral("Footer/CText"), QStringLiteral("Footer/RText")};

void tst_demo_reports::everyKeyIsUsed_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value"); // a pattern for the whole value
    for (const QString &key : kKeys) {
        // The left footer text is kept but not printed, so no report has one.
        const bool isPrinted = key != u"Footer/LText";
        QTest::newRow(qPrintable(key)) << key << (isPrinted ? QStringLiteral(".+") : QString());
    }
    const auto use = [](const char *claim, const char *key, const char *value) {
        QTest::newRow(claim) << QString::fromUtf8(key) << QString::fromUtf8(value);
    };
    use("dates asked for", "Data Source/GetDates", "True");
    use("no dates", "Data Source/GetDates", "False");
    use("second database", "Data Source/Database", "A");
    use("its tables", "Data Source/RecordSource1", ".* HalvernDB\\.dbo\\..*");
    use("bracketed name of the main database", "Data Source/RecordSource1",
        ".*\\[CorvaneDB\\]\\.dbo\\..*");
    use("bracketed name of the second", "Data Source/RecordSource1",
        ".*\\[HalvernDB\\]\\.dbo\\..*");
    use("right-aligned width", "Columns/Spacing", ".*>\\d+.*");
    use("two newspaper columns", "Columns/PageColumns", "2");
    use("three newspaper columns", "Columns/PageColumns", "3");
    use("font with semicolon", "Columns/Font", ".+;\\d+");
    use("font with bar", "Columns/Font", ".+\\|\\d+");
    use("font without size", "Columns/Font", "[^;|]+");
    use("font size with decimals", "Columns/Fontsize", "\\d+\\.\\d+");
    use("total", "Group/SubTotal", "-1");
    use("grand total", "Group/GrandTotal", "-1");
    use("clock times", "ColumnFormat/\\d+", "MinToTime");
    use("statuses", "ColumnFormat/\\d+", "ColorToStatus");
    use("upright", "Layout/Orientation", "P");
    use("on its side", "Layout/Orientation", "L");
    use("groups on new pages", "Layout/PageBreak", "Y");
    use("groups one after the other", "Layout/PageBreak", "N");
    use("date in the header", "Header/LText", "\\{Date\\}");
    use("date in the footer", "Footer/RText", "\\{Date\\}");
    use("page number", "Footer/CText", "Page %d");
}

void tst_demo_reports::everyKeyIsUsed()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    const QRegularExpression use(QRegularExpression::anchoredPattern(key + u'=' + value));
    int uses = 0;
    for (const Definition &definition : definitions()) {
        for (auto entry = definition.begin(); entry != definition.end(); ++entry)
            uses += int(use.match(entry.key() + u'=' + entry.value()).hasMatch());
    }
    QVERIFY2(uses > 0, "no report of the demo clinic uses it");
}

void tst_demo_reports::onlyKnownKeys()
{
    for (const Definition &definition : definitions()) {
        for (const QString &key : definition.keys())
            QVERIFY2(kKeys.contains(key) || key.startsWith(u"ColumnFormat/"), qPrintable(key));
    }
}

void tst_demo_reports::everyReportIsSound_data()
{
    QTest::addColumn<Definition>("definition");
    const auto all = definitions();
    QVERIFY(all.size() >= 9);
    for (auto report = all.begin(); report != all.end(); ++report)
        QTest::newRow(qPrintable(report.key())) << report.value();
}

void tst_demo_reports::everyReportIsSound()
{
    QFETCH(Definition, definition);
    const auto value = [&](const char *key) { return definition.value(QString::fromUtf8(key)); };
    const QStringList fields = value("Columns/Fields").split(u'|');
    const QString sql
        = value("Data Source/RecordSource1") + u' ' + value("Data Source/RecordSource2");
    const qsizetype resultFields = selectList(sql).size();

    QVERIFY(value("Columns/Heading").endsWith(u';') && value("Columns/Spacing").endsWith(u';'));
    QVERIFY(!value("Columns/Fields").contains(u';'));
    QCOMPARE(value("Data Source/Fields").toInt(), fields.size());
    QCOMPARE(value("Columns/Heading").split(u'|').size(), fields.size());
    const QStringList widths = value("Columns/Spacing").chopped(1).split(u'|');
    QCOMPARE(widths.size(), fields.size());
    QStringList ordinals = fields;
    for (const char *key : {"Group/Field", "SubColumn/Field"}) {
        if (!value(key).isEmpty()) {
            QVERIFY(value(key).toInt() >= 1);
            ordinals += value(key);
        }
    }
    for (const QString &key : definition.keys()) {
        if (key.startsWith(u"ColumnFormat/"))
            QVERIFY2(fields.contains(key.section(u'/', 1)), qPrintable(key));
    }
    for (const QString &ordinal : ordinals) {
        bool isNumber = false;
        QVERIFY2(ordinal.toInt(&isNumber) < resultFields && isNumber, qPrintable(ordinal));
    }

    int total = 0;
    for (QString width : widths)
        total += width.remove(u'>').toInt();
    const bool landscape = value("Layout/Orientation") == u"L";
    const int newspaperColumns = value("Columns/PageColumns").toInt();
    // Newspaper columns stand half an inch apart between margins of one inch.
    const int room = newspaperColumns == 1
        ? (landscape ? 14'400 : 10'800)
        : ((landscape ? 12'960 : 9'360) + 720) / newspaperColumns - 720;
    QVERIFY2(total <= room, qPrintable(QString::number(total)));
    QCOMPARE(sql.contains(QStringLiteral("BETWEEN '{DATE1}' AND '{DATE2}'")),
        value("Data Source/GetDates") == u"True");
    QVERIFY(sql.contains(QStringLiteral(" ORDER BY ")));
}

void tst_demo_reports::filesArePlainText()
{
    const auto files = reportFiles();
    int codePage = 0;
    int unicode = 0;
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QByteArray &bytes = file.value();
        if (bytes.contains("<Reports>"))
            continue;
        QVERIFY2(bytes.endsWith("\r\n") && bytes.count('\n') == bytes.count("\r\n"),
            qPrintable(file.key()));
        const bool beyondAscii = std::ranges::any_of(bytes, [](char c) { return uchar(c) > 0x7f; });
        const bool isUtf8 = decoded(bytes).toUtf8() == bytes;
        codePage += int(beyondAscii && !isUtf8);
        unicode += int(beyondAscii && isUtf8);
    }
    QVERIFY(codePage > 0);
    QVERIFY(unicode > 0);
}

void tst_demo_reports::referenceNamesEveryKey()
{
    QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/docs/definition-files.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    for (const QString &key : kKeys) {
        QVERIFY2(text.contains(u'`' + key.section(u'/', 1) + u'`'), qPrintable(key));
        QVERIFY2(text.contains(u"[" + key.section(u'/', 0, 0) + u"]\n"), qPrintable(key));
    }
    // Its complete example is the file itself.
    const auto reports = reportFiles();
    QString example;
    for (const QString &line :
        text.section(QStringLiteral("## A complete example"), 1).split(u'\n')) {
        if (line.startsWith(u"    ") || (!example.isEmpty() && line.isEmpty()))
            example += line.mid(4) + u'\n';
    }
    QCOMPARE(example.trimmed(),
        decoded(reports.value(QStringLiteral("Appointments by provider.rpt")))
            .remove(u'\r')
            .trimmed());
}

QTEST_GUILESS_MAIN(tst_demo_reports)
#include "tst_demo_reports.moc"
