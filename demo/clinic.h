#pragma once

#include <QtCore/QtGlobal>

#include <array>
#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::demo {

using Day = std::chrono::sys_days;

struct Stamp
{
    Day day;
    int second = 0; ///< after midnight
};

struct Money
{
    qint64 cents = 0;
};

/// Every date of the clinic hangs on these two, never on the clock.
inline constexpr Day kFirstDay{std::chrono::year(2026) / 1 / 1};
inline constexpr Day kLastDay{std::chrono::year(2027) / 6 / 30};

/// Colours in which the clinic's own calendar paints an appointment; they are its status.
namespace status {
inline constexpr int kMissed = 0xc0;
inline constexpr int kPatientCancel = 0xc1;
inline constexpr int kTherapistCancel = 0xc2;
inline constexpr int kRetired = 0xc3; ///< a colour that no status word belongs to any more
inline constexpr int kKept = 0xc000;
inline constexpr int kGroup = 0xc0c000;
inline constexpr int kPending = 0xff0000;
inline constexpr int kPendingOnline = 0xff0001;
inline constexpr int kTentative = 126322256;
} // namespace status

struct Provider
{
    std::string_view id;
    std::string_view firstName;
    std::string_view lastName;
    std::string_view credential;
    std::string_view specialty;
    std::string_view room;
};

struct Payer
{
    std::string_view id;
    std::string_view name;
    std::string_view phone;
};

struct User
{
    std::string_view id;
    std::string_view password; ///< clear, UTF-8
    std::string_view name;
    std::string_view screenAccess; ///< one digit per screen; the reporter's is the 8th
    int typeOfAccess = 0;
};

struct Patient
{
    int id = 0;
    std::string lastName;
    std::string firstName;
    std::optional<std::string_view> middleInitial;
    std::string account;
    std::optional<std::string> ssn; ///< digits only, sometimes fewer than nine
    std::optional<size_t> provider; ///< index into providers()
    std::optional<size_t> payer; ///< index into payers(); empty pays alone
    int incident = 0; ///< number of the current one
    Day birthDate;
    std::string phone;
    std::string address;
    std::string_view city;
    std::string_view state;
    std::string_view zip;
    bool active = true;
    Money balance;
};

struct Incident
{
    int patientId = 0;
    int number = 0;
    Day opened;
    std::optional<Day> closed;
    std::string_view diagnosis;
};

struct PatientAccess
{
    int patientId = 0;
    size_t provider = 0;
};

struct Appointment
{
    size_t patient = 0;
    size_t provider = 0;
    Day day;
    int startMinute = 0; ///< after midnight
    int duration = 0; ///< minutes
    int color = 0;
    std::optional<std::string_view> room;
    std::optional<std::string_view> groupName;
    std::optional<std::string> note;
    Stamp booked;
};

enum class EntryType { Charge, Payment, Adjustment };

struct LedgerEntry
{
    size_t patient = 0;
    size_t provider = 0;
    Day day;
    EntryType type = EntryType::Charge;
    Money amount; ///< never negative; the type gives the sign
    std::optional<size_t> payer;
    std::string_view description;
};

struct Claim
{
    size_t patient = 0;
    size_t payer = 0;
    Day serviceDay;
    Stamp submitted;
    std::string_view state;
    bool electronic = true;
    Money billed;
    Money allowed;
    Money paid;
    Day paidDay; ///< only when something was paid
};

struct Clinic
{
    std::vector<Patient> patients;
    std::vector<Incident> incidents;
    std::vector<PatientAccess> access;
    std::vector<Appointment> appointments; ///< by day
    std::vector<LedgerEntry> ledger; ///< by day
    std::vector<Claim> claims; ///< by day of submission
};

std::span<const Provider> providers();
std::span<const Payer> payers();
std::span<const User> users();

/// The same clinic for the same number of patients, everywhere.
Clinic makeClinic(int patientCount);

/// The three steps of makeClinic, in this order.
void registerPatients(Clinic &clinic, int patientCount);
void bookAppointments(Clinic &clinic);
void billAppointments(Clinic &clinic);

} // namespace corvane::demo
