#include "tabular/getrs.h"

#include "definitions/query_template.h"
#include "definitions/tabular_definition.h"
#include "platform/composer/page_composer.h"
#include "platform/grid/data_control.h"
#include "shared/report_host.h"
#include "shared/reportr.h"
#include "tabular/tabular_build.h"

#include <QtCore/QElapsedTimer>

namespace corvane {

QString tabularQuery(const TabularRun &run)
{
    const TabularDefinition &definition = run.definition;
    QueryTokens tokens;
    if (definition.getDates())
        tokens.dates = {run.host.dateFrom().text, run.host.dateTo().text};
    if (definition.getPatient())
        tokens.patient = run.state.gPatientID;
    return queryText(definition.recordSource1(), definition.recordSource2(), databaseNames(run.state), tokens);
}

BodyResult getrs(const TabularRun &run, const QString &Spacing, const QString &Heading)
{
    run.host.showProgress(0);
    const QString query = tabularQuery(run);
    TabularBuild build(run, Spacing, Heading);
    QElapsedTimer timer;
    timer.start();
    const auto watch = [&host = run.host] {
        host.showProgress(0);
        if (host.stopRequested())
            throw RunStopped();
    };
    if (!TestSQL(run.state, run.host, query, watch))
        return BodyResult::QueryRefused;
    const RowsetPtr rows = run.state.gConn->openRowset(query);
    run.Adodc1.setRecordSource(query);
    run.Adodc1.refresh(run.state.gConn.get(), run.state.drivers(run.Adodc1.connectionString()));
    run.timings.queryMs = timer.restart();
    run.timings.rows = rows->rowCount();
    build.writeRows(*rows);
    build.writeTotals();
    run.timings.composeMs = timer.elapsed();
    run.host.showProgress(0);
    return BodyResult::Complete;
}

} // namespace corvane
