// Every window of the program, met as a user meets it: names for those who cannot see it, keys,
// order, room.

#include "support/suite.h"
#include "support/window_tour.h"

#include <QtGui/QKeySequence>
#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace corvane;

namespace {

/// The controls that a user can reach in a window, without what the toolkit builds them of.
QList<QWidget *> controls(QWidget &window)
{
    QList<QWidget *> found;
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const bool isPart = qobject_cast<QComboBox *>(control->parentWidget())
            || qobject_cast<QLineEdit *>(control->parentWidget())
            || control->objectName().startsWith(u"qt_") || qobject_cast<QScrollBar *>(control)
            || qobject_cast<QTabBar *>(control) || qobject_cast<QHeaderView *>(control);
        if (!isPart && control->window() == &window && control->isVisible() && control->isEnabled()
            && (control->focusPolicy() & Qt::TabFocus) != 0 && !control->focusProxy())
            found += control;
    }
    return found;
}

QString named(const QWidget *control)
{
    return control->objectName().isEmpty() ? QString::fromLatin1(control->metaObject()->className())
                                           : control->objectName();
}

QStringList namelessControls(QWidget &window)
{
    QStringList problems;
    for (const QWidget *control : controls(window)) {
        if (control->objectName().isEmpty() || control->accessibleName().isEmpty())
            problems += QString(named(control) + QStringLiteral(" has no name"));
    }
    return problems;
}

QStringList sharedMnemonics(QWidget &window)
{
    QHash<QString, QString> owners;
    QStringList problems;
    const auto take = [&](const QString &text, const QString &owner) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty() && owners.contains(key))
            problems += QString(
                key + QStringLiteral(": ") + owners[key] + QStringLiteral(" and ") + owner);
        owners.insert(key, owner);
    };
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->isVisible())
            take(button->text(), named(button));
    }
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && label->buddy())
            take(label->text(), named(label));
    }
    const auto *menu = qobject_cast<QMenu *>(&window);
    const auto *main = qobject_cast<QMainWindow *>(&window);
    for (const QAction *item : menu ? menu->actions()
            : main                  ? main->menuBar()->actions()
                                    : QList<QAction *>())
        take(item->text(), item->text());
    return problems;
}

QRect placeOf(const QWidget *control)
{
    return {control->mapTo(control->window(), QPoint()), control->size()};
}

/// Tab goes right within a row and else down, from wherever it starts, and up only into a column further right;
/// the way back to the start may go anywhere.
QStringList leapsOfTab(QWidget &window)
{
    const QList<QWidget *> reachable = controls(window);
    QList<QWidget *> order;
    for (QWidget *at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain()) {
        if (reachable.contains(at))
            order += at;
    }
    QStringList problems;
    if (order.size() != reachable.size())
        problems += QStringLiteral("%1 of %2 controls are reached")
                        .arg(order.size())
                        .arg(reachable.size());
    for (qsizetype i = 1; i < order.size(); ++i) {
        const QRect from = placeOf(order[i - 1]);
        const QRect to = placeOf(order[i]);
        const bool isAbove = to.bottom() < from.top() && to.left() <= from.right();
        const bool isRow = to.center().y() >= from.top() && to.center().y() <= from.bottom()
            && from.height() < 2 * to.height();
        if (isAbove || (isRow && to.right() < from.left()))
            problems += QString(named(order[i - 1]) + QStringLiteral(" to ") + named(order[i]));
    }
    return problems;
}

QStringList cutTexts(QWidget &window)
{
    QStringList problems;
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(control);
        const bool hasText = (label && !label->text().isEmpty())
            || qobject_cast<const QPushButton *>(control)
            || qobject_cast<const QCheckBox *>(control);
        if (!hasText || !control->isVisible()
            || control->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored)
            continue;
        const bool wraps = label && label->wordWrap();
        const bool fits = wraps ? control->heightForWidth(control->width()) <= control->height()
                                : control->minimumSizeHint().width() <= control->width();
        if (!fits)
            problems += QString(named(control) + QStringLiteral(" is cut"));
    }
    return problems;
}

} // namespace

class tst_every_window : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void isInOrder_data();
    void isInOrder();
    void isMet_data();
    void isMet();

private:
    QStringList m_visited;
    QMap<QString, QStringList> m_problems; ///< by rule, each with its window
};

void tst_every_window::initTestCase()
{
    test::WindowTour tour([this](const QString &name, QWidget &window) {
        if (name.startsWith(u"print-") || name.startsWith(u"message-"))
            return; // the toolkit's own
        const std::pair<const char *, QStringList> rules[]{{"names", namelessControls(window)},
            {"mnemonics", sharedMnemonics(window)}, {"tab order", leapsOfTab(window)},
            {"room for texts", cutTexts(window)}};
        for (const auto &[rule, problems] : rules) {
            for (const QString &problem : problems)
                m_problems[QString::fromLatin1(rule)]
                    += QString(name + QStringLiteral(": ") + problem);
        }
    });
    tour.run();
    m_visited = tour.visited();
}

void tst_every_window::isInOrder_data()
{
    QTest::addColumn<QString>("rule");
    for (const char *rule : {"names", "mnemonics", "tab order", "room for texts"})
        QTest::newRow(rule) << QString::fromLatin1(rule);
}

void tst_every_window::isInOrder()
{
    QFETCH(QString, rule);
    QCOMPARE(m_problems.value(rule).join(u'\n'), QString());
}

void tst_every_window::isMet_data()
{
    QTest::addColumn<QString>("window");
    for (const char *window : {"frmReportrLogon", "main-empty", "main-designed", "main-findings",
             "main-tabular", "frmDefDates", "frmRptrDates", "frmRptrSelect", "frmRptrParams",
             "frmspatnt", "frmCVRProps", "frmAbout", "frmHelp", "print-dialog", "message-critical",
             "message-warning", "message-information", "message-question"})
        QTest::newRow(window) << QString::fromLatin1(window);
}

void tst_every_window::isMet()
{
    QFETCH(QString, window);
    QVERIFY(m_visited.contains(window));
}

QTEST_MAIN(tst_every_window)
#include "tst_every_window.moc"
