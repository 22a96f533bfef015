#pragma once

#include "platform/engine/expression/expression.h"
#include "platform/engine/expression/value_format.h"

namespace corvane {

struct Function;

enum class Operator : quint8 {
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Power,
    Join,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual
};

enum class NodeKind : quint8 {
    Constant,
    Column,
    Aggregate,
    Variable,
    Parameter,
    Binary, ///< operands from left to right with their operators
    And,
    Or,
    Not,
    Negate,
    In,
    NotIn, ///< the value, then the list
    IsNull,
    IsNotNull,
    Call
};

/// One node of a compiled expression. Operators of the same rank stand side by side in one node, so
/// that the depth of the tree is the depth of the parentheses.
struct Node
{
    NodeKind kind = NodeKind::Constant;
    std::vector<Node> children;
    std::vector<Operator> operators; ///< Binary: operators[i] stands before children[i + 1]
    Datum constant;
    int index = 0; ///< Column, Aggregate, Parameter: into the program's lists
    ReportVariable variable = ReportVariable::PageNumber;
    const Function *function = nullptr;
    std::shared_ptr<const ValueFormat> format; ///< Call of Format with a literal format
};

/// What an expression's text compiles to.
struct ExpressionProgram
{
    Node root;
    QStringList columns;
    std::vector<qsizetype> columnOffsets; ///< of each column's first mention
    QStringList parameters;
    std::vector<Aggregate> aggregates;
    quint32 variables = 0; ///< one bit for each ReportVariable that is used
};

} // namespace corvane
