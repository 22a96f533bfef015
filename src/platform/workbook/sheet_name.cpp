#include "platform/workbook/sheet_name.h"

namespace corvane {

namespace {

constexpr qsizetype kMaxLength = 31;

QString shortened(QString name, qsizetype length)
{
    if (name.size() <= length)
        return name;
    name.truncate(name[length - 1].isHighSurrogate() ? length - 1 : length);
    return name.trimmed();
}

QString withoutForbidden(QStringView wanted)
{
    static constexpr QStringView kForbidden = u"[]:*?/\\";
    QString name;
    for (const QChar c : wanted)
        name += kForbidden.contains(c) || c.category() == QChar::Other_Control || c >= QChar(0xFFFE)
            ? QChar(u' ')
            : c;
    return name.simplified();
}

/// A name may not begin or end with an apostrophe.
QString withoutOuterQuotes(QString name)
{
    while (name.startsWith(u'\''))
        name = name.sliced(1).trimmed();
    while (name.endsWith(u'\''))
        name = name.chopped(1).trimmed();
    return name;
}

} // namespace

QString sheetName(QStringView wanted, int number)
{
    const QString suffix = number > 1 ? QStringLiteral(" (%1)").arg(number) : QString();
    const QString whole = withoutOuterQuotes(withoutForbidden(wanted));
    QString name = withoutOuterQuotes(shortened(whole, kMaxLength - suffix.size()));
    // "History" belongs to the tracking of changes, in any case of letters.
    if (name.isEmpty() || name.compare(u"history", Qt::CaseInsensitive) == 0)
        name = name.isEmpty() ? QStringLiteral("Sheet1") : QString(name + u'_');
    return name + suffix;
}

} // namespace corvane
