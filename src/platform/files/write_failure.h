#pragma once

#include <QtCore/QFileDevice>

namespace corvane {

/// Whether whoever saves may choose another place, or the file must stay where it is.
enum class SavePlace { Choosable, Fixed };

/// Why a file cannot be written and what to do, as two sentences; `error` and `systemText` are the
/// device's own.
QString writeFailure(const QString &fileName, QFileDevice::FileError error,
    const QString &systemText, SavePlace place = SavePlace::Choosable);

} // namespace corvane
