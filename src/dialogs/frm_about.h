#pragma once

#include <QtWidgets/QDialog>

class QLabel;
class QPushButton;

namespace corvane {

/// The About box: the program's version and legal notice.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent);

private:
    void Form_Load();
    void buildForm();

    QLabel *lblTitle;
    QLabel *lblVersion;
    QLabel *lblDescription;
    QPushButton *cmdOK;
};

} // namespace corvane
