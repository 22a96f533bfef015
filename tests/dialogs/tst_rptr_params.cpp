#include "dialogs/frm_rptr_params.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>

using namespace corvane;

namespace {

const QString kClause = QStringLiteral("PARAMETERS [First day] DateTime #11/1/2026#, Payer Text 'ANC', Least Number, All Bit yes; SELECT 1");

struct Opened {
    explicit Opened(const QString &sql = kClause)
        : form(*ParametersClause::parse(sql, DateOrder::MonthDayYear), 0, [] { return QDate(2026, 11, 2); }, nullptr)
    {
        form.show();
    }
    QWidget *control(int index) { return form.findChild<QWidget *>(QStringLiteral("txtparam%1").arg(index)); }
    QPushButton *ok() { return form.findChild<QPushButton *>(QStringLiteral("cmdok")); }

    frmRptrParams form;
};

} // namespace

class tst_rptr_params : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void asksOncePerParameter();
    void okWaitsUntilEveryValueFits();
    void cancelAnswersNothing();
    void manyParametersScroll();
};

void tst_rptr_params::asksOncePerParameter()
{
    Opened opened;
    test::typeInto(opened.control(2), QStringLiteral("2.5"));
    test::typeInto(opened.control(0), QStringLiteral("11052026"));
    QTest::keyClick(opened.control(3), Qt::Key_Space);
    QCOMPARE(opened.control(1)->accessibleName(), QStringLiteral("Payer"));
    QTest::keyClick(opened.control(1), Qt::Key_Return);
    QVERIFY(!opened.form.isVisible());
    const ParameterAnswers expected {{QStringLiteral("first day"), QDate(2026, 11, 5)}, {QStringLiteral("payer"), QStringLiteral("ANC")},
        {QStringLiteral("least"), 2.5}, {QStringLiteral("all"), false}};
    QVERIFY(opened.form.answers() == expected);
}

void tst_rptr_params::okWaitsUntilEveryValueFits()
{
    Opened opened;
    QVERIFY(!opened.ok()->isEnabled());
    test::typeInto(opened.control(2), QStringLiteral("many"));
    QVERIFY(!opened.ok()->isEnabled());
    test::typeInto(opened.control(2), QStringLiteral("7"));
    QVERIFY(opened.ok()->isEnabled());
    test::typeInto(opened.control(0), QStringLiteral("13402026"));
    QVERIFY(!opened.ok()->isEnabled());
}

void tst_rptr_params::cancelAnswersNothing()
{
    Opened opened;
    test::typeInto(opened.control(2), QStringLiteral("7"));
    QTest::keyClick(opened.control(2), Qt::Key_Escape);
    QVERIFY(!opened.form.isVisible());
    QVERIFY(!opened.form.answers());
}

void tst_rptr_params::manyParametersScroll()
{
    QStringList parameters;
    for (int i = 0; i < 60; ++i)
        parameters += QStringLiteral("p%1 Text").arg(i);
    Opened opened(QString(u"PARAMETERS " + parameters.join(u',') + u"; SELECT 1"));
    QVERIFY(opened.form.height() < 900);
    QVERIFY(opened.ok()->isVisible());
}

QTEST_MAIN(tst_rptr_params)
#include "tst_rptr_params.moc"
