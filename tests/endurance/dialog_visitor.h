#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

class QDialog;

namespace corvane::test {

/// Answers every modal dialog of the program as a user would who means yes, so that no run has to
/// announce what it asks.
class DialogVisitor : public QObject
{
    Q_OBJECT

public:
    DialogVisitor();

    int shown() const { return m_shown; } ///< the windows that need no answer included
    /// What file dialogs are answered with.
    void setFileName(const QString &fileName) { m_fileName = fileName; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QDialog &dialog);

    QString m_fileName;
    int m_shown = 0;
};

} // namespace corvane::test
