#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QMessageBox>

#include <deque>
#include <functional>
#include <source_location>

namespace corvane::test {

/// A message box as the user saw it.
struct SeenMessage {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    Qt::TextFormat format = Qt::AutoText;
};

/// Answers real modal dialogs in the order in which they were announced, and fails the test for one that
/// never appeared, appeared unannounced (it is rejected), or is still open long after its answer.
class ModalAnswers : public QObject
{
    Q_OBJECT

public:
    using Driver = std::function<void(QDialog &dialog)>;

    ModalAnswers();
    /// Verifies what was not verified yet.
    ~ModalAnswers() override;

    /// The next dialog is a message box; this button of it gets a real click.
    void press(QMessageBox::StandardButton button);
    /// The next dialog is handed to `driver` once it is shown, which should close it.
    void drive(Driver driver);

    const QList<SeenMessage> &messages() const { return m_messages; }
    void verify(const std::source_location &where = std::source_location::current());

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QDialog &dialog);
    void refuse(QDialog &dialog, const QString &fault);

    std::deque<Driver> m_expected;
    QList<SeenMessage> m_messages;
    QStringList m_faults;
};

} // namespace corvane::test
