#pragma once

#include <QtCore/QByteArray>

class QDateTime;
class QString;

namespace corvane {

struct WorkbookOptions;

/// Streams of the document's properties ([MS-OLEPS]); empty texts and an invalid time are left out.
constexpr auto kSummaryStream = "\005SummaryInformation";
constexpr auto kDocumentSummaryStream = "\005DocumentSummaryInformation";
QByteArray summaryInformation(const WorkbookOptions &options);
QByteArray documentSummaryInformation();

} // namespace corvane
