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

constexpr SqlType of(ValueKind kind, int scale = -1)
{
    return {kind, scale, -1, false, false};
}
constexpr SqlType kPadded{ValueKind::Text, -1, -1, false, true};
constexpr SqlType kUnlimited{ValueKind::Text, -1, -1, true, false};

constexpr std::array kTypeWords{
    TypeWord{QLatin1StringView("int"), of(ValueKind::Integer)},
    TypeWord{QLatin1StringView("integer"), of(ValueKind::Integer)},
    TypeWord{QLatin1StringView("bigint"), of(ValueKind::Integer)},
    TypeWord{QLatin1StringView("smallint"), of(ValueKind::Integer)},
    TypeWord{QLatin1StringView("tinyint"), of(ValueKind::Integer)},
    TypeWord{QLatin1StringView("bit"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("bool"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("boolean"), of(ValueKind::Boolean)},
    TypeWord{QLatin1StringView("decimal"), of(ValueKind::Decimal, 0)},
    TypeWord{QLatin1StringView("dec"), of(ValueKind::Decimal, 0)},
    TypeWord{QLatin1StringView("numeric"), of(ValueKind::Decimal, 0)},
    TypeWord{QLatin1StringView("money"), of(ValueKind::Decimal, 4)},
    TypeWord{QLatin1StringView("smallmoney"), of(ValueKind::Decimal, 4)},
    TypeWord{QLatin1StringView("float"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("real"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("double"), of(ValueKind::Real)},
    TypeWord{QLatin1StringView("date"), of(ValueKind::Date)},
    TypeWord{QLatin1StringView("datetime"), of(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("datetime2"), of(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("smalldatetime"), of(ValueKind::DateTime)},
    TypeWord{QLatin1StringView("time"), of(ValueKind::Time)},
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
    if (type.kind == ValueKind::Decimal && comma >= 0)
        type.scale = size.sliced(comma + 1).trimmed().toInt();
    if (!type.isText())
        return type;
    bool isNumber = false;
    const int length = size.trimmed().toInt(&isNumber);
    type.unlimited = !isNumber;
    type.length = isNumber ? length : -1;
    return type;
}

} // namespace corvane::embedded
