// The tabular half of ReportRun: one definition composed as a document, step by step.

#include "render/report_run.h"

#include "definitions/tabular_definition.h"
#include "shared/dates.h"
#include "shared/lists.h"
#include "shared/numbers.h"

#include <QtCore/QFileInfo>

namespace corvane {

namespace {

constexpr Twips kTotalRowWidth {9500};
constexpr int kSwitchedOn = -1;

bool printsTotals(const TabularDefinition &definition)
{
    return definition.groupField() >= 1 && definition.subTotal() == kSwitchedOn;
}

QString titleOf(const TabularDefinition &definition, const QString &path)
{
    const QString centre = definition.header(u"CText");
    return centre.isEmpty() || centre.contains(u'}') ? QFileInfo(path).completeBaseName() : centre;
}

} // namespace

RunResult ReportRun::doReport()
{
    m_host.btnState(false);
    m_vp.reset();
    m_state.closeConn();
    TabularDefinition definition(m_state.gRptFile);
    if (!openDatabase(definition))
        return RunResult::SecondDatabaseMissing;
    m_host.showHourglass(true);
    m_vp.setOrientation(definition.isLandscape() ? Orientation::Landscape : Orientation::Portrait);
    setFonts(definition);
    setWidths(definition);
    m_vp.startDocument({titleOf(definition, m_state.gRptFile), QFileInfo(m_state.gRptFile).fileName(),
        m_state.gUserID, {}, m_host.now(), QStringLiteral("en-US")});
    m_vp.setHeader(QString(furnitureText(definition.header(u"LText")) + u'|' + furnitureText(definition.header(u"CText"))
        + u'|' + furnitureText(definition.header(u"RText"))));
    m_vp.setBold(false);
    writeHeadingLines(definition);
    const RunResult result = composeBody(definition);
    m_host.bDatesChanged = false;
    m_host.showHourglass(false);
    setButtonsAfterRun(definition);
    return result;
}

bool ReportRun::openDatabase(const TabularDefinition &definition)
{
    const bool second = definition.usesSecondDatabase();
    // Deliberate: without a second database the run ends without a word, as users know it.
    if (second && m_state.gHvnConnectString.isEmpty())
        return false;
    const QString &connectString = second ? m_state.gHvnConnectString : m_state.gConnectString;
    m_state.openConn(connectString);
    m_adodc1.setConnectionString(connectString);
    return true;
}

void ReportRun::setFonts(const TabularDefinition &definition)
{
    QString font = definition.font();
    if (font.isEmpty())
        return;
    font.replace(u';', u'|');
    m_vp.setFontName(getPiece(font, 1));
    m_vp.setFontSize(leadingNumber(getPiece(font, 2)));
    m_vp.setHeaderFont(m_vp.fontName(), m_vp.fontSize());
}

void ReportRun::setWidths(const TabularDefinition &definition)
{
    const int columns = std::max<int>(definition.pageColumns(), 1);
    Twips width = formatWidth(definition.spacing()).value_or(Twips());
    if (printsTotals(definition))
        width = std::max(width, kTotalRowWidth);
    // A single line of newspaper columns that is too wide is narrowed by the composer anyway.
    const Orientation orientation = definition.isLandscape() ? Orientation::Landscape : Orientation::Portrait;
    const Twips widest = PageComposer::widestContent(orientation);
    m_vp.setWidthNeeded(width > widest ? widest : std::min(PageComposer::widthOfColumns(width, columns), widest));
}

QString ReportRun::furnitureText(const QString &text) const
{
    // Deliberate: the whole text gives way to the date, whatever stands beside the field word.
    return text.contains(u'}') ? dateTimeText(m_host.now(), m_locale) : text;
}

void ReportRun::writeHeadingLines(const TabularDefinition &definition)
{
    QString range;
    if (definition.getDates()) {
        if (m_host.promptParams)
            m_dialogs.askDateRange(m_host);
        range = m_host.dateFrom().text + u" to " + m_host.dateTo().text;
        m_vp.writeParagraph(QString(u"Dates of Report: " + range));
    } else {
        range = m_host.dateFrom().text;
        m_vp.writeParagraph(QString(u"Date of Report: " + range));
    }
    m_vp.setDateRange(range);
    m_vp.writeParagraph({});
    if (definition.getPatient()) {
        if (m_host.promptParams)
            m_dialogs.askPatient();
        m_vp.writeParagraph(QString(u"Patient: " + m_state.gPatientText));
        m_vp.writeParagraph({});
    }
}

void ReportRun::drawHeadingTable(const QString &spacing, const QString &heading, const TabularDefinition &definition)
{
    m_vp.setPageColumns(definition.pageColumns());
    m_vp.setTableBorder(TableBorder::AboveAndBelow);
    m_vp.setFontSize(definition.fontSize());
    m_vp.setBold(true);
    m_vp.addTable(spacing, heading, {}, kNoShade, kNoShade, TableFlow::Starts);
    m_vp.setBold(false);
    m_vp.setTableBorder(TableBorder::None);
}

RunResult ReportRun::composeBody(TabularDefinition &definition)
{
    const QString spacing = definition.spacing();
    const QString heading = definition.heading();
    drawHeadingTable(spacing, heading, definition);
    const QString &database = definition.usesSecondDatabase() ? m_state.gHvnDBName : m_state.gDBName;
    m_vp.setFooter(QString(u"Database: " + database + u'|' + furnitureText(definition.footer(u"CText")) + u'|'
        + furnitureText(definition.footer(u"RText"))));
    const TabularRun run {m_state, m_host, m_vp, m_adodc1, definition, m_style, m_timings};
    if (getrs(run, spacing, heading) == BodyResult::QueryRefused) {
        m_document = m_vp.abandonDocument();
        return RunResult::QueryRefused;
    }
    m_document = m_vp.endDocument();
    return RunResult::Done;
}

void ReportRun::setButtonsAfterRun(const TabularDefinition &definition)
{
    m_host.btnState(true);
    m_host.enableButton(DatesButton, definition.getDates());
    m_host.enableButton(PatientButton, definition.getPatient());
}

} // namespace corvane
