#include "demo/databases.h"

#include "demo/clinic.h"
#include "demo/database_image.h"

#include "shared/scramble.h"

namespace corvane::demo {

namespace {

// Names and codes compare without case, as they do on the clinic's server; the password exactly.
constexpr const char *kTables = R"(
CREATE TABLE settings (Notice varchar(500));
CREATE TABLE passwords (
  pswd_user_id varchar(20) COLLATE NOCASE NOT NULL PRIMARY KEY,
  pswd_password varchar(50) COLLATE BINARY,
  pswd_screen_access varchar(20),
  pswd_type_of_access smallint,
  pswd_user_name varchar(60) COLLATE NOCASE);
CREATE TABLE providers (
  provider_id varchar(20) COLLATE NOCASE NOT NULL PRIMARY KEY,
  first_name varchar(30) COLLATE NOCASE,
  last_name varchar(40) COLLATE NOCASE,
  display_name varchar(60) COLLATE NOCASE,
  credential varchar(10) COLLATE NOCASE,
  specialty varchar(40) COLLATE NOCASE,
  room varchar(10) COLLATE NOCASE);
CREATE TABLE payers (
  payer_id varchar(10) COLLATE NOCASE NOT NULL PRIMARY KEY,
  name varchar(60) COLLATE NOCASE,
  phone varchar(20));
CREATE TABLE patient_info (
  id integer NOT NULL PRIMARY KEY,
  last_name varchar(60) COLLATE NOCASE,
  first_name varchar(40) COLLATE NOCASE,
  middle_init varchar(1) COLLATE NOCASE,
  acctnbr varchar(12) COLLATE NOCASE,
  ssn varchar(11),
  provider_id varchar(20) COLLATE NOCASE,
  incident_nbr integer,
  payer_id varchar(10) COLLATE NOCASE,
  birth_date date,
  phone varchar(20),
  address varchar(60) COLLATE NOCASE,
  city varchar(40) COLLATE NOCASE,
  state varchar(2) COLLATE NOCASE,
  zip varchar(10),
  active bit,
  balance decimal(10,2));
CREATE TABLE incident_hx (
  patient_id integer NOT NULL,
  incident_nbr integer NOT NULL,
  opened date,
  closed date,
  diagnosis varchar(10) COLLATE NOCASE);
CREATE TABLE patientaccess (
  patientid integer NOT NULL,
  providerid varchar(20) COLLATE NOCASE NOT NULL);
CREATE TABLE appointments (
  id integer NOT NULL PRIMARY KEY,
  patient_id integer,
  provider_id varchar(20) COLLATE NOCASE,
  appt_date date,
  start_min integer,
  duration integer,
  color integer,
  room varchar(10) COLLATE NOCASE,
  group_name varchar(40) COLLATE NOCASE,
  note varchar(2000),
  booked_at datetime);
CREATE TABLE ledger (
  id integer NOT NULL PRIMARY KEY,
  patient_id integer,
  provider_id varchar(20) COLLATE NOCASE,
  entry_date date,
  entry_type varchar(12) COLLATE NOCASE,
  amount decimal(10,2),
  payer_id varchar(10) COLLATE NOCASE,
  description varchar(60) COLLATE NOCASE);
)";

constexpr const char *kIndices = R"(
CREATE INDEX patient_last_name ON patient_info (last_name, first_name, middle_init);
CREATE INDEX patient_first_name ON patient_info (first_name, last_name, middle_init);
CREATE INDEX patient_acctnbr ON patient_info (acctnbr);
CREATE INDEX patient_ssn ON patient_info (ssn);
CREATE INDEX patient_provider ON patient_info (provider_id);
CREATE INDEX incident_patient ON incident_hx (patient_id, incident_nbr);
CREATE INDEX access_patient ON patientaccess (patientid);
CREATE INDEX access_provider ON patientaccess (providerid, patientid);
CREATE INDEX appointment_date ON appointments (appt_date, start_min);
CREATE INDEX appointment_patient ON appointments (patient_id, appt_date);
CREATE INDEX ledger_date ON ledger (entry_date);
CREATE INDEX ledger_patient ON ledger (patient_id, entry_date);
)";

constexpr const char *kNotice
    = "North Harbor Clinic (demo). Every person and every number here is made up. "
      "Treat it as if it were not: lock the screen when you leave.";

std::string scrambled(std::string_view clear)
{
    return scramblePW(QString::fromUtf8(clear.data(), qsizetype(clear.size()))).toStdString();
}

std::string_view word(EntryType type)
{
    switch (type) {
    case EntryType::Charge:
        return "Charge";
    case EntryType::Payment:
        return "Payment";
    case EntryType::Adjustment:
        break;
    }
    return "Adjustment";
}

std::optional<std::string_view> payerId(std::optional<size_t> payer)
{
    return payer ? std::optional(payers()[*payer].id) : std::nullopt;
}

std::optional<std::string_view> providerId(std::optional<size_t> provider)
{
    return provider ? std::optional(providers()[*provider].id) : std::nullopt;
}

void fillOffice(DatabaseImage &image)
{
    Insert(image, "settings", 1).row(std::string_view(kNotice));
    Insert user(image, "passwords", 5);
    for (const User &u : users())
        user.row(u.id, scrambled(u.password), u.screenAccess, u.typeOfAccess, u.name);
    Insert provider(image, "providers", 7);
    for (const Provider &p : providers()) {
        const std::string displayName = std::string("Dr. ").append(p.lastName);
        provider.row(p.id, p.firstName, p.lastName, displayName, p.credential, p.specialty, p.room);
    }
    Insert payer(image, "payers", 3);
    for (const Payer &p : payers())
        payer.row(p.id, p.name, p.phone);
}

void fillPatients(DatabaseImage &image, const Clinic &clinic)
{
    Insert patient(image, "patient_info", 17);
    for (const Patient &p : clinic.patients) {
        patient.row(p.id, p.lastName, p.firstName, p.middleInitial, p.account, p.ssn,
            providerId(p.provider), p.incident, payerId(p.payer), p.birthDate, p.phone, p.address,
            p.city, p.state, p.zip, p.active, p.balance);
    }
    Insert incident(image, "incident_hx", 5);
    for (const Incident &i : clinic.incidents)
        incident.row(i.patientId, i.number, i.opened, i.closed, i.diagnosis);
    Insert access(image, "patientaccess", 2);
    for (const PatientAccess &a : clinic.access)
        access.row(a.patientId, providers()[a.provider].id);
}

void fillCalendar(DatabaseImage &image, const Clinic &clinic)
{
    int id = 0;
    Insert appointment(image, "appointments", 11);
    for (const Appointment &a : clinic.appointments) {
        appointment.row(++id, clinic.patients[a.patient].id, providers()[a.provider].id, a.day,
            a.startMinute, a.duration, a.color, a.room, a.groupName, a.note, a.booked);
    }
}

void fillLedger(DatabaseImage &image, const Clinic &clinic)
{
    int id = 0;
    Insert entry(image, "ledger", 8);
    for (const LedgerEntry &e : clinic.ledger) {
        entry.row(++id, clinic.patients[e.patient].id, providers()[e.provider].id, e.day,
            word(e.type), e.amount, payerId(e.payer), e.description);
    }
}

} // namespace

QByteArray mainDatabase(const Clinic &clinic)
{
    DatabaseImage image;
    image.execute(kTables);
    fillOffice(image);
    fillPatients(image, clinic);
    fillCalendar(image, clinic);
    fillLedger(image, clinic);
    image.execute(kIndices);
    return image.bytes();
}

} // namespace corvane::demo
