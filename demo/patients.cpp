#include "demo/clinic.h"
#include "demo/random.h"

namespace corvane::demo {

namespace {

using namespace std::string_view_literals;

constexpr quint64 kSeed = 0x7061746965'6e7473u;
constexpr int kFirstId = 1001;

constexpr std::array kLastNames{"Abbott"sv, "O'Neill"sv, "D'Angelo"sv, "Dvořák"sv, "Díaz"sv,
    "Novák"sv, "Łukaszewicz"sv, "Šimić"sv, "Gößmann"sv, "Åkesson"sv, "Nguyễn"sv, "Þórsson"sv,
    "Ó Briain"sv, "De la Cruz"sv, "Van der Meer"sv, "St. Clair"sv, "McAllister"sv, "O'Brien"sv,
    "Peña"sv, "Müller"sv, "Berg"sv, "Okoye"sv, "Lindgren"sv, "Carver"sv, "Pryce"sv, "Marsh"sv,
    "Adeyemi"sv, "Baker"sv, "Barnes"sv, "Bennett"sv, "Boyd"sv, "Brennan"sv, "Calloway"sv, "Chen"sv,
    "Cole"sv, "Conti"sv, "Cooper"sv, "Crane"sv, "Dalton"sv, "Doyle"sv, "Eaton"sv, "Ellis"sv,
    "Farrow"sv, "Fischer"sv, "Foster"sv, "Gallagher"sv, "Garcia"sv, "Gibbs"sv, "Grant"sv, "Hale"sv,
    "Haruki"sv, "Hayes"sv, "Hussein"sv, "Ito"sv, "Jansen"sv, "Kane"sv, "Keller"sv, "Khan"sv,
    "Kim"sv, "Lambert"sv, "Lopez"sv, "Madsen"sv, "Mbeki"sv, "Mercer"sv, "Nash"sv, "Nielsen"sv,
    "Osei"sv, "Parks"sv, "Patel"sv, "Quist"sv, "Ramsey"sv, "Rossi"sv, "Rowe"sv, "Sato"sv, "Silva"sv,
    "Singh"sv, "Sutton"sv, "Tanaka"sv, "Turner"sv, "Underhill"sv, "Vance"sv, "Vargas"sv, "Walsh"sv,
    "Weber"sv, "Wilder"sv, "Xu"sv, "Yates"sv, "Young"sv, "Zahra"sv, "Zimmer"sv};

constexpr std::array kFirstNames{"Ann"sv, "Zoë"sv, "Łukasz"sv, "Renée"sv, "José"sv, "Siân"sv,
    "Jürgen"sv, "Anaïs"sv, "Çağla"sv, "Ngọc"sv, "D'Arcy"sv, "Mary-Lou"sv, "Jean-Luc"sv, "Bo"sv,
    "Carla"sv, "Dmitri"sv, "Eve"sv, "Farid"sv, "Gus"sv, "Aaron"sv, "Amina"sv, "Arthur"sv, "Bella"sv,
    "Bruno"sv, "Cecil"sv, "Clara"sv, "Dara"sv, "Dennis"sv, "Edith"sv, "Elias"sv, "Emma"sv,
    "Fiona"sv, "Frank"sv, "Gita"sv, "Gloria"sv, "Hana"sv, "Hector"sv, "Ian"sv, "Ines"sv, "Isaac"sv,
    "Jack"sv, "Jade"sv, "Joan"sv, "Kofi"sv, "Laura"sv, "Leo"sv, "Lina"sv, "Marcus"sv, "Maya"sv,
    "Nadia"sv, "Noah"sv, "Olga"sv, "Omar"sv, "Paula"sv, "Pedro"sv, "Rita"sv, "Ruth"sv, "Sam"sv,
    "Sofia"sv, "Tess"sv, "Theo"sv, "Uma"sv, "Victor"sv, "Wanda"sv, "Will"sv, "Yara"sv, "Yusuf"sv};

constexpr std::array kInitials{"A"sv, "B"sv, "C"sv, "D"sv, "E"sv, "F"sv, "G"sv, "H"sv, "J"sv, "K"sv,
    "L"sv, "M"sv, "N"sv, "P"sv, "R"sv, "S"sv, "T"sv, "W"sv, "É"sv};
constexpr std::array kStreets{"Alder Street"sv, "Birch Lane"sv, "Cannery Row"sv, "Depot Road"sv,
    "Elm Street"sv, "Ferry Landing"sv, "Granite Way"sv, "Harbor View"sv, "King's Court"sv,
    "Lighthouse Road"sv, "Mill Pond Drive"sv, "Orchard Hill"sv, "Quarry Road"sv, "School Street"sv,
    "Tannery Lane"sv};

struct Town
{
    std::string_view name;
    std::string_view state;
    std::string_view zip;
    std::string_view areaCode;
};
constexpr std::array kTowns{Town{"North Harbor", "ME", "00412", "207"},
    Town{"Eastfield", "ME", "00418", "207"}, Town{"Granby Mills", "NH", "00425", "603"},
    Town{"Saint-Rémy", "NH", "00431", "603"}, Town{"Coös Landing", "VT", "00440", "802"}};
constexpr std::array kDiagnoses{"M54.50"sv, "M25.561"sv, "S83.511D"sv, "F41.1"sv, "F33.1"sv,
    "I69.351"sv, "R47.01"sv, "G56.01"sv, "M75.101"sv, "R26.81"sv};

std::string digits(int number, size_t width)
{
    std::string text = std::to_string(number);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

/// Each name once before chance takes over, so that a small clinic has all the awkward ones too.
template <typename List> std::string_view nameFor(const List &names, int index, Random &random)
{
    return size_t(index) < names.size() ? names[size_t(index)] : random.pick(names);
}

std::string lastNameFor(int index, Random &random)
{
    std::string name(nameFor(kLastNames, index, random));
    if (index % 31 == 17) {
        name += '-';
        name += random.pick(kLastNames);
    }
    return name;
}

/// Area numbers 000 and 900 to 999 were never issued; 000 is what six digits or four stand for.
std::optional<std::string> ssnFor(int index, Random &random)
{
    if (index % 23 == 5)
        return std::nullopt;
    if (index % 97 == 11)
        return std::string();
    if (index % 29 == 9)
        return std::to_string(
            random.chance(50) ? random.between(100'000, 999'999) : random.between(1'000, 9'999));
    return std::to_string(random.between(900'000'000, 999'999'999));
}

std::optional<std::string_view> initialFor(Random &random)
{
    const int roll = random.below(100);
    if (roll < 20)
        return std::nullopt;
    return roll < 26 ? std::string_view() : random.pick(kInitials);
}

Day birthDateFor(Random &random)
{
    constexpr Day kOldest{std::chrono::year(1934) / 1 / 1};
    constexpr Day kYoungest{std::chrono::year(2021) / 12 / 31};
    return kOldest + std::chrono::days(random.below(int((kYoungest - kOldest).count())));
}

Patient makePatient(int index, Random &random)
{
    const Town &town = random.pick(kTowns);
    Patient patient;
    patient.id = kFirstId + index;
    patient.lastName = lastNameFor(index, random);
    patient.firstName = nameFor(kFirstNames, index, random);
    patient.middleInitial = initialFor(random);
    patient.account = digits(10'400 + index * 13, 7);
    patient.ssn = ssnFor(index, random);
    if (!random.chance(3))
        patient.provider = size_t(random.below(int(providers().size())));
    if (random.chance(70))
        patient.payer = size_t(random.below(int(payers().size())));
    patient.birthDate = birthDateFor(random);
    patient.phone.append("(")
        .append(town.areaCode)
        .append(") 555-01")
        .append(digits(random.below(100), 2));
    patient.address = std::to_string(random.between(1, 420));
    patient.address += ' ';
    patient.address += random.pick(kStreets);
    patient.city = town.name;
    patient.state = town.state;
    patient.zip = town.zip;
    patient.active = !random.chance(8);
    return patient;
}

/// A newly registered patient has a number but no incident yet.
void openIncidents(Clinic &clinic, Patient &patient, Random &random)
{
    patient.incident = random.between(1, 3);
    if (random.chance(2))
        return;
    Day opened = kFirstDay - std::chrono::days(random.between(200, 1'400));
    for (int number = 1; number <= patient.incident; ++number) {
        const Day next = opened + std::chrono::days(random.between(60, 400));
        const auto closed = number < patient.incident ? std::optional(next) : std::nullopt;
        clinic.incidents.push_back({patient.id, number, opened, closed, random.pick(kDiagnoses)});
        opened = next + std::chrono::days(random.between(1, 30));
    }
}

} // namespace

void registerPatients(Clinic &clinic, int patientCount)
{
    Random random(kSeed);
    clinic.patients.reserve(size_t(patientCount));
    for (int i = 0; i < patientCount; ++i) {
        Patient &patient = clinic.patients.emplace_back(makePatient(i, random));
        openIncidents(clinic, patient, random);
        if (random.chance(25))
            clinic.access.push_back({patient.id, size_t(random.below(int(providers().size())))});
    }
}

} // namespace corvane::demo
