#include "dialogs/frm_def_dates.h"
#include "platform/controls/date_picker.h"
#include "support/recording_host.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtTest/QtTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace corvane;

namespace {

const QDate kToday(2026, 11, 2);

struct Opened {
    explicit Opened(int order = 0)
        : form(host, host, order, [] { return kToday; }, nullptr)
    {
        host.bDatesChanged = false;
        form.show();
    }
    template <typename Control>
    Control *control(const char *name) { return form.findChild<Control *>(QString::fromLatin1(name)); }

    DatePicker *from() { return control<DatePicker>("DateFrom"); }
    DatePicker *to() { return control<DatePicker>("DateTo"); }
    QPushButton *ok() { return control<QPushButton>("Command1"); }
    QPushButton *cancel() { return control<QPushButton>("cmdcancel"); }

    test::RecordingHost host;
    frmDefDates form;
};

} // namespace

class tst_def_dates : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void startsFromTheHostsDates();
    void acceptsARangeInOrder_data();
    void acceptsARangeInOrder();
    void okNeedsTwoDates();
    void cancelWritesNothing();
    void followsTheDateOrder();
    void calendarRangesFillBothDates_data();
    void calendarRangesFillBothDates();
};

void tst_def_dates::startsFromTheHostsDates()
{
    Opened opened;
    QCOMPARE(opened.form.windowTitle(), QStringLiteral("Report Dates"));
    QCOMPARE(opened.from()->date(), kToday);
    QCOMPARE(opened.to()->date(), kToday);
    QCOMPARE(opened.ok()->text(), QStringLiteral("Ok"));
    QCOMPARE(opened.cancel()->text(), QStringLiteral("&Cancel"));
    QVERIFY(opened.ok()->isEnabled());
}

void tst_def_dates::acceptsARangeInOrder_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("a month") << QStringLiteral("11012026") << QStringLiteral("11302026") << true;
    QTest::newRow("one day") << QStringLiteral("11012026") << QStringLiteral("11012026") << true;
    QTest::newRow("one day too late") << QStringLiteral("11022026") << QStringLiteral("11012026") << false;
}

void tst_def_dates::acceptsARangeInOrder()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, accepted);
    Opened opened;
    test::typeInto(opened.from(), from);
    test::typeInto(opened.to(), to);
    QTest::keyClick(opened.to(), Qt::Key_Return);
    QCOMPARE(opened.form.isVisible(), !accepted);
    if (accepted) {
        QCOMPARE(opened.host.messages, QStringList());
        QCOMPARE(opened.host.from.date, QDate::fromString(from, QStringLiteral("MMddyyyy")));
        QCOMPARE(opened.host.to.date, QDate::fromString(to, QStringLiteral("MMddyyyy")));
    } else {
        QCOMPARE(opened.host.messages, QStringList(QStringLiteral("Corvane|48|Start Date must be earlier than End Date.")));
        QCOMPARE(opened.host.from.date, kToday);
        QCOMPARE(opened.form.focusWidget(), opened.from());
    }
}

void tst_def_dates::okNeedsTwoDates()
{
    Opened opened;
    test::typeInto(opened.from(), {});
    QVERIFY(!opened.ok()->isEnabled());
    test::typeInto(opened.from(), QStringLiteral("1130"));
    QVERIFY(!opened.ok()->isEnabled());
    test::typeInto(opened.from(), QStringLiteral("02302026"));
    QVERIFY(!opened.ok()->isEnabled());
    test::typeInto(opened.from(), QStringLiteral("11012026"));
    QVERIFY(opened.ok()->isEnabled());
    test::typeInto(opened.to(), {});
    QVERIFY(!opened.ok()->isEnabled());
}

void tst_def_dates::cancelWritesNothing()
{
    for (const bool byKey : {true, false}) {
        Opened opened;
        test::typeInto(opened.from(), QStringLiteral("01012026"));
        if (byKey)
            QTest::keyClick(opened.from(), Qt::Key_Escape);
        else
            QTest::mouseClick(opened.cancel(), Qt::LeftButton);
        QVERIFY(!opened.form.isVisible());
        QCOMPARE(opened.host.from.date, kToday);
        QVERIFY(!opened.host.bDatesChanged);
    }
}

void tst_def_dates::followsTheDateOrder()
{
    Opened opened(2);
    QCOMPARE(opened.from()->text(), QStringLiteral("2026/11/02"));
    test::typeInto(opened.from(), QStringLiteral("20261101"));
    QCOMPARE(opened.from()->date(), QDate(2026, 11, 1));
}

void tst_def_dates::calendarRangesFillBothDates_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<QString>("dates");
    const QLocale german(QLocale::German);
    const QLocale american(QLocale::English, QLocale::UnitedStates);
    QTest::newRow("by letter") << german << QList {Qt::Key_M} << QStringLiteral("11/01/2026 11/30/2026");
    QTest::newRow("by arrow keys") << german << QList {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return} << QStringLiteral("11/01/2026 11/01/2026");
    QTest::newRow("a week from Monday") << german << QList {Qt::Key_W} << QStringLiteral("11/02/2026 11/08/2026");
    QTest::newRow("a week from Sunday") << american << QList {Qt::Key_W} << QStringLiteral("11/01/2026 11/07/2026");
    QTest::newRow("left without a choice") << german << QList {Qt::Key_Down, Qt::Key_Escape} << QStringLiteral("05/06/2026 11/02/2026");
}

void tst_def_dates::calendarRangesFillBothDates()
{
    QFETCH(QLocale, locale);
    QFETCH(QList<Qt::Key>, keys);
    Opened opened;
    opened.form.setLocale(locale);
    test::typeInto(opened.from(), QStringLiteral("05062026"));
    auto *range = opened.control<QPushButton>("cmdrange");
    QTimer::singleShot(0, &opened.form, [&] {
        for (const Qt::Key key : keys)
            QTest::keyClick(range->menu(), key);
    });
    range->setFocus();
    QTest::keyClick(range, Qt::Key_Down);
    QTEST(QString(opened.from()->text() + u' ' + opened.to()->text()), "dates");
    QVERIFY(opened.form.isVisible());
    QVERIFY(!opened.host.bDatesChanged); // nothing leaves the form before "Ok"
    QTest::keyClick(range, Qt::Key_Return);
    QVERIFY(!opened.form.isVisible());
    QCOMPARE(opened.host.from.date, opened.from()->date());
}

QTEST_MAIN(tst_def_dates)
#include "tst_def_dates.moc"
