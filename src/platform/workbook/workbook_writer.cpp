#include "platform/workbook/workbook_writer.h"

#include "platform/database/rowset.h"
#include "platform/workbook/compound_file.h"
#include "platform/workbook/property_sets.h"
#include "platform/workbook/record_writer.h"
#include "platform/workbook/rowset_survey.h"
#include "platform/workbook/sheet_writer.h"

namespace corvane {

namespace {

/// Calls the option's progress now and then; surveying and writing count half each.
class Progress
{
public:
    Progress(const WorkbookOptions &options, qsizetype rows)
        : m_tell(options.progress)
        , m_rows(rows)
    {
    }

    void surveyed(qsizetype row) const { step(row, row / 2); }
    void written(qsizetype row) const { step(row, (m_rows + row) / 2); }

private:
    void step(qsizetype row, qsizetype done) const
    {
        constexpr qsizetype kEvery = 512;
        if (row % kEvery == 0 && m_tell && !m_tell(done))
            throw WorkbookStopped();
    }

    const std::function<bool(qsizetype)> &m_tell;
    qsizetype m_rows;
};

/// Goes through the cells in order and writes each text where it comes first, which is the order of
/// their numbers.
void writeTexts(
    RecordWriter &out, const Rowset &rows, const SharedStrings &texts, const ValueTextStyle &style)
{
    SharedStringWriter writer(out, quint32(texts.cells().size()), texts.count());
    quint32 next = 0;
    const quint32 *number = texts.cells().data();
    for (const QString &name : rows.fieldNames()) {
        if (*number++ == next) {
            writer.add(name.toUtf8());
            ++next;
        }
    }
    QByteArray text;
    for (qsizetype row = 0; next < texts.count(); ++row) {
        for (int field = 0; field < rows.fieldCount(); ++field) {
            const Value value = rows.value(row, field);
            const CellValue cell = cellValue(value);
            if (!cell.isText() || *number++ != next)
                continue;
            text.resize(0);
            appendCellText(text, value, cell.kind, style);
            writer.add(text);
            ++next;
        }
    }
    writer.finish();
}

class WorkbookBuild
{
public:
    WorkbookBuild(const Rowset &rows, const WorkbookOptions &options)
        : m_rows(rows)
        , m_options(options)
        , m_progress(options, rows.rowCount())
        , m_sheets(sheetsOf(rows, options.sheetName))
        , m_survey(rows, m_sheets, options.style)
    {
        for (qsizetype row = 0; row < rows.rowCount(); ++row) {
            m_progress.surveyed(row);
            m_survey.addRow(row);
        }
    }

    void write(CompoundFile &file)
    {
        file.startStream("Workbook");
        RecordWriter out(file);
        writeStream(out);
        out.flush();
        file.startStream(kSummaryStream);
        file.write(summaryInformation(m_options));
        file.startStream(kDocumentSummaryStream);
        file.write(documentSummaryInformation());
        file.finish();
    }

    const WorkbookNotes &notes() const { return m_survey.notes(); }

private:
    void writeStream(RecordWriter &out)
    {
        CellFormats formats;
        const quint16 headingXf
            = formats.add({.code = QStringLiteral("@"), .font = CellFont::Bold});
        std::vector<SheetColumn> columns;
        for (const ColumnSurvey &survey : m_survey.columns())
            columns.push_back(
                {columnFormats(survey, m_options.style, formats), survey.width(m_options.style)});
        const std::vector<quint32> places = writeGlobals(out, m_sheets, formats, m_options.author);
        writeTexts(out, m_rows, m_survey.texts(), m_options.style);
        out.record(biff::Record::Eof);

        SheetWriter sheetWriter(out, m_rows, columns, headingXf, m_survey.texts().cells());
        std::vector<quint32> starts;
        for (const WorkbookSheet &sheet : m_sheets) {
            starts.push_back(out.position());
            sheetWriter.write(
                sheet, int(starts.size()), [this](qsizetype row) { m_progress.written(row); });
        }
        for (size_t i = 0; i < places.size(); ++i)
            out.overwrite(places[i], starts[i]);
    }

    const Rowset &m_rows;
    const WorkbookOptions &m_options;
    Progress m_progress;
    std::vector<WorkbookSheet> m_sheets;
    RowsetSurvey m_survey;
};

void refuseTooManyFields(const Rowset &rows, const FileReplacement &file)
{
    if (rows.fieldCount() <= biff::kMaxColumns)
        return;
    throw WorkbookError(file.failureText(
        QStringLiteral("The query returns %1 fields, and a sheet holds at most %2 columns. Take "
                       "fields out of the query.")
            .arg(rows.fieldCount())
            .arg(biff::kMaxColumns)));
}

} // namespace

WorkbookError::WorkbookError(const QString &message)
    : std::runtime_error(message.toStdString())
    , m_message(message)
{
}

FileReplacement workbookReplacement(const QString &fileName)
{
    return {QStringLiteral("Excel workbook"), fileName};
}

WorkbookNotes writeWorkbook(
    const Rowset &rows, const QString &fileName, const WorkbookOptions &options)
{
    FileReplacement file = workbookReplacement(fileName);
    WorkbookNotes notes = writeWorkbook(rows, file, options);
    if (!file.commit())
        throw WorkbookError(file.failure());
    return notes;
}

WorkbookNotes writeWorkbook(
    const Rowset &rows, FileReplacement &file, const WorkbookOptions &options)
{
    refuseTooManyFields(rows, file);
    if (!file.open())
        throw WorkbookError(file.failure());
    try {
        WorkbookBuild build(rows, options);
        build.write(*CompoundFile::create(file.device()));
        if (!file.complete())
            throw WorkbookError(file.failure());
        return build.notes();
    } catch (const CompoundFileError &) {
        throw WorkbookError(file.failure());
    } catch (const StreamTooLong &) {
        throw WorkbookError(file.failureText(
            QStringLiteral("The rows need more than 2 GB, the most that a workbook can hold. "
                           "Narrow the report down.")));
    }
}

} // namespace corvane
