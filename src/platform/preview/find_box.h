#pragma once

#include "platform/preview/search_folding.h"

#include <QtWidgets/QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

namespace corvane {

class Preview;

/// The search in a preview: what to look for, whether the case matters, how many hits, to and fro.
class FindBox : public QWidget
{
    Q_OBJECT

public:
    /// The preview must outlive the box.
    explicit FindBox(Preview *preview, QWidget *parent = nullptr);

    /// Takes the focus, with what the user has selected on the page where that is one line.
    void start();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QToolButton *addButton(const QString &objectName);
    CaseRule caseRule() const;
    void find();
    QString hitText();
    void showState();
    void end();

    Preview *m_preview;
    QLineEdit *m_text;
    QToolButton *m_matchCase;
    QLabel *m_state;
    qint64 m_shownHit = 0; ///< number of the hit that the label names; 0: none
};

} // namespace corvane
