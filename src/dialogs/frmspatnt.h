#pragma once

#include "session/patient_search.h"

#include <QtWidgets/QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace corvane {

class FloodPanel;
class MessageBoxes;
class RecordList;
struct Reportr;

/// "Select Patient": finds patients and leaves the chosen one in gPatientID and gPatientText.
class frmspatnt : public QDialog
{
    Q_OBJECT

public:
    frmspatnt(Reportr &state, MessageBoxes &boxes, QWidget *parent);

    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Form_Load();
    void buildForm();
    void cbosearch_Click();
    void txtsearch_Change();
    void cmdsearch_Click();
    void cmdselect_Click();
    void loadpatients(const QString &sql);
    void fillList(PatientReader &reader);

    Reportr &m_state;
    MessageBoxes &m_boxes;
    PatientDatabase m_database;
    bool loading = true;

    QLabel *Label1;
    QComboBox *cbosearch;
    QLabel *Label2;
    QLineEdit *txtsearch;
    QPushButton *cmdsearch;
    QLabel *Label3;
    RecordList *ctList1;
    QLabel *lblIncomplete;
    QLabel *pnlcount;
    FloodPanel *pnlprogress;
    QPushButton *cmdselect;
    QPushButton *cmdcancel;
};

} // namespace corvane
