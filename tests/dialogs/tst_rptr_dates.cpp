#include "dialogs/frm_rptr_dates.h"
#include "platform/controls/date_picker.h"
#include "shared/run_time_fault.h"
#include "support/recording_host.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

using namespace corvane;

namespace {

const QDate kToday(2026, 11, 2);
const QString kRange = QStringLiteral("D >= {DATE*1|2|1| Visits between <b>these</b> | From Date: "
                                      "| To && Date: |11/1/2026|Now()} AND D < {DATE*2}");

QString withFields(const char *fields)
{
    return QStringLiteral("D = {DATE*1|%1} OR D = {DATE*2}").arg(QString::fromLatin1(fields));
}

struct Opened
{
    explicit Opened(const QString &sql, int order = 0)
        : table(DateParamTable())
        , form(
              table, host, order, [] { return kToday; }, nullptr)
    {
        form.RequestSQL = sql;
        form.ResultSQL = QStringLiteral("left over");
        form.Form_Load();
        form.show();
    }
    template <typename Control> Control *control(const char *name)
    {
        return form.findChild<Control *>(QString::fromLatin1(name));
    }

    DatePicker *first() { return control<DatePicker>("DateCntl0"); }
    DatePicker *second() { return control<DatePicker>("DateCntl1"); }
    QLabel *caption(int index)
    {
        return control<QLabel>(index == 0 ? "lbFldCaption0" : "lbFldCaption1");
    }
    QPushButton *ok() { return control<QPushButton>("Command1"); }
    QPushButton *cancel() { return control<QPushButton>("cmdcancel"); }

    test::RecordingHost host;
    std::optional<DateParamTable> table;
    frmRptrDates form;
};

} // namespace

class tst_rptr_dates : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showsItsDesignBeforeLoading();
    void showsTheTokensFields();
    void hidesTheSecondDate();
    void followsTheDateOrder();
    void okFollowsTheDates();
    void okStartsByTheRule_data();
    void okStartsByTheRule();
    void acceptsDates_data();
    void acceptsDates();
    void refusesTheWrongOrderAndStaysOpen();
    void takesTodayFromTheCalendar();
    void cancelHandsBackNothing_data();
    void cancelHandsBackNothing();
    void badTokensStopTheLoading();
};

void tst_rptr_dates::showsItsDesignBeforeLoading()
{
    test::RecordingHost host;
    std::optional<DateParamTable> table;
    frmRptrDates form(
        table, host, 0, [] { return kToday; }, nullptr);
    QCOMPARE(form.windowTitle(), QStringLiteral("Report Date Parameter(s)"));
    QCOMPARE(form.findChild<QLabel *>(QStringLiteral("lbDynamic0"))->text(),
        QStringLiteral("<dynamic label value>"));
    QCOMPARE(form.findChild<QLabel *>(QStringLiteral("lbFldCaption0"))->text(),
        QStringLiteral("From Date:"));
    QCOMPARE(form.findChild<QLabel *>(QStringLiteral("lbFldCaption1"))->text(),
        QStringLiteral("To Date:"));
    QCOMPARE(
        form.findChild<QPushButton *>(QStringLiteral("Command1"))->text(), QStringLiteral("&OK"));
    QCOMPARE(form.findChild<QPushButton *>(QStringLiteral("cmdcancel"))->text(),
        QStringLiteral("&Cancel"));
}

void tst_rptr_dates::showsTheTokensFields()
{
    Opened opened(kRange);
    QCOMPARE(opened.form.ResultSQL, QString());
    QVERIFY(!opened.table);
    const auto *label = opened.control<QLabel>("lbDynamic0");
    QCOMPARE(label->text(), QStringLiteral("Visits between <b>these</b>"));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(opened.caption(0)->text(), QStringLiteral("From Date:"));
    QCOMPARE(opened.caption(1)->text(), QStringLiteral("To && Date:"));
    QCOMPARE(opened.second()->accessibleName(), QStringLiteral("To && Date:"));
    QCOMPARE(opened.first()->text(), QStringLiteral("11/01/2026"));
    QCOMPARE(opened.second()->text(), QStringLiteral("11/02/2026"));
    QVERIFY(opened.second()->isVisible() && opened.caption(1)->isVisible());
    QTRY_COMPARE(opened.form.focusWidget(), opened.first());
}

void tst_rptr_dates::hidesTheSecondDate()
{
    Opened opened(withFields("1|1|l|On|a|11/1/2026|Now()"));
    QVERIFY(opened.first()->isVisible() && opened.caption(0)->isVisible());
    QVERIFY(!opened.second()->isVisible() && !opened.caption(1)->isVisible());
    QCOMPARE(opened.second()->text(), QStringLiteral("11/02/2026"));
}

void tst_rptr_dates::followsTheDateOrder()
{
    Opened opened(kRange, 1);
    QCOMPARE(opened.first()->date(), QDate(2026, 1, 11));
    test::typeInto(opened.first(), QStringLiteral("01022026"));
    QTest::keyClick(opened.first(), Qt::Key_Return);
    QCOMPARE(opened.form.ResultSQL, QStringLiteral("D >= '01/02/2026' AND D < '02/11/2026'"));
    QCOMPARE(opened.form.answers(), (DateAnswers{QDate(2026, 2, 1), kToday}));
}

void tst_rptr_dates::okFollowsTheDates()
{
    Opened opened(kRange);
    QVERIFY(opened.ok()->isEnabled());
    for (DatePicker *picker : {opened.first(), opened.second()}) {
        for (const auto typed : {u"", u"1130", u"02302026", u"12311899"}) {
            test::typeInto(picker, QString::fromUtf16(typed));
            QVERIFY2(!opened.ok()->isEnabled(), qPrintable(picker->text()));
        }
        QTest::keyClick(picker, Qt::Key_Return);
        QVERIFY(opened.form.isVisible());
        test::typeInto(picker, QStringLiteral("01011900"));
        QVERIFY(opened.ok()->isEnabled());
    }
}

void tst_rptr_dates::okStartsByTheRule_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("both defaults") << withFields("2|0|l|a|b|Now()|Now()") << true;
    QTest::newRow("no first default") << withFields("2|0|l|a|b||Now()") << false;
    QTest::newRow("no second default") << withFields("2|0|l|a|b|Now()|") << false;
    QTest::newRow("the only default") << withFields("1|0|l|a|b|Now()|") << true;
    QTest::newRow("no default at all") << withFields("2|0|l|a|b||") << false;
    QTest::newRow("a default that is no date") << withFields("1|0|l|a|b|NOW()|Now()") << false;
}

void tst_rptr_dates::okStartsByTheRule()
{
    QFETCH(QString, sql);
    Opened opened(sql);
    QTEST(opened.ok()->isEnabled(), "enabled");
}

void tst_rptr_dates::acceptsDates_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("secondText");
    const auto row = [](const char *name, const QString &sql, const char *first, const char *second,
                         const char *result, const char *secondText) {
        QTest::newRow(name) << sql << QString::fromLatin1(first) << QString::fromLatin1(second)
                            << QString::fromLatin1(result) << QString::fromLatin1(secondText);
    };
    row("a range", kRange, "11052026", "11302026", "D >= '11/05/2026' AND D < '11/30/2026'",
        "11/30/2026");
    row("equal dates", kRange, "11052026", "11052026", "D >= '11/05/2026' AND D < '11/05/2026'",
        "11/05/2026");
    row("backwards without a check", withFields("2|0|l|a|b||"), "11302026", "11052026",
        "D = '11/30/2026' OR D = '11/05/2026'", "11/05/2026");
    row("one date, hidden default", withFields("1|1|l|a|b||Now()"), "11302026", "",
        "D = '11/30/2026' OR D = '11/02/2026'", "11/02/2026");
    row("one date, nothing hidden", withFields("1|1|l|a|b||"), "11302026", "",
        "D = '11/30/2026' OR D = ''", "");
}

void tst_rptr_dates::acceptsDates()
{
    QFETCH(QString, sql);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, secondText);
    Opened opened(sql);
    test::typeInto(opened.first(), first);
    if (!second.isEmpty())
        test::typeInto(opened.second(), second);
    QTest::mouseClick(opened.ok(), Qt::LeftButton);
    QVERIFY(!opened.form.isVisible());
    QCOMPARE(opened.form.result(), int(QDialog::Accepted));
    QCOMPARE(opened.host.messages, QStringList());
    QTEST(opened.form.ResultSQL, "result");
    QCOMPARE(opened.form.RequestSQL, sql);
    QVERIFY(opened.table);
    QCOMPARE((*opened.table)[0][1], opened.first()->text());
    QCOMPARE((*opened.table)[1][1], secondText);
    // A re-run: the answers alone give the same text again.
    QTEST(applyDates(sql, opened.form.answers(), DateOrder::MonthDayYear), "result");
}

void tst_rptr_dates::refusesTheWrongOrderAndStaysOpen()
{
    Opened opened(kRange);
    test::typeInto(opened.first(), QStringLiteral("11302026"));
    test::typeInto(opened.second(), QStringLiteral("11292026"));
    QTest::keyClick(opened.second(), Qt::Key_Return);
    QCOMPARE(opened.host.messages,
        QStringList(QStringLiteral("Corvane|48|[From Date:] must be earlier than To && Date:].")));
    QVERIFY(opened.form.isVisible());
    QCOMPARE(opened.form.focusWidget(), opened.first());
    QCOMPARE(opened.form.ResultSQL, QString());
    QVERIFY(!opened.table);
    QTest::keyClick(opened.first(), Qt::Key_Down);
    QTest::keyClick(opened.first(), Qt::Key_Return);
    QCOMPARE(opened.form.ResultSQL, QStringLiteral("D >= '11/29/2026' AND D < '11/29/2026'"));
}

void tst_rptr_dates::takesTodayFromTheCalendar()
{
    Opened opened(withFields("1|0|l|a|b||"));
    QTest::mouseClick(
        opened.first()->findChild<QToolButton *>(QStringLiteral("calendarArrow")), Qt::LeftButton);
    QVERIFY(opened.first()->isCalendarOpen());
    QPushButton *today = nullptr;
    for (auto *button : opened.first()->findChildren<QPushButton *>()) {
        if (button->text().remove(u'&') == u"Today")
            today = button;
    }
    QVERIFY(today);
    QTest::mouseClick(today, Qt::LeftButton);
    QVERIFY(opened.ok()->isEnabled());
    QTest::keyClick(opened.first(), Qt::Key_Return);
    QCOMPARE(opened.form.ResultSQL, QStringLiteral("D = '11/02/2026' OR D = ''"));
}

void tst_rptr_dates::cancelHandsBackNothing_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("the button") << 0;
    QTest::newRow("Escape") << 1;
    QTest::newRow("closing the window") << 2;
}

void tst_rptr_dates::cancelHandsBackNothing()
{
    QFETCH(int, way);
    Opened opened(kRange);
    test::typeInto(opened.first(), QStringLiteral("11012026"));
    if (way == 0)
        QTest::mouseClick(opened.cancel(), Qt::LeftButton);
    else if (way == 1)
        QTest::keyClick(opened.first(), Qt::Key_Escape);
    else
        opened.form.close();
    QVERIFY(!opened.form.isVisible());
    QCOMPARE(opened.form.result(), int(QDialog::Rejected));
    QCOMPARE(opened.form.ResultSQL, QString());
    QVERIFY(!opened.table);
}

void tst_rptr_dates::badTokensStopTheLoading()
{
    test::RecordingHost host;
    std::optional<DateParamTable> table = DateParamTable();
    frmRptrDates form(
        table, host, 0, [] { return kToday; }, nullptr);
    form.RequestSQL = QStringLiteral("D = {DATE*1|2abc|1|l|a|b|c|d}");
    form.ResultSQL = QStringLiteral("left over");
    QVERIFY_THROWS_EXCEPTION(RunTimeFault, form.Form_Load());
    QCOMPARE(form.ResultSQL, QString());
    QVERIFY(!table);
    QCOMPARE(host.messages, QStringList());
}

QTEST_MAIN(tst_rptr_dates)
#include "tst_rptr_dates.moc"
