#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <utility>

class QPrinter;

namespace corvane {

using CupsOptions = QList<std::pair<QByteArray, QByteArray>>;

/// The printer's settings as job options of the printing system (PWG 5100.13 names where there are
/// some), those that its dialog added last.
CupsOptions cupsOptionsOf(const QPrinter &printer);

/// Hands a finished file to the printer's queue and returns when the system has accepted it.
/// @throws PrintError
void submitToQueue(const QPrinter &printer, const QString &fileName);

} // namespace corvane
