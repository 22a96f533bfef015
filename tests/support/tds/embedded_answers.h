#pragma once

#include "support/tds/answer.h"

namespace corvane::test::tds {

/// Opens sessions that answer from the databases in the folder "Data" of a program folder, through
/// the embedded driver; DatabaseError for a database that is not there.
std::function<Answerer(const QString &database)> embeddedAnswers(const QString &programFolder);

} // namespace corvane::test::tds
