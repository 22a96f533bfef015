#pragma once

#include "editor/edited_definition.h"

#include <QtWidgets/QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTreeView;

namespace corvane {

class ColumnModel;
class ColumnRuler;
class MessageBoxes;

/// "Report Properties": changes how a tabular definition prints and writes it back. Call
/// Form_Load(), then show it modally. Only "Ok" writes.
class frmCVRProps : public QDialog
{
    Q_OBJECT

public:
    frmCVRProps(const QString &gRptFile, MessageBoxes &boxes, QWidget *parent);
    ~frmCVRProps() override;

    /// Reads the definition. False, after a message, when its properties cannot be edited.
    bool Form_Load();

    /// Findings about the definition, one a line; the strip that lists them shows while there are
    /// any.
    void setProblems(const QStringList &findings);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum ListPart { Left, Center, Right };

    void nameControls();
    void prefillTexts();
    void setUpList();
    int labelWidth() const;
    QLayout *pageTexts();
    QLayout *pageLayout();
    QLayout *columnList();
    QLayout *details();
    QWidget *problemStrip();
    void buildForm();
    void connectControls();

    void showProperties(const PageProperties &properties);
    PageProperties collected() const;
    int selectedRow() const;
    void selectRow(int row);
    void columns_Change();
    void ctList1_Click();
    void Command1_Click();
    void changeListOrder(qint16 direction);
    void Command4_Click();
    void Command5_Click();
    bool mayWrite(const PageProperties &properties);
    bool loadDefinition();
    bool save(const PageProperties &properties);
    bool settleChange();
    void point(const PropertyFault &fault);
    bool ValidateColSizes();

    EditedDefinition m_definition;
    MessageBoxes &m_boxes;
    ColumnModel *m_columns;

    std::array<QComboBox *, 3> cboHeader;
    std::array<QComboBox *, 3> cbofooter;
    QComboBox *cboorient;
    QCheckBox *ckPageBreak;
    QTreeView *ctList1;
    QLineEdit *txtcolsize;
    ColumnRuler *m_ruler;
    QLabel *lblTotal;
    QPlainTextEdit *txtsql;
    QLabel *lblload;
    QLabel *lblfin;
    QLabel *lblFont;
    QPushButton *Command1;
    QPushButton *Command2;
    QPushButton *Command3;
    QPushButton *Command4;
    QPushButton *Command5;
    QPushButton *Command6;
    QWidget *m_problemStrip = nullptr;
    QPlainTextEdit *txtproblems;
};

} // namespace corvane
