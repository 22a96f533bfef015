#include "shell/frm_reportr_logon.h"

#include "platform/controls/control_names.h"
#include "platform/controls/quiet_label.h"
#include "platform/controls/spacing.h"
#include "session/logon.h"
#include "shared/reportr.h"
#include "shell/logon_box.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kNoticeLetters = 54; ///< width of the notice, which wraps
constexpr int kAsterisk = '*';

} // namespace

frmReportrLogon::frmReportrLogon(Reportr &state, MessageBoxes &boxes, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
    , m_boxes(boxes)
    , lblNotice(new QLabel(QString(kBuiltInNotice), this))
    , txtuid(new LogonBox(this))
    , txtpw(new LogonBox(this))
    , lblVersion(new QuietLabel(this))
    , Check1(new QCheckBox(tr("Check1"), this))
    , cmdok(new QPushButton(tr("Ok"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setObjectName(QStringLiteral("frmReportrLogon"));
    setWindowTitle(tr("Corvane Reporter Logon"));
    buildForm();
    for (LogonBox *box : {txtuid, txtpw})
        connect(box, &QLineEdit::textChanged, this, &frmReportrLogon::boxes_Change);
    connect(cmdok, &QPushButton::clicked, this, &frmReportrLogon::cmdok_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &frmReportrLogon::cmdcancel_Click);
    Form_Load();
}

bool frmReportrLogon::accepted() const
{
    return Check1->isChecked();
}

void frmReportrLogon::Form_Load()
{
    const QStringList version = QCoreApplication::applicationVersion().split(u'.');
    lblVersion->setText(tr("Version ") + version.value(0) + u'.' + version.value(1));
    lblNotice->setText(GetDBSettings(m_state));
    boxes_Change();
}

void frmReportrLogon::buildForm()
{
    nameControl(lblNotice, QStringLiteral("lblNotice"), tr("Notice"));
    nameControl(txtuid, QStringLiteral("txtuid"), tr("User ID"));
    nameControl(txtpw, QStringLiteral("txtpw"), tr("Password"));
    nameControl(lblVersion, QStringLiteral("lblVersion"), tr("Version"));
    nameControl(Check1, QStringLiteral("Check1"), tr("Logon accepted"));
    nameControl(cmdok, QStringLiteral("cmdok"), tr("Ok"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
    const int gap = controlGap(this);
    Check1->hide(); // the form's result for its caller, nothing to click
    lblNotice->setTextFormat(Qt::PlainText);
    lblNotice->setWordWrap(true);
    lblNotice->setFixedWidth(lettersWide(this, kNoticeLetters));
    lblNotice->setFrameShape(QFrame::StyledPanel);
    lblNotice->setMargin(gap);
    txtpw->setEchoMode(QLineEdit::Password);
    txtpw->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(kAsterisk));

    auto *userLabel = new QLabel(tr("User ID"), this);
    auto *passwordLabel = new QLabel(tr("Password"), this);
    userLabel->setBuddy(txtuid);
    passwordLabel->setBuddy(txtpw);
    auto *boxes = new QGridLayout;
    boxes->setColumnStretch(1, 1);
    boxes->setHorizontalSpacing(2 * gap);
    boxes->addWidget(userLabel, 0, 0);
    boxes->addWidget(txtuid, 0, 1);
    boxes->addWidget(passwordLabel, 1, 0);
    boxes->addWidget(txtpw, 1, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblVersion);
    buttons->addStretch();
    buttons->addWidget(cmdok);
    buttons->addWidget(cmdcancel);
    auto *form = new QVBoxLayout(this);
    form->setSpacing(2 * gap);
    form->addWidget(lblNotice);
    form->addLayout(boxes);
    form->addLayout(buttons);
    form->setSizeConstraint(QLayout::SetFixedSize);
    cmdok->setDefault(true);
    setTabOrder(txtuid, txtpw);
    setTabOrder(txtpw, cmdok);
    setTabOrder(cmdok, cmdcancel);
    txtuid->setFocus();
}

void frmReportrLogon::boxes_Change()
{
    cmdok->setEnabled(!txtuid->text().isEmpty() && !txtpw->text().isEmpty());
}

void frmReportrLogon::cmdok_Click()
{
    if (logOn(m_state, m_boxes, txtuid->text(), txtpw->text())) {
        Check1->setChecked(true);
        hide();
        return;
    }
    txtuid->setFocus();
}

void frmReportrLogon::cmdcancel_Click()
{
    Check1->setChecked(false);
    hide();
}

} // namespace corvane
