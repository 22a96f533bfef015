#include "definitions/checker/check_pass.h"

#include "platform/engine/report_control.h"

namespace corvane {

namespace {

Finding findingOf(const ReportError &error)
{
    const FilePlace place = error.place();
    QString sentence = error.sentence();
    if (!sentence.isEmpty())
        sentence[0] = sentence[0].toUpper();
    return {FindingKind::DesignedReport, {std::max(place.line, 1), std::max(place.column, 1)}, sentence, {}};
}

} // namespace

std::vector<Finding> checkDesignedReport(const QString &path)
{
    std::vector<Finding> findings;
    try {
        for (const QString &name : ReportControl::layoutNames(path)) {
            try {
                ReportControl().load(path, name);
            } catch (const ReportError &error) {
                findings.push_back(findingOf(error));
            }
        }
    } catch (const ReportError &error) {
        findings.push_back(findingOf(error));
    }
    // A fault of the whole file comes again with every layout.
    findings.erase(std::unique(findings.begin(), findings.end()), findings.end());
    return findings;
}

} // namespace corvane
