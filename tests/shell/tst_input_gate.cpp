#include "shell/input_gate.h"
#include "support/suite.h"

#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

using namespace corvane;

namespace {

/// Counts how often it is painted.
class Painted : public QWidget
{
public:
    int times = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++times; }
};

} // namespace

class tst_input_gate : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void repaintsTenTimesASecond_data();
    void repaintsTenTimesASecond();
};

void tst_input_gate::repaintsTenTimesASecond_data()
{
    QTest::addColumn<int>("rowsPerMs");
    QTest::addColumn<int>("msPerRow");
    QTest::newRow("a hundred rows a millisecond") << 100 << 1;
    QTest::newRow("a row a millisecond") << 1 << 1;
    QTest::newRow("rows that just miss a turn") << 1 << 49;
    QTest::newRow("slow rows") << 1 << 90;
}

void tst_input_gate::repaintsTenTimesASecond()
{
    QFETCH(int, rowsPerMs);
    QFETCH(int, msPerRow);
    constexpr qint64 kRunMs = 2'000;
    Painted window;
    qint64 now = 0;
    InputGate gate(&window, [&] { return now; });
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    gate.close();
    qint64 longestGap = 0;
    qint64 lastPainted = 0;
    window.times = 0;
    while (now < kRunMs) {
        now += msPerRow;
        for (int row = 0; row < rowsPerMs; ++row) {
            const int before = window.times;
            window.update();
            gate.serve();
            if (window.times == before)
                continue;
            longestGap = qMax(longestGap, now - lastPainted);
            lastPainted = now;
        }
    }
    gate.open();
    QVERIFY2(longestGap > 0 && longestGap <= 100, qPrintable(QString::number(longestGap)));
    QVERIFY2(window.times <= kRunMs / 50,
        qPrintable(QString::number(window.times))); // the rows get the rest of the time
}

QTEST_MAIN(tst_input_gate)
#include "tst_input_gate.moc"
