#include "platform/engine/attribute_reader.h"

#include "platform/engine/expression/value_format.h"
#include "platform/engine/suggestion.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <cmath>

namespace corvane {

namespace {

struct LengthUnit
{
    QStringView name;
    double twips;
};

constexpr LengthUnit kUnits[]
    = {{u"in", 1440}, {u"cm", 1440 / 2.54}, {u"mm", 144 / 2.54}, {u"pt", 20}, {u"tw", 1}};

/// The largest page that PDF files can have; also keeps sums of lengths from running over.
constexpr double kMaxLength = 200 * 1440;

std::optional<double> parseNumber(QStringView text)
{
    static const QRegularExpression plain(QStringLiteral("^-?[0-9]+(\\.[0-9]+)?$"));
    if (!plain.match(text).hasMatch())
        return {};
    return text.toDouble();
}

constexpr qsizetype kLongestShown = 40;

QString shown(const QString &value)
{
    return value.size() <= kLongestShown ? value : QString(value.left(kLongestShown) + u'…');
}

} // namespace

std::optional<Twips> parseLength(QStringView text)
{
    for (const LengthUnit &unit : kUnits) {
        if (!text.endsWith(unit.name))
            continue;
        const std::optional<double> number = parseNumber(text.chopped(unit.name.size()));
        if (!number || std::abs(*number * unit.twips) > kMaxLength)
            return {};
        return Twips::rounded(*number * unit.twips);
    }
    return {};
}

std::optional<QRgb> parseColour(QStringView text)
{
    static const QRegularExpression hexadecimal(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
    if (!hexadecimal.match(text).hasMatch())
        return {};
    return 0xff000000 | text.sliced(1).toUInt(nullptr, 16);
}

QString AttributeReader::text(const char *name) const
{
    const XmlAttribute *attribute = find(name);
    return attribute ? attribute->value : QString();
}

QString AttributeReader::name(const char *name) const
{
    const QString value = text(name);
    if (has(name) && value.trimmed().isEmpty())
        fail(name, QStringLiteral("it may not be empty."));
    return value;
}

std::optional<bool> AttributeReader::flag(const char *name) const
{
    static constexpr QStringView kWords[] = {u"false", u"true"};
    const int word = choice(name, kWords);
    return word < 0 ? std::optional<bool>() : word == 1;
}

std::optional<int> AttributeReader::count(const char *name, int least, int most) const
{
    if (!has(name))
        return {};
    bool isNumber = false;
    const int value = text(name).toInt(&isNumber);
    if (!isNumber || value < least || value > most)
        fail(name, QStringLiteral("a whole number from %1 to %2 is needed.").arg(least).arg(most));
    return value;
}

std::optional<double> AttributeReader::number(const char *name, double least, double most) const
{
    if (!has(name))
        return {};
    const std::optional<double> value = parseNumber(text(name));
    if (!value || *value < least || *value > most)
        fail(name, QStringLiteral("a number from %1 to %2 is needed.").arg(least).arg(most));
    return value;
}

std::optional<Twips> AttributeReader::length(const char *name) const
{
    if (!has(name))
        return {};
    const std::optional<Twips> value = parseLength(text(name));
    if (!value) {
        fail(name,
            QStringLiteral(
                "a length of at most 200in is needed, a number with in, cm, mm, pt or tw, such as "
                "\"1.5in\"."));
    }
    if (*value < Twips())
        fail(name, QStringLiteral("it may not be negative."));
    return value;
}

std::optional<QRgb> AttributeReader::colour(const char *name) const
{
    if (!has(name))
        return {};
    const std::optional<QRgb> value = parseColour(text(name));
    if (!value)
        fail(name, QStringLiteral("a colour is needed, such as \"#1f4e79\"."));
    return value;
}

ExpressionPtr AttributeReader::expression(const char *name) const
{
    if (!has(name))
        return nullptr;
    auto compiled = Expression::compile(text(name));
    if (const auto *fault = std::get_if<ExpressionFault>(&compiled))
        fail(name, *fault);
    return std::get<ExpressionPtr>(std::move(compiled));
}

QString AttributeReader::format(const char *name) const
{
    const auto compiled = ValueFormat::compile(text(name));
    if (const auto *fault = std::get_if<ExpressionFault>(&compiled))
        fail(name, *fault);
    return text(name);
}

int AttributeReader::choice(const char *name, std::span<const QStringView> words) const
{
    if (!has(name))
        return -1;
    const QString value = text(name);
    QStringList possible;
    for (const QStringView word : words) {
        if (word == value)
            return int(possible.size());
        possible += word.toString();
    }
    fail(name, QString(u"no such value" % suggestion(value, possible)));
}

void AttributeReader::fail(const char *name, const QString &words) const
{
    failAt(name, 0, words);
}

void AttributeReader::fail(const char *name, const ExpressionFault &fault) const
{
    const QString place = QStringLiteral("at character %1: ").arg(fault.offset + 1);
    const QStringView end = fault.words.endsWith(u'?') || fault.words.endsWith(u'.') ? u"" : u".";
    failAt(name, fault.offset, QString(place % fault.words % end));
}

void AttributeReader::failAt(const char *name, qsizetype unit, const QString &words) const
{
    const XmlAttribute &attribute = *find(name);
    m_source.fail(offsetInValue(m_source, attribute, unit),
        QString(QStringLiteral("%1=\"%2\" of <%3>: ")
                    .arg(attribute.name, shown(attribute.value), m_element.name)
            % words));
}

} // namespace corvane
