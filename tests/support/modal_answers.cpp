#include "support/modal_answers.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>

namespace corvane::test {

namespace {

constexpr int kLongestAnswer = 5000;

QMessageBox::StandardButton defaultOf(const QMessageBox &box)
{
    return box.standardButton(box.defaultButton());
}

} // namespace

ModalAnswers::ModalAnswers()
{
    qApp->installEventFilter(this);
}

ModalAnswers::~ModalAnswers()
{
    verify();
}

void ModalAnswers::press(QMessageBox::StandardButton button)
{
    m_expected.push_back([this, button](QDialog &dialog) {
        auto *box = qobject_cast<QMessageBox *>(&dialog);
        if (!box)
            return refuse(dialog, QStringLiteral("a message box was expected, not \"%1\"").arg(dialog.windowTitle()));
        QAbstractButton *wanted = box->button(button);
        if (!wanted || !wanted->isEnabled())
            return refuse(dialog, QStringLiteral("the button to press is missing in \"%1\"").arg(box->text()));
        QTest::mouseClick(wanted, Qt::LeftButton);
    });
}

void ModalAnswers::drive(Driver driver)
{
    m_expected.push_back(std::move(driver));
}

void ModalAnswers::verify(const std::source_location &where)
{
    for (; !m_expected.empty(); m_expected.pop_front())
        m_faults += QStringLiteral("an announced dialog did not appear");
    const QStringList faults = std::exchange(m_faults, {});
    if (!faults.isEmpty())
        QTest::qFail(qPrintable(faults.join(QStringLiteral("; "))), where.file_name(), int(where.line()));
}

bool ModalAnswers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog && dialog->isModal())
            QTimer::singleShot(0, dialog, [this, dialog] { answer(*dialog); });
    }
    return false;
}

void ModalAnswers::answer(QDialog &dialog)
{
    if (const auto *box = qobject_cast<QMessageBox *>(&dialog)) {
        m_messages.append({box->windowTitle(), box->text(), box->icon(), box->standardButtons(), defaultOf(*box),
            box->textFormat()});
    }
    if (m_expected.empty())
        return refuse(dialog, QStringLiteral("\"%1\" appeared unannounced").arg(dialog.windowTitle()));
    QTimer::singleShot(kLongestAnswer, &dialog, [this, &dialog] {
        if (dialog.isVisible())
            refuse(dialog, QStringLiteral("\"%1\" stays open").arg(dialog.windowTitle()));
    });
    const Driver driver = std::move(m_expected.front());
    m_expected.pop_front();
    driver(dialog);
}

void ModalAnswers::refuse(QDialog &dialog, const QString &fault)
{
    m_faults += fault;
    dialog.reject();
}

} // namespace corvane::test
