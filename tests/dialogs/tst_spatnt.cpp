#include "dialogs/frmspatnt.h"
#include "platform/controls/record_list.h"
#include "platform/controls/record_model.h"
#include "session/logon.h"
#include "session/startup.h"
#include "shared/reportr.h"
#include "support/canned_driver.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtTest/QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

using namespace corvane;

class tst_spatnt : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void startsEmpty();
    void searchesByTextAndMode();
    void enterSearchesEvenWithAnEmptyBox();
    void saysWhenNobodyIsFound();
    void choosesBySelectAndByDoubleClick();
    void selectWithoutARowDoesNothing();
    void cancelLeavesNobodyChosen();
    void aFailedSearchIsALineInTheForm();

private:
    template <typename Control>
    Control *control(const char *name) { return m_form->findChild<Control *>(QString::fromLatin1(name)); }
    QLineEdit *box() { return control<QLineEdit>("txtsearch"); }
    RecordList *list() { return control<RecordList>("ctList1"); }
    QString count() { return control<QLabel>("pnlcount")->text(); }
    void search(const QString &text)
    {
        box()->clear();
        QTest::keyClicks(box(), text);
        QTest::mouseClick(control<QPushButton>("cmdsearch"), Qt::LeftButton);
    }

    test::DemoFolder m_demo;
    Reportr m_state;
    test::RecordingHost m_host;
    std::unique_ptr<frmspatnt> m_form;
};

void tst_spatnt::initTestCase()
{
    m_state.programFolder = m_demo.path();
    QCOMPARE(connectDatabases(m_state, m_host), StartState::Connected);
    QVERIFY(logOn(m_state, m_host, QStringLiteral("nora"), QStringLiteral("clinic")));
}

void tst_spatnt::init()
{
    Suite::init();
    m_host.messages.clear();
    m_state.gPatientID = QStringLiteral("old");
    m_state.gPatientText = QStringLiteral("old");
    m_form = std::make_unique<frmspatnt>(m_state, m_host, nullptr);
    m_form->show();
}

void tst_spatnt::startsEmpty()
{
    QCOMPARE(m_form->windowTitle(), QStringLiteral("Select Patient"));
    QCOMPARE(m_state.gPatientID, QString());
    QCOMPARE(m_state.gPatientText, QString());
    QCOMPARE(count(), QStringLiteral("0 Records"));
    auto *mode = control<QComboBox>("cbosearch");
    QStringList modes;
    for (int i = 0; i < mode->count(); ++i)
        modes += mode->itemText(i);
    QCOMPARE(modes, QStringList({QStringLiteral("Last Name"), QStringLiteral("First Name"), QStringLiteral("Account Number"),
                        QStringLiteral("Social Security Number")}));
    QVERIFY(!control<QPushButton>("cmdsearch")->isEnabled());
    QCOMPARE(m_host.messages, QStringList());
}

void tst_spatnt::searchesByTextAndMode()
{
    search(QStringLiteral("O'N"));
    const RecordModel &rows = list()->model();
    QVERIFY(rows.rowCount() > 0);
    QCOMPARE(count(), QString(QString::number(rows.rowCount()) + u" Records      "));
    for (int row = 0; row < rows.rowCount(); ++row)
        QVERIFY(rows.text(row, 0).startsWith(QStringLiteral("O'N")));
    const QString account = rows.text(0, 1);
    const QString id = rows.hidden(0);

    auto *mode = control<QComboBox>("cbosearch");
    mode->setFocus();
    QTest::keyClick(mode, Qt::Key_Down);
    QCOMPARE(mode->currentIndex(), 1);
    QCOMPARE(box()->text(), QString()); // a new mode starts afresh
    QCOMPARE(m_form->focusWidget(), box());
    mode->setCurrentIndex(2);
    search(account);
    QCOMPARE(rows.rowCount(), 1);
    QCOMPARE(rows.hidden(0), id);
}

void tst_spatnt::enterSearchesEvenWithAnEmptyBox()
{
    QTest::keyClick(box(), Qt::Key_Return);
    QVERIFY(list()->model().rowCount() >= 190);
    QVERIFY(m_form->isVisible());
    const int all = list()->model().rowCount();
    search(QStringLiteral("%"));
    QCOMPARE(list()->model().rowCount(), all);
}

void tst_spatnt::saysWhenNobodyIsFound()
{
    search(QStringLiteral("Zzzz"));
    QCOMPARE(m_host.messages, QStringList(QStringLiteral("|0|No records found for search criteria. Try another.")));
    QCOMPARE(count(), QStringLiteral("0 Records      "));
}

void tst_spatnt::choosesBySelectAndByDoubleClick()
{
    search(QStringLiteral("O'N"));
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    const int row = list()->currentRow();
    QVERIFY(row >= 0);
    const QString id = list()->model().hidden(row);
    const QString name = list()->model().text(row, 0);
    QTest::mouseClick(control<QPushButton>("cmdselect"), Qt::LeftButton);
    QVERIFY(!m_form->isVisible());
    QCOMPARE(m_state.gPatientID, id);
    QCOMPARE(m_state.gPatientText, name);

    init();
    search(QStringLiteral("O'N"));
    const QRect place = list()->visualRect(list()->model().index(0, 0));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place.center());
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place.center());
    QVERIFY(!m_form->isVisible());
    QVERIFY(!m_state.gPatientID.isEmpty());
}

void tst_spatnt::selectWithoutARowDoesNothing()
{
    QTest::mouseClick(control<QPushButton>("cmdselect"), Qt::LeftButton);
    QVERIFY(m_form->isVisible());
    QCOMPARE(m_state.gPatientID, QString());
}

void tst_spatnt::cancelLeavesNobodyChosen()
{
    search(QStringLiteral("O'N"));
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(m_form.get(), Qt::Key_Escape);
    QVERIFY(!m_form->isVisible());
    QCOMPARE(m_state.gPatientID, QString());
    QCOMPARE(m_state.gPatientText, QString());
}

void tst_spatnt::aFailedSearchIsALineInTheForm()
{
    Reportr broken;
    broken.gAccessType = 1;
    broken.gConnectString = QStringLiteral("canned");
    broken.gConn = std::make_unique<Connection>(broken.gConnectString, std::make_unique<test::CannedDriver>(QStringList(), QList<QStringList>()));
    m_form = std::make_unique<frmspatnt>(broken, m_host, nullptr);
    m_form->show();
    search(QStringLiteral("fail"));
    QCOMPARE(m_host.messages, QStringList());
    QVERIFY(control<QLabel>("lblIncomplete")->isVisible());
    QCOMPARE(control<QLabel>("lblIncomplete")->text(), QStringLiteral("The list is incomplete. Search again, or type more letters. Cause: no such table: fail"));
}

QTEST_MAIN(tst_spatnt)
#include "tst_spatnt.moc"
