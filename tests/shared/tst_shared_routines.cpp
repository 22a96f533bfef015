#include "shared/calendar_range.h"
#include "shared/dates.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"
#include "shared/scramble.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

/// The number of the fault that the call throws; 0 when it throws none.
template <typename Call>
int faultOf(Call call)
{
    try {
        call();
    } catch (const RunTimeFault &fault) {
        return fault.number();
    }
    return 0;
}

struct TextControl {
    QString text = QStringLiteral("select me");
    int start = -1;
    qsizetype length = -1;
    void setSelStart(int at) { start = at; }
    void setSelLength(qsizetype n) { length = n; }
    QString Text() const { return text; }
};

} // namespace

class tst_shared_routines : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void piecesOfAList_data();
    void piecesOfAList();
    void listsAndCounts();
    void leadingNumbers_data();
    void leadingNumbers();
    void strictNumbers_data();
    void strictNumbers();
    void roundsToWholeNumbers();
    void roundsHalvesUp();
    void localesGiveOrderAndForm_data();
    void localesGiveOrderAndForm();
    void calendarRangesAreWholePeriods_data();
    void calendarRangesAreWholePeriods();
    void scramblesBothWays();
    void filesByNameOnly();
};

void tst_shared_routines::piecesOfAList_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("piece");

    const auto row = [](const char *name, const char *list, int index, const char *piece) {
        QTest::newRow(name) << QString::fromLatin1(list) << index << QString::fromLatin1(piece);
    };
    row("the second", "a|b|c", 2, "b");
    row("the last", "a|b|c", 3, "c");
    row("beyond", "a|b|c", 4, "");
    row("far beyond", "a|b|c", 32767, "");
    row("0 counts as 1", "a|b|c", 0, "a");
    row("an empty piece", "a||c", 2, "");
    row("an empty list", "", 1, "");
    row("the end mark belongs to the last", "a|b;", 2, "b;");
}

void tst_shared_routines::piecesOfAList()
{
    QFETCH(QString, list);
    QFETCH(int, index);
    QTEST(getPiece(list, index), "piece");
}

void tst_shared_routines::listsAndCounts()
{
    QCOMPARE(faultOf([] { getPiece(u"a", 32768); }), 6);
    QVERIFY(!isDimmed(splitText(u"", u";")));
    QCOMPARE(splitText(u"a;;b;", u";"), QStringList({QStringLiteral("a"), QString(), QStringLiteral("b"), QString()}));
    QCOMPARE(splitText(u"aXYb", u"XY"), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(countOf(u"aaa", u"aa"), 2);
    QCOMPARE(countOf(u"abc", u""), 0);
    QCOMPARE(replaceEvery(QStringLiteral("aXbX"), u"X", u"XX"), QStringLiteral("aXXbXX"));
    QCOMPARE(replaceEvery(QStringLiteral("aX"), u"x", u"y"), QStringLiteral("aX"));
    QCOMPARE(replaceEvery(QStringLiteral("aX"), u"", u"y"), QStringLiteral("aX"));
    TextControl control;
    selectText(control);
    QCOMPARE(control.start, 0);
    QCOMPARE(control.length, control.text.size());
}

void tst_shared_routines::leadingNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");

    const auto row = [](const char *text, double number) { QTest::newRow(text) << QString::fromLatin1(text) << number; };
    row("12abc", 12);
    row("", 0);
    row("abc", 0);
    row("  7", 7);
    row("-1", -1);
    row("+3x", 3);
    row("9.5;", 9.5);
    row(".5", 0.5);
    row("5.", 5);
    row("-", 0);
    row("1e3", 1);
    row("True", 0);
    row("1,5", 1);
}

void tst_shared_routines::leadingNumbers()
{
    QFETCH(QString, text);
    QTEST(leadingNumber(text), "number");
}

void tst_shared_routines::strictNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("fault");

    const auto row = [](const char *text, double number, int fault) {
        QTest::newRow(text) << QString::fromLatin1(text) << number << fault;
    };
    row("12", 12, 0);
    row(" 12.50 ", 12.5, 0);
    row("12abc", 0, 13);
    row("", 0, 13);
    row("inf", 0, 13);
    row("nan", 0, 13);
    row("0x10", 0, 13);
}

void tst_shared_routines::strictNumbers()
{
    QFETCH(QString, text);
    QFETCH(double, number);
    double found = 0;
    QTEST(faultOf([&] { found = strictNumber(text); }), "fault");
    QCOMPARE(found, number);
}

void tst_shared_routines::roundsToWholeNumbers()
{
    QCOMPARE(toInt16(0.5), 0);
    QCOMPARE(toInt16(1.5), 2);
    QCOMPARE(toInt16(-2.5), -2);
    QCOMPARE(toInt16(32767.4), 32767);
    QCOMPARE(faultOf([] { toInt16(32767.5); }), 6);
    QCOMPARE(faultOf([] { toInt16(-32769); }), 6);
    QCOMPARE(toInt32(2147483647.0), 2147483647);
    QCOMPARE(faultOf([] { toInt32(2147483648.0); }), 6);
    QCOMPARE(strictNumber(Value::boolean(true)), -1.0);
    QCOMPARE(faultOf([] { strictNumber(Value::text("", 0)); }), 13);
}

void tst_shared_routines::roundsHalvesUp()
{
    QCOMPARE(roundTo(2.3449, 2), 2.34);
    QCOMPARE(roundTo(2.346, 2), 2.35);
    QCOMPARE(roundTo(-2.346, 2), -2.34);
    QCOMPARE(roundTo(1000.0 / 1440, 2), 0.69);
}

void tst_shared_routines::localesGiveOrderAndForm_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("cell"); // 2 November 2026

    QTest::newRow("C counts as month first") << QLocale::c() << 0 << QStringLiteral("11/02/2026");
    QTest::newRow("United States") << QLocale(QLocale::English, QLocale::UnitedStates) << 0 << QStringLiteral("11/2/2026");
    QTest::newRow("Germany") << QLocale(QLocale::German, QLocale::Germany) << 1 << QStringLiteral("02.11.2026");
    QTest::newRow("Hungary") << QLocale(QLocale::Hungarian, QLocale::Hungary) << 2 << QStringLiteral("2026. 11. 02.");
}

void tst_shared_routines::localesGiveOrderAndForm()
{
    QFETCH(QLocale, locale);
    QTEST(int(getDateOrder(locale)), "order");
    const QDate date(2026, 11, 2);
    QTEST(valueText(Value::date(QDate(1970, 1, 1).daysTo(date)), cellStyle(locale)), "cell");
    QCOMPARE(fmtDate(QDate(2024, 3, 1)), QStringLiteral("2024/03/01"));
    QVERIFY(dateTimeText(QDateTime(date, QTime(8, 5)), locale).contains(QStringLiteral("2026")));
    QCOMPARE(getLocaleValue(locale, 12345), QString());
}

void tst_shared_routines::calendarRangesAreWholePeriods_data()
{
    QTest::addColumn<CalendarRange>("range");
    QTest::addColumn<QString>("today");
    QTest::addColumn<Qt::DayOfWeek>("weekStart");
    QTest::addColumn<QString>("days");

    const auto row = [](const char *claim, CalendarRange range, const char *today, const char *days, Qt::DayOfWeek weekStart = Qt::Monday) {
        QTest::newRow(claim) << range << QString::fromLatin1(today) << weekStart << QString::fromLatin1(days);
    };
    row("today", CalendarRange::Today, "2026-11-02", "2026-11-02 2026-11-02");
    row("yesterday was last year", CalendarRange::Yesterday, "2026-01-01", "2025-12-31 2025-12-31");
    row("yesterday was a leap day", CalendarRange::Yesterday, "2028-03-01", "2028-02-29 2028-02-29");
    row("a week from Monday, on its Sunday", CalendarRange::ThisWeek, "2026-11-08", "2026-11-02 2026-11-08");
    row("a week from Sunday, on its Sunday", CalendarRange::ThisWeek, "2026-11-08", "2026-11-08 2026-11-14", Qt::Sunday);
    row("a week from Saturday, on its Friday", CalendarRange::ThisWeek, "2026-11-06", "2026-10-31 2026-11-06", Qt::Saturday);
    row("a week across years", CalendarRange::ThisWeek, "2027-01-01", "2026-12-28 2027-01-03");
    row("last week across years", CalendarRange::LastWeek, "2027-01-04", "2026-12-28 2027-01-03");
    row("last week from Sunday, on a Saturday", CalendarRange::LastWeek, "2026-11-07", "2026-10-25 2026-10-31", Qt::Sunday);
    row("a leap year's February", CalendarRange::ThisMonth, "2028-02-10", "2028-02-01 2028-02-29");
    row("last month on a day that it lacks", CalendarRange::LastMonth, "2027-03-31", "2027-02-01 2027-02-28");
    row("last month was last year", CalendarRange::LastMonth, "2026-01-31", "2025-12-01 2025-12-31");
    row("a quarter on its last day", CalendarRange::ThisQuarter, "2026-06-30", "2026-04-01 2026-06-30");
    row("a quarter on its first day", CalendarRange::ThisQuarter, "2026-10-01", "2026-10-01 2026-12-31");
    row("last quarter was last year", CalendarRange::LastQuarter, "2026-03-31", "2025-10-01 2025-12-31");
    row("last quarter on a day that it lacks", CalendarRange::LastQuarter, "2026-08-31", "2026-04-01 2026-06-30");
    row("a year on its last day", CalendarRange::ThisYear, "2026-12-31", "2026-01-01 2026-12-31");
    row("last year on a leap day", CalendarRange::LastYear, "2028-02-29", "2027-01-01 2027-12-31");
}

void tst_shared_routines::calendarRangesAreWholePeriods()
{
    QFETCH(CalendarRange, range);
    QFETCH(QString, today);
    QFETCH(Qt::DayOfWeek, weekStart);
    const DaySpan span = calendarRange(range, QDate::fromString(today, Qt::ISODate), weekStart);
    QTEST(QString(span.first.toString(Qt::ISODate) + u' ' + span.last.toString(Qt::ISODate)), "days");
}

void tst_shared_routines::scramblesBothWays()
{
    // k = 1, B = 5: "a" (97) is 98 XOR 4 at an odd place, 96 XOR 4 at an even one.
    QCOMPARE(scramblePW(u"aa"), QStringLiteral("fd"));
    QString all;
    for (char16_t code = 48; code <= 126; ++code)
        all += QChar(code);
    QCOMPARE(unscramblePW(scramblePW(all)), all);
    QCOMPARE(unscramblePW(u""), QString());
    const char16_t belowRange[] = {4}; // 4 XOR 4 less 1
    QCOMPARE(faultOf([&] { unscramblePW(QStringView(belowRange, 1)); }), 5);
    QCOMPARE(faultOf([] { scramblePW(u"\u0159"); }), 5);
}

void tst_shared_routines::filesByNameOnly()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("corvane.ini.d")));
    QFile file(folder.filePath(QStringLiteral("Corvane.INI")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(FileExists(file.fileName()));
    QVERIFY(!FileExists(folder.path()));
    QCOMPARE(findFile(folder.path(), QStringLiteral("corvane.ini")), file.fileName());
    QCOMPARE(findFile(folder.path(), QStringLiteral("corvane.ini.d")), QString());
    QCOMPARE(findFile(folder.filePath(QStringLiteral("none")), QStringLiteral("corvane.ini")), QString());
}

QTEST_MAIN(tst_shared_routines)
#include "tst_shared_routines.moc"
