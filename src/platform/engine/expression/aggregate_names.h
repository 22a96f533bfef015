#pragma once

#include "platform/engine/expression/expression.h"

namespace corvane {

/// What an aggregate is called.
struct AggregateName
{
    QStringView name;
    AggregateFunction function;
    bool isRunning = false;
    bool isPercent = false; ///< the section's sum over that of the scope
};

/// Without regard to case; null when there is none.
const AggregateName *findAggregate(QStringView name);
QStringList aggregateNames();

} // namespace corvane
