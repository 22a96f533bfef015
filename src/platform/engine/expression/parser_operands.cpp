#include "platform/engine/expression/nearest_name.h"
#include "platform/engine/expression/parser.h"

#include <algorithm>

namespace corvane {

namespace {

struct VariableName
{
    QStringView text;
    ReportVariable variable;
};

constexpr std::array kVariables{VariableName{u"PageNumber", ReportVariable::PageNumber},
    VariableName{u"PageCount", ReportVariable::PageCount},
    VariableName{u"RowNumber", ReportVariable::RowNumber},
    VariableName{u"User", ReportVariable::User},
    VariableName{u"Database", ReportVariable::Database},
    VariableName{u"PrintTime", ReportVariable::PrintTime},
    VariableName{u"ReportName", ReportVariable::ReportName}};

Node constantNode(Datum value)
{
    Node node;
    node.constant = std::move(value);
    return node;
}

int indexOfName(QStringList &names, const QString &name)
{
    const auto known = std::ranges::find_if(names, [&](const QString &candidate) {
        return candidate.compare(name, Qt::CaseInsensitive) == 0;
    });
    const auto index = int(known - names.begin());
    if (known == names.end())
        names += name;
    return index;
}

QString arityFault(const Function &function, int count)
{
    const auto arguments = [](int n) {
        return n == 0 ? QStringLiteral("no arguments")
            : n == 1  ? QStringLiteral("1 argument")
                      : QStringLiteral("%1 arguments").arg(n);
    };
    const QString takes = function.least == function.most ? arguments(function.least)
        : function.most == Function::kAnyNumber
        ? QString(u"at least " + arguments(function.least))
        : QStringLiteral("%1 to %2").arg(QString::number(function.least), arguments(function.most));
    return QStringLiteral("%1 takes %2, not %3").arg(function.name, takes, QString::number(count));
}

} // namespace

Node ExpressionParser::parseOperand()
{
    const Token token = take();
    switch (token.kind) {
    case TokenKind::Number:
        return numberNode(token);
    case TokenKind::Text:
        return constantNode(token.text);
    case TokenKind::Column:
        return columnNode(token);
    case TokenKind::Parameter:
        return parameterNode(token.text.trimmed());
    case TokenKind::Word:
        return parseWord(token);
    default:
        break;
    }
    if (!token.isSymbol(u"("))
        return refuse(
            token.offset, QStringLiteral("a value is expected, not %1").arg(token.shown()));
    Node inner = parseOr();
    expectSymbol(u")");
    return inner;
}

Node ExpressionParser::numberNode(const Token &token)
{
    const QByteArray digits = token.text.toLatin1();
    if (const auto exact = Decimal::parse(digits))
        return constantNode(*exact);
    bool isInRange = false;
    const double real = digits.toDouble(&isInRange);
    if (!isInRange)
        return refuse(token.offset, QStringLiteral("the number is too large"));
    return constantNode(Datum::real(real));
}

Node ExpressionParser::columnNode(const Token &token)
{
    Node node;
    node.kind = NodeKind::Column;
    node.index = indexOfName(m_program.columns, token.text);
    if (size_t(node.index) == m_program.columnOffsets.size())
        m_program.columnOffsets.push_back(token.offset);
    return node;
}

Node ExpressionParser::parameterNode(const QString &name)
{
    Node node;
    node.kind = NodeKind::Parameter;
    node.index = indexOfName(m_program.parameters, name);
    return node;
}

Node ExpressionParser::parseWord(const Token &word)
{
    if (current().isSymbol(u"("))
        return parseCall(word);
    if (word.isWord(u"True") || word.isWord(u"False"))
        return constantNode(Datum::boolean(word.isWord(u"True")));
    if (word.isWord(u"Null"))
        return constantNode(Datum());
    for (const VariableName &known : kVariables) {
        if (word.isWord(known.text))
            return variableNode(known.variable, word);
    }
    return refuseWord(word);
}

Node ExpressionParser::refuseWord(const Token &word)
{
    if (findFunction(word.text) || findAggregate(word.text))
        return refuse(word.offset, QStringLiteral("%1 is a function; write %1(…)").arg(word.text));
    QStringList names{QStringLiteral("True"), QStringLiteral("False"), QStringLiteral("Null")};
    for (const VariableName &known : kVariables)
        names += known.text.toString();
    const QString near = didYouMean(word.text, names);
    return refuse(word.offset,
        QStringLiteral("unknown word %1%2")
            .arg(word.shown(),
                near.isEmpty()
                    ? QStringLiteral("; columns stand in [brackets] and texts in 'quotes'")
                    : near));
}

Node ExpressionParser::variableNode(ReportVariable variable, const Token &word)
{
    const bool isOfPages
        = variable == ReportVariable::PageNumber || variable == ReportVariable::PageCount;
    if (!m_aggregate.isEmpty() && isOfPages)
        return refuse(word.offset,
            QStringLiteral("%1 cannot stand inside %2, which is computed from rows")
                .arg(word.text, m_aggregate));
    use(variable);
    Node node;
    node.kind = NodeKind::Variable;
    node.variable = variable;
    return node;
}

Node ExpressionParser::parseCall(const Token &name)
{
    if (const AggregateName *aggregate = findAggregate(name.text))
        return parseAggregate(name, *aggregate);
    const Function *function = findFunction(name.text);
    if (!function)
        return refuse(name.offset,
            QStringLiteral("unknown function %1%2")
                .arg(name.shown(), didYouMean(name.text, functionNames() + aggregateNames())));
    take();
    Node call;
    call.kind = NodeKind::Call;
    call.function = function;
    const std::vector<qsizetype> offsets = parseArguments(call.children);
    if (m_fault)
        return {};
    if (const int count = int(call.children.size());
        count < function->least || count > function->most)
        return refuse(name.offset, arityFault(*function, count));
    if (function->needsPrintTime)
        use(ReportVariable::PrintTime);
    return withFormat(std::move(call), offsets);
}

/// Up to and with the closing parenthesis. @return where each argument starts
std::vector<qsizetype> ExpressionParser::parseArguments(std::vector<Node> &arguments)
{
    std::vector<qsizetype> offsets;
    if (takeSymbol(u")"))
        return offsets;
    do {
        offsets.push_back(current().offset);
        arguments.push_back(parseOr());
    } while (takeSymbol(u","));
    expectSymbol(u")");
    return offsets;
}

Node ExpressionParser::withFormat(Node call, const std::vector<qsizetype> &offsets)
{
    if (call.function->name != u"Format" || call.children[1].kind != NodeKind::Constant)
        return call;
    auto format = ValueFormat::compile(call.children[1].constant.toText({}));
    if (const auto *fault = std::get_if<ExpressionFault>(&format))
        return refuse(offsets[1] + 1 + fault->offset, fault->words);
    call.format = std::make_shared<const ValueFormat>(std::get<ValueFormat>(std::move(format)));
    return call;
}

} // namespace corvane
