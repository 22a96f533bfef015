#include "session/startup.h"
#include "shared/reportr.h"
#include "shell/frm_reportr_logon.h"
#include "shell/logon_box.h"
#include "support/demo_folder.h"
#include "support/recording_host.h"
#include "support/suite.h"

#include <QtGui/QClipboard>
#include <QtGui/QDropEvent>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QKeyEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

using namespace corvane;

namespace {

enum class Way { Key, Paste, Drop, InputMethod };

void bringIn(QLineEdit &box, Way way, const QString &text)
{
    switch (way) {
    case Way::Key:
        for (const QChar c : text) {
            const int key = c == u'\b' ? Qt::Key_Backspace : c == u'\r' ? Qt::Key_Return : 0;
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(c));
            QApplication::sendEvent(&box, &press);
        }
        break;
    case Way::Paste:
        QApplication::clipboard()->setText(text);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        break;
    case Way::Drop: {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(QPoint(4, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&box, &enter);
        QDropEvent drop(QPointF(4, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&box, &drop);
        break;
    }
    case Way::InputMethod: {
        QInputMethodEvent composing(text, {});
        QApplication::sendEvent(&box, &composing);
        QInputMethodEvent done;
        done.setCommitString(text);
        QApplication::sendEvent(&box, &done);
        break;
    }
    }
}

} // namespace

Q_DECLARE_METATYPE(Way)

class tst_logon_form : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void letsInOnlyWhatTheFilterLetsIn_data();
    void letsInOnlyWhatTheFilterLetsIn();
    void okNeedsBothBoxes();
    void logsOn();
    void staysOpenAfterARefusal();
    void cancels();
    void showsNoticeAndVersion();

private:
    template <typename Control>
    Control *control(const char *name) { return m_form->findChild<Control *>(QString::fromLatin1(name)); }
    LogonBox *uid() { return control<LogonBox>("txtuid"); }
    LogonBox *pw() { return control<LogonBox>("txtpw"); }
    QPushButton *ok() { return control<QPushButton>("cmdok"); }
    void fill(const char *user, const char *password)
    {
        uid()->clear();
        pw()->clear();
        QTest::keyClicks(uid(), QString::fromLatin1(user));
        QTest::keyClicks(pw(), QString::fromLatin1(password));
    }

    test::DemoFolder m_demo {20};
    Reportr m_state;
    test::RecordingHost m_host;
    std::unique_ptr<frmReportrLogon> m_form;
};

void tst_logon_form::initTestCase()
{
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));
    m_state.programFolder = m_demo.path();
    QCOMPARE(connectDatabases(m_state, m_host), StartState::Connected);
}

void tst_logon_form::init()
{
    Suite::init();
    m_host.messages.clear();
    m_state.loggedOn = false;
    m_form = std::make_unique<frmReportrLogon>(m_state, m_host);
    m_form->show();
    m_form->activateWindow();
}

void tst_logon_form::letsInOnlyWhatTheFilterLetsIn_data()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("typed") << Way::Key;
    QTest::newRow("pasted") << Way::Paste;
    QTest::newRow("dropped") << Way::Drop;
    QTest::newRow("from an input method") << Way::InputMethod;
}

void tst_logon_form::letsInOnlyWhatTheFilterLetsIn()
{
    QFETCH(Way, way);
    for (LogonBox *box : {uid(), pw()}) {
        for (int code = 1; code <= 255; ++code) {
            box->setText(QStringLiteral("A"));
            box->end(false);
            bringIn(*box, way, QString(QChar(code)));
            const bool allowed = code >= 48 && code <= 126 && code != 124;
            QString found = box->text();
            if (way == Way::Drop) // a drop goes where the pointer is
                found = found.startsWith(u'A') || found.size() < 2 ? found : QString(u'A' + found.first(1));
            const bool erased = way == Way::Key && code == 8;
            QCOMPARE(found, erased ? QString() : allowed ? QString(u'A' + QString(QChar(code))) : QStringLiteral("A"));
        }
        for (const QString &text : {QStringLiteral("ab c"), QStringLiteral("x|y"), QString::fromUtf8("na\u00efve"), QStringLiteral("o'neill")}) {
            box->setText(QStringLiteral("A"));
            box->end(false);
            if (way != Way::Key) { // refused whole, not letter by letter
                bringIn(*box, way, text);
                QCOMPARE(box->text(), QStringLiteral("A"));
            }
        }
    }
    QVERIFY(m_form->isVisible());
}

void tst_logon_form::okNeedsBothBoxes()
{
    QVERIFY(!ok()->isEnabled());
    fill("nora", "");
    QVERIFY(!ok()->isEnabled());
    fill("", "x");
    QVERIFY(!ok()->isEnabled());
    fill("nora", "clinic");
    QVERIFY(ok()->isEnabled());
    QTest::keyClick(pw(), Qt::Key_Return); // Enter is filtered out like any other foreign key
    QVERIFY(m_form->isVisible());
    QVERIFY(!m_form->accepted());
}

void tst_logon_form::logsOn()
{
    fill("nora", "clinic");
    QTest::mouseClick(ok(), Qt::LeftButton);
    QVERIFY(!m_form->isVisible());
    QVERIFY(m_form->accepted());
    QVERIFY(control<QCheckBox>("Check1")->isChecked());
    QCOMPARE(m_state.gUserID, QStringLiteral("nora"));
}

void tst_logon_form::staysOpenAfterARefusal()
{
    const QList<std::pair<const char *, const char *>> refused {{"nora", "wrong"}, {"frontdesk", "welcome"}, {"nobody", "x"}};
    for (const auto &[user, password] : refused) {
        fill(user, password);
        QTest::mouseClick(ok(), Qt::LeftButton);
        QVERIFY(m_form->isVisible());
        QVERIFY(!m_form->accepted());
        QCOMPARE(m_form->focusWidget(), uid());
    }
    QCOMPARE(m_host.messages.size(), 3);
    QVERIFY(m_host.messages[0].endsWith(QStringLiteral("Invalid UID or Password. Try again.")));
    QVERIFY(m_host.messages[1].endsWith(QStringLiteral("You do not have access rights to the Reporter. Try another logon or Exit.")));
}

void tst_logon_form::cancels()
{
    fill("nora", "clinic");
    QTest::keyClick(m_form.get(), Qt::Key_Escape);
    QVERIFY(!m_form->isVisible());
    QVERIFY(!m_form->accepted());
    QVERIFY(!m_state.loggedOn);
}

void tst_logon_form::showsNoticeAndVersion()
{
    QCOMPARE(control<QLabel>("lblVersion")->text(), QStringLiteral("Version 1.0"));
    QVERIFY(!control<QLabel>("lblNotice")->text().isEmpty());
    QCOMPARE(control<QLabel>("lblNotice")->textFormat(), Qt::PlainText);
    QCOMPARE(pw()->displayText(), QString());
    fill("x", "abc");
    QCOMPARE(pw()->displayText(), QStringLiteral("***"));
}

QTEST_MAIN(tst_logon_form)
#include "tst_logon_form.moc"
