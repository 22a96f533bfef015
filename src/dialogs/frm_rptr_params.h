#pragma once

#include "definitions/parameters_clause.h"

#include <QtWidgets/QDialog>

#include <functional>

class QFormLayout;
class QPushButton;

namespace corvane {

/// "Report Parameters": one control for each parameter of a query's PARAMETERS clause. For one use.
class frmRptrParams : public QDialog
{
    Q_OBJECT

public:
    frmRptrParams(const ParametersClause &clause, int dateOrder, const std::function<QDate()> &today, QWidget *parent);

    /// What was accepted; nothing before "OK" and after "Cancel".
    const std::optional<ParameterAnswers> &answers() const { return m_answers; }

private:
    struct Row {
        QueryParameter parameter;
        QWidget *control;
        std::function<QString()> text; ///< as it stands in the control
    };

    void addRow(const QueryParameter &parameter, QFormLayout *form, const std::function<QDate()> &today);
    std::optional<ParameterAnswers> typedAnswers() const;
    void controls_Change();
    void cmdok_Click();

    DateOrder m_order;
    std::vector<Row> m_rows;
    std::optional<ParameterAnswers> m_answers;
    QPushButton *cmdok;
    QPushButton *cmdcancel;
};

} // namespace corvane
