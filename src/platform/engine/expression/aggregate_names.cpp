#include "platform/engine/expression/aggregate_names.h"

#include <array>

namespace corvane {

namespace {

constexpr std::array kAggregates{
    AggregateName{u"Sum", AggregateFunction::Sum},
    AggregateName{u"Avg", AggregateFunction::Average},
    AggregateName{u"Count", AggregateFunction::Count},
    AggregateName{u"DistinctCount", AggregateFunction::DistinctCount},
    AggregateName{u"Min", AggregateFunction::Minimum},
    AggregateName{u"Max", AggregateFunction::Maximum},
    AggregateName{u"RunningSum", AggregateFunction::Sum, true},
    AggregateName{u"RunningAvg", AggregateFunction::Average, true},
    AggregateName{u"RunningCount", AggregateFunction::Count, true},
    AggregateName{u"RunningDistinctCount", AggregateFunction::DistinctCount, true},
    AggregateName{u"RunningMin", AggregateFunction::Minimum, true},
    AggregateName{u"RunningMax", AggregateFunction::Maximum, true},
    AggregateName{u"PercentOf", AggregateFunction::Sum, false, true},
};

} // namespace

const AggregateName *findAggregate(QStringView name)
{
    for (const AggregateName &aggregate : kAggregates) {
        if (name.compare(aggregate.name, Qt::CaseInsensitive) == 0)
            return &aggregate;
    }
    return nullptr;
}

QStringList aggregateNames()
{
    QStringList names;
    for (const AggregateName &aggregate : kAggregates)
        names += aggregate.name.toString();
    return names;
}

} // namespace corvane
