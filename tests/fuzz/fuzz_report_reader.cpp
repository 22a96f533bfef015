#include "platform/engine/layout_reader.h"
#include "platform/engine/report_control.h"

#include <cstdint>

/// Reads the input as a report file and loads its first report. Whatever is wrong with it must come back as a ReportError.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    try {
        const auto source = corvane::ReportSource::fromBytes(QStringLiteral("/nowhere/fuzz.rpt"), bytes);
        const QStringList names = corvane::readReportNames(source);
        corvane::readLayout(source, corvane::readXmlTree(source), names.isEmpty() ? QString() : names.front());
    } catch (const corvane::ReportError &) {
        return 0;
    }
    return 0;
}
