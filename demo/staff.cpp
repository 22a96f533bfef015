#include "demo/clinic.h"

namespace corvane::demo {

namespace {

constexpr std::array kProviders{
    Provider{"abernathy", "Grace", "Abernathy", "MD", "Internal medicine", "100"},
    Provider{"brook", "Daniel", "Brook", "PT", "Physical therapy", "101"},
    Provider{"castellano", "Lucia", "Castellano", "OT", "Occupational therapy", "102"},
    Provider{"dvorak", "Tomáš", "Dvořák", "PhD", "Psychotherapy", "103"},
    Provider{"eriksen", "Signe", "Eriksen", "PT", "Physical therapy", "104"},
    Provider{"fontaine", "Élise", "Fontaine", "SLP", "Speech therapy", "105"},
    Provider{"haddad", "Samir", "Haddad", "MD", "Pain medicine", "106"},
    Provider{"ishikawa", "Naoko", "Ishikawa", "OT", "Hand therapy", "107"},
    Provider{"kowalska", "Zofia", "Kowalska", "PhD", "Psychotherapy", "108"},
    Provider{"lindqvist", "Björn", "Lindqvist", "PT", "Physical therapy", "109"},
    Provider{"moreau", "Zoë", "Moreau", "SLP", "Speech therapy", "110"},
    Provider{"ohara", "Maeve", "O'Hara", "LCSW", "Counselling", "111"},
    Provider{"okafor", "Chidi", "Okafor", "MD", "Neurology", "112"},
    Provider{"reyes", "Andrés", "Reyes", "LCSW", "Counselling", "113"},
};

constexpr std::array kPayers{
    Payer{"ANC", "Anchor Mutual", "(555) 555-0111"},
    Payer{"BLH", "Bluehill Health Plan", "(555) 555-0122"},
    Payer{"CTY", "County Workers' Fund", "(555) 555-0133"},
    Payer{"GRV", "Grove & Hart Assurance", "(555) 555-0144"},
    Payer{"NSC", "Northshore Care", "(555) 555-0155"},
    Payer{"STW", "Statewide Medical Aid", "(555) 555-0166"},
    Payer{"VET", "Veterans' Benefit Office", "(555) 555-0177"},
};

// "quinn" is there for the quote that the scrambled form of " has with the default constants: no
// key that the logon boxes accept scrambles to it.
constexpr std::array kUsers{
    User{"nora", "clinic", "Nora Whitfield", "2222222222", 1},
    User{"admin", "Harbor77", "Ada Mirza", "9999999999", 9},
    User{"billing", "ledger", "Piotr Zając", "1102002300", 1},
    User{"brook", "hinge", "Dr. Brook", "2111111200", 0},
    User{"dvorak", "Vltava", "Dr. Dvořák", "2111111300", 0},
    User{"okafor", "synapse", "Dr. Okafor", "2111111200", 2},
    User{"frontdesk", "welcome", "Front desk", "2222222122", 1},
    User{"archive", "dusty", "Archive reader", "2222222022", 1},
    User{"temp", "summer", "Summer help", "222", 1},
    User{"interim", "bridge", "Interim cover", "2222222X22", 1},
    User{"lab~2", "tilde~{}", "Laboratory, second bench", "1111111211", 0},
    User{"quinn", "un\"quoted", "Quinn O'Neill", "2222222222", 1},
};

} // namespace

std::span<const Provider> providers()
{
    return kProviders;
}

std::span<const Payer> payers()
{
    return kPayers;
}

std::span<const User> users()
{
    return kUsers;
}

} // namespace corvane::demo
