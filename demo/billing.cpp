#include "demo/clinic.h"
#include "demo/random.h"

#include <algorithm>

namespace corvane::demo {

namespace {

using namespace std::string_view_literals;

constexpr quint64 kSeed = 0x62696c6c69'6e67u;
constexpr Money kMissedFee{35'00};
constexpr Money kGroupFee{62'00};

Money feeFor(const Appointment &appointment)
{
    if (appointment.groupName)
        return kGroupFee;
    return {60'00 + qint64(appointment.duration) * 1'45};
}

Money percentOf(Money amount, int percent)
{
    return {amount.cents * percent / 100};
}

/// What each appointment costs, and who pays how much of it when.
class Billing
{
public:
    explicit Billing(Clinic &clinic)
        : m_clinic(clinic)
        , m_random(kSeed)
    {
    }

    void bill(const Appointment &appointment)
    {
        if (appointment.color == status::kMissed && m_random.chance(50)) {
            enter(appointment, 0, EntryType::Charge, kMissedFee, "Missed appointment");
            settle(appointment, kMissedFee, 40);
        }
        if (appointment.color != status::kKept && appointment.color != status::kGroup)
            return;
        const Money fee = feeFor(appointment);
        enter(appointment, 0, EntryType::Charge, fee,
            appointment.groupName ? "Group session"sv : "Session"sv);
        if (m_clinic.patients[appointment.patient].payer)
            claim(appointment, fee);
        else
            settle(appointment, fee, 85);
    }

private:
    /// The patient pays the whole amount within a month, or does not.
    void settle(const Appointment &appointment, Money amount, int percent)
    {
        const int delay = m_random.chance(60) ? 0 : m_random.between(1, 30);
        if (amount.cents > 0 && m_random.chance(percent))
            enter(appointment, delay, EntryType::Payment, amount, "Patient payment");
    }

    void claim(const Appointment &appointment, Money fee)
    {
        const Money copay{m_random.chance(50) ? 20'00 : 25'00};
        enter(appointment, 0, EntryType::Payment, copay, "Copayment");

        Claim claim;
        claim.patient = appointment.patient;
        claim.payer = *m_clinic.patients[appointment.patient].payer;
        claim.serviceDay = appointment.day;
        claim.submitted.day = appointment.day + std::chrono::days(m_random.between(0, 6));
        if (!m_random.chance(30)) // the night run files at midnight
            claim.submitted.second = m_random.between(9 * 3600, 17 * 3600);
        claim.electronic = m_random.chance(85);
        claim.billed = fee;
        answer(claim, appointment, copay);
        if (m_random.chance(60)) // the rest went through the payers' own sites
            m_clinic.claims.push_back(claim);
    }

    void answer(Claim &claim, const Appointment &appointment, Money copay)
    {
        const int delay = m_random.between(12, 45);
        const int roll = m_random.below(100);
        claim.state = roll < 80 ? "Paid"sv
            : roll < 88         ? "Denied"sv
            : roll < 91         ? "Rejected"sv
                                : "Open"sv;
        if (appointment.day + std::chrono::days(delay) > kLastDay)
            claim.state = "Open"sv;
        if (claim.state == "Denied"sv)
            settle(appointment, {claim.billed.cents - copay.cents}, 65);
        if (claim.state != "Paid"sv)
            return;
        claim.allowed = percentOf(claim.billed, m_random.between(68, 96));
        claim.paid = {claim.allowed.cents - copay.cents};
        claim.paidDay = appointment.day + std::chrono::days(delay);
        enter(appointment, delay, EntryType::Payment, claim.paid, "Payer payment", claim.payer);
        enter(appointment, delay, EntryType::Adjustment, {claim.billed.cents - claim.allowed.cents},
            "Contract write-off", claim.payer);
    }

    void enter(const Appointment &appointment, int delay, EntryType type, Money amount,
        std::string_view description, std::optional<size_t> payer = std::nullopt)
    {
        const Day day = appointment.day + std::chrono::days(delay);
        if (day > kLastDay)
            return;
        m_clinic.ledger.push_back(
            {appointment.patient, appointment.provider, day, type, amount, payer, description});
        Money &balance = m_clinic.patients[appointment.patient].balance;
        balance.cents += type == EntryType::Charge ? amount.cents : -amount.cents;
    }

    Clinic &m_clinic;
    Random m_random;
};

} // namespace

void billAppointments(Clinic &clinic)
{
    Billing billing(clinic);
    for (const Appointment &appointment : clinic.appointments)
        billing.bill(appointment);
    std::ranges::stable_sort(clinic.ledger, {}, &LedgerEntry::day);
    std::ranges::stable_sort(
        clinic.claims, {}, [](const Claim &claim) { return claim.submitted.day; });
}

} // namespace corvane::demo
