#include "dialogs/frm_about.h"

#include "platform/controls/control_names.h"
#include "platform/controls/icons.h"
#include "platform/controls/quiet_label.h"
#include "platform/controls/spacing.h"
#include "shared/legal_notice.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVersionNumber>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kIconSize = 64;
constexpr int kTextLetters = 58; ///< width of the notice, which wraps
constexpr double kTitleScale = 1.4;

} // namespace

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
    , lblTitle(new QLabel(tr("Corvane Reporter"), this))
    , lblVersion(new QuietLabel(this))
    , lblDescription(new QLabel(this))
    , cmdOK(new QPushButton(tr("OK"), this))
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About Corvane Reporter"));
    buildForm();
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    Form_Load();
}

void frmAbout::Form_Load()
{
    const auto version = QVersionNumber::fromString(QCoreApplication::applicationVersion());
    lblVersion->setText(tr("Version %1.%2.%3")
                            .arg(version.majorVersion())
                            .arg(version.minorVersion())
                            .arg(version.microVersion()));
    lblDescription->setText(legalNotice());
    if (QWidget *owner = parentWidget())
        owner->unsetCursor(); // whatever the program was busy with
}

void frmAbout::buildForm()
{
    nameControl(lblTitle, QStringLiteral("lblTitle"), tr("Program"));
    nameControl(lblVersion, QStringLiteral("lblVersion"), tr("Version"));
    nameControl(lblDescription, QStringLiteral("lblDescription"), tr("Legal notice"));
    nameControl(cmdOK, QStringLiteral("cmdOK"), tr("OK"));
    QFont title = lblTitle->font();
    title.setPointSizeF(title.pointSizeF() * kTitleScale);
    title.setBold(true);
    lblTitle->setFont(title);
    lblVersion->setTextInteractionFlags(
        Qt::TextSelectableByMouse); // to be quoted when asking for help
    lblDescription->setTextFormat(Qt::PlainText);
    lblDescription->setWordWrap(true);
    lblDescription->setFixedWidth(lettersWide(this, kTextLetters));
    cmdOK->setDefault(true);

    const int gap = controlGap(this);
    auto *picture = new QLabel(this);
    picture->setPixmap(icon(QStringLiteral("app")).pixmap(kIconSize));
    auto *words = new QVBoxLayout;
    words->addWidget(lblTitle);
    words->addWidget(lblVersion);
    words->addSpacing(gap);
    words->addWidget(lblDescription);
    words->addStretch();
    auto *content = new QHBoxLayout;
    content->setSpacing(3 * gap);
    content->addWidget(picture, 0, Qt::AlignTop);
    content->addLayout(words, 1);
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(form->contentsMargins() + gap);
    form->setSpacing(3 * gap);
    form->addLayout(content);
    form->addWidget(cmdOK, 0, Qt::AlignRight);
    form->setSizeConstraint(QLayout::SetFixedSize);
    cmdOK->setFocus();
}

} // namespace corvane
