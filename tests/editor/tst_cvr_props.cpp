// The properties form driven by real keys and clicks, and the files that it leaves.

#include "editor/column_ruler.h"
#include "editor/frm_cvr_props.h"
#include "platform/files/file_hold.h"
#include "support/hindrances.h"
#include "support/modal_answers.h"
#include "support/scripted_desktop.h"
#include "support/suite.h"
#include "support/typing.h"

#include <QtCore/QMimeData>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>
#include <QtGui/QDropEvent>
#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFontDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeView>

#include <functional>
#include <memory>

using namespace corvane;

namespace {

const QByteArray kDefinition
    = "[Data Source]\nRecordSource1=SELECT last, first, day FROM visits\nRecordSource2=ORDER BY "
      "last\nFields=3\n"
      "[Columns]\nFields=0|1|2\nHeading=Last|First|Day;\nSpacing=2880|2160|>1440;\nPageColumns=1\n"
      "[Layout]\nOrientation=P\nPageBreak=N\n"
      "[Header]\nLText={Date}\nCText=Visits\nRText=North\n"
      "[Footer]\nLText=left\nCText=Page %d\nRText=\n";

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The form on a definition of its own.
struct Opened
{
    explicit Opened(const QByteArray &bytes = kDefinition)
    {
        write(bytes);
        form = std::make_unique<frmCVRProps>(file, desktop, nullptr);
        isShown = form->Form_Load();
        form->show();
        QApplication::setActiveWindow(form.get());
    }

    void write(const QByteArray &bytes) const
    {
        QFile target(file);
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size())
            qFatal("no file to test with");
    }
    QByteArray read() const
    {
        QFile source(file);
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray("(none)");
    }

    template <typename Control> Control *control(const char *name)
    {
        return form->findChild<Control *>(QString::fromLatin1(name));
    }
    QTreeView *list() { return control<QTreeView>("ctList1"); }
    void click(const char *name) { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
    void type(const char *name, const char *words)
    {
        test::typeInto(control<QWidget>(name), text(words));
    }
    QPoint middle(int row, int column = 0)
    {
        return list()->visualRect(list()->model()->index(row, column)).center();
    }
    void clickRow(int row)
    {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, middle(row));
    }
    int selected() { return list()->selectionModel()->selectedRows().value(0).row(); }

    /// "caption size" of each row.
    QString rows()
    {
        QStringList rows;
        for (int row = 0; row < list()->model()->rowCount(); ++row) {
            const auto cell
                = [&](int column) { return list()->model()->index(row, column).data().toString(); };
            rows += QString(cell(0) + u' ' + cell(1));
        }
        return rows.join(u", ");
    }
    QString lastMessage() const
    {
        return desktop.messages.isEmpty() ? QString() : desktop.messages.back().text;
    }

    /// Opens the row's caption with F2, replaces it and ends with a key.
    void editCaption(int row, const QString &caption, Qt::Key last)
    {
        clickRow(row);
        QTest::keyClick(list(), Qt::Key_F2);
        auto *editor = list()->viewport()->findChild<QLineEdit *>();
        QVERIFY(editor);
        test::typeInto(editor, caption);
        QTest::keyClick(editor, last);
        QTRY_VERIFY(!list()->viewport()->findChild<QLineEdit *>());
    }
    /// Drops a dragged row at a height of the list.
    void drop(int row, int y)
    {
        const std::unique_ptr<QMimeData> data(
            list()->model()->mimeData({list()->model()->index(row, 0)}));
        QDragEnterEvent enter(QPoint(20, y), Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(list()->viewport(), &enter);
        QDragMoveEvent over(QPoint(20, y), Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(list()->viewport(), &over);
        QDropEvent let(QPointF(20, y), Qt::MoveAction, data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(list()->viewport(), &let);
    }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("visits.rpt"));
    test::ScriptedDesktop desktop;
    std::unique_ptr<frmCVRProps> form;
    bool isShown = false;
};

/// What stands in the way of writing, until the function that it returns is called.
using Hindrance = std::function<std::function<void()>(const Opened &opened)>;

std::function<void()> readOnlyFile(const Opened &opened)
{
    QFile::setPermissions(opened.folder.path(), QFile::Permissions(0x7777));
    QFile::setPermissions(opened.file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    return [somebody = std::make_shared<test::Unprivileged>(), file = opened.file]() mutable {
        somebody.reset();
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    };
}

std::function<void()> fullDisk(const Opened &)
{
    return [disk = std::make_shared<test::FullDisk>(100)]() mutable { disk.reset(); };
}

std::function<void()> vanishedFile(const Opened &opened)
{
    const QString away = opened.file + u".away";
    QFile::rename(opened.file, away);
    return [away, file = opened.file] { QFile::rename(away, file); };
}

} // namespace

Q_DECLARE_METATYPE(Hindrance)
Q_DECLARE_METATYPE(std::deque<corvane::MessageAnswer>)

class tst_cvr_props : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheDefinition();
    void offersTheUnevenChoices();
    void buttonsAndKeysChangeTheOrder();
    void rowsAreDragged();
    void captionsAreEditedInPlace();
    void sizesAreCheckedBeforeTheyAreStored();
    void sizesTakeNumbersOnly();
    void theRulerTellsTheFit();
    void okWritesAndCloses();
    void cancelWritesNothing();
    void refusalsPointAtWhatIsToBeMended_data();
    void refusalsPointAtWhatIsToBeMended();
    void aFailedSaveLosesNothing_data();
    void aFailedSaveLosesNothing();
    void theSecondOfTwoUsersChooses_data();
    void theSecondOfTwoUsersChooses();
    void whatAnotherProgramWritesIsNotWaitedForLong();
    void anotherKindOfFileIsNeverWritten_data();
    void anotherKindOfFileIsNeverWritten();
    void theFontStaysInTheForm();
    void problemsShowWhileThereAreAny();
};

void tst_cvr_props::showsTheDefinition()
{
    Opened opened;
    QVERIFY(opened.isShown);
    QCOMPARE(opened.form->windowTitle(), text("Report Properties"));
    QCOMPARE(opened.control<QComboBox>("cboHeader0")->currentText(), text("{Date}"));
    QCOMPARE(opened.control<QComboBox>("cboHeader2")->currentText(), text("North"));
    QCOMPARE(opened.control<QComboBox>("cbofooter0")->currentText(), text("left"));
    QCOMPARE(opened.control<QPlainTextEdit>("txtsql")->toPlainText(),
        text("SELECT last, first, day FROM visits"));
    QVERIFY(opened.control<QPlainTextEdit>("txtsql")->isReadOnly());
    QCOMPARE(opened.control<QLabel>("lblload")->text(), text("0|1|2"));
    QCOMPARE(opened.rows(), text("Last 2, First 1.5, Day 1"));
    QCOMPARE(opened.control<QLineEdit>("txtcolsize")->text(), text("2"));
    opened.clickRow(1);
    QCOMPARE(opened.control<QLineEdit>("txtcolsize")->text(), text("1.5"));
    QCOMPARE(opened.control<QComboBox>("cboorient")->currentIndex(), 0);
    QCOMPARE(opened.control<QCheckBox>("ckPageBreak")->text(), text("Page Break on Groups"));
    const QAbstractItemModel &model = *opened.list()->model();
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), text("Field Name"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), text("Column Size"));
    const QStringList captions{
        text("Update"), text("Up"), text("Down"), text("Font..."), text("Ok"), text("Cancel")};
    for (int n = 1; n <= captions.size(); ++n)
        QCOMPARE(
            opened.control<QPushButton>(qPrintable(QStringLiteral("Command%1").arg(n)))->text(),
            captions[n - 1]);
}

void tst_cvr_props::offersTheUnevenChoices()
{
    Opened opened;
    const auto choices = [&](const char *name) {
        QStringList items;
        for (int i = 0; i < opened.control<QComboBox>(name)->count(); ++i)
            items += opened.control<QComboBox>(name)->itemText(i);
        return items.join(u'|');
    };
    QCOMPARE(choices("cboHeader0") + u'/' + choices("cboHeader1") + u'/' + choices("cboHeader2"),
        text("{Date}/{Date}/"));
    QCOMPARE(choices("cbofooter0") + u'/' + choices("cbofooter1") + u'/' + choices("cbofooter2"),
        text("Page %d/Page %d/{Date}|Page %d"));
    opened.type("cboHeader0", "{d");
    QCOMPARE(opened.control<QComboBox>("cboHeader0")->currentText(),
        text("{d")); // a choice never completes what is typed
}

void tst_cvr_props::buttonsAndKeysChangeTheOrder()
{
    Opened opened;
    opened.click("Command2");
    QCOMPARE(opened.rows(), text("Last 2, First 1.5, Day 1")); // the first row stays first
    opened.click("Command3");
    QCOMPARE(opened.rows(), text("First 1.5, Last 2, Day 1"));
    QCOMPARE(opened.selected(), 1); // the selection goes along
    opened.list()->setFocus();
    QTest::keyClick(opened.list(), Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(opened.list(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(opened.rows(), text("First 1.5, Day 1, Last 2"));
    QCOMPARE(opened.selected(), 2);
    QTest::keyClick(opened.list(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(opened.rows(), text("First 1.5, Last 2, Day 1"));
    QCOMPARE(opened.control<QLineEdit>("txtcolsize")->text(), text("2"));
}

void tst_cvr_props::rowsAreDragged()
{
    Opened opened;
    const auto top = [&](int row) {
        return opened.list()->visualRect(opened.list()->model()->index(row, 0)).top();
    };
    opened.drop(2, top(0));
    QCOMPARE(opened.rows(), text("Day 1, Last 2, First 1.5"));
    opened.drop(0, top(2));
    QCOMPARE(opened.rows(), text("Last 2, Day 1, First 1.5"));
    opened.drop(0, opened.list()->viewport()->height() - 2); // below all
    QCOMPARE(opened.rows(), text("Day 1, First 1.5, Last 2"));
    Opened other;
    const std::unique_ptr<QMimeData> foreign(
        other.list()->model()->mimeData({other.list()->model()->index(2, 0)}));
    QVERIFY(!opened.list()->model()->dropMimeData(foreign.get(), Qt::MoveAction, 0, 0, {}));
    QCOMPARE(opened.rows(), text("Day 1, First 1.5, Last 2"));
    opened.click("Command5");
    QVERIFY(opened.read().contains(
        "Fields=2|1|0\nHeading=Day|First|Last;\nSpacing=>1440|2160|2880;\n"));
}

void tst_cvr_props::captionsAreEditedInPlace()
{
    Opened opened;
    opened.editCaption(1, text("Given name"), Qt::Key_Return);
    QCOMPARE(opened.rows(), text("Last 2, Given name 1.5, Day 1"));
    opened.editCaption(1, text("Other"), Qt::Key_Escape);
    QCOMPARE(opened.rows(), text("Last 2, Given name 1.5, Day 1"));
    QVERIFY(opened.form->isVisible()); // neither key was the form's
    QTest::mouseDClick(opened.list()->viewport(), Qt::LeftButton, {}, opened.middle(0, 1));
    QVERIFY(!opened.list()->viewport()->findChild<QLineEdit *>()); // sizes are not
    opened.clickRow(0);
    QTest::mouseDClick(opened.list()->viewport(), Qt::LeftButton, {}, opened.middle(0));
    auto *editor = opened.list()->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    test::typeInto(editor, text("Family"));
    opened.click("Command5"); // what is being typed counts
    QVERIFY(opened.read().contains("Heading=Family|Given name|Day;\n"));
}

void tst_cvr_props::sizesAreCheckedBeforeTheyAreStored()
{
    Opened opened;
    opened.type("txtcolsize", "0");
    opened.click("Command1");
    QCOMPARE(opened.rows(), text("Last 2, First 1.5, Day 1"));
    opened.type("txtcolsize", "5"); // 7.5 together: fits exactly
    QTest::keyClick(opened.control<QLineEdit>("txtcolsize"), Qt::Key_Return);
    opened.type("txtcolsize", "6.25");
    opened.click("Command1"); // what stands still fits, so the new size is taken
    QCOMPARE(opened.rows(), text("Last 6.25, First 1.5, Day 1"));
    QVERIFY(opened.form->isVisible());
    QVERIFY(opened.desktop.messages.isEmpty());
    opened.type("txtcolsize", "1");
    opened.click("Command1");
    QCOMPARE(opened.rows(), text("Last 6.25, First 1.5, Day 1"));
    const test::ScriptedDesktop::Message refusal{
        text("Total of column sizes cannot be more than page width."), 48, QString()};
    QCOMPARE(opened.desktop.messages, QList{refusal});
    opened.control<QComboBox>("cboorient")->setCurrentIndex(1);
    opened.click("Command1");
    QCOMPARE(opened.rows(), text("Last 1, First 1.5, Day 1"));
}

void tst_cvr_props::sizesTakeNumbersOnly()
{
    Opened opened;
    opened.type("txtcolsize", "-1e,2x5.6");
    QCOMPARE(opened.control<QLineEdit>("txtcolsize")->text(), text("1.25"));
}

void tst_cvr_props::theRulerTellsTheFit()
{
    Opened opened;
    auto *ruler = opened.control<ColumnRuler>("ruler");
    const auto *total = opened.control<QLabel>("lblTotal");
    QCOMPARE(ruler->accessibleDescription(), text("Last 2, First 1.5, Day 1. 4.50 of 7.50 inches"));
    QTest::mouseClick(
        ruler, Qt::LeftButton, {}, QPoint(int(ruler->width() * 4.0 / 7.5), ruler->height() / 2));
    QCOMPARE(opened.selected(), 2);
    opened.type("txtcolsize", "5");
    opened.click("Command1");
    QCOMPARE(total->text(), text("8.50 of 7.50 inches: 1.00 inches too wide for the page"));
    opened.control<QComboBox>("cboorient")->setCurrentIndex(1);
    QCOMPARE(total->text(), text("8.50 of 10.00 inches"));
}

void tst_cvr_props::okWritesAndCloses()
{
    Opened opened;
    opened.type("cboHeader1", "Visits of the week");
    opened.type("cbofooter2", "{Date}");
    opened.control<QComboBox>("cboorient")->setCurrentIndex(1);
    QTest::mouseClick(opened.control<QCheckBox>("ckPageBreak"), Qt::LeftButton, {},
        QPoint(6, opened.control<QCheckBox>("ckPageBreak")->height() / 2));
    opened.click("Command3");
    opened.type("txtcolsize", "1.25");
    opened.click("Command1");
    opened.click("Command5");
    QVERIFY(!opened.form->isVisible());
    QCOMPARE(opened.form->result(), int(QDialog::Accepted));
    QCOMPARE(opened.control<QLabel>("lblfin")->text(), text("1|0|2"));
    const QByteArray after = "[Data Source]\nRecordSource1=SELECT last, first, day FROM "
                             "visits\nRecordSource2=ORDER BY last\nFields=3\n"
                             "[Columns]\nFields=1|0|2\nHeading=First|Last|Day;\nSpacing=2160|1800|>"
                             "1440;\nPageColumns=1\n"
                             "[Layout]\nOrientation=L\nPageBreak=Y\n"
                             "[Header]\nLText={Date}\nCText=Visits of the week\nRText=North\n"
                             "[Footer]\nLText=left\nCText=Page %d\nRText={Date}\n";
    QCOMPARE(opened.read(), after);
}

void tst_cvr_props::cancelWritesNothing()
{
    Opened opened;
    opened.type("cboHeader1", "other");
    opened.click("Command3");
    opened.click("Command6");
    QVERIFY(!opened.form->isVisible());
    QCOMPARE(opened.read(), kDefinition);
}

void tst_cvr_props::refusalsPointAtWhatIsToBeMended_data()
{
    QTest::addColumn<QByteArray>("definition");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("header");
    QTest::addColumn<QString>("words");
    QTest::newRow("a bar in a caption")
        << kDefinition << text("a|b") << QString() << text("Column 2, \"a|b\", holds a bar");
    QTest::newRow("a letter that the code page lacks")
        << kDefinition << text("First") << text("\u0141ukasz")
        << text("The left header text holds the character \"\u0141\" (U+0141)");
    QTest::newRow("wider than any paper")
        << QByteArray(kDefinition).replace("2160", "33000") << text("First") << QString()
        << text("Column 2, \"First\", is 22.92 inches wide.");
}

void tst_cvr_props::refusalsPointAtWhatIsToBeMended()
{
    QFETCH(QByteArray, definition);
    QFETCH(QString, caption);
    QFETCH(QString, header);
    QFETCH(QString, words);
    Opened opened(definition);
    opened.editCaption(1, caption, Qt::Key_Return);
    opened.control<QComboBox>("cboHeader0")->setEditText(header);
    opened.click("Command5");
    QVERIFY(opened.form->isVisible());
    QVERIFY2(opened.lastMessage().startsWith(words), qPrintable(opened.lastMessage()));
    QCOMPARE(opened.read(), definition);
    QWidget *focus = opened.form->focusWidget();
    if (!header.isEmpty())
        QCOMPARE(focus, opened.control<QWidget>("cboHeader0"));
    else if (caption == u"First")
        QCOMPARE(focus, opened.control<QWidget>("txtcolsize"));
    else
        QCOMPARE(
            qobject_cast<QLineEdit *>(focus) ? qobject_cast<QLineEdit *>(focus)->text() : QString(),
            caption);
}

void tst_cvr_props::aFailedSaveLosesNothing_data()
{
    QTest::addColumn<Hindrance>("hindrance");
    QTest::addColumn<QString>("words");
    QTest::newRow("a read-only file") << Hindrance(
        readOnlyFile) << text("You may not change this file. Ask whoever looks after the folder");
    QTest::newRow("a full disk") << Hindrance(fullDisk) << text("File too large. Have the disk");
    QTest::newRow("a file that is gone")
        << Hindrance(vanishedFile) << text("there is no such file");
}

void tst_cvr_props::aFailedSaveLosesNothing()
{
    QFETCH(Hindrance, hindrance);
    QFETCH(QString, words);
    Opened opened;
    opened.type("cboHeader1", "Typed");
    {
        const auto restore = qScopeGuard(hindrance(opened));
        opened.click("Command5");
    }
    QVERIFY(opened.form->isVisible());
    QCOMPARE(opened.desktop.messages.size(), 1);
    QVERIFY2(opened.lastMessage().contains(words), qPrintable(opened.lastMessage()));
    QVERIFY(opened.lastMessage().contains(u"visits.rpt"));
    QCOMPARE(opened.control<QComboBox>("cboHeader1")->currentText(), text("Typed"));
    QCOMPARE(opened.read(), kDefinition);
    opened.click("Command5");
    QVERIFY(!opened.form->isVisible());
    QCOMPARE(opened.read(), QByteArray(kDefinition).replace("CText=Visits", "CText=Typed"));
}

/// Two forms on one file; the second to save is told and chooses.
void tst_cvr_props::theSecondOfTwoUsersChooses_data()
{
    QTest::addColumn<std::deque<MessageAnswer>>("answers");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("header");
    using enum MessageAnswer;
    const QByteArray mine = "SELECT last, first, day FROM visits\n";
    const QByteArray theirs = "SELECT * FROM visits_new\n";
    QTest::newRow("keeps mine, the query included")
        << std::deque{Yes} << false << text("Mine") << mine << QByteArray("CText=Mine\n");
    QTest::newRow("takes theirs, and the form shows it")
        << std::deque{No} << true << text("Theirs") << theirs << QByteArray("CText=Theirs\n");
    QTest::newRow("goes back, and nothing is written")
        << std::deque{Cancel} << true << text("Mine") << theirs << QByteArray("CText=Theirs\n");
}

void tst_cvr_props::theSecondOfTwoUsersChooses()
{
    QFETCH(std::deque<MessageAnswer>, answers);
    QFETCH(bool, isOpen);
    QFETCH(QString, shown);
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, header);
    Opened opened;
    opened.type("cboHeader1", "Mine");
    opened.write(
        QByteArray(kDefinition).replace("last, first, day FROM visits", "* FROM visits_new"));
    frmCVRProps other(opened.file, opened.desktop, nullptr);
    QVERIFY(other.Form_Load());
    other.findChild<QComboBox *>(text("cboHeader1"))->setEditText(text("Theirs"));
    QTest::mouseClick(other.findChild<QPushButton *>(text("Command5")), Qt::LeftButton);
    QCOMPARE(other.result(), int(QDialog::Accepted));
    QVERIFY(opened.desktop.messages.isEmpty());

    opened.desktop.answers = answers;
    opened.click("Command5");
    QVERIFY(opened.lastMessage().startsWith(text("\"visits.rpt\" was changed by somebody else")));
    QCOMPARE(opened.form->isVisible(), isOpen);
    QCOMPARE(opened.control<QComboBox>("cboHeader1")->currentText(), shown);
    QVERIFY2(opened.read().contains(query) && opened.read().contains(header), opened.read());
    if (shown == u"Theirs") {
        opened.type("cboHeader1", "Mine, later"); // and goes on from there
        opened.click("Command5");
        QCOMPARE(opened.desktop.messages.size(), 1);
        QVERIFY(opened.read().contains(query) && opened.read().contains("CText=Mine, later\n"));
    }
}

void tst_cvr_props::whatAnotherProgramWritesIsNotWaitedForLong()
{
    Opened opened;
    opened.type("cboHeader1", "Typed");
    {
        const FileHold hold(opened.file);
        opened.click("Command5");
    }
    QVERIFY(opened.form->isVisible());
    QVERIFY2(
        opened.lastMessage().contains(u"Another program is writing it. Try again in a moment."),
        qPrintable(opened.lastMessage()));
    QCOMPARE(opened.read(), kDefinition);
    opened.click("Command5");
    QVERIFY(!opened.form->isVisible());
}

void tst_cvr_props::anotherKindOfFileIsNeverWritten_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a designed report")
        << QByteArray("<?xml version=\"1.0\"?>\n<Reports>[Columns]\nPageColumns=1\n</Reports>\n");
    QTest::newRow("a foreign file") << QByteArray("GIF89a\0\1\2", 9);
}

void tst_cvr_props::anotherKindOfFileIsNeverWritten()
{
    QFETCH(QByteArray, bytes);
    Opened refused(bytes);
    QVERIFY(!refused.isShown);
    QCOMPARE(refused.desktop.messages.front().text,
        text("Only tabular reports have properties. \"visits.rpt\" is not a tabular report; it "
             "stays as it is."));
    QCOMPARE(refused.desktop.messages.front().title, text("Report Properties"));
    QCOMPARE(refused.read(), bytes);
    Opened replaced; // while the form is open
    replaced.write(bytes);
    replaced.click("Command5");
    QVERIFY(replaced.form->isVisible());
    QVERIFY(replaced.lastMessage().contains(u"is not a tabular report"));
    QCOMPARE(replaced.read(), bytes);
}

void tst_cvr_props::theFontStaysInTheForm()
{
    Opened opened;
    test::ModalAnswers modal;
    const auto choose = [](bool accept) {
        return [accept](QDialog &dialog) {
            auto *fonts = qobject_cast<QFontDialog *>(&dialog);
            QCOMPARE(fonts->windowTitle(), text("Select Font"));
            fonts->setCurrentFont(QFont(text("Liberation Serif"), 14));
            accept ? dialog.accept() : dialog.reject();
        };
    };
    modal.drive(choose(false));
    opened.click("Command4");
    QCOMPARE(opened.control<QLabel>("lblFont")->text(), text("Arial;10"));
    modal.drive(choose(true));
    opened.click("Command4");
    QCOMPARE(opened.control<QLabel>("lblFont")->text(), text("Liberation Serif;14"));
    opened.click("Command5");
    QCOMPARE(opened.read(), kDefinition);
}

void tst_cvr_props::problemsShowWhileThereAreAny()
{
    Opened opened;
    auto *strip = opened.control<QWidget>("pnlproblems");
    QVERIFY(!strip->isVisible());
    opened.form->setProblems({text("4:9: warning: a"), text("7:1: error: <b>b</b>")});
    QVERIFY(strip->isVisible());
    QCOMPARE(opened.control<QPlainTextEdit>("txtproblems")->toPlainText(),
        text("4:9: warning: a\n7:1: error: <b>b</b>"));
    opened.form->setProblems({});
    QVERIFY(!strip->isVisible());
}

QTEST_MAIN(tst_cvr_props)
#include "tst_cvr_props.moc"
