#pragma once

#include <QtCore/QByteArray>

namespace corvane::demo {

struct Clinic;

/// The bytes of Clinic.db: users, patients, appointments, ledger.
QByteArray mainDatabase(const Clinic &clinic);

/// The bytes of Halvern.db: the archive of electronic and paper claims with the payers' payments.
QByteArray secondDatabase(const Clinic &clinic);

} // namespace corvane::demo
