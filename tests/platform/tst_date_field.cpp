#include "platform/controls/date_picker.h"
#include "support/suite.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QCalendarWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

using namespace corvane;

class tst_date_field : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void typing_data();
    void typing();
    void pasting_data();
    void pasting();
    void everyWayInUnderstandsADate();
    void arrowsKeepTheCursorAndStopAtTheEnds();
    void aClickIntoAnEmptyMaskStartsInFront();
    void changesAreToldOnce();
    void anotherOrderShowsTheSameDate();
    void theWidthFitsTheContent();
    void aReadOnlyFieldStaysAsItIs();
    void theCalendarByKeys_data();
    void theCalendarByKeys();
    void theCalendarByMouse();
};

namespace {

/// A field and something to move the focus to.
struct Form {
    QWidget window;
    DateField field;
    QPushButton other;

    Form()
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(&field);
        layout->addWidget(&other);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        field.setFocus(Qt::TabFocusReason);
    }
    ~Form()
    {
        field.setParent(nullptr);
        other.setParent(nullptr);
    }
};

/// Types a text; '<' backspace, '^' up, 'v' down, '>' the next widget.
void type(QWidget &widget, const QString &keys)
{
    static const QHash<QChar, Qt::Key> special{
        {u'<', Qt::Key_Backspace}, {u'^', Qt::Key_Up}, {u'v', Qt::Key_Down}, {u'>', Qt::Key_Tab}};
    for (const QChar key : keys) {
        if (const auto found = special.constFind(key); found != special.cend())
            QTest::keyClick(&widget, *found);
        else
            QTest::keyClick(&widget, key.toLatin1());
    }
}

std::optional<QDate> someDate()
{
    return QDate(2026, 11, 1);
}

QDate fixedToday()
{
    return {2026, 11, 22};
}

} // namespace

void tst_date_field::typing_data()
{
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("iso");
    QTest::addColumn<int>("dayNumber");

    const auto row = [](const char *name, int order, const char *keys, const char *text, const char *iso, int number) {
        QTest::newRow(name) << order << QString::fromLatin1(keys) << QString::fromLatin1(text)
                            << QString::fromLatin1(iso) << number;
    };
    row("nothing typed is no text", 0, "", "", "", 0);
    row("digits flow over the separators", 0, "11012026", "11/01/2026", "2026-11-01", 46327);
    row("separators may be typed too", 0, "11/01/2026", "11/01/2026", "2026-11-01", 46327);
    row("a separator completes one digit", 0, "1/1/2026", "01/01/2026", "2026-01-01", 46023);
    row("other separators do the same", 0, "1.1-2026", "01/01/2026", "2026-01-01", 46023);
    row("separators in front say nothing", 0, "//11/01/2026", "11/01/2026", "2026-11-01", 46327);
    row("day first", 1, "31122026", "31/12/2026", "2026-12-31", 46387);
    row("day first refuses month 31", 1, "12312026", "12/31/2026", "", 0);
    row("year first", 2, "20261101", "2026/11/01", "2026-11-01", 46327);
    row("year first with separators", 2, "2026-1-5", "2026/01/5_", "", 0);
    row("leaving the field completes one digit", 2, "2026-1-5>", "2026/01/05", "2026-01-05", 46027);
    row("an unknown order is month first", 7, "11302026", "11/30/2026", "2026-11-30", 46356);
    row("half a year is no date", 0, "110120", "11/01/20__", "", 0);
    row("half a year stays half when left", 0, "110120>", "11/01/20__", "", 0);
    row("no such day", 0, "02302026", "02/30/2026", "", 0);
    row("no leap day in 2026", 0, "02292026", "02/29/2026", "", 0);
    row("a leap day in 2028", 0, "02292028", "02/29/2028", "2028-02-29", 46812);
    row("month 13", 0, "13012026", "13/01/2026", "", 0);
    row("year 0 does not exist", 0, "01010000", "01/01/0000", "", 0);
    row("letters are refused", 0, "1x1a0b12c026", "11/01/2026", "2026-11-01", 46327);
    row("digits beyond the end are refused", 0, "110120269", "11/01/2026", "2026-11-01", 46327);
    row("backspace opens a gap", 0, "11012026<", "11/01/202_", "", 0);
    row("backspace back to nothing", 0, "11<<", "", "", 0);
    row("up is the next day", 0, "12312026^", "01/01/2027", "2027-01-01", 46388);
    row("down is the day before", 0, "03012028v", "02/29/2028", "2028-02-29", 46812);
    row("up on half a date does nothing", 0, "1101^", "11/01/____", "", 0);
    row("day number 2", 0, "01011900", "01/01/1900", "1900-01-01", 2);
    row("day number 1 means no date", 0, "12311899", "12/31/1899", "1899-12-31", 1);
    row("older dates are below", 0, "12291899", "12/29/1899", "1899-12-29", -1);
}

void tst_date_field::typing()
{
    QFETCH(int, order);
    QFETCH(QString, keys);
    QFETCH(QString, text);
    QFETCH(QString, iso);
    QFETCH(int, dayNumber);

    Form form;
    form.field.setDateOrder(order);
    type(form.field, keys);
    QCOMPARE(form.field.text(), text);
    QCOMPARE(form.field.date().has_value(), !iso.isEmpty());
    QCOMPARE(form.field.date().value_or(QDate()).toString(Qt::ISODate), iso);
    QCOMPARE(form.field.dayNumber(), dayNumber);
    if (text.isEmpty())
        QCOMPARE(form.field.displayText(), order == 2 ? QStringLiteral("____/__/__") : QStringLiteral("__/__/____"));
}

void tst_date_field::pasting_data()
{
    QTest::addColumn<int>("order");
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, int order, const char *pasted, const char *text) {
        QTest::newRow(name) << order << QString::fromLatin1(pasted) << QString::fromLatin1(text);
    };
    const char *kept = "05/06/2020";
    row("as displayed", 0, "11/01/2026", "11/01/2026");
    row("single digits", 0, "11/1/2026", "11/01/2026");
    row("single digits, day first", 1, "11/1/2026", "11/01/2026");
    row("standard form", 0, "2026-11-01", "11/01/2026");
    row("standard form, day first", 1, "2026-11-01", "01/11/2026");
    row("standard form, year first", 2, "2026-11-1", "2026/11/01");
    row("month first in a year-first field", 2, "11/1/2026", "2026/11/01");
    row("points and blanks", 1, "  1. 11. 2026\n", "01/11/2026");
    row("eight digits", 0, "11012026", "11/01/2026");
    row("eight digits, year first", 2, "20261101", "2026/11/01");
    row("short year of this century", 0, "11/1/29", "11/01/2029");
    row("short year of the last century", 0, "11/1/30", "11/01/1930");
    row("short year in front", 2, "26/11/1", "2026/11/01");
    row("some digits go to the cursor", 0, "12", "12/06/2020");
    row("an impossible date is refused", 0, "2/30/2026", kept);
    row("words are refused", 0, "Nov 1, 2026", kept);
    row("a sentence with digits is refused", 0, "on 11/1/2026", kept);
    row("four parts are refused", 0, "11/1/2026/5", kept);
    row("digits of other scripts are refused", 0, "1\xb2/1/2026", kept);
    row("nothing is refused", 0, "", kept);
}

void tst_date_field::pasting()
{
    QFETCH(int, order);
    QFETCH(QString, pasted);
    QFETCH(QString, text);

    Form form;
    form.field.setDateOrder(order);
    form.field.setText(QStringLiteral("2020-05-06"));
    form.field.setCursorPosition(0);
    QGuiApplication::clipboard()->setText(pasted);
    QTest::keyClick(&form.field, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(form.field.text(), text);
}

void tst_date_field::everyWayInUnderstandsADate()
{
    Form form;
    const QString pasted = QStringLiteral("2026-11-1");
    QGuiApplication::clipboard()->setText(pasted);

    QContextMenuEvent wanted(QContextMenuEvent::Keyboard, QPoint(4, 4), form.field.mapToGlobal(QPoint(4, 4)));
    QApplication::sendEvent(&form.field, &wanted);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    menu->findChild<QAction *>(QStringLiteral("paste"))->trigger();
    menu->close();
    QCOMPARE(form.field.date(), someDate());

    form.field.clear();
    QMimeData data;
    data.setText(pasted);
    QDragEnterEvent enter(QPoint(4, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form.field, &enter);
    QDropEvent drop(QPointF(4, 4), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form.field, &drop);
    QCOMPARE(form.field.date(), someDate());

    form.field.clear();
    QInputMethodEvent method;
    method.setCommitString(QStringLiteral("11/01/2026"));
    QApplication::sendEvent(&form.field, &method);
    QCOMPARE(form.field.date(), someDate());

    form.field.setText(pasted);
    QCOMPARE(form.field.date(), someDate());
    form.field.setText(QStringLiteral("soon"));
    QCOMPARE(form.field.text(), QString());
}

void tst_date_field::arrowsKeepTheCursorAndStopAtTheEnds()
{
    Form form;
    form.field.setDate(QDate(9999, 12, 30));
    form.field.setCursorPosition(4);
    type(form.field, QStringLiteral("^^^"));
    QCOMPARE(form.field.date(), QDate(9999, 12, 31));
    QCOMPARE(form.field.cursorPosition(), 4);
    form.field.setDate(QDate(1, 1, 2));
    type(form.field, QStringLiteral("vvv"));
    QCOMPARE(form.field.date(), QDate(1, 1, 1));
}

void tst_date_field::aClickIntoAnEmptyMaskStartsInFront()
{
    Form form;
    QTest::mouseClick(&form.field, Qt::LeftButton, {}, QPoint(form.field.width() - 8, form.field.height() / 2));
    type(form.field, QStringLiteral("11012026"));
    QCOMPARE(form.field.date(), someDate());

    QTest::keyClick(&form.field, Qt::Key_A, Qt::ControlModifier);
    type(form.field, QStringLiteral("12"));
    QCOMPARE(form.field.text(), QStringLiteral("12/__/____"));
}

void tst_date_field::changesAreToldOnce()
{
    Form form;
    QSignalSpy changed(&form.field, &DateField::changed);
    form.field.setDate(*someDate());
    QCOMPARE(changed.size(), 1);
    form.field.setDate(*someDate());
    QCOMPARE(changed.size(), 1);
    type(form.field, QStringLiteral("^"));
    QCOMPARE(changed.size(), 2);
    form.field.clear();
    QCOMPARE(changed.size(), 3);
    type(form.field, QStringLiteral("1/"));
    QCOMPARE(changed.size(), 5); // the digit, and its completion
}

void tst_date_field::anotherOrderShowsTheSameDate()
{
    Form form;
    form.field.setDate(*someDate());
    QSignalSpy changed(&form.field, &DateField::changed);
    form.field.setDateOrder(1);
    QCOMPARE(form.field.text(), QStringLiteral("01/11/2026"));
    form.field.setDateOrder(2);
    QCOMPARE(form.field.text(), QStringLiteral("2026/11/01"));
    QCOMPARE(form.field.date(), someDate());
    QCOMPARE(changed.size(), 2);
    type(form.field, QStringLiteral("<"));
    form.field.clear();
    form.field.setDateOrder(0);
    QCOMPARE(form.field.displayText(), QStringLiteral("__/__/____"));
}

void tst_date_field::theWidthFitsTheContent()
{
    for (const int pixels : {11, 16, 32}) {
        DateField field;
        QFont font = field.font();
        font.setPixelSize(pixels);
        field.setFont(font);
        field.setDate(QDate(2026, 10, 28));
        field.resize(field.sizeHint());
        // Were the text wider than the field, the end of the line would scroll into view and hide its start.
        field.end(false);
        QCOMPARE(field.cursorPositionAt(QPoint(3, field.height() / 2)), 0);
        QVERIFY2(field.width() < QFontMetrics(font).horizontalAdvance(field.text()) + 2 * pixels,
            qPrintable(QString::number(pixels)));
    }
}

void tst_date_field::aReadOnlyFieldStaysAsItIs()
{
    Form form;
    form.field.setDate(*someDate());
    form.field.setReadOnly(true);
    QGuiApplication::clipboard()->setText(QStringLiteral("12/24/2026"));
    type(form.field, QStringLiteral("^12/v<"));
    QTest::keyClick(&form.field, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(form.field.date(), someDate());
}

void tst_date_field::theCalendarByKeys_data()
{
    QTest::addColumn<QDate>("before");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<QDate>("after");

    const QDate first(2026, 11, 1);
    QTest::newRow("enter takes the marked day")
        << first << QList<int>{Qt::Key_Right, Qt::Key_Return} << QDate(2026, 11, 2);
    QTest::newRow("a week on") << first << QList<int> {Qt::Key_Down, Qt::Key_Return} << QDate(2026, 11, 8);
    QTest::newRow("escape leaves the date") << first << QList<int> {Qt::Key_Right, Qt::Key_Escape} << first;
    QTest::newRow("F4 leaves the date") << first << QList<int> {Qt::Key_Right, Qt::Key_F4} << first;
    QTest::newRow("an empty field starts at today")
        << QDate() << QList<int>{Qt::Key_Left, Qt::Key_Return} << QDate(2026, 11, 21);
    QTest::newRow("the button is today") << first << QList<int> {Qt::Key_Tab, Qt::Key_Space} << fixedToday();
}

void tst_date_field::theCalendarByKeys()
{
    QFETCH(QDate, before);
    QFETCH(QList<int>, keys);
    QFETCH(QDate, after);

    DatePicker picker(fixedToday);
    picker.show();
    picker.setFocus();
    picker.setDate(before);
    QTest::keyClick(&picker, Qt::Key_Down, Qt::AltModifier);
    QVERIFY(picker.isCalendarOpen());
    QWidget *popup = QApplication::activePopupWidget();
    QVERIFY(popup);
    for (const int key : keys) {
        QVERIFY(picker.isCalendarOpen());
        QTest::keyClick(popup->focusWidget(), Qt::Key(key));
    }
    QVERIFY(!picker.isCalendarOpen());
    QCOMPARE(picker.date().value_or(QDate()), after);
    QTest::keyClick(&picker, Qt::Key_F4);
    QVERIFY(picker.isCalendarOpen());
}

void tst_date_field::theCalendarByMouse()
{
    DatePicker picker(fixedToday);
    picker.resize(picker.sizeHint());
    picker.show();
    auto *arrow = picker.findChild<QToolButton *>(QStringLiteral("calendarArrow"));
    QVERIFY(arrow->geometry().left() >= picker.fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000")));
    QTest::mouseClick(arrow, Qt::LeftButton);
    QVERIFY(picker.isCalendarOpen());
    auto *calendar = QApplication::activePopupWidget()->findChild<QCalendarWidget *>(QStringLiteral("calendar"));
    QCOMPARE(calendar->selectedDate(), fixedToday());
    Q_EMIT calendar->clicked(QDate(2026, 12, 24));
    QCOMPARE(picker.date(), QDate(2026, 12, 24));
    QVERIFY(!picker.isCalendarOpen());
    picker.setEnabled(false);
    picker.openCalendar();
    QVERIFY(!picker.isCalendarOpen());
}

QTEST_MAIN(tst_date_field)
#include "tst_date_field.moc"
