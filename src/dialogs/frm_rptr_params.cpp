#include "dialogs/frm_rptr_params.h"

#include "platform/controls/control_names.h"
#include "platform/controls/date_picker.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

namespace corvane {

namespace {

constexpr int kMostVisibleRows = 12; // more of them scroll

QScrollArea *scrolling(QWidget *content)
{
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    return area;
}

} // namespace

frmRptrParams::frmRptrParams(const ParametersClause &clause, int dateOrder, const std::function<QDate()> &today, QWidget *parent)
    : QDialog(parent)
    , m_order(dateOrderOf(dateOrder))
    , cmdok(new QPushButton(tr("&OK")))
    , cmdcancel(new QPushButton(tr("&Cancel")))
{
    setWindowTitle(tr("Report Parameters"));
    setObjectName(QStringLiteral("frmRptrParams"));
    nameControl(cmdok, QStringLiteral("cmdok"), tr("OK"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
    connect(cmdok, &QPushButton::clicked, this, &frmRptrParams::cmdok_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *rows = new QWidget;
    auto *form = new QFormLayout(rows);
    form->setContentsMargins({});
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    for (const QueryParameter &parameter : clause.parameters)
        addRow(parameter, form, today);
    auto *buttons = new QHBoxLayout; // the form takes them only now, so that Tab comes to them last
    buttons->addStretch();
    buttons->addWidget(cmdok);
    buttons->addWidget(cmdcancel);
    auto *whole = new QVBoxLayout(this);
    if (m_rows.size() > kMostVisibleRows)
        whole->addWidget(scrolling(rows));
    else
        whole->addWidget(rows);
    whole->addLayout(buttons);
    cmdok->setDefault(true);
    if (!m_rows.empty())
        m_rows.front().control->setFocus();
    controls_Change();
}

void frmRptrParams::addRow(const QueryParameter &parameter, QFormLayout *form, const std::function<QDate()> &today)
{
    Row row {parameter, nullptr, {}};
    if (parameter.type == ParameterType::Date) {
        auto *picker = new DatePicker(today, this);
        picker->setDateOrder(int(m_order));
        if (const auto date = readDate(parameter.defaultText, m_order))
            picker->setDate(*date);
        connect(picker, &DateField::changed, this, &frmRptrParams::controls_Change);
        row = {parameter, picker, [picker] { return picker->text(); }};
    } else if (parameter.type == ParameterType::Boolean) {
        auto *box = new QCheckBox(tr("Yes"), this);
        box->setChecked(readParameter(parameter.type, parameter.defaultText, m_order) == ParameterValue(true));
        row = {parameter, box, [box] { return box->isChecked() ? QStringLiteral("Yes") : QStringLiteral("No"); }};
    } else {
        auto *edit = new QLineEdit(parameter.defaultText, this);
        connect(edit, &QLineEdit::textChanged, this, &frmRptrParams::controls_Change);
        row = {parameter, edit, [edit] { return edit->text(); }};
    }
    nameControl(row.control, QStringLiteral("txtparam%1").arg(m_rows.size()), parameter.name);
    auto *label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setText(QString(parameter.name + u':'));
    label->setBuddy(row.control);
    form->addRow(label, row.control);
    m_rows.push_back(std::move(row));
}

std::optional<ParameterAnswers> frmRptrParams::typedAnswers() const
{
    ParameterAnswers answers;
    for (const Row &row : m_rows) {
        const auto value = readParameter(row.parameter.type, row.text(), m_order);
        if (!value)
            return std::nullopt;
        answers[row.parameter.name.toLower()] = *value;
    }
    return answers;
}

void frmRptrParams::controls_Change()
{
    cmdok->setEnabled(typedAnswers().has_value());
}

void frmRptrParams::cmdok_Click()
{
    m_answers = typedAnswers();
    if (m_answers)
        accept();
}

} // namespace corvane
