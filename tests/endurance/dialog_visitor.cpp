#include "endurance/dialog_visitor.h"

#include "support/typing.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <array>
#include <functional>

namespace corvane::test {

namespace {

QWidget &child(QDialog &dialog, const char *name)
{
    auto *found = dialog.findChild<QWidget *>(QString::fromLatin1(name));
    if (!found)
        qFatal("no control %s in \"%s\"", name, qPrintable(dialog.windowTitle()));
    return *found;
}

void click(QDialog &dialog, const char *name)
{
    QTest::mouseClick(&child(dialog, name), Qt::LeftButton);
}

void logOn(QDialog &dialog)
{
    typeInto(&child(dialog, "txtuid"), QStringLiteral("nora"));
    typeInto(&child(dialog, "txtpw"), QStringLiteral("clinic"));
    click(dialog, "cmdok");
}

void choosePatient(QDialog &dialog)
{
    typeInto(&child(dialog, "txtsearch"), QStringLiteral("Abb"));
    QTest::keyClick(&child(dialog, "txtsearch"), Qt::Key_Return);
    QTest::keyClick(&child(dialog, "ctList1"), Qt::Key_Home);
    click(dialog, "cmdselect");
}

void chooseAll(QDialog &dialog)
{
    click(dialog, "Command1_0");
    click(dialog, "cmdselect");
}

struct Answer
{
    const char *form;
    std::function<void(QDialog &)> give;
};

const std::array kAnswers{
    Answer{"frmReportrLogon", logOn},
    Answer{"frmDefDates", [](QDialog &dialog) { click(dialog, "Command1"); }},
    Answer{"frmspatnt", choosePatient},
    Answer{"frmRptrDates", [](QDialog &dialog) { click(dialog, "Command1"); }},
    Answer{"frmRptrSelect", chooseAll},
    Answer{"frmCVRProps", [](QDialog &dialog) { click(dialog, "Command5"); }},
    Answer{"frmAbout", [](QDialog &dialog) { click(dialog, "cmdOK"); }},
};

} // namespace

DialogVisitor::DialogVisitor()
{
    qApp->installEventFilter(this);
}

bool DialogVisitor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        auto *widget = qobject_cast<QWidget *>(watched);
        m_shown += widget && widget->isWindow() ? 1 : 0;
        auto *dialog = qobject_cast<QDialog *>(widget);
        if (dialog && dialog->isModal())
            QTimer::singleShot(0, dialog, [this, dialog] { answer(*dialog); });
    }
    return false;
}

void DialogVisitor::answer(QDialog &dialog)
{
    if (auto *box = qobject_cast<QMessageBox *>(&dialog))
        return QTest::mouseClick(box->defaultButton(), Qt::LeftButton);
    if (auto *files = qobject_cast<QFileDialog *>(&dialog)) {
        files->setOption(QFileDialog::DontConfirmOverwrite); // the answer would leave the dialog
                                                             // open, and asked no more
        files->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_fileName);
        QMetaObject::invokeMethod(files, "accept");
        return;
    }
    for (const Answer &answer : kAnswers) {
        if (dialog.objectName() == QLatin1StringView(answer.form))
            answer.give(dialog);
    }
    if (dialog.isVisible())
        dialog.reject(); // what has no answer here, or did not take it, is closed as a user would
}

} // namespace corvane::test
