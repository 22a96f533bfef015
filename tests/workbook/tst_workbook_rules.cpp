#include "platform/workbook/cell_formats.h"
#include "platform/workbook/cell_text.h"
#include "platform/workbook/sheet_name.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_workbook_rules : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void patternsBecomeNumberFormats_data();
    void patternsBecomeNumberFormats();
    void sheetNamesAreAllowed_data();
    void sheetNamesAreAllowed();
    void widthsCountWhatShows();
};

void tst_workbook_rules::patternsBecomeNumberFormats_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *name, const char *pattern, const char *code) {
        QTest::newRow(name) << QString::fromUtf8(pattern) << QString::fromUtf8(code);
    };
    row("month first", "MM/dd/yyyy", "mm/dd/yyyy");
    row("day first", "dd.MM.yyyy", "dd.mm.yyyy");
    row("short year", "d-M-yy", "d-m-yyyy");
    row("twelve hours", "h:mm AP", "h:mm AM/PM");
    row("small letters", "hh:mm:ss ap", "hh:mm:ss AM/PM");
    row("24 hours with milliseconds", "HH:mm:ss.zzz", "hh:mm:ss.000");
    row("no time zone", "HH:mm t", "hh:mm");
    row("quoted words", "d 'de' MMMM", "d \"de\" mmmm");
    row("an a in quotes is no AM", "HH 'a' mm", "hh \"a\" mm");
    row("other signs", "yyyy年M月d日", "yyyy\"年\"m\"月\"d\"日\"");
}

void tst_workbook_rules::patternsBecomeNumberFormats()
{
    QFETCH(QString, pattern);
    QTEST(numberFormat(pattern), "code");
}

void tst_workbook_rules::sheetNamesAreAllowed_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *tag, const char *wanted, int number, const char *name) {
        QTest::newRow(tag) << QString::fromUtf8(wanted) << number << QString::fromUtf8(name);
    };
    row("a plain name", "Daily schedule", 1, "Daily schedule");
    row("the second of a name", "Daily schedule", 2, "Daily schedule (2)");
    row("forbidden signs", "a[b]:c*d?e/f\\g", 1, "a b c d e f g");
    row("apostrophes at the ends", "'it's'", 1, "it's");
    row("nothing", "", 1, "Sheet1");
    row("nothing that is allowed", "'[]'", 3, "Sheet1 (3)");
    row("a name that is taken", "history", 1, "history_");
    row("31 characters", "1234567890123456789012345678901x", 1, "1234567890123456789012345678901");
    row("a pair is not cut", "123456789012345678901234567890\xF0\x9F\x98\x80", 1,
        "123456789012345678901234567890");
    row("room for the number", "1234567890123456789012345678901", 12,
        "12345678901234567890123456 (12)");
}

void tst_workbook_rules::sheetNamesAreAllowed()
{
    QFETCH(QString, wanted);
    QFETCH(int, number);
    QTEST(sheetName(wanted, number), "name");
}

void tst_workbook_rules::widthsCountWhatShows()
{
    QCOMPARE(textWidth("abc"), 3);
    QCOMPARE(textWidth("Zo\xC3\xAB"), 3);
    QCOMPARE(textWidth("e\xCC\x81"), 1); // a letter and a mark
    QCOMPARE(textWidth("\xE6\xBC\xA2\xF0\x9F\x98\x80"), 4); // a Chinese letter and a face
}

QTEST_GUILESS_MAIN(tst_workbook_rules)
#include "tst_workbook_rules.moc"
