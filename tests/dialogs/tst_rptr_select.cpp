#include "dialogs/frm_rptr_select.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/record_list.h"
#include "platform/database/connection.h"
#include "shared/run_time_fault.h"
#include "support/canned_driver.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

using namespace corvane;

namespace {

const QStringList kFields {QStringLiteral("Payer"), QStringLiteral("PayerNo")};
const QList<QStringList> kPayers {{QStringLiteral("Alpha Mutual"), QStringLiteral("11")},
    {QStringLiteral("Beta Health"), QStringLiteral("o'b")}, {QStringLiteral("Gamma Benefits"), QStringLiteral("33")},
    {QStringLiteral("Self pay"), QStringLiteral("44")}};

QString request(int mode, int quote, const QString &table = QStringLiteral("Payers"))
{
    return QStringLiteral("in {*SQL01*}Payer|PayerNo|%1|| Choose R&D payers |%2|%3|{*/SQL*};**INSSQL01**")
        .arg(table).arg(mode).arg(quote);
}

struct Opened {
    explicit Opened(const QString &sql, const QList<QStringList> &rows = kPayers, const QStringList &fields = kFields)
        : driver(new test::CannedDriver(fields, rows))
        , connection({}, std::unique_ptr<Driver>(driver))
        , form(connection, host, {}, nullptr)
    {
        form.RequestSQL = sql;
        form.ResultSQL = QStringLiteral("old");
        form.load();
        form.show();
        list().setFocus();
    }
    template <typename Control>
    Control *control(const char *name) { return form.findChild<Control *>(QString::fromLatin1(name)); }
    RecordList &list() { return *control<RecordList>("ctList1"); }
    QPushButton *button(const char *name) { return control<QPushButton>(name); }
    bool okIsOn() { return button("cmdselect")->isEnabled(); }
    QString label(const char *name) { return control<QLabel>(name)->text(); }

    void click(const char *name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    QPoint middle(int row) { return list().visualRect(list().model().index(row, 0)).center(); }
    void clickRow(int row) { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middle(row)); }
    void mark(int row)
    {
        clickRow(row);
        QTest::keyClick(&list(), Qt::Key_Space);
    }

    test::RecordingHost host;
    test::CannedDriver *driver;
    Connection connection;
    frmRptrSelect form;
};

} // namespace

class tst_rptr_select : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheList();
    void okFollowsTheMarks();
    void okFollowsTheClickOfASingleChoice();
    void takesOneRow_data();
    void takesOneRow();
    void takesSeveralRows_data();
    void takesSeveralRows();
    void acceptsFromTheList();
    void acceptsNothingMarked();
    void cancelLeavesNothing();
    void emptyListSaysSo();
    void incompleteListSaysSo();
    void badRequestsAreNotShown();
    void loadsAgain();
};

void tst_rptr_select::showsTheList()
{
    Opened opened(request(1, 0));
    QCOMPARE(opened.form.windowTitle(), QStringLiteral("Report Selection"));
    QCOMPARE(opened.driver->queries, QStringList(QStringLiteral("Select Payer, PayerNo from Payers order by Payer")));
    QCOMPARE(opened.label("lblAction"), QStringLiteral("Choose R&D payers"));
    QCOMPARE(opened.label("pnlcount"), QStringLiteral("4 Records      "));
    QCOMPARE(opened.control<FloodPanel>("pnlprogress")->floodPercent(), 0);
    QVERIFY(!opened.control<QLabel>("lblIncomplete")->isVisible());
    QCOMPARE(opened.list().model().text(1, 0), QStringLiteral("Beta Health"));
    QCOMPARE(opened.list().model().headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Payer"));
    QCOMPARE(opened.button("Command1_0")->text(), QStringLiteral("Select ALL"));
    QCOMPARE(opened.button("Command1_1")->text(), QStringLiteral("Inverse Selection"));
    QCOMPARE(opened.button("Command1_2")->text(), QStringLiteral("Clear Selected"));
    QCOMPARE(opened.button("cmdselect")->text(), QStringLiteral("&OK"));
    QCOMPARE(opened.button("cmdcancel")->text(), QStringLiteral("&Cancel"));
    QCOMPARE(opened.form.ResultSQL, QString());
    QCOMPARE(opened.host.messages, QStringList());
}

void tst_rptr_select::okFollowsTheMarks()
{
    Opened opened(request(1, 0));
    QVERIFY(opened.okIsOn());
    opened.clickRow(1);
    QVERIFY(opened.okIsOn());
    opened.mark(1);
    QVERIFY(opened.okIsOn());
    opened.mark(1);
    QVERIFY(!opened.okIsOn());
    opened.click("Command1_1");
    QVERIFY(opened.okIsOn());
    QCOMPARE(opened.list().model().markedCount(), 4);
    opened.click("Command1_1");
    QVERIFY(!opened.okIsOn());
    opened.click("Command1_0");
    QVERIFY(opened.okIsOn());
    opened.click("Command1_2");
    QVERIFY(!opened.okIsOn());
}

void tst_rptr_select::okFollowsTheClickOfASingleChoice()
{
    Opened opened(request(0, 0));
    QVERIFY(opened.okIsOn());
    QVERIFY(!opened.button("Command1_0")->isEnabled());
    QVERIFY(!opened.button("Command1_1")->isEnabled());
    opened.click("Command1_2");
    QVERIFY(!opened.okIsOn());
    opened.clickRow(2);
    QVERIFY(opened.okIsOn());
    opened.click("Command1_2");
    QVERIFY(!opened.okIsOn());
    QCOMPARE(opened.list().currentRow(), -1);
}

void tst_rptr_select::takesOneRow_data()
{
    QTest::addColumn<int>("quote");
    QTest::addColumn<int>("downs");
    QTest::addColumn<QString>("result");
    QTest::newRow("bare") << 0 << 2 << QStringLiteral("in o'b;o'b");
    QTest::newRow("quoted") << 1 << 2 << QStringLiteral("in 'o''b';'o''b'");
    QTest::newRow("none") << 1 << 0 << QStringLiteral("in ;");
}

void tst_rptr_select::takesOneRow()
{
    QFETCH(int, quote);
    QFETCH(int, downs);
    QFETCH(QString, result);
    Opened opened(request(0, quote));
    for (int i = 0; i < downs; ++i)
        QTest::keyClick(&opened.list(), Qt::Key_Down);
    opened.click("cmdselect");
    QVERIFY(!opened.form.isVisible());
    QCOMPARE(opened.form.ResultSQL, result);
}

void tst_rptr_select::takesSeveralRows_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QString>("inToken");
    QTest::addColumn<QString>("atMarkers");
    const auto row = [](const char *name, int mode, const QList<int> &rows, const char *inToken, const char *atMarkers) {
        QTest::newRow(name) << mode << rows << QString::fromLatin1(inToken) << QString::fromLatin1(atMarkers);
    };
    row("in the list's order", 1, {3, 1}, "( 'o''b', '44' ) ", "( 'o''b', '44' ) ");
    row("joined", 2, {0, 2}, "( '11'+'|'+ '33' ) ", "( '11', '33' ) ");
    row("joined, all", 2, {0, 1, 2, 3}, "('') ", "('') ");
    row("all", 1, {0, 1, 2, 3}, "( '11', 'o''b', '33', '44' ) ", "( '11', 'o''b', '33', '44' ) ");
}

void tst_rptr_select::takesSeveralRows()
{
    QFETCH(int, mode);
    QFETCH(QList<int>, rows);
    QFETCH(QString, inToken);
    QFETCH(QString, atMarkers);
    Opened opened(request(mode, 1));
    for (const int row : rows)
        opened.mark(row);
    opened.click("cmdselect");
    QCOMPARE(opened.form.result(), int(QDialog::Accepted));
    QCOMPARE(opened.form.ResultSQL, QString(u"in " + inToken + u';' + atMarkers));
    QCOMPARE(opened.form.SelectParamTable,
        (SelectionTable {{}, {QStringLiteral("**INSSQL01**"), atMarkers, QString()}}));
    QCOMPARE(opened.form.answers().values.size(), rows.size());
    QCOMPARE(applySelection(opened.form.RequestSQL, opened.form.answers()).sql, opened.form.ResultSQL);
}

void tst_rptr_select::acceptsFromTheList()
{
    Opened single(request(0, 0));
    QTest::keyClicks(&single.list(), QStringLiteral("ga"));
    QTest::keyClick(&single.list(), Qt::Key_Return);
    QCOMPARE(single.form.ResultSQL, QStringLiteral("in 33;33"));

    Opened unmarked(request(1, 0));
    QTest::mouseDClick(unmarked.list().viewport(), Qt::LeftButton, {}, unmarked.middle(2));
    QCOMPARE(unmarked.form.ResultSQL, QStringLiteral("in ( 33 ) ;( 33 ) "));

    Opened marked(request(1, 0));
    marked.mark(0);
    QTest::mouseDClick(marked.list().viewport(), Qt::LeftButton, {}, marked.middle(2));
    QCOMPARE(marked.form.ResultSQL, QStringLiteral("in ( 11 ) ;( 11 ) "));
}

void tst_rptr_select::acceptsNothingMarked()
{
    for (const int mode : {1, 2}) {
        Opened opened(request(mode, 1));
        opened.click("cmdselect");
        QCOMPARE(opened.form.ResultSQL, QStringLiteral("in (NULL ) ;(NULL ) "));
    }
}

void tst_rptr_select::cancelLeavesNothing()
{
    for (const bool byKey : {true, false}) {
        Opened opened(request(1, 0));
        opened.mark(1);
        if (byKey)
            QTest::keyClick(&opened.list(), Qt::Key_Escape);
        else
            opened.click("cmdcancel");
        QVERIFY(!opened.form.isVisible());
        QCOMPARE(opened.form.ResultSQL, QString());
        QVERIFY(opened.form.SelectParamTable.empty());
        QCOMPARE(opened.form.answers(), SelectionAnswers());
    }
}

void tst_rptr_select::emptyListSaysSo()
{
    for (const int mode : {0, 1, 2}) {
        Opened opened(request(mode, 1), {});
        QCOMPARE(opened.host.messages, QStringList(QStringLiteral("|0|No records found for search criteria. Try another.")));
        QCOMPARE(opened.label("pnlcount"), QStringLiteral("0 Records      "));
        QTest::keyClick(&opened.list(), Qt::Key_Return);
        QCOMPARE(opened.form.result(), int(QDialog::Accepted));
        QCOMPARE(opened.form.ResultSQL, mode == 0 ? QStringLiteral("in ;") : QStringLiteral("in (NULL ) ;(NULL ) "));
    }
}

void tst_rptr_select::incompleteListSaysSo()
{
    // A query with one column gives no value for its first row.
    const QList<QStringList> rows {{QStringLiteral("Alpha Mutual")}, {QStringLiteral("Beta Health")}};
    Opened opened(request(2, 1), rows, {QStringLiteral("Payer")});
    QCOMPARE(opened.host.messages, QStringList());
    auto *line = opened.control<QLabel>("lblIncomplete");
    QVERIFY(line->isVisible());
    QVERIFY(line->text().startsWith(u"The list is incomplete. "));
    QVERIFY(line->text().contains(u"Cause: The query returns 1 fields"));
    QCOMPARE(opened.label("pnlcount"), QStringLiteral("1 Records      "));
    opened.click("Command1_0");
    opened.click("cmdselect");
    QVERIFY(opened.form.isVisible());
    QVERIFY(line->text().startsWith(u"All records cannot be selected, because their list is incomplete. "));
    QTRY_VERIFY(line->geometry().top() > opened.list().geometry().bottom());
    QCOMPARE(opened.form.ResultSQL, QString());
    QCOMPARE(opened.host.messages, QStringList());
}

void tst_rptr_select::badRequestsAreNotShown()
{
    QVERIFY_EXCEPTION_THROWN(Opened(request(1, 0).toLower()), RunTimeFault);
    QVERIFY_EXCEPTION_THROWN(Opened(request(1, 0, QStringLiteral("fail"))), DatabaseError);
}

void tst_rptr_select::loadsAgain()
{
    Opened opened(request(1, 0));
    opened.mark(1);
    opened.click("cmdselect");
    opened.form.load();
    QCOMPARE(opened.form.ResultSQL, QString());
    QVERIFY(opened.form.SelectParamTable.empty());
    QCOMPARE(opened.list().model().markedCount(), 0);
    QCOMPARE(opened.driver->queries.size(), 2);
}

QTEST_MAIN(tst_rptr_select)
#include "tst_rptr_select.moc"
