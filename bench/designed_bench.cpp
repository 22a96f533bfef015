#include "designed_bench.h"

#include "bench_clinic.h"
#include "limit.h"
#include "measured.h"

#include "platform/engine/report_control.h"
#include "platform/pdf/pdf_writer.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace corvane::bench {

namespace {

constexpr auto kConnection
    = QLatin1StringView("Provider=SQLOLEDB;Data Source=sqlite:Data;Initial Catalog=Bench");

/// Seven columns, one group with a repeated header, two aggregates, page numbers.
constexpr auto kReport = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<Reports><Report name="Appointments">
<Styles><Style name="Body" font="Arial" size="9"/><Style name="Head" basedOn="Body" bold="true"/></Styles>
<RecordSource>SELECT last_name, first_name, account, appt_date, start_min, color, room FROM appointments</RecordSource>
<Groups><Group name="name" on="[last_name]" sort="ascending" repeatHeader="true"/></Groups>
<Section kind="group-header" group="name" height="0.25in"><Data column="last_name" width="3in" height="0.2in" style="Head"/></Section>
<Section kind="detail" height="0.16in">
<Data column="last_name" width="1.1in" height="0.16in" style="Body"/><Data column="first_name" x="1.1in" width="1in" height="0.16in" style="Body"/>
<Data column="account" x="2.1in" width="0.9in" height="0.16in" style="Body"/>
<Data column="appt_date" x="3in" width="1in" height="0.16in" style="Body"/>
<Data column="start_min" x="4in" width="0.8in" height="0.16in" style="Body" align="right"/>
<Data column="color" x="4.9in" width="0.9in" height="0.16in" style="Body" align="right"/>
<Data column="room" x="5.8in" width="0.7in" height="0.16in" style="Body" align="right"/>
</Section>
<Section kind="group-footer" group="name" height="0.25in">
<Expression value="Count()" width="1in" height="0.2in" style="Head"/>
<Expression value="Sum([start_min])" x="4in" width="0.8in" height="0.2in" style="Head" align="right"/></Section>
<Section kind="page-footer" height="0.25in"><Expression value="PageNumber &amp; ' of ' &amp; PageCount" width="2in" height="0.2in" style="Body"/></Section>
</Report></Reports>
)xml";

struct Stages
{
    double limitMs = std::numeric_limits<double>::max();
    double layoutMs = limitMs;
    double pdfMs = limitMs;
    double wholeMs = limitMs;
    int pages = 0;
};

double since(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

void runOnce(const QString &folder, int rows, Stages &best)
{
    best.limitMs
        = std::min(best.limitMs, runLimit(QString(folder + u"/limit.pdf").toStdString(), rows));
    QElapsedTimer timer;
    timer.start();
    ReportControl control;
    control.load(folder + u"/Reports/Designed.rpt", QStringLiteral("Appointments"));
    control.dataSource().connectionString = QString(kConnection);
    RenderSettings settings;
    settings.drivers.programFolder = folder;
    const auto connection = Connection::open(QString(kConnection), settings.drivers);
    settings.connection = connection.get();
    const RenderResult result = control.render(settings);
    const double layoutMs = since(timer);
    writePdf(*result.document, folder + u"/designed.pdf");
    best.wholeMs = std::min(best.wholeMs, since(timer));
    best.layoutMs = std::min(best.layoutMs, layoutMs);
    best.pdfMs = std::min(best.pdfMs, since(timer) - layoutMs);
    best.pages = result.document->pageCount();
}

} // namespace

bool measureDesigned(int rows, int rounds)
{
    const QTemporaryDir folder;
    makeBenchClinic(folder.path(), rows);
    QFile file(folder.filePath(QStringLiteral("Reports/Designed.rpt")));
    if (!file.open(QIODevice::WriteOnly) || file.write(kReport) < 0)
        return false;
    file.close();
    Stages best;
    for (int round = 0; round < rounds; ++round)
        runOnce(folder.path(), rows, best);
    record("designed", best.wholeMs / best.limitMs);
    std::printf("     rows   pages limit ms | query and layout    PDF  whole\n");
    std::printf("%9d %7d %8.0f | %16.2f %6.2f %6.2f\n", rows, best.pages, best.limitMs,
        best.layoutMs / best.limitMs, best.pdfMs / best.limitMs, best.wholeMs / best.limitMs);
    return true;
}

} // namespace corvane::bench
