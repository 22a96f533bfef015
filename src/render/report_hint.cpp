#include "render/report_hint.h"

#include "definitions/report_kind.h"
#include "definitions/tabular_definition.h"
#include "platform/engine/report_control.h"
#include "shared/report_host.h"

#include <QtCore/QFileInfo>

namespace corvane {

namespace {

/// A text with a brace prints the moment of the run, whatever else it holds, and says nothing
/// before.
QString tabularHeader(const QString &path)
{
    const TabularDefinition definition(path);
    QStringList lines;
    for (const QStringView part : {u"LText", u"CText", u"RText"}) {
        const QString text = definition.header(part).trimmed();
        if (!text.isEmpty() && !text.contains(u'}'))
            lines += text;
    }
    return lines.join(u'\n');
}

QString designedTitle(const QString &path)
{
    try {
        ReportControl report;
        report.load(path, ReportControl::layoutNames(path).value(0).trimmed());
        const QString title = report.layout().title.trimmed();
        return title.isEmpty() ? report.layout().name : title;
    } catch (const ReportError &error) {
        return error.description();
    }
}

} // namespace

QString reportHint(const QString &path)
{
    if (const QString reason = unreadableReason(path); !reason.isEmpty())
        return reason;
    const QString hint
        = getReportType(path) == TabularReport ? tabularHeader(path) : designedTitle(path);
    return hint.isEmpty() ? QFileInfo(path).fileName() : hint;
}

} // namespace corvane
