#pragma once

#include <QtWidgets/QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

namespace corvane {

class LogonBox;
class MessageBoxes;
struct Reportr;

/// The logon form. When it has hidden itself, Check1 tells whether a logon was accepted.
class frmReportrLogon : public QDialog
{
    Q_OBJECT

public:
    frmReportrLogon(Reportr &state, MessageBoxes &boxes, QWidget *parent = nullptr);

    bool accepted() const;

    void reject() override { cmdcancel_Click(); }

private:
    void Form_Load();
    void buildForm();
    void boxes_Change();
    void cmdok_Click();
    void cmdcancel_Click();

    Reportr &m_state;
    MessageBoxes &m_boxes;

    QLabel *lblNotice;
    LogonBox *txtuid;
    LogonBox *txtpw;
    QLabel *lblVersion;
    QCheckBox *Check1;
    QPushButton *cmdok;
    QPushButton *cmdcancel;
};

} // namespace corvane
