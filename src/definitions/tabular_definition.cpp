#include "definitions/tabular_definition.h"

#include "shared/numbers.h"
#include "shared/run_time_fault.h"

namespace corvane {

TabularDefinition::TabularDefinition(const QString &path)
    : m_file(path)
{
}

qint16 TabularDefinition::whole(QStringView section, QStringView key) const
{
    const QString value = m_file.value(section, key);
    try {
        return toInt16(leadingNumber(value));
    } catch (const RunTimeFault &) {
        throw RunTimeFault(RunTimeFault::Overflow,
            QStringLiteral("\"%1\" of [%2] is %3, a number beyond 16 bits").arg(key, section, value.left(40)));
    }
}

double TabularDefinition::real(QStringView section, QStringView key) const
{
    return leadingNumber(m_file.value(section, key));
}

} // namespace corvane
