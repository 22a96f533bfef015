#include "demo/clinic.h"
#include "demo/notes.h"
#include "demo/random.h"

#include <algorithm>

namespace corvane::demo {

namespace {

using namespace std::string_view_literals;

constexpr quint64 kSeed = 0x7363686564'756c65u;
constexpr int kAppointmentsPerPatient = 12;
constexpr int kFewestADay = 6;
constexpr int kOpens = 8 * 60;
constexpr int kCloses = 19 * 60;
constexpr int kGroupDuration = 90;

constexpr std::array kGroupNames{"Balance and falls"sv, "Chronic pain"sv, "Hand therapy circle"sv,
    "Mindful mornings"sv, "Parents' circle"sv, "Stroke recovery"sv};
constexpr std::array kDurations{30, 45, 45, 45, 60, 60};

struct Share
{
    int color;
    int percent;
};
constexpr std::array kShares{Share{status::kKept, 67}, Share{status::kMissed, 6},
    Share{status::kPatientCancel, 9}, Share{status::kTherapistCancel, 3},
    Share{status::kPending, 6}, Share{status::kPendingOnline, 3}, Share{status::kTentative, 5},
    Share{status::kRetired, 1}};

int pickStatus(Random &random)
{
    int roll = random.below(100);
    for (const Share &share : kShares) {
        roll -= share.percent;
        if (roll < 0)
            return share.color;
    }
    return status::kKept;
}

/// Calls at the edges of the clock's halves: midnight, noon and the last minute before one.
std::optional<int> unusualStart(size_t index)
{
    switch (index % 400) {
    case 3:
        return 0;
    case 7:
        return 720;
    case 11:
        return 779;
    default:
        return std::nullopt;
    }
}

/// Fills the calendar day by day. Each provider walks through the own patients in turn, so nobody
/// comes twice on a day in a clinic of ordinary size.
class Diary
{
public:
    explicit Diary(Clinic &clinic)
        : m_clinic(clinic)
        , m_random(kSeed)
        , m_caseloads(providers().size())
    {
        for (size_t i = 0; i < clinic.patients.size(); ++i) {
            if (const auto provider = clinic.patients[i].provider)
                m_caseloads[*provider].patients.push_back(i);
        }
    }

    /// A small clinic has only a few providers in on one day; `turn` rotates who they are.
    void fillDay(Day day, int count, size_t turn)
    {
        const int staff = int(providers().size());
        const int working = std::clamp(count / kFewestADay, 1, staff);
        for (int i = 0; i < working; ++i) {
            const int share = (count + working - 1 - i) / working;
            fillProvider(day, (size_t(i) + turn) % size_t(staff), share);
        }
    }

private:
    struct Caseload
    {
        std::vector<size_t> patients;
        size_t next = 0;
    };

    void fillProvider(Day day, size_t provider, int share)
    {
        int minute = kOpens + 5 * m_random.below(4);
        while (share > 0) {
            const bool group = share >= 3 && m_random.chance(4);
            const int booked = group ? bookGroup(day, provider, minute, share) : 1;
            const int duration = group ? kGroupDuration : m_random.pick(kDurations);
            if (!group)
                bookSingle(day, provider, minute, duration);
            share -= booked;
            minute += duration + (m_random.chance(20) ? 15 : 0);
            if (minute >= kCloses)
                minute = kOpens;
        }
    }

    int bookGroup(Day day, size_t provider, int minute, int share)
    {
        const int members = std::min(share, m_random.between(3, 6));
        const std::string_view name = kGroupNames[provider % kGroupNames.size()];
        for (int i = 0; i < members; ++i) {
            Appointment &appointment = add(day, provider, ownPatient(provider));
            appointment.startMinute = minute;
            appointment.duration = kGroupDuration;
            appointment.color = status::kGroup;
            appointment.room = "Hall"sv;
            appointment.groupName = name;
            appointment.note = sessionNote(m_random);
        }
        return members;
    }

    void bookSingle(Day day, size_t provider, int minute, int duration)
    {
        const auto unusual = unusualStart(m_clinic.appointments.size());
        const bool standIn = m_random.chance(12);
        Appointment &appointment
            = add(day, provider, standIn ? anyPatient() : ownPatient(provider));
        appointment.startMinute = unusual.value_or(minute);
        appointment.duration = unusual ? 15 : duration;
        appointment.color = pickStatus(m_random);
        if (!unusual && !m_random.chance(6))
            appointment.room = providers()[provider].room;
        if (appointment.color == status::kKept)
            appointment.note = sessionNote(m_random);
        else if (appointment.color == status::kMissed
            || appointment.color == status::kPatientCancel)
            appointment.note = absenceNote(m_random);
    }

    Appointment &add(Day day, size_t provider, size_t patient)
    {
        Appointment &appointment = m_clinic.appointments.emplace_back();
        appointment.patient = patient;
        appointment.provider = provider;
        appointment.day = day;
        appointment.booked.day = day - std::chrono::days(m_random.between(1, 60));
        if (!m_random.chance(12)) // the web form files its requests at midnight
            appointment.booked.second = m_random.between(kOpens * 60, kCloses * 60);
        return appointment;
    }

    size_t anyPatient() { return size_t(m_random.below(int(m_clinic.patients.size()))); }

    size_t ownPatient(size_t provider)
    {
        Caseload &caseload = m_caseloads[provider];
        if (caseload.patients.empty())
            return anyPatient();
        return caseload.patients[caseload.next++ % caseload.patients.size()];
    }

    Clinic &m_clinic;
    Random m_random;
    std::vector<Caseload> m_caseloads;
};

std::vector<Day> weekDays()
{
    std::vector<Day> days;
    for (Day day = kFirstDay; day <= kLastDay; day += std::chrono::days(1)) {
        const std::chrono::weekday weekday(day);
        if (weekday != std::chrono::Saturday && weekday != std::chrono::Sunday)
            days.push_back(day);
    }
    return days;
}

} // namespace

void bookAppointments(Clinic &clinic)
{
    const std::vector<Day> days = weekDays();
    const qint64 total = qint64(clinic.patients.size()) * kAppointmentsPerPatient;
    clinic.appointments.reserve(size_t(total));
    Diary diary(clinic);
    const qint64 dayCount = qint64(days.size());
    for (qint64 i = 0; i < dayCount; ++i) {
        const qint64 count = (i + 1) * total / dayCount - i * total / dayCount;
        diary.fillDay(days[size_t(i)], int(count), size_t(i));
    }
}

} // namespace corvane::demo
