#include "platform/engine/expression/parser.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr int kDeepest = 200;
constexpr qsizetype kLongest = 65'536;

Node nodeOf(NodeKind kind, std::vector<Node> children)
{
    Node node;
    node.kind = kind;
    node.children = std::move(children);
    return node;
}

std::vector<Node> single(Node node)
{
    std::vector<Node> nodes;
    nodes.push_back(std::move(node));
    return nodes;
}

} // namespace

const std::array<ExpressionParser::BinaryOperator, 1> ExpressionParser::kJoins{
    {{u"&", Operator::Join}}};
const std::array<ExpressionParser::BinaryOperator, 2> ExpressionParser::kSums{
    {{u"+", Operator::Add}, {u"-", Operator::Subtract}}};
const std::array<ExpressionParser::BinaryOperator, 3> ExpressionParser::kProducts{
    {{u"*", Operator::Multiply}, {u"/", Operator::Divide}, {u"mod", Operator::Modulo}}};
const std::array<ExpressionParser::BinaryOperator, 6> ExpressionParser::kComparisons{
    {{u"=", Operator::Equal}, {u"<>", Operator::NotEqual}, {u"<=", Operator::LessOrEqual},
        {u"<", Operator::Less}, {u">=", Operator::GreaterOrEqual}, {u">", Operator::Greater}}};

std::variant<ExpressionProgram, ExpressionFault> parseExpression(QStringView text)
{
    if (text.size() > kLongest)
        return ExpressionFault{
            QStringLiteral("an expression has at most %1 letters").arg(kLongest), kLongest};
    auto tokens = readTokens(text);
    if (const auto *fault = std::get_if<ExpressionFault>(&tokens))
        return *fault;
    return ExpressionParser(std::get<std::vector<Token>>(std::move(tokens))).parse();
}

std::variant<ExpressionProgram, ExpressionFault> ExpressionParser::parse()
{
    m_program.root = parseOr();
    if (m_fault)
        return *m_fault;
    if (current().kind != TokenKind::End)
        return ExpressionFault{
            QStringLiteral("an operator or the end is expected, not %1").arg(current().shown()),
            current().offset};
    return std::move(m_program);
}

Token ExpressionParser::take()
{
    const Token token = current();
    m_at = std::min(m_at + 1, m_tokens.size() - 1);
    return token;
}

bool ExpressionParser::takeSymbol(QStringView symbol)
{
    const bool isThere = current().isSymbol(symbol);
    if (isThere)
        take();
    return isThere;
}

bool ExpressionParser::takeWord(QStringView word)
{
    const bool isThere = current().isWord(word);
    if (isThere)
        take();
    return isThere;
}

Node ExpressionParser::refuse(qsizetype offset, const QString &words)
{
    if (!m_fault)
        m_fault = ExpressionFault{words, offset};
    m_at = m_tokens.size() - 1;
    return {};
}

bool ExpressionParser::expectSymbol(QStringView symbol)
{
    if (takeSymbol(symbol))
        return true;
    refuse(current().offset,
        QStringLiteral("\"%1\" is expected, not %2").arg(symbol, current().shown()));
    return false;
}

Node ExpressionParser::parseOr()
{
    if (m_depth >= kDeepest)
        return refuse(
            current().offset, QStringLiteral("more than %1 levels of parentheses").arg(kDeepest));
    ++m_depth;
    Node node = parseLogic(NodeKind::Or, u"or", &ExpressionParser::parseAnd);
    --m_depth;
    return node;
}

Node ExpressionParser::parseAnd()
{
    return parseLogic(NodeKind::And, u"and", &ExpressionParser::parseNot);
}

Node ExpressionParser::parseLogic(NodeKind kind, QStringView word, Level parseOperands)
{
    Node first = (this->*parseOperands)();
    if (!current().isWord(word))
        return first;
    std::vector<Node> operands;
    operands.push_back(std::move(first));
    while (takeWord(word))
        operands.push_back((this->*parseOperands)());
    return nodeOf(kind, std::move(operands));
}

Node ExpressionParser::parseNot()
{
    bool isNegated = false;
    bool isThere = false;
    for (; takeWord(u"not"); isThere = true)
        isNegated = !isNegated;
    Node operand = parseComparison();
    if (!isThere)
        return operand;
    Node node = nodeOf(NodeKind::Not, {});
    node.children.push_back(std::move(operand));
    return isNegated ? std::move(node) : nodeOf(NodeKind::Not, single(std::move(node)));
}

Node ExpressionParser::parseComparison()
{
    Node left = parseJoin();
    if (takeWord(u"is"))
        return parseIsNull(std::move(left));
    if (current().isWord(u"in") || (current().isWord(u"not") && following().isWord(u"in")))
        return parseIn(std::move(left));
    const auto op = currentOperator(kComparisons);
    if (!op)
        return left;
    take();
    Node node = nodeOf(NodeKind::Binary, single(std::move(left)));
    node.children.push_back(parseJoin());
    node.operators.push_back(*op);
    if (currentOperator(kComparisons))
        return refuse(
            current().offset, QStringLiteral("join two comparisons by \"and\" or \"or\""));
    return node;
}

Node ExpressionParser::parseIsNull(Node operand)
{
    const bool isNegated = takeWord(u"not");
    if (!takeWord(u"null"))
        return refuse(current().offset, QStringLiteral("\"is\" is followed by null or not null"));
    return nodeOf(isNegated ? NodeKind::IsNotNull : NodeKind::IsNull, single(std::move(operand)));
}

Node ExpressionParser::parseIn(Node value)
{
    const NodeKind kind = takeWord(u"not") ? NodeKind::NotIn : NodeKind::In;
    take();
    if (!expectSymbol(u"("))
        return {};
    std::vector<Node> operands = single(std::move(value));
    do
        operands.push_back(parseOr());
    while (takeSymbol(u","));
    expectSymbol(u")");
    return nodeOf(kind, std::move(operands));
}

Node ExpressionParser::parseBinary(std::span<const BinaryOperator> operators, Level parseOperands)
{
    Node first = (this->*parseOperands)();
    auto op = currentOperator(operators);
    if (!op)
        return first;
    Node node = nodeOf(NodeKind::Binary, single(std::move(first)));
    for (; op; op = currentOperator(operators)) {
        take();
        node.operators.push_back(*op);
        node.children.push_back((this->*parseOperands)());
    }
    return node;
}

Node ExpressionParser::parseJoin()
{
    return parseBinary(kJoins, &ExpressionParser::parseSum);
}

Node ExpressionParser::parseSum()
{
    return parseBinary(kSums, &ExpressionParser::parseProduct);
}

Node ExpressionParser::parseProduct()
{
    return parseBinary(kProducts, &ExpressionParser::parseSign);
}

Node ExpressionParser::parseSign()
{
    bool isNegated = false;
    bool isThere = false;
    while (current().isSymbol(u"-") || current().isSymbol(u"+")) {
        isThere = true;
        isNegated ^= take().isSymbol(u"-");
    }
    Node operand = parsePower();
    return isThere && isNegated ? nodeOf(NodeKind::Negate, single(std::move(operand)))
                                : std::move(operand);
}

/// From right to left: 2 ^ 3 ^ 2 is 2 ^ 9. Its exponent may carry a sign.
Node ExpressionParser::parsePower()
{
    Node base = parseOperand();
    if (!takeSymbol(u"^"))
        return base;
    if (++m_depth >= kDeepest)
        return refuse(
            current().offset, QStringLiteral("more than %1 powers of powers").arg(kDeepest));
    Node node = nodeOf(NodeKind::Binary, single(std::move(base)));
    node.operators.push_back(Operator::Power);
    node.children.push_back(parseSign());
    --m_depth;
    return node;
}

std::optional<Operator> ExpressionParser::currentOperator(
    std::span<const BinaryOperator> operators) const
{
    for (const BinaryOperator &candidate : operators) {
        if (current().isSymbol(candidate.text) || current().isWord(candidate.text))
            return candidate.op;
    }
    return std::nullopt;
}

} // namespace corvane
