#pragma once

#include "platform/database/error.h"
#include "platform/database/odbc/handles.h"

#include <QtCore/QStringView>

#include <vector>

namespace corvane::odbc {

/// One record of what a call reported. States as in the call-level interface, ISO/IEC 9075-3.
struct Diagnostic
{
    QString state; ///< five characters, the first two its class
    int number = 0; ///< the server's own
    QString words; ///< without the names of the components that passed them on
};

std::vector<Diagnostic> diagnostics(SQLSMALLINT type, SQLHANDLE handle);

/// Whether a failure is among them: remarks and warnings are not.
bool holdsFailure(const std::vector<Diagnostic> &records);

/// A query's words are its author's: only while connecting do they say what it was about.
enum class Phase { Connecting, Running };

/// The failure that the records tell of: the first that is no warning and no mere consequence.
/// The words never hold the password.
DatabaseError failureOf(
    const std::vector<Diagnostic> &records, const QString &password, Phase phase);

/// What a failure was about, by the server's number, the state and the words, in this order.
FailureCause causeOf(const Diagnostic &record, Phase phase);

} // namespace corvane::odbc
