#pragma once

#include <QtCore/QString>

class QMimeData;

namespace corvane {

/// The path of the one local file that is being dragged; empty for several things, folders and
/// everything else.
QString droppedReport(const QMimeData &dragged);

} // namespace corvane
