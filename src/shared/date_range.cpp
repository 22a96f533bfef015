#include "shared/date_range.h"

namespace corvane {

bool datesFit(const DateEntry &from, const DateEntry &to, bool asksForRange)
{
    if (!from.date || !to.date)
        return false;
    return !asksForRange || isInOrder(from.date->toJulianDay(), to.date->toJulianDay());
}

} // namespace corvane
