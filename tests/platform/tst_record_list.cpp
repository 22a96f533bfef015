#include "platform/controls/record_list.h"
#include "support/suite.h"

#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <array>

using namespace corvane;

namespace {

const QStringList kNames {QStringLiteral("Zoe"), QStringLiteral("beta Health"), QStringLiteral("Alpha"),
    QStringLiteral("Beta House"), QStringLiteral("*star"), QStringLiteral("bravo")};

void fill(RecordModel &model, const QStringList &names, bool withMarks)
{
    model.setColumns({QStringLiteral("Name"), QStringLiteral("Account")}, withMarks);
    model.beginFill();
    for (const QString &name : names) {
        const QString account = QStringLiteral("A%1").arg(names.indexOf(name));
        const std::array<QStringView, 2> columns {name, account};
        model.add(columns, QString(u"id of " + name));
    }
    model.endFill();
}

struct Opened {
    explicit Opened(bool withMarks = true, const QStringList &names = kNames)
        : accepted(&list, &RecordList::accepted)
        , marksChanged(&list.model(), &RecordModel::marksChanged)
    {
        fill(list.model(), names, withMarks);
        list.resize(500, 300);
        list.show();
        list.setFocus();
    }
    QPoint middle(int row) const { return list.visualRect(list.model().index(row, 0)).center(); }
    QPoint checkBox(int row) const
    {
        const QRect rect = list.visualRect(list.model().index(row, 0));
        return {rect.left() + rect.height() / 2, rect.center().y()};
    }
    void click(QPoint position) { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, position); }

    RecordList list;
    QSignalSpy accepted;
    QSignalSpy marksChanged;
};

} // namespace

class tst_record_list : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void keepsTextsInTheirOrder();
    void addsManyRowsWithoutASignalEach();
    void countsMarks();
    void arrowKeysSelect();
    void spaceMarks();
    void checkBoxMarksAndDoubleClickAccepts();
    void enterAcceptsOnlyWhatIsSelected();
    void typedLettersJump_data();
    void typedLettersJump();
    void typedLettersBeginAnewAfterAPause();
};

void tst_record_list::cleanup()
{
    QApplication::setKeyboardInputInterval(400);
}

void tst_record_list::keepsTextsInTheirOrder()
{
    RecordModel model;
    fill(model, {QStringLiteral("Ünal 😀"), QString(), QStringLiteral("Ann")}, false);
    fill(model, {QStringLiteral("Zoë"), QString(), QStringLiteral("Ann 😀")}, true);
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.text(0, 0), QStringLiteral("Zoë"));
    QCOMPARE(model.text(1, 0), QString());
    QCOMPARE(model.text(1, 1), QStringLiteral("A1"));
    QCOMPARE(model.hidden(1), QStringLiteral("id of "));
    QCOMPARE(model.text(2, 0), QStringLiteral("Ann 😀"));
    QCOMPARE(model.hidden(2), QStringLiteral("id of Ann 😀"));
    QCOMPARE(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Account"));
    QCOMPARE(model.data(model.index(2, 0), Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QVERIFY(!model.data(model.index(2, 1), Qt::CheckStateRole).isValid());
}

void tst_record_list::addsManyRowsWithoutASignalEach()
{
    constexpr int kRows = 200'000;
    Opened opened(true, {});
    RecordModel &model = opened.list.model();
    const QSignalSpy inserted(&model, &RecordModel::rowsInserted);
    model.beginFill();
    for (int row = 0; row < kRows; ++row) {
        const QString name = QStringLiteral("Name %1").arg(row, 6, 10, QLatin1Char('0'));
        const std::array<QStringView, 2> columns {name, u"A"};
        model.add(columns, name);
        QCOMPARE(model.rowCount(), 0);
    }
    model.endFill();
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(model.rowCount(), kRows);
    QTest::keyClicks(&opened.list, QStringLiteral("name 199999"));
    QVERIFY(opened.list.currentRow() >= 0);
    QTest::keyClick(&opened.list, Qt::Key_End);
    QCOMPARE(opened.list.currentRow(), kRows - 1);
    QCOMPARE(model.hidden(kRows - 1), QStringLiteral("Name 199999"));
    model.clear();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(opened.list.currentRow(), -1);
}

void tst_record_list::countsMarks()
{
    Opened opened;
    RecordModel &model = opened.list.model();
    model.setMarked(1, true);
    model.setMarked(1, true);
    model.setMarked(4, true);
    QCOMPARE(model.markedCount(), 2);
    QCOMPARE(opened.marksChanged.size(), 2);
    model.invertMarks();
    QCOMPARE(model.markedCount(), 4);
    QVERIFY(!model.isMarked(4) && model.isMarked(5));
    model.markAll(true);
    QCOMPARE(model.markedCount(), 6);
    model.markAll(false);
    QCOMPARE(model.markedCount(), 0);
    QCOMPARE(opened.marksChanged.size(), 5);
}

void tst_record_list::arrowKeysSelect()
{
    Opened opened(false);
    QCOMPARE(opened.list.currentRow(), -1);
    QTest::keyClick(&opened.list, Qt::Key_Down);
    QCOMPARE(opened.list.currentRow(), 0);
    QTest::keyClick(&opened.list, Qt::Key_Down);
    QCOMPARE(opened.list.currentRow(), 1);
    QTest::keyClick(&opened.list, Qt::Key_Up);
    QCOMPARE(opened.list.currentRow(), 0);
    opened.click(opened.middle(3));
    QCOMPARE(opened.list.currentRow(), 3);
}

void tst_record_list::spaceMarks()
{
    Opened opened;
    RecordModel &model = opened.list.model();
    QTest::keyClick(&opened.list, Qt::Key_Space);
    QVERIFY(model.isMarked(0));
    QTest::keyClick(&opened.list, Qt::Key_Down);
    QTest::keyClick(&opened.list, Qt::Key_Space);
    QCOMPARE(model.markedCount(), 2);
    // Also when another column was clicked.
    opened.click(opened.list.visualRect(model.index(1, 1)).center());
    QTest::keyClick(&opened.list, Qt::Key_Space);
    QCOMPARE(model.markedCount(), 1);
    QVERIFY(!model.isMarked(1));

    Opened empty(true, {});
    QTest::keyClick(&empty.list, Qt::Key_Space);
    QTest::keyClick(&empty.list, Qt::Key_Down);
    QCOMPARE(empty.marksChanged.size(), 0);
}

void tst_record_list::checkBoxMarksAndDoubleClickAccepts()
{
    Opened opened;
    const RecordModel &model = opened.list.model();
    opened.click(opened.checkBox(2));
    QVERIFY(model.isMarked(2));
    opened.click(opened.middle(2));
    QVERIFY(model.isMarked(2));
    QWidget *viewport = opened.list.viewport();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, opened.checkBox(2));
    QCOMPARE(opened.accepted.size(), 0);
    QVERIFY(model.isMarked(2));
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, opened.middle(3));
    QCOMPARE(opened.accepted.size(), 1);
    QCOMPARE(opened.accepted.at(0).at(0).toInt(), 3);
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, QPoint(50, 290));
    QTest::mouseDClick(viewport, Qt::RightButton, {}, opened.middle(3));
    QCOMPARE(opened.accepted.size(), 1);
}

void tst_record_list::enterAcceptsOnlyWhatIsSelected()
{
    Opened opened;
    QTest::keyClick(&opened.list, Qt::Key_Return);
    QCOMPARE(opened.accepted.size(), 0);
    opened.list.selectRow(4);
    QTest::keyClick(&opened.list, Qt::Key_Enter);
    QCOMPARE(opened.accepted.size(), 1);
    QCOMPARE(opened.accepted.at(0).at(0).toInt(), 4);
}

void tst_record_list::typedLettersJump_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("row");
    QTest::newRow("the next that begins with it") << -1 << QStringLiteral("b") << 1;
    QTest::newRow("not the row itself") << 1 << QStringLiteral("b") << 3;
    QTest::newRow("from the top again") << 5 << QStringLiteral("B") << 1;
    QTest::newRow("letters add up") << -1 << QStringLiteral("BR") << 5;
    QTest::newRow("one letter again walks on") << -1 << QStringLiteral("bbb") << 5;
    QTest::newRow("no such row") << 2 << QStringLiteral("q") << 2;
    QTest::newRow("signs that trees use") << 0 << QStringLiteral("*") << 4;
    QTest::newRow("a blank within") << -1 << QStringLiteral("beta ho") << 3;
}

void tst_record_list::typedLettersJump()
{
    QFETCH(int, from);
    QFETCH(QString, typed);
    QFETCH(int, row);
    QApplication::setKeyboardInputInterval(3'600'000);
    Opened opened(false);
    if (from >= 0)
        opened.list.selectRow(from);
    QTest::keyClicks(&opened.list, typed);
    QCOMPARE(opened.list.currentRow(), row);
}

void tst_record_list::typedLettersBeginAnewAfterAPause()
{
    QApplication::setKeyboardInputInterval(0); // every letter comes after a pause
    Opened opened(false);
    QTest::keyClicks(&opened.list, QStringLiteral("ba"));
    QCOMPARE(opened.list.currentRow(), 2);
}

QTEST_MAIN(tst_record_list)
#include "tst_record_list.moc"
