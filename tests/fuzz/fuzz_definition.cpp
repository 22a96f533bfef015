#include "definitions/checker/definition_check.h"
#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "fuzz/promise.h"
#include "platform/composer/page_composer.h"
#include "platform/composer/table_format.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/report_host.h"
#include "shared/run_time_fault.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

using namespace corvane;
using test::promise;

namespace {

bool isFontSize(double points)
{
    return points == 0 || (points >= kSmallestFont && points <= kLargestFont);
}

/// What a run asks of a definition before it looks at the rows: whether it gets that far.
bool runs(const TabularDefinition &definition)
{
    try {
        definition.fieldCount();
        definition.pageColumns();
        if (definition.groupField() >= 1)
            definition.subTotal(), definition.grandTotal();
        definition.noteField();
        for (const QString &ordinal :
            splitText(definition.columnFields(), u"|").value_or(QStringList()))
            toInt16(leadingNumber(ordinal));
    } catch (const RunTimeFault &fault) {
        promise(
            fault.number() == RunTimeFault::Overflow, "a number is too large or it is a number");
        return false;
    }
    QString font = definition.font();
    font.replace(u';', u'|');
    return isFontSize(leadingNumber(getPiece(font, 2))) && isFontSize(definition.fontSize())
        && formatWidth(definition.spacing()).has_value();
}

void tellsPlaces(const std::vector<Finding> &findings, const QString &text)
{
    const QStringList lines = text.split(u'\n');
    for (const Finding &finding : findings) {
        const QString words = findingLine(QStringLiteral("f"), finding);
        promise(words.endsWith(u'.') || words.endsWith(u'?'), "a finding is a sentence");
        promise(!words.contains(u'\n'), "a finding is one line");
        promise(finding.place.line >= 1 && finding.place.line <= lines.size(),
            "a finding is in the file");
        promise(finding.place.column >= 1
                && finding.place.column <= lines[finding.place.line - 1].size() + 1,
            "a finding is on its line");
    }
    promise(
        std::ranges::is_sorted(findings, {}, &Finding::place), "findings come in the file's order");
}

} // namespace

/// A file among the reports: the checker tells whatever keeps a run from starting.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("fuzz.rpt"));
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QFile file(path);
    promise(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
        "the file can be made");
    file.close();
    const auto findings = checkDefinition(path);
    const int type = getReportType(path);
    if (type != DesignedReport)
        tellsPlaces(findings, profileText(path, bytes));
    if (type == TabularReport && !runs(TabularDefinition(path)))
        promise(hasErrors(findings), "the checker tells what a run stops at");
    return 0;
}
