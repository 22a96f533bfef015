#pragma once

#include "platform/engine/expression/datum.h"

#include <QtCore/QStringList>

#include <exception>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace corvane {

/// A place in a file; line and column count from 1, 0 where it is not known.
struct FilePlace
{
    int line = 0;
    int column = 0;

    bool operator==(const FilePlace &) const = default;
};

/// Why a text is no expression, and where: an offset in UTF-16 units from its start.
struct ExpressionFault
{
    QString words;
    qsizetype offset = 0;
};

/// Why an expression gives no value for one row: what a marked cell stands for.
class EvaluationFault : public std::exception
{
public:
    explicit EvaluationFault(QString words)
        : m_words(std::move(words))
    {
    }
    const QString &words() const { return m_words; }

private:
    QString m_words;
};

enum class AggregateFunction : quint8 { Sum, Average, Count, DistinctCount, Minimum, Maximum };

/// Over which rows: the section's own scope (its group, the page in page sections, the report
/// elsewhere), a named group, the page, the report; Running: from the scope's first row to the
/// current one.
enum class AggregateScope : quint8 { Section, Group, Page, Report };

class Expression;
struct ExpressionProgram;
using ExpressionPtr = std::shared_ptr<const Expression>;

/// One aggregate that an expression asks for; whoever walks the rows computes it.
struct Aggregate
{
    AggregateFunction function = AggregateFunction::Sum;
    AggregateScope scope = AggregateScope::Section;
    QString group; ///< name of the group when scope is Group
    bool isRunning = false;
    ExpressionPtr argument; ///< null: Count of rows
    qsizetype offset = 0; ///< where the group's name stands, else where the aggregate starts
};

/// What is known beside the row.
enum class ReportVariable : quint8 {
    PageNumber,
    PageCount,
    RowNumber,
    User,
    Database,
    PrintTime,
    ReportName
};

/// Answers what an expression asks for while it is evaluated.
class EvaluationContext
{
public:
    virtual ~EvaluationContext() = default;
    /// The column of the current row, by index into Expression::columns().
    virtual Datum column(const Expression &expression, int index) = 0;
    /// The aggregate's value, by index into Expression::aggregates().
    virtual Datum aggregate(const Expression &expression, int index) = 0;
    virtual Datum variable(ReportVariable variable) = 0;
    /// A report parameter by name, without regard to case; an EvaluationFault when there is none.
    virtual Datum parameter(const QString &name) = 0;
    virtual const ValueTextStyle &style() const = 0;
};

/// An expression compiled once and evaluated per row. Immutable.
class Expression
{
public:
    static std::variant<ExpressionPtr, ExpressionFault> compile(QStringView text);
    /// The expression that is just this column.
    static ExpressionPtr ofColumn(const QString &name);

    ~Expression();

    /// @throws EvaluationFault
    Datum evaluate(EvaluationContext &context) const;

    /// The columns that it reads itself, each once; those of aggregates are their arguments'
    /// columns.
    const QStringList &columns() const;
    const std::vector<Aggregate> &aggregates() const;
    /// The names of the parameters, those of aggregates included.
    const QStringList &parameters() const;
    bool uses(ReportVariable variable) const;
    /// Index 0 of columns() when the expression is nothing but that column.
    bool isPlainColumn() const;

    /// The first aggregate over a group that is not among the names; these compare without regard
    /// to case.
    std::optional<ExpressionFault> findUnknownGroup(const QStringList &groupNames) const;
    /// The first column, those of aggregates included, that is not among the names.
    std::optional<ExpressionFault> findUnknownColumn(const QStringList &fieldNames) const;

    explicit Expression(ExpressionProgram program);

private:
    std::unique_ptr<const ExpressionProgram> m_program;
};

} // namespace corvane
