#include "platform/database/embedded/sql_type.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

struct TypeWord
{
    QLatin1StringView word;
    SqlType type;
};

constexpr SqlType of(ValueKind kind)
{
    return {.kind = kind};
}
constexpr SqlType whole(int precision)
{
    return {.kind = ValueKind::Integer, .precision = precision};
}
constexpr SqlType amount(int precision)
{
    return {.kind = ValueKind::Decimal, .scale = 4, .precision = precision, .money = true};
}
/// With the digits behind the seconds that the server shows when a declaration names none.
constexpr SqlType precise(ValueKind kind)
{
    return {.kind = kind, .scale = 7};
}
constexpr SqlType kDecimal{.kind = ValueKind::Decimal, .scale = 0, .precision = 18};
constexpr SqlType kPadded{.kind = ValueKind::Text, .padded = true};
constexpr SqlType kUnlimited{.kind = ValueKind::Text, .unlimited = true};

constexpr std::array kTypeWords{
    TypeWord{QLatin1StringView("int"), whole(10)},
    TypeWord{QLatin1StringView("integer"), whole(10)},
    TypeWord{QLatin1StringView("bigint"), whole(19)},
    TypeWord{QLatin1StringView("smallint"), whole(5)},
    TypeWord{QLatin1StringView("tinyint"), whole(3)},
    TypeWord{QLatin1StringView("bit"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("bool"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("boolean"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("decimal"), kDecimal},
    TypeWord{QLatin1StringView("dec"), kDecimal},
    TypeWord{QLatin1StringView("numeric"), kDecimal},
    TypeWord{QLatin1StringView("money"), amount(19)},
    TypeWord{QLatin1StringView("smallmoney"), amount(10)},
    TypeWord{QLatin1StringView("float"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("real"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("double"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("date"), of(ValueKind::Date)},
    TypeWord{QLatin1StringView("datetime"), of(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("datetime2"), precise(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("smalldatetime"), of(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("time"), precise(ValueKind::Time)},
    TypeWord{QLatin1StringView("char"), kPadded},
    TypeWord{QLatin1StringView("nchar"), kPadded},
    TypeWord{QLatin1StringView("character"), kPadded},
    TypeWord{QLatin1StringView("varchar"), of(ValueKind::Text)},
    TypeWord{QLatin1StringView("nvarchar"), of(ValueKind::Text)},
    TypeWord{QLatin1StringView("text"), kUnlimited},
    TypeWord{QLatin1StringView("ntext"), kUnlimited},
    TypeWord{QLatin1StringView("sysname"), of(ValueKind::Text)},
    TypeWord{QLatin1StringView("uniqueidentifier"), of(ValueKind::Text)},
    TypeWord{QLatin1StringView("blob"), of(ValueKind::Bytes)},
    TypeWord{QLatin1StringView("image"), of(ValueKind::Bytes)},
    TypeWord{QLatin1StringView("binary"), of(ValueKind::Bytes)},
    TypeWord{QLatin1StringView("varbinary"), of(ValueKind::Bytes)},
};

} // namespace

SqlType declaredType(QStringView declaration)
{
    const qsizetype paren = declaration.indexOf(u'(');
    const QStringView words = (paren < 0 ? declaration : declaration.first(paren)).trimmed();
    const qsizetype blank = words.indexOf(u' ');
    const QStringView word = blank < 0 ? words : words.first(blank);
    const auto known = std::ranges::find_if(kTypeWords,
        [&](const TypeWord &t) { return word.compare(t.word, Qt::CaseInsensitive) == 0; });
    if (known == kTypeWords.end())
        return {};
    SqlType type = known->type;
    if (paren < 0)
        return type;
    const QStringView size = declaration.sliced(
        paren + 1, std::max<qsizetype>(0, declaration.lastIndexOf(u')') - paren - 1));
    const qsizetype comma = size.indexOf(u',');
    if (type.kind == ValueKind::Decimal) {
        type.precision = (comma < 0 ? size : size.first(comma)).trimmed().toInt();
        type.scale = comma < 0 ? 0 : size.sliced(comma + 1).trimmed().toInt();
    }
    if (type.isMoment() && type.scale >= 0)
        type.scale = std::clamp(size.trimmed().toInt(), 0, 7);
    if (!type.isText())
        return type;
    bool isNumber = false;
    const int length = size.trimmed().toInt(&isNumber);
    type.unlimited = !isNumber;
    type.length = isNumber ? length : -1;
    return type;
}

} // namespace corvane::embedded
