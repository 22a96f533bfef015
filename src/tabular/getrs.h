#pragma once

#include "platform/database/value.h"

#include <QtCore/QString>

namespace corvane {

class DataControl;
class PageComposer;
class ReportHost;
class TabularDefinition;
struct Reportr;

/// The user asked for a running report to stop. Ends the run; no failure.
struct RunStopped { };

/// How long the stages of a run took.
struct RunTimings {
    qint64 queryMs = 0;
    qint64 composeMs = 0;
    qsizetype rows = 0;
};

/// What the body of one tabular report works on, borrowed for the run.
struct TabularRun {
    Reportr &state;
    ReportHost &host;
    PageComposer &vp;
    DataControl &Adodc1;
    TabularDefinition &definition;
    const ValueTextStyle &style;
    RunTimings &timings;
};

/// The report's query: both pieces, database names, date range and patient put in.
QString tabularQuery(const TabularRun &run);

enum class BodyResult { Complete, QueryRefused };

/// Runs the query and writes every row, group caption, page break, count and note into the open
/// document. QueryRefused: the query did not open, the user has seen "SQL Error", nothing was written.
/// @throws DatabaseError, RunTimeFault, ComposeError, RunStopped
BodyResult getrs(const TabularRun &run, const QString &Spacing, const QString &Heading);

} // namespace corvane
