#pragma once

#include "definitions/date_token.h"

#include <QtWidgets/QDialog>

#include <functional>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QPushButton;

namespace corvane {

class DatePicker;
class MessageBoxes;

/// "Report Date Parameter(s)": asks for the one or two dates of a query's date token. Set
/// RequestSQL, call Form_Load(), show it modally, read ResultSQL. For one use.
class frmRptrDates : public QDialog
{
    Q_OBJECT

public:
    /// `table` is emptied while loading and filled by "OK".
    frmRptrDates(std::optional<DateParamTable> &table, MessageBoxes &boxes, int dateOrder,
        std::function<QDate()> today, QWidget *parent);

    QString RequestSQL; ///< the query text with its date token; not changed here
    QString ResultSQL; ///< the text with quoted dates; empty until "OK" and after "Cancel"

    /// Reads the token and sets the controls. @throws RunTimeFault as parseRequest(); do not show
    /// it then.
    void Form_Load();

    /// The dates as they stand in the pickers; after "OK" what a re-run keeps.
    DateAnswers answers() const;

public Q_SLOTS:
    void reject() override;

private:
    void buildForm(int dateOrder);
    QGridLayout *layOutDates();
    QBoxLayout *layOutButtons();
    void Reconfigure_Form();
    void DateCntl_Change();
    void Command1_Click();
    void applyDates();

    std::optional<DateParamTable> &m_table;
    MessageBoxes &m_boxes;
    std::function<QDate()> m_today;
    DateToken m_token;

    QLabel *lbDynamic;
    std::array<QLabel *, 2> lbFldCaption;
    std::array<DatePicker *, 2> DateCntl;
    QPushButton *Command1;
    QPushButton *cmdcancel;
};

} // namespace corvane
