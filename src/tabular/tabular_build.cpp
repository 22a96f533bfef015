#include "tabular/tabular_build.h"

#include "definitions/tabular_definition.h"
#include "platform/composer/page_composer.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/report_host.h"
#include "shared/run_time_fault.h"
#include "tabular/value_formats.h"

namespace corvane {

namespace {

constexpr auto kCaptionFormat = u"4000;";
constexpr auto kTotalFormat = u">8500|1000;";
constexpr Twips kLandscapeFill {9500};
constexpr Twips kPortraitFill {12960};
constexpr int kSwitchedOn = -1;

qint16 asCount(QStringView label, float count)
{
    try {
        return toInt16(double(count));
    } catch (const RunTimeFault &) {
        throw RunTimeFault(RunTimeFault::Overflow,
            QStringLiteral("\"%1\" counts %2 rows, and a count holds at most 32767. "
                           "Choose a shorter range of dates, or switch the totals off in the definition")
                .arg(label)
                .arg(qint64(count)));
    }
}

} // namespace

TabularBuild::TabularBuild(const TabularRun &run, const QString &spacing, const QString &heading)
    : m_run(run)
    , m_spacing(spacing)
    , m_heading(heading)
{
    const TabularDefinition &definition = run.definition;
    const QString list = definition.columnFields();
    const int count = definition.fieldCount();
    for (int n = 1; n <= count; ++n)
        m_columns.push_back({toInt16(leadingNumber(getPiece(list, n))), CellFormat::Text});
    m_groupField = definition.groupField();
    // Without grouping there are no totals at all.
    const bool grouping = m_groupField >= 1;
    m_countsGroups = grouping && definition.subTotal() == kSwitchedOn;
    const int grandTotal = grouping ? definition.grandTotal() : 0;
    m_countsAll = grandTotal == kSwitchedOn;
    // Deliberate: the grand total needs the group totals switched on, and any number but 0 prints it.
    m_printsGrandTotal = grandTotal != 0 && m_countsGroups;
    readRecordKeys();
}

void TabularBuild::readRecordKeys()
{
    const TabularDefinition &definition = m_run.definition;
    for (Column &column : m_columns)
        column.format = formatWord(column.ordinal);
    m_noteField = definition.noteField();
    m_noteIndent = definition.noteIndent();
    m_breaksPageOnGroup = definition.breaksPageOnGroup();
    m_landscape = definition.isLandscape();
}

TabularBuild::CellFormat TabularBuild::formatWord(int ordinal) const
{
    const QString word = m_run.definition.columnFormat(ordinal);
    if (word == u"MinToTime")
        return CellFormat::MinToTime;
    return word == u"ColorToStatus" ? CellFormat::ColorToStatus : CellFormat::Text;
}

void TabularBuild::writeRows(const Rowset &rows)
{
    const qsizetype count = rows.rowCount();
    for (qsizetype row = 0; row < count; ++row) {
        if (m_run.definition.refresh())
            readRecordKeys();
        if (m_groupField >= 1) {
            m_text.resize(0);
            appendValueText(m_text, rows.value(row, m_groupField), m_run.style);
            if (m_isFirst || m_text != m_groupValue)
                startGroup(m_text);
        }
        addRow(rows, row);
        if (m_countsGroups)
            m_groupCount += 1;
        if (m_countsAll)
            m_grandCount += 1;
        if (m_noteField >= 1)
            addNote(rows.value(row, m_noteField));
        m_run.host.showProgress(toInt16(double(row + 1) / double(count) * 100));
        if (m_run.host.stopRequested())
            throw RunStopped();
        m_isFirst = false;
    }
}

void TabularBuild::startGroup(const QString &value)
{
    PageComposer &vp = m_run.vp;
    if (m_breaksPageOnGroup && !m_groupValue.isEmpty())
        breakPageForGroup();
    m_groupValue = value;
    if (vp.currentY() > (m_landscape ? kLandscapeFill : kPortraitFill)) {
        vp.newPage();
        addHeadingRow();
    }
    vp.writeParagraph({});
    vp.addOutlineEntry(m_groupValue);
    vp.addTable(kCaptionFormat, {}, m_groupValue, kNoShade, kCaptionShade, TableFlow::Continues);
}

void TabularBuild::breakPageForGroup()
{
    if (m_countsGroups) {
        m_run.vp.writeParagraph({});
        addTotalRow(u"Total", m_groupCount);
    }
    m_groupCount = 0;
    m_run.vp.newPage();
    addHeadingRow();
}

void TabularBuild::addHeadingRow()
{
    PageComposer &vp = m_run.vp;
    vp.setTableBorder(TableBorder::AboveAndBelow);
    vp.setBold(true);
    vp.addTable(m_spacing, m_heading, {}, kNoShade, kNoShade, TableFlow::Starts);
    vp.setTableBorder(TableBorder::None);
    vp.setBold(false);
    vp.writeParagraph({});
}

void TabularBuild::addTotalRow(QStringView label, float count)
{
    const QString body = label + u'|' + QString::number(asCount(label, count));
    m_run.vp.addTable(kTotalFormat, {}, body, kNoShade, kCaptionShade, TableFlow::Starts);
}

void TabularBuild::addRow(const Rowset &rows, qsizetype row)
{
    m_body.resize(0); // keeps its memory, which clear() gives away
    for (const Column &column : m_columns) {
        if (&column != m_columns.data())
            m_body += u'|';
        appendCell(rows.value(row, column.ordinal), column.format);
    }
    if (!m_columns.empty())
        m_body += u';';
    m_run.vp.addTable(m_spacing, m_heading, m_body, kNoShade, kNoShade, TableFlow::Continues);
}

void TabularBuild::appendCell(const Value &value, CellFormat format)
{
    if (value.isNull())
        return;
    switch (format) {
    case CellFormat::MinToTime:
        m_body += MinToTime(toInt16(strictNumber(value)));
        return;
    case CellFormat::ColorToStatus:
        m_body += ColorToStatus(toInt32(strictNumber(value)));
        return;
    case CellFormat::Text:
        break;
    }
    const qsizetype start = m_body.size();
    appendValueText(m_body, value, m_run.style);
    for (QChar &c : std::span(m_body.begin() + start, m_body.end())) {
        if (c == u';')
            c = u',';
    }
}

void TabularBuild::addNote(const Value &value)
{
    PageComposer &vp = m_run.vp;
    m_text.resize(0);
    appendValueText(m_text, value, m_run.style);
    if (!m_text.isEmpty()) {
        vp.setLeftIndent(m_noteIndent);
        vp.writeParagraph(m_text);
        vp.writeParagraph({});
        vp.setLeftIndent(0);
    } else {
        vp.writeParagraph({});
    }
}

void TabularBuild::writeTotals()
{
    PageComposer &vp = m_run.vp;
    if (m_countsGroups) {
        vp.writeParagraph({});
        addTotalRow(u"Total", m_groupCount);
    }
    if (m_printsGrandTotal) {
        vp.writeParagraph({});
        vp.writeParagraph({});
        addTotalRow(u"Grand Total", m_grandCount);
    }
}

} // namespace corvane
