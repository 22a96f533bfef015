#include "fuzz/promise.h"
#include "platform/engine/layout_reader.h"
#include "platform/engine/report_control.h"

using namespace corvane;
using test::promise;

/// Reads the input as a report file and loads its first report; a file that is read once is read
/// again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    try {
        const auto source = ReportSource::fromBytes(QStringLiteral("/nowhere/fuzz.rpt"), bytes);
        const QStringList names = readReportNames(source);
        readLayout(source, readXmlTree(source), names.value(0));
    } catch (const ReportError &error) {
        const QString &words = error.description();
        promise(words.endsWith(u'.') || words.endsWith(u'?'), "a refusal is a sentence");
        const int lines = int(bytes.count('\n')) + int(bytes.count('\r')) + 1;
        promise(error.place().line >= 0 && error.place().line <= lines,
            "a refusal's place is in the file");
    }
    return 0;
}
