#pragma once

class QString;
class QWidget;

namespace corvane {

/// Shows a topic of a compiled help file by its context number, in a window of the system's help engine.
/// @param owner stays below that window; may be null
/// @return false where the system has no such engine, and when it cannot show the file
bool showCompiledHelp(QWidget *owner, const QString &path, int context);

} // namespace corvane
