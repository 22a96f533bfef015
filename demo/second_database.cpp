#include "demo/databases.h"

#include "demo/clinic.h"
#include "demo/database_image.h"

namespace corvane::demo {

namespace {

constexpr const char *kTables = R"(
CREATE TABLE payers (
  payer_id varchar(10) COLLATE NOCASE NOT NULL PRIMARY KEY,
  name varchar(60) COLLATE NOCASE);
CREATE TABLE claims (
  claim_id integer NOT NULL PRIMARY KEY,
  payer_id varchar(10) COLLATE NOCASE,
  acctnbr varchar(12) COLLATE NOCASE,
  patient_name varchar(110) COLLATE NOCASE,
  service_date date,
  submitted_at datetime,
  status varchar(10) COLLATE NOCASE,
  electronic bit,
  billed decimal(10,2),
  allowed decimal(10,2));
CREATE TABLE payments (
  payment_id integer NOT NULL PRIMARY KEY,
  claim_id integer,
  paid_date date,
  amount decimal(10,2),
  check_nbr varchar(12) COLLATE NOCASE);
)";

constexpr const char *kIndices = R"(
CREATE INDEX claim_service_date ON claims (service_date);
CREATE INDEX claim_status ON claims (status, submitted_at);
CREATE INDEX payment_claim ON payments (claim_id);
)";

constexpr int kFirstClaimId = 500'001;

void fillClaims(DatabaseImage &image, const Clinic &clinic)
{
    Insert claim(image, "claims", 10);
    Insert payment(image, "payments", 5);
    int claimId = kFirstClaimId;
    int paymentId = 0;
    for (const Claim &c : clinic.claims) {
        const Patient &p = clinic.patients[c.patient];
        const bool paid = c.paid.cents > 0;
        claim.row(claimId, payers()[c.payer].id, p.account, p.lastName + ", " + p.firstName,
            c.serviceDay, c.submitted, c.state, c.electronic, c.billed,
            paid ? std::optional(c.allowed) : std::nullopt);
        if (paid) {
            ++paymentId;
            const std::string check
                = std::string("00").append(std::to_string(70'000 + paymentId / 8));
            payment.row(paymentId, claimId, c.paidDay, c.paid, check);
        }
        ++claimId;
    }
}

} // namespace

QByteArray secondDatabase(const Clinic &clinic)
{
    DatabaseImage image;
    image.execute(kTables);
    Insert payer(image, "payers", 2);
    for (const Payer &p : payers())
        payer.row(p.id, p.name);
    fillClaims(image, clinic);
    image.execute(kIndices);
    return image.bytes();
}

} // namespace corvane::demo
