#include "dialogs/frm_about.h"
#include "support/suite.h"

#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

using namespace corvane;

class tst_about : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void tellsVersionAndNotice_data();
    void tellsVersionAndNotice();
    void okCloses();
};

void tst_about::tellsVersionAndNotice_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shown");
    QTest::newRow("three numbers") << QStringLiteral("1.10.3") << QStringLiteral("Version 1.10.3");
    QTest::newRow("a missing revision is 0")
        << QStringLiteral("2.4") << QStringLiteral("Version 2.4.0");
}

void tst_about::tellsVersionAndNotice()
{
    QFETCH(QString, version);
    QCoreApplication::setApplicationVersion(version);
    QWidget busy;
    busy.setCursor(Qt::WaitCursor);
    const frmAbout form(&busy);
    QTEST(form.findChild<QLabel *>(QStringLiteral("lblVersion"))->text(), "shown");
    QVERIFY(form.findChild<QLabel *>(QStringLiteral("lblDescription"))
                ->text()
                .startsWith(u"Copyright"));
    QCOMPARE(busy.cursor().shape(), Qt::ArrowCursor);
}

void tst_about::okCloses()
{
    frmAbout form(nullptr);
    form.show();
    QTest::mouseClick(form.findChild<QPushButton *>(QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(!form.isVisible());
}

QTEST_MAIN(tst_about)
#include "tst_about.moc"
