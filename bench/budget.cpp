#include "budget.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <stdexcept>

namespace corvane::bench {

QString Budget::text() const
{
    return most ? QString(QString::number(*most) + u' ' + unit) : QStringLiteral("-");
}

QString Budget::figure(double value)
{
    return value < 10 ? QString::number(value, 'f', 2)
        : value < 100 ? QString::number(value, 'f', 1)
                      : QString::number(value, 'f', 0);
}

std::vector<Budget> readBudgets(const QByteArray &json)
{
    std::vector<Budget> budgets;
    for (const QJsonValue row : QJsonDocument::fromJson(json).array()) {
        Budget budget{row[u"name"].toString(), row[u"work"].toString(), {}, row[u"unit"].toString(),
            row[u"full"].toBool()};
        if (row[u"budget"].isDouble())
            budget.most = row[u"budget"].toDouble();
        if (budget.name.isEmpty() || budget.work.isEmpty() || budget.unit.isEmpty())
            throw std::runtime_error("budget.json: row " + std::to_string(budgets.size() + 1)
                + " lacks its name, work or unit");
        budgets.push_back(std::move(budget));
    }
    if (budgets.empty())
        throw std::runtime_error("budget.json has no rows");
    return budgets;
}

} // namespace corvane::bench
