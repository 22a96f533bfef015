#pragma once

#include <QtCore/QFileDevice>

namespace corvane {

/// Why a file cannot be written and what to do, as two sentences; `error` and `systemText` are the device's own.
QString writeFailure(const QString &fileName, QFileDevice::FileError error, const QString &systemText);

} // namespace corvane
