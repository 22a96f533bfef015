#pragma once

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace corvane::bench {

/// One row of budget.json: what may be spent on a piece of work.
struct Budget
{
    QString name; ///< under which its figure is recorded
    QString work;
    std::optional<double> most; ///< empty: the figure is told, nothing more
    QString unit;
    bool isFull = false; ///< left out of the quick check

    /// "1.2 × limit", or "-".
    QString text() const;
    /// A figure as the tables show it.
    static QString figure(double value);
};

/// @throws std::runtime_error when a row lacks what it needs
std::vector<Budget> readBudgets(const QByteArray &json);

} // namespace corvane::bench
