#include "support/suite.h"
#include "tabular/value_formats.h"

#include <QtTest/QtTest>

using namespace corvane;

class tst_value_formats : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void minutesAsClock_data();
    void minutesAsClock();
    void colourAsStatus_data();
    void colourAsStatus();
};

void tst_value_formats::minutesAsClock_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("clock");

    const auto row = [](int minutes, const char *clock) {
        QTest::addRow("%d", minutes) << minutes << QString::fromLatin1(clock);
    };
    row(0, "12:00 Mid");
    row(5, "12:05 AM");
    row(59, "12:59 AM");
    row(60, "1:00 AM");
    row(545, "9:05 AM");
    row(719, "11:59 AM");
    row(720, "12:00 Noon");
    row(750, "12:30 PM");
    row(778, "12:58 PM");
    row(779, "0:59 PM"); // kept on purpose
    row(780, "1:00 PM");
    row(1439, "11:59 PM");
    row(1440, "12:00 Mid");
    row(-5, "12:0-5 AM"); // the remainder keeps its sign
}

void tst_value_formats::minutesAsClock()
{
    QFETCH(int, minutes);
    QTEST(MinToTime(qint16(minutes)), "clock");
}

void tst_value_formats::colourAsStatus_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("status");

    const auto row = [](int code, const char *status) { QTest::addRow("%d", code) << code << QString::fromLatin1(status); };
    row(192, "Missed");
    row(193, "Patient Cancel");
    row(194, "Therapist Cancel");
    row(195, "");
    row(49152, "Kept");
    row(12632064, "Group");
    row(16711680, "Pending");
    row(16711681, "Pending");
    row(126322256, "Tentative");
    row(126322257, "");
    row(0, "");
    row(-1, "");
}

void tst_value_formats::colourAsStatus()
{
    QFETCH(int, code);
    QTEST(QString(ColorToStatus(code)), "status");
}

QTEST_MAIN(tst_value_formats)
#include "tst_value_formats.moc"
