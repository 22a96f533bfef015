#pragma once

#include "platform/engine/expression/aggregate_names.h"
#include "platform/engine/expression/functions.h"
#include "platform/engine/expression/program.h"
#include "platform/engine/expression/tokens.h"

#include <array>

namespace corvane {

/// The text of an expression as a tree, or the first fault in it.
std::variant<ExpressionProgram, ExpressionFault> parseExpression(QStringView text);

/// Each level of the grammar is one function. After a fault the parser stands at the end, so that
/// every level returns at once.
class ExpressionParser
{
public:
    /// The tokens end with one of kind End.
    explicit ExpressionParser(std::vector<Token> tokens)
        : m_tokens(std::move(tokens))
    {
    }

    std::variant<ExpressionProgram, ExpressionFault> parse();

private:
    struct BinaryOperator
    {
        QStringView text;
        Operator op;
    };
    using Level = Node (ExpressionParser::*)();

    static const std::array<BinaryOperator, 1> kJoins;
    static const std::array<BinaryOperator, 2> kSums;
    static const std::array<BinaryOperator, 3> kProducts;
    static const std::array<BinaryOperator, 6> kComparisons;

    const Token &current() const { return m_tokens[m_at]; }
    const Token &following() const { return m_tokens[std::min(m_at + 1, m_tokens.size() - 1)]; }
    Token take();
    bool takeSymbol(QStringView symbol);
    bool takeWord(QStringView word);
    bool expectSymbol(QStringView symbol);
    Node refuse(qsizetype offset, const QString &words);
    std::optional<Operator> currentOperator(std::span<const BinaryOperator> operators) const;

    Node parseOr();
    Node parseAnd();
    Node parseNot();
    Node parseComparison();
    Node parseIsNull(Node operand);
    Node parseIn(Node value);
    Node parseJoin();
    Node parseSum();
    Node parseProduct();
    Node parseSign();
    Node parsePower();
    Node parseLogic(NodeKind kind, QStringView word, Level parseOperands);
    Node parseBinary(std::span<const BinaryOperator> operators, Level parseOperands);

    Node parseOperand();
    Node parseWord(const Token &word);
    Node numberNode(const Token &token);
    Node columnNode(const Token &token);
    Node parameterNode(const QString &name);
    Node variableNode(ReportVariable variable, const Token &word);
    Node refuseWord(const Token &word);

    Node parseCall(const Token &name);
    std::vector<qsizetype> parseArguments(std::vector<Node> &arguments);
    Node withFormat(Node call, const std::vector<qsizetype> &offsets);

    Node parseAggregate(const Token &name, const AggregateName &aggregate);
    void parseAggregateArgument(const AggregateName &known, Aggregate &aggregate);
    bool startsScope() const;
    void parseScope(Aggregate &aggregate);
    Node aggregateNode(Aggregate aggregate);
    Node percentNode(const Aggregate &whole);

    void use(ReportVariable variable) { m_program.variables |= 1u << quint32(variable); }

    std::vector<Token> m_tokens;
    size_t m_at = 0;
    int m_depth = 0;
    QString m_aggregate; ///< the name of the aggregate whose argument is being read; empty: none
    ExpressionProgram m_program;
    std::optional<ExpressionFault> m_fault;
};

} // namespace corvane
