// How the main window's controls are made and placed.

#include "shell/frm_cvr_main.h"

#include "platform/controls/date_field.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/icons.h"
#include "platform/controls/ribbon_button.h"
#include "platform/controls/spacing.h"
#include "platform/preview/preview.h"
#include "platform/preview/preview_pane.h"
#include "shell/report_list_pane.h"
#include "shell/report_list_view.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>

namespace corvane {

namespace {

constexpr int kListLetters = 32;
constexpr int kProgressLetters = 26;

struct ToolButtonLook {
    const char *caption;
    const char *icon;
    const char *hint;
};

constexpr std::array<ToolButtonLook, kToolButtonCount> kLooks {{
    {QT_TRANSLATE_NOOP("frmCVRMain", "Exit"), "exit", QT_TRANSLATE_NOOP("frmCVRMain", "Close the program")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Change Report Dates"), "dates",
        QT_TRANSLATE_NOOP("frmCVRMain", "Choose another range of dates and run the report again")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Save to PDF"), "pdf", QT_TRANSLATE_NOOP("frmCVRMain", "Save to PDF")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Select Patient"), "patient",
        QT_TRANSLATE_NOOP("frmCVRMain", "Choose another patient and run the report again")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Properties"), "properties",
        QT_TRANSLATE_NOOP("frmCVRMain", "Change how the report prints")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Refresh"), "refresh", QT_TRANSLATE_NOOP("frmCVRMain", "Run the report again")},
    {QT_TRANSLATE_NOOP("frmCVRMain", "Save to Excel"), "excel",
        QT_TRANSLATE_NOOP("frmCVRMain", "Save the report's rows as an Excel workbook")},
}};

QWidget *growingSpace()
{
    auto *space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return space;
}

} // namespace

void frmCVRMain::buildToolbar()
{
    auto *SSPanel1 = new QToolBar(tr("Toolbar"), this);
    SSPanel1->setObjectName(QStringLiteral("SSPanel1"));
    SSPanel1->setMovable(false);
    SSPanel1->setContextMenuPolicy(Qt::PreventContextMenu);
    addToolBar(SSPanel1);
    for (int index = 0; index < kToolButtonCount; ++index) {
        const ToolButtonLook &look = kLooks[size_t(index)];
        auto *button = new RibbonButton(tr(look.caption), QString::fromLatin1(look.icon));
        button->setObjectName(QStringLiteral("btnvp%1").arg(index));
        button->setToolTip(tr(look.hint));
        button->setCheckable(true);
        connect(button, &RibbonButton::clicked, this, [this, index] { btnvp_Click(index); });
        btnvp[size_t(index)] = button;
        SSPanel1->addWidget(button);
        if (index == ExitButton)
            SSPanel1->addSeparator();
    }
    btnState(true); // as designed; start-up switches off what cannot be used

    DateFrom = new DateField;
    DateTo = new DateField;
    auto *dates = new QWidget;
    auto *row = new QHBoxLayout(dates);
    auto *label = new QLabel(tr("Dates"));
    label->setBuddy(DateFrom);
    for (QWidget *part : {static_cast<QWidget *>(label), static_cast<QWidget *>(DateFrom),
             static_cast<QWidget *>(new QLabel(tr("to"))), static_cast<QWidget *>(DateTo)})
        row->addWidget(part);
    SSPanel1->addWidget(growingSpace());
    SSPanel1->addWidget(dates);
}

void frmCVRMain::connectDates()
{
    DateFrom->setObjectName(QStringLiteral("DateFrom"));
    DateFrom->setAccessibleName(tr("Start date"));
    DateTo->setObjectName(QStringLiteral("DateTo"));
    DateTo->setAccessibleName(tr("End date"));
    for (DateField *field : {DateFrom, DateTo})
        connect(field, &DateField::changed, this, [this] { bDatesChanged = true; });
}

QAction *frmCVRMain::addMenuItem(QMenu *menu, const char16_t *name, const QString &caption)
{
    QAction *item = menu->addAction(caption);
    item->setObjectName(QString::fromUtf16(name));
    return item;
}

void frmCVRMain::buildMenus()
{
    QMenu *mnuFile = menuBar()->addMenu(tr("&File"));
    mnuFile->setToolTipsVisible(true);
    mnuFPrint = addMenuItem(mnuFile, u"mnuFPrint", tr("&Print"));
    mnuFPrint->setShortcut(QKeySequence::Print);
    connect(mnuFPrint, &QAction::triggered, this, &frmCVRMain::mnuFPrint_Click);
    QMenu *sendTo = mnuFile->addMenu(tr("&Send to.."));
    sendTo->setToolTipsVisible(true);
    mnuFSendTo = sendTo->menuAction();
    mnuFSendTo->setObjectName(QStringLiteral("mnuFSendTo"));
    QAction *mnuAdobe = addMenuItem(sendTo, u"mnuAdobe", tr("&Adobe PDF File"));
    connect(mnuAdobe, &QAction::triggered, this, &frmCVRMain::mnuAdobe_Click);
    QAction *mnuExcel = addMenuItem(sendTo, u"mnuExcel", tr("&Excel Spreadsheet"));
    connect(mnuExcel, &QAction::triggered, this, &frmCVRMain::mnuExcel_Click);
    mnuFProps = addMenuItem(mnuFile, u"mnuFProps", tr("&Report Properties"));
    connect(mnuFProps, &QAction::triggered, this, &frmCVRMain::mnuFProps_Click);
    mnuFile->addSeparator()->setObjectName(QStringLiteral("mnuFsep1"));
    QAction *mnuOpen = addMenuItem(mnuFile, u"mnuOpen", tr("Open"));
    mnuOpen->setShortcut(QKeySequence::Open);
    connect(mnuOpen, &QAction::triggered, this, &frmCVRMain::mnuOpen_Click);
    mnuFile->addSeparator()->setObjectName(QStringLiteral("mnuFsep2"));
    QAction *mnuFExit = addMenuItem(mnuFile, u"mnuFExit", tr("E&xit"));
    connect(mnuFExit, &QAction::triggered, this, &QWidget::close);

    QMenu *mnuHelp = menuBar()->addMenu(tr("&Help"));
    mnuHelp->setToolTipsVisible(true);
    QAction *mnuHContents = addMenuItem(mnuHelp, u"mnuHContents", tr("&Corvane Reporter Help"));
    connect(mnuHContents, &QAction::triggered, this, &frmCVRMain::mnuHContents_Click);
    mnuHelp->addSeparator()->setObjectName(QStringLiteral("mnuHsep"));
    QAction *mnuHAbout = addMenuItem(mnuHelp, u"mnuHAbout", tr("&About Corvane Reporter"));
    connect(mnuHAbout, &QAction::triggered, this, &frmCVRMain::mnuHAbout_Click);
}

void frmCVRMain::buildPanes()
{
    SSSplitter1 = new QSplitter(this);
    SSSplitter1->setObjectName(QStringLiteral("SSSplitter1"));
    SSSplitter1->setChildrenCollapsible(false);
    m_listPane = new ReportListPane(SSSplitter1);
    File1 = m_listPane->list();
    connect(File1, &ReportListView::chosen, this, &frmCVRMain::File1_Click);

    m_previewPane = new PreviewPane(SSSplitter1);
    m_listPane->setFilterRowHeight(m_previewPane->barHeight());
    vp = m_previewPane->preview();
    vp->setObjectName(QStringLiteral("vp"));
    vp->setAccessibleName(tr("Report preview"));
    vp->setEmptyText(tr("Choose a report from the list."));
    connect(vp, &Preview::webLinkActivated, this, &frmCVRMain::openAddress);
    SSSplitter1->setStretchFactor(1, 1);
    const int listWidth = lettersWide(this, kListLetters);
    SSSplitter1->setSizes({listWidth, width() - listWidth});
    setCentralWidget(SSSplitter1);
    setAcceptDrops(true);
}

void frmCVRMain::buildStatusBar()
{
    m_summary = new QLabel;
    m_summary->setObjectName(QStringLiteral("lblSummary"));
    m_summary->hide(); // as long as it is empty it would move the user's name
    m_notes = new QLabel;
    m_notes->setObjectName(QStringLiteral("lblNotes"));
    m_notes->setTextFormat(Qt::PlainText);
    m_notes->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_user = new QLabel;
    m_user->setObjectName(QStringLiteral("lblUser"));
    m_user->setTextFormat(Qt::PlainText);
    pnlprogress = new FloodPanel;
    pnlprogress->setObjectName(QStringLiteral("pnlprogress"));
    pnlprogress->setAccessibleName(tr("Progress"));
    pnlprogress->setFixedWidth(lettersWide(this, kProgressLetters));
    pnlprogress->hide();
    for (QLabel *label : {m_summary, m_user, m_notes})
        label->setContentsMargins(controlGap(this), 0, controlGap(this), 0);
    statusBar()->addWidget(m_summary);
    statusBar()->addWidget(m_user);
    statusBar()->addWidget(m_notes, 1);
    statusBar()->addPermanentWidget(pnlprogress);
}

} // namespace corvane
