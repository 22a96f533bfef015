#pragma once

#include "definitions/selection_token.h"
#include "platform/database/value.h"

#include <QtWidgets/QDialog>

#include <array>

class QLabel;
class QPushButton;

namespace corvane {

class Connection;
class FloodPanel;
class MessageBoxes;
class RecordList;

/// "Report Selection": lists the rows that a selection token asks for and writes the chosen ones into the
/// query text. Set RequestSQL, call load(), then show it modally; ResultSQL is empty after Cancel.
class frmRptrSelect : public QDialog
{
    Q_OBJECT

public:
    frmRptrSelect(Connection &gConn, MessageBoxes &boxes, const ValueTextStyle &style, QWidget *parent);

    QString RequestSQL;              ///< with placeholder databases replaced
    QString ResultSQL;
    SelectionTable SelectParamTable; ///< empty until accepted

    /// Reads the token and fills the list. @throws RunTimeFault for a bad token, DatabaseError when its
    /// list cannot be read; the form is then not to be shown.
    void load();

    /// What was accepted, for a run that asks no more.
    const SelectionAnswers &answers() const { return m_answers; }

private:
    enum MarkButton { SelectAll, Inverse, Clear, MarkButtonCount };

    void buildForm();
    void nameControls();
    void LoadControls();
    void showFault(const QString &fault);
    void ctList1_Accepted(int row);
    void marks_Change();
    void Command1_Click(int index);
    void cmdselect_Click();
    SelectionAnswers chosen() const;

    Connection &m_gConn;
    MessageBoxes &m_boxes;
    ValueTextStyle m_style;
    SelectionToken m_token;
    SelectionAnswers m_answers;
    QString m_incomplete; ///< why rows are missing; empty when all are there

    QLabel *lblAction;
    RecordList *ctList1;
    std::array<QPushButton *, MarkButtonCount> Command1;
    QLabel *pnlcount;
    FloodPanel *pnlprogress;
    QLabel *lblIncomplete;
    QPushButton *cmdselect;
    QPushButton *cmdcancel;
};

} // namespace corvane
