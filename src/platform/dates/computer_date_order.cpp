#include "platform/dates/computer_date_order.h"

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace corvane {

#ifdef Q_OS_WIN

std::optional<DateOrder> computerDateOrder()
{
    wchar_t order[2] {}; // one digit
    if (!GetLocaleInfoW(GetSystemDefaultLCID(), LOCALE_IDATE, order, int(std::size(order))))
        return std::nullopt;
    return dateOrderOf(order[0] - L'0');
}

#else

std::optional<DateOrder> computerDateOrder()
{
    return std::nullopt;
}

#endif

} // namespace corvane
